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
    for (std::size_t i = pick(random, 60); i > 0; --i) text += pieces[pick(random, pieces.size())];
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

    template <class Number, class Bits>
    void takeNumber() {
        Number expected = 77;
        Number value = 77;
        stream >> expected;
        extractor >> value;
        ASSERT_EQ(std::bit_cast<Bits>(value), std::bit_cast<Bits>(expected)) << value << " for " << expected;
    }

    void takeWord() {
        std::string expected;
        std::string_view word;
        stream >> expected;
        extractor >> word;
        ASSERT_EQ(word, expected);
    }

    void takeLine(std::size_t size) {
        char expected[40] = "untouched";
        char line[40] = "untouched";
        stream.getline(expected, static_cast<std::streamsize>(size));
        extractor.getLine(line, size);
        ASSERT_STREQ(line, expected);
    }

    void skipWhiteSpace() {
        while (stream.good() && std::isspace(stream.peek())) stream.get();
        extractor.skipWhiteSpace();
    }

    void ignore(std::size_t count) {
        stream.ignore(static_cast<std::streamsize>(count), '\n');
        ASSERT_EQ(extractor.ignore(count, '\n'), stream.gcount());
    }

    void ignoreLineInPieces() {
        do {
            stream.ignore(300, '\n');
        } while (stream.gcount() == 300);
        extractor.ignoreLineInPieces(300);
    }

    void clear() {
        stream.clear();
        extractor.clear();
    }

    void doSomething(Random& random) {
        std::size_t const kind = pick(random, 12);
        if (kind == 0) return takeWord();
        if (kind == 1) return takeLine(pick(random, 40));
        if (kind == 2) return skipWhiteSpace();
        if (kind == 3) return ignore(pick(random, 20));
        if (kind == 4) return ignoreLineInPieces();
        if (kind == 5) return clear();
        return kind < 9 ? takeNumber<int, unsigned>() : takeNumber<float, unsigned>();
    }

    void compareState() {
        ASSERT_EQ(extractor.fail(), stream.fail());
        ASSERT_EQ(extractor.eof(), stream.eof());
        ASSERT_EQ(extractor.taken(), stream.rdbuf()->pubseekoff(0, std::ios::cur, std::ios::in));
    }
};

TEST(StreamExtractor, DoesWhatAStandardStreamDoes) {
    Random random(20240607);
    for (int text = 0; text < 20000 && !HasFatalFailure(); ++text) {
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
    }
}

TEST(StreamExtractor, ReadsNumbersOfEveryLengthBitForBit) {
    Random random(7);
    std::string content;
    for (int i = 0; i < 200000; ++i) {
        if (pick(random, 3) == 0) content += "-";
        std::size_t const length = 1 + pick(random, 12);
        std::size_t const point = pick(random, length + 3);
        for (std::size_t k = 0; k < length; ++k) {
            if (k == point) content += '.';
            content += static_cast<char>('0' + pick(random, 10));
        }
        if (pick(random, 10) == 0) content += "e-" + std::to_string(pick(random, 44));
        content += ' ';
    }
    Twins twins(content, 4096);
    while (twins.stream.good()) ASSERT_NO_FATAL_FAILURE((twins.takeNumber<float, unsigned>()));
    ASSERT_NO_FATAL_FAILURE(twins.compareState());
}

TEST(StreamExtractor, BeginsWithTheStateOfItsStream) {
    std::istringstream stream("1 2");
    int value = 0;
    stream >> value;
    tarnex::StreamExtractor second(stream);
    EXPECT_TRUE(second >> value);
    EXPECT_EQ(value, 2);

    stream.setstate(std::ios::failbit);
    tarnex::StreamExtractor failed(stream);
    EXPECT_FALSE(failed >> value);
    EXPECT_EQ(failed.taken(), 0);
}

} // namespace
