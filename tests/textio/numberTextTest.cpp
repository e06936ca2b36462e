#include "textio/numberText.h"

#include "support/testing.h"
#include "textio/numberParsing.h"

#include <bit>
#include <clocale>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <limits>
#include <random>

namespace {

using namespace tarnex::test;

std::string const refused = "FloatConversion_Error";

template <class Function>
std::string textOf(Function function) {
    try {
        return function();
    } catch (FloatConversion_Error const&) {
        return refused;
    }
}

/// What stands left and right of the point, as printf writes it, with zeros behind the seventeenth decimal.
std::pair<std::string, std::string> sidesByPrintf(int decimals, float value) {
    char text[128];
    std::snprintf(text, sizeof text, "%.*f", std::min(decimals, 17), static_cast<double>(value));
    std::string const number = std::isfinite(value) ? text : std::string("0.") + text;
    std::size_t const point = number.find('.');
    std::string right = number.substr(point + 1);
    right.resize(static_cast<std::size_t>(decimals), '0');
    return {number.substr(0, point), right};
}

std::string leftByPrintf(int width, float value) {
    std::string const left = sidesByPrintf(width, value).first;
    return left.size() > static_cast<std::size_t>(width) ? refused : left;
}

std::string wholeByPrintf(int width, float value) {
    std::string const left = leftByPrintf(width - 1, value);
    if (width > 20 || left == refused) return refused;
    return left + "." + sidesByPrintf(width - 1 - static_cast<int>(left.size()), value).second;
}

/// Numbers as files have them, halves of every decimal place, and any bit pattern at all.
float randomValue(std::mt19937& random) {
    float const scale = std::pow(10.0F, static_cast<float>(random() % 14) - 4.0F);
    auto const kind = random() % 5;
    if (kind == 0) return std::bit_cast<float>(static_cast<std::uint32_t>(random()));
    if (kind == 1) return (static_cast<float>(random() % 4001) - 2000.0F) / 4096.0F;
    if (kind == 2) return (static_cast<float>(random() % 2001) - 1000.0F) / 2.0F / scale;
    if (kind == 3) return std::nextafter(std::round(static_cast<float>(random() % 1000)), -1.0F);
    return (static_cast<float>(random()) / 4.3e9F - 0.5F) * scale;
}

void expectAllTexts(float value) {
    SCOPED_TRACE(value);
    for (int width = 1; width < 25; ++width) {
        std::string const right = sidesByPrintf(width, value).second;
        EXPECT_EQ(textOf([&] { return leftFloatToString(width, value); }), leftByPrintf(width, value)) << width;
        EXPECT_EQ(rightFloatToString(width, value), right) << width;
        EXPECT_EQ(textOf([&] { return floatToString(width, value); }), wholeByPrintf(width, value)) << width;

        char text[tarnex::numberTextRoom];
        std::string parts = leftByPrintf(5, value);
        if (parts != refused) parts = std::string(5 - parts.size(), ' ') + parts + "." + right;
        EXPECT_EQ(textOf([&] { return std::string(text, tarnex::putParts(text, 5, width, value)); }), parts) << width;
        char expected[tarnex::numberTextRoom];
        std::snprintf(expected, sizeof expected, "%8.*f", width - 1, static_cast<double>(value));
        if (width <= 16) EXPECT_EQ(std::string(text, tarnex::putDecimal(text, 8, width - 1, value)), expected) << width;
    }
}

TEST(numberText, hasTheDigitsOfPrintf) {
    constexpr float nan = std::numeric_limits<float>::quiet_NaN();
    for (float const value : {0.0F, -0.0F, 0.5F, -0.5F, 2.5e-5F, 0.03125F, 9.99F, 1e-45F, -1e-40F, 8388607.5F, 1e10F,
                              0x1p63F, 0x1p64F, 3.4e38F, -3.4e38F, INFINITY, -INFINITY, nan, -nan}) {
        expectAllTexts(value);
    }
    std::mt19937 random(7);
    for (int i = 0; i < 20000 && !testing::Test::HasFailure(); ++i) expectAllTexts(randomValue(random));
}

TEST(numberText, keepsItsLengthAtTheLimits) {
    EXPECT_THROW(leftFloatToString(-1, 1.0F), FloatConversion_Error);
    EXPECT_STREQ(rightFloatToString(0, 0.5F), "");
    EXPECT_EQ(std::strlen(rightFloatToString(1000, 0.5F)), 99U);
    EXPECT_EQ(std::strlen(leftFloatToString(1000, -3.4e38F)), 40U);
    EXPECT_STREQ(itoa2(-2147483647 - 1), "-2147483648");
}

void expectAsC(std::string const& text) {
    EXPECT_EQ(tarnex::parseInt(text), static_cast<int>(std::strtol(text.c_str(), nullptr, 10))) << text;
    EXPECT_EQ(std::bit_cast<std::uint64_t>(tarnex::parseDouble(text)),
              std::bit_cast<std::uint64_t>(std::strtod(text.c_str(), nullptr)))
        << text;
}

TEST(numberParsing, givesTheBitsOfTheCLibrary) {
    std::istringstream texts(
        "| |-|+|.|5.|.5|-.5e1|1e5|1E+|1e|0x1p-3|0x1F|inf|-NaN|1e400|-1e-400|9007199254740992|9007199254740993"
        "|9007199254740993e22|1e22|1e23|1e-22|0e99|-0|12 3|\t7|--1|99999999999999999999|-99999999999999999999"
        "|4294967297|2147483648|123456789012345678|1,5|0.1e1x");
    for (std::string text; std::getline(texts, text, '|');) expectAsC(text);
    EXPECT_EQ(tarnex::parseDouble(std::string(500, '0') + "1.5"), 1.5);
    EXPECT_EQ(tarnex::parseInt(std::string_view("1\0002", 3)), 1);
    std::mt19937 random(3);
    static constexpr char alphabet[] = "0123456789012345678901234567890123456789..-+eE";
    for (int i = 0; i < 500000 && !testing::Test::HasFailure(); ++i) {
        std::string text;
        for (auto n = random() % 22; n > 0; --n) text += alphabet[random() % (sizeof alphabet - 1)];
        expectAsC(text);
    }
}

TEST(numberParsing, ignoresTheLocaleOfTheHost) {
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8")) GTEST_SKIP() << "no locale with a decimal comma here";
    EXPECT_EQ(tarnex::parseDouble("1.50000000000000000000"), 1.5);
    char text[tarnex::numberTextRoom];
    EXPECT_EQ(std::string(text, tarnex::putDecimal(text, 0, 15, 1.5F)), "1.500000000000000");
    EXPECT_STREQ(floatToString(18, 1.5F), "1.5000000000000000");
    std::setlocale(LC_NUMERIC, "C");
}

} // namespace
