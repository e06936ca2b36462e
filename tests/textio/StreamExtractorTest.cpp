#include "textio/StreamExtractor.h"

#include "support/testing.h"

#include <bit>
#include <cctype>
#include <random>

namespace {

using namespace tarnex::test;

using Random = std::mt19937;

std::size_t pick(Random& random, std::size_t limit) {
    return random() % limit;
}

std::string randomText(Random& random) {
    static std::vector<std::string> const pieces = [] {
        std::istringstream words("0|1|7|12|-|+|.|e|E|e-3|0x1|nan|inf|1e5000|1e-5000|1e-42|2147483647|-2147483648|"
                                 "2147483648|99999999999999999999|1.5|1.5.2|1e|-0.834000|15.99940|16777217|"
                                 "0.30000001192092896|3.4028236e38|a|word| |\n|  |\t|\r\n|\v\f|      |\n\n| | ");
        std::vector<std::string> all;
        for (std::string word; std::getline(words, word, '|');) all.push_back(word);
        return all;
    }();
    std::string text;
    for (std::size_t i = pick(random, 60); i > 0; --i) {
        std::string const number = std::to_string(random() >> pick(random, 32));
        std::size_t const point = pick(random, number.size() + 1);
        std::string const decimal = " " + number.substr(0, point) + "." + number.substr(point) + " ";
        text += pick(random, 2) == 0 ? decimal : pieces[pick(random, pieces.size())];
    }
    if (pick(random, 8) == 0) text.insert(pick(random, text.size() + 1), 1, '\0');
    if (pick(random, 8) == 0) text.insert(pick(random, text.size() + 1), 295 + pick(random, 10), "1x"[pick(random, 2)]);
    return text;
}

/// One operation on both, with all that can be seen of it afterwards.
struct Twins {
    std::istringstream stream;
    std::istringstream sameStream;
    tarnex::StreamExtractor extractor;

    Twins(std::string const& text, std::size_t blockSize)
        : stream(text), sameStream(text), extractor(sameStream, blockSize) {}

    template <class Number>
    void takeNumber() {
        Number expected = 77;
        Number value = 77;
        stream >> expected;
        extractor >> value;
        ASSERT_EQ(std::bit_cast<unsigned>(value), std::bit_cast<unsigned>(expected)) << value << " for " << expected;
    }

    std::string onStream(std::size_t kind, std::size_t count) {
        std::string word;
        char line[40] = "";
        if (kind == 0) stream >> word;
        if (kind == 1) stream.getline(line, static_cast<std::streamsize>(count));
        if (kind == 2) stream.clear();
        while (kind == 3 && stream.good() && std::isspace(stream.peek())) stream.get();
        if (kind > 3) stream.ignore(static_cast<std::streamsize>(kind == 4 ? count : 300), '\n');
        if (kind == 4) return std::to_string(stream.gcount());
        while (kind == 5 && stream.gcount() == 300) stream.ignore(300, '\n');
        return word + line;
    }

    std::string onExtractor(std::size_t kind, std::size_t count) {
        std::string_view word;
        char line[40] = "";
        if (kind == 0) extractor >> word;
        if (kind == 1) extractor.getLine(line, count);
        if (kind == 2) extractor.clear();
        if (kind == 3) extractor.skipWhiteSpace();
        if (kind == 4) return std::to_string(extractor.ignore(count, '\n'));
        if (kind == 5) extractor.ignoreLineInPieces(300);
        return std::string(word) + line;
    }

    void doSomething(Random& random) {
        std::size_t const kind = pick(random, 12);
        std::size_t const count = pick(random, 40);
        if (kind > 5) return kind < 9 ? takeNumber<int>() : takeNumber<float>();
        std::string const expected = onStream(kind, count);
        ASSERT_EQ(onExtractor(kind, count), expected);
    }

    void compareState() {
        ASSERT_EQ(extractor.fail(), stream.fail());
        ASSERT_EQ(extractor.eof(), stream.eof());
        ASSERT_EQ(extractor.taken(), stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in));
    }
};

TEST(StreamExtractor, DoesWhatAStandardStreamDoes) {
    Random random(20240607);
    for (int text = 0; text < 30000 && !HasFatalFailure(); ++text) {
        std::string const content = randomText(random);
        std::size_t const blockSizes[] = {1, 3, 20, 100, 1000};
        Twins twins(content, blockSizes[pick(random, std::size(blockSizes))]);
        for (int i = 0; i < 60 && !HasFatalFailure(); ++i) {
            ASSERT_NO_FATAL_FAILURE(twins.doSomething(random)) << content;
            ASSERT_NO_FATAL_FAILURE(twins.compareState()) << content;
        }
        twins.extractor.giveBack();
        EXPECT_EQ(twins.sameStream.rdstate(), twins.stream.rdstate());
        EXPECT_EQ(twins.sameStream.rdbuf()->sgetc(), twins.stream.rdbuf()->sgetc());
        int value = 0; // the next extractor goes on in this state
        EXPECT_EQ(!(tarnex::StreamExtractor(twins.sameStream) >> value), !(twins.stream >> value));
    }
}

} // namespace
