#include "textio/writer.h"

#include "support/testing.h"

namespace {

using namespace tarnex::test;

/// What `fill` writes up to a failure.
template <class Fill>
std::string written(Fill fill) {
    std::string const path = scratchPath("written.txt");
    try {
        writer out(path.c_str());
        EXPECT_TRUE(out.isOpen());
        fill(out);
    } catch (FloatConversion_Error const&) {
    }
    return readFile(path);
}

TEST(writer, fitsTextsIntoColumns) {
    struct Case {
        std::string text;
        int width;
        unsigned short alignment;
        std::string expected;
    };
    std::string const hundred(100, 'h');
    for (Case const& c :
         {Case{"abc", 5, 0, "  abc"}, Case{"abc", 5, 1, "abc  "}, Case{"abcdef", 4, 0, "abc"},
          Case{"abcdef", 4, 1, "abcd"}, Case{"abc", 3, 0, "abc"}, Case{"abc", 1, 0, ""}, Case{"abc", 0, 1, ""},
          Case{"", -1, 0, ""}, Case{"abc", 5, 2, ""}, Case{hundred, 99, 0, hundred.substr(2)},
          Case{hundred, 99, 1, hundred.substr(1)}, Case{hundred + "x", 100, 0, hundred + "x"}}) {
        EXPECT_EQ(written([&](writer& out) { out.writeColumns(c.text.c_str(), 11, 10 + c.width, c.alignment); }),
                  c.expected);
    }
}

TEST(writer, writesNumbersUpToAFailure) {
    EXPECT_EQ(written([](writer& out) {
                  out.writeColumns(123, 1, 3, 0);
                  out.writeColumns(1234, 1, 3, 0);
                  out.writeColumns(-7, 1, 4, 1);
                  out.writeColumns(1.5F, 1, 10, 0);
                  out.write(-12);
                  out.write(0.1F);
                  out.writeParts(-0.5F, 5, 4);
                  out.writeDecimal(9.9996F, 8, 3);
                  out.writeParts(-10000.0F, 5, 4);
              }),
              "12312-7  1.50000000-120.100000   -0.5000  10.000");
    EXPECT_EQ(written([](writer& out) { out.writeColumns(1.0F, 1, 21, 1); }), "");
}

TEST(writer, passesOnTextsOfAnyLength) {
    std::string expected;
    std::string const longText(200001, 'x');
    EXPECT_EQ(written([&](writer& out) {
                  for (int i = 0; i < 30000; ++i) {
                      out.write(i);
                      out.writeColumns("k", 1, 1 + i % 9, 0);
                      expected += std::to_string(i) + std::string(static_cast<std::size_t>(i % 9), ' ') + "k";
                  }
                  out.flush();
                  std::fputs("direct", out.file);
                  out.write(longText.c_str());
                  expected += "direct" + longText;
              }),
              expected);
    writer nowhere("/no such directory/file");
    EXPECT_FALSE(nowhere.isOpen());
    nowhere.write(longText.c_str());
}

} // namespace
