#pragma once

#include "textio/textScan.h"

#include <string_view>

/// The fast road from texts to numbers. It takes texts that are a plain number as a whole and refuses all others, which
/// then go to the C library. Seven characters behind a text may be looked at.
namespace tarnex {

/// At most eight characters behind an optional sign. The text has a first character, even if its length is 0.
struct ShortNumber {
    bool negative;
    /// Without the sign.
    std::ptrdiff_t length;
    /// The characters without the sign, xored with '0' so that digits become 0 to 9. Zeros fill up the front.
    std::uint64_t digits = 0;

    explicit ShortNumber(std::string_view text) {
        negative = *text.data() == '-';
        int const signs = static_cast<int>(negative) | static_cast<int>(*text.data() == '+');
        length = static_cast<std::ptrdiff_t>(text.size()) - signs;
        if (fits()) digits = alignRight(loadWord(text.data() + signs) ^ repeated('0'), length);
    }
    bool fits() const { return length >= 1 && length <= wordLength; }
};

/// The value of eight digits, each 0 to 9, the first one in the lowest bits: pairs, then fours, then all.
constexpr std::uint32_t joinDigits(std::uint64_t digits) {
    constexpr std::uint64_t everyFourth = 0x000000ff000000ffU;
    std::uint64_t const pairs = digits * 10 + (digits >> 8U);
    std::uint64_t const sum = (pairs & everyFourth) * (100 + (std::uint64_t{1000000} << 32U)) +
                              ((pairs >> 16U) & everyFourth) * (1 + (std::uint64_t{10000} << 32U));
    return static_cast<std::uint32_t>(sum >> 32U);
}

/// The eight digits of a number below 10^8, as `joinDigits` takes them: halves, then pairs, then all. The quotients
/// come of products, which are exact for such small numbers.
constexpr std::uint64_t splitDigits(std::uint32_t number) {
    std::uint64_t const halves = number / 10000 | std::uint64_t{number % 10000} << 32U;
    std::uint64_t const hundreds = (halves * 5243 >> 19U) & 0x0000007f0000007fU;
    std::uint64_t const pairs = hundreds | (halves - 100 * hundreds) << 16U;
    std::uint64_t const tens = (pairs * 103 >> 10U) & 0x000f000f000f000fU;
    return tens | (pairs - 10 * tens) << 8U;
}
static_assert(splitDigits(12345678) == 0x0807060504030201U && joinDigits(splitDigits(90909099)) == 90909099);

/// True if all characters are 0 to 9.
constexpr bool areDigits(std::uint64_t word) {
    return ((word | (word + repeated(0x76))) & repeated(static_cast<char>(0x80))) == 0;
}

/// True for an integer of at most 8 digits.
inline bool parseShortInt(std::string_view text, int& value) {
    ShortNumber const number(text);
    if (!number.fits() || !areDigits(number.digits)) return false;
    auto const magnitude = static_cast<int>(joinDigits(number.digits));
    value = number.negative ? -magnitude : magnitude;
    return true;
}

/// Those of positive numbers and those of negative ones. Dividing by them gives a number its sign without a branch:
/// nobody can guess the signs of coordinates.
inline constexpr double signedPowersOfTen[2][8] = {{1e0, 1e1, 1e2, 1e3, 1e4, 1e5, 1e6, 1e7},
                                                   {-1e0, -1e1, -1e2, -1e3, -1e4, -1e5, -1e6, -1e7}};

/// True for a number of at most 8 characters without exponent. Its digits and the power of ten are exact doubles, so
/// that their quotient is the correctly rounded number.
inline bool parseShortDouble(std::string_view text, double& value) {
    ShortNumber const number(text);
    if (!number.fits()) return false;
    std::uint64_t digits = number.digits;
    int place = wordLength - 1; // of the point, or of the last digit
    if (std::uint64_t const points = mark(digits, '.' ^ '0')) [[likely]] {
        if (number.length == 1) return false;
        std::uint64_t const point = (points & (~points + 1)) >> 7U; // a 1 in its place
        std::uint64_t const ahead = digits & (point - 1);
        digits += (ahead << 8U) - ahead - point * ('.' ^ '0');
        place = std::countr_zero(points) / 8;
    }
    if (!areDigits(digits)) return false;
    value = static_cast<std::int32_t>(joinDigits(digits)) / signedPowersOfTen[number.negative][wordLength - 1 - place];
    return true;
}

/// A field of up to eight columns with a number at its end, as fields of numbers nearly always are: blanks, an optional
/// minus, digits and perhaps a point.
class PlainNumber {
public:
    PlainNumber(char const* field, int width) {
        // As in all searches by words, the first character stands in the lowest bits. Zeros fill up the front.
        int const unused = 8 * (static_cast<int>(wordLength) - width);
        std::uint64_t const word = loadWord(field) << unused;
        std::uint64_t const others = word ^ (repeated(' ') << unused);
        if (others == 0) return;
        int const front = std::countr_zero(others) / 8 * 8;
        isNegative = (word >> front & character) == '-';
        digits = (word ^ (repeated('0') << unused)) >> front << front;
        digits &= ~(character * static_cast<std::uint64_t>(isNegative) << front);
    }

    bool toInteger(int& value) const {
        auto const magnitude = static_cast<int>(joinDigits(digits));
        value = isNegative ? -magnitude : magnitude;
        return areDigits(digits);
    }
    /// True if a point stands ahead of the last `decimals` digits. They and the power of ten are exact doubles, so that
    /// their quotient is the correctly rounded number.
    bool toReal(int decimals, double& value) const {
        int const point = 8 * (static_cast<int>(wordLength) - 1 - decimals);
        std::uint64_t const ahead = digits & ((std::uint64_t{1} << point) - 1);
        std::uint64_t const withoutPoint = digits >> (point + 8) << (point + 8) | ahead << 8;
        if ((digits >> point & character) != ('.' ^ '0') || !areDigits(withoutPoint)) return false;
        value = static_cast<std::int32_t>(joinDigits(withoutPoint)) / signedPowersOfTen[isNegative][decimals];
        return true;
    }

private:
    static constexpr std::uint64_t character = 0xff;

    /// Each character's value if it is a digit; 0 for blanks and the minus.
    std::uint64_t digits = 0;
    bool isNegative = false;
};

} // namespace tarnex
