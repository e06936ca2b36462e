#include "slowScanner.h"
#include "support/testing.h"
#include "textio/Card.h"
#include "textio/LineTokens.h"
#include "textio/lengthizer.h"
#include "textio/tokenizer.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <random>

namespace {

using namespace tarnex::test;

using Random = std::mt19937;

int pick(Random& random, int limit) {
    return static_cast<int>(random() % static_cast<unsigned>(limit));
}

std::string randomText(Random& random) {
    static constexpr char alphabet[] = "  \t\r\n\r\n01289.-+eExa\0   ";
    std::string text;
    for (int i = pick(random, 250); i > 0; --i) text += alphabet[pick(random, sizeof alphabet - 1)];
    if (pick(random, 4) == 0) {
        auto const length = static_cast<std::size_t>(996 + pick(random, 8));
        text.insert(static_cast<std::size_t>(pick(random, static_cast<int>(text.size()) + 1)), length, 'y');
    }
    for (int i = pick(random, 2) * 200; i > 0; --i) {
        text += std::string(static_cast<std::size_t>(pick(random, 30)), 'x') + (pick(random, 20) == 0 ? "\n\r" : "\n");
    }
    return text;
}

/// The message with which an operation fails on a text that is too long for the buffer.
template <class Operation>
std::string refusalOf(Operation operation) {
    try {
        operation();
    } catch (Parse_Error const& error) {
        return error.message;
    }
    return "";
}

void expectInt(int value, std::string const& text) {
    EXPECT_EQ(value, static_cast<int>(std::strtol(text.c_str(), nullptr, 10)));
}

void expectFloat(float value, std::string const& text) {
    auto const expected = static_cast<float>(std::strtod(text.c_str(), nullptr));
    EXPECT_EQ(std::bit_cast<std::uint32_t>(value), std::bit_cast<std::uint32_t>(expected)) << text;
}

/// Some tokens found at once, and one more that fills the buffer.
void stepByTokensOfLine(tokenizer& fast, SlowScanner& slow, int number) {
    std::vector<std::string> expected;
    std::string const refusal = refusalOf([&] {
        for (int i = 0; i <= number; ++i) {
            slow.token();
            expected.push_back(slow.buffer);
        }
    });
    auto const fastTokens = [&] {
        tarnex::LineTokens tokens(fast, number);
        for (std::size_t i = 0; i < static_cast<std::size_t>(number); ++i) {
            std::string const token(tokens.next());
            EXPECT_EQ(token, i < expected.size() ? expected[i].c_str() : "refused"); // up to a NUL
        }
        fast.getToken();
    };
    EXPECT_EQ(refusalOf(fastTokens), refusal);
}

/// One random operation that only this kind of scanner has, on the fast and on the slow one.
void step(tokenizer& fast, SlowScanner& slow, Random& random) {
    int const operation = pick(random, 8);
    if (operation > 5) return stepByTokensOfLine(fast, slow, pick(random, 6));
    std::string const refusal = refusalOf([&] {
        if (operation < 3) slow.token();
        if (operation == 3) slow.nextToken();
        if (operation > 3) slow.tokenLine(operation == 4);
    });
    auto const fastStep = [&] {
        if (operation == 0) fast.getToken();
        if (operation == 1) expectInt(fast.getInt(), slow.buffer);
        if (operation == 2) expectFloat(fast.getFloat(), slow.buffer);
        if (operation == 3) fast.getNextToken();
        if (operation == 4) fast.getLineString();
        if (operation == 5) fast.getUntrimmedLineString();
    };
    EXPECT_EQ(refusalOf(fastStep), refusal);
}

/// Part of a line by columns, and a random field of it.
void stepColumns(lengthizer& fast, SlowScanner& slow, Random& random) {
    int const count = 16 + pick(random, 60);
    std::string const text(fast.takeColumns(count), static_cast<std::size_t>(count));
    EXPECT_EQ(text, slow.columns(static_cast<std::size_t>(count)));
    slow.buffer = fast.buffer;                      // it may be overwritten
    std::string const looseText = text + "1234567"; // characters behind the text have no effect
    tarnex::CardFrom<3> const card(looseText.c_str());
    int const width = 1 + pick(random, 15);
    int const first = pick(random, count - width);
    tarnex::Columns const columns{first + 3, first + 2 + width};
    std::string field = text.substr(static_cast<std::size_t>(first), static_cast<std::size_t>(width));
    field.erase(field.find_last_not_of(' ') + 1).erase(0, field.find_first_not_of(' '));
    expectFloat(card.real(columns, 1 + pick(random, 6)), field);
    if (width <= 8) expectInt(card.integer(columns), field);
    if (width < 8) EXPECT_STREQ(card.field(columns).c_str(), field.c_str());
}

void step(lengthizer& fast, SlowScanner& slow, Random& random) {
    int const operation = pick(random, 7);
    if (operation == 6) return stepColumns(fast, slow, random);
    auto const width = static_cast<unsigned char>(pick(random, 8) == 0 ? pick(random, 256) : pick(random, 12));
    std::string const before = slow.buffer;
    char destination[256];
    std::strcpy(destination, before.size() < 256 ? before.c_str() : "");
    std::string const refusal = refusalOf([&] { operation < 5 ? slow.field(width) : slow.fieldLine(); });
    auto const fastStep = [&] {
        if (operation == 0) fast.getToken(width);
        if (operation == 1) expectInt(fast.getInt(width), slow.buffer);
        if (operation == 2) expectFloat(fast.getFloat(width), slow.buffer);
        if (operation == 3) fast.getString(width);
        if (operation == 4) fast.getString(destination, width);
        if (operation == 5) fast.getUntrimmedLineString();
    };
    EXPECT_EQ(refusalOf(fastStep), refusal);
    EXPECT_EQ(fast.target, fast.buffer);
    if (operation != 4) return;
    if (width > 0) EXPECT_EQ(std::memcmp(destination, slow.buffer.c_str(), slow.buffer.size() + 1), 0);
    slow.buffer = before;
}

/// One random operation that all scanners have. `position` is a saved offset.
void stepCommon(reader& fast, SlowScanner& slow, Random& random, long& position) {
    int const operation = pick(random, 8);
    if (operation < 3) {
        fast.nextLine();
        slow.nextLine();
    } else if (operation == 3) {
        int const count = pick(random, 60);
        fast.skipLines(count);
        for (int i = 0; i < count && !slow.eof; ++i) slow.nextLine();
    } else if (operation < 6) {
        auto const n = static_cast<unsigned short>(pick(random, 6) == 0 ? pick(random, 65536) : pick(random, 20));
        fast.skipChars(n);
        slow.skipChars(n);
    } else if (operation == 6) {
        fast.getStreamPos(position);
        slow.positions[position] = slow.lineNumber;
    } else {
        long const target = pick(random, 2) == 0 ? position : pick(random, 320) - 20;
        slow.setStreamPos(target);
        if (pick(random, 2) == 0)
            fast.setStreamPos(target);
        else
            fast.returnTo({target, slow.lineNumber});
    }
}

template <class Scanner>
class Scanning : public testing::Test {};
using Scanners = testing::Types<tokenizer, lengthizer>;
TYPED_TEST_SUITE(Scanning, Scanners);

/// Also in blocks of a few bytes, so that every kind of text lies across their borders.
TYPED_TEST(Scanning, equalsCharacterByCharacterReading) {
    for (unsigned seed = 0; seed < 2000 && !this->HasFailure(); ++seed) {
        Random random(seed);
        std::string const text = randomText(random);
        int const blockSize = pick(random, 2) == 0 ? 4000 : pick(random, 40);
        TypeParam fast(writeFile("text", text).c_str(), static_cast<std::size_t>(blockSize));
        SlowScanner slow{text};
        long position = 0;
        for (int i = 0; i < 80; ++i) {
            if (pick(random, 3) == 0) {
                stepCommon(fast, slow, random, position);
            } else {
                step(fast, slow, random);
            }
            ASSERT_EQ(std::memcmp(fast.buffer, slow.buffer.c_str(), slow.buffer.size() + 1), 0) << seed << ' ' << i;
            ASSERT_EQ(fast.lineNumber, slow.lineNumber) << seed << ' ' << i;
            ASSERT_EQ(fast.eof, slow.eof) << seed << ' ' << i;
            ASSERT_EQ(fast.tell(), static_cast<long>(slow.at)) << seed << ' ' << i;
        }
    }
}

TYPED_TEST(Scanning, takesWhatCannotBeReadAsEmpty) {
    for (std::string const& name : {scratchPath(""), scratchPath("missing")}) {
        TypeParam scanner(name.c_str());
        EXPECT_EQ(scanner.isOpen(), name == scratchPath(""));
        EXPECT_STREQ(scanner.getUntrimmedLineString(), "");
        scanner.nextLine();
        EXPECT_TRUE(scanner.eof);
        scanner.setStreamPos(0);
        EXPECT_FALSE(scanner.eof);
        scanner.skipChars(1);
        EXPECT_TRUE(scanner.eof);
        EXPECT_EQ(scanner.tell(), 0);
    }
}

TEST(reader, judgesItsBuffer) {
    struct Case {
        char const* token;
        bool isInt, isFloat;
    };
    for (auto const& [token, isInt, isFloat] :
         {Case{"", true, true}, Case{"+12", true, true}, Case{"-", true, true}, Case{"1-2", false, false},
          Case{"-1.5E+3", false, true}, Case{"E", false, true}, Case{"1e5", false, false}, Case{"1.2.3", false, false},
          Case{"1.E5", false, true}, Case{"E5-", false, false}, Case{"1EE", false, false}, Case{"+-1", false, false}}) {
        lengthizer in(writeFile("text", token).c_str());
        in.getToken(20);
        EXPECT_EQ(in.isInt(), isInt) << token;
        EXPECT_EQ(in.isFloat(), isFloat) << token;
        EXPECT_TRUE(in.equals(token));
    }
}

TEST(reader, believesNoCountBeyondAMillionOrTheBytesOfTheFile) {
    std::string const text = writeFile("text", "1 2\n");
    EXPECT_EQ(reader(text.c_str()).believableCount(999999), 999999);
    EXPECT_EQ(reader(text.c_str()).believableCount(2000000000), 1000000);
    std::filesystem::resize_file(text, 3000000);
    tokenizer in(text.c_str(), 2);
    in.getToken();
    EXPECT_EQ(in.believableCount(2000000), 2000000);
    EXPECT_EQ(in.believableCount(2000000000), 3000000);
    EXPECT_EQ(in.getInt(), 2); // the place is as it was
}

TEST(reader, returnsToPlacesBeyondFourGigabytes) {
    std::string const text = writeFile("text", "first\n");
    long const far = 5'000'000'000;
    std::filesystem::resize_file(text, static_cast<std::uintmax_t>(far));
    std::ofstream(text, std::ios::binary | std::ios::app) << "last line\n";
    tokenizer in(text.c_str());
    in.setStreamPos(far);
    EXPECT_STREQ(in.getString(), "last");
    EXPECT_EQ(in.tell(), far + 5);
    in.setStreamPos(0);
    EXPECT_EQ(in.getString()[0], 'f');
}

} // namespace
