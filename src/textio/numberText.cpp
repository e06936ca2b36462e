#include "textio/numberText.h"

#include <algorithm>
#include <array>
#include <bit>
#include <charconv>
#include <cmath>
#include <cstdint>
#include <cstring>
#include <string_view>

namespace {

/// The most decimals that count; `fcvt`, whose rounding these texts have, gives no more of a double.
constexpr int mostDecimals = 17;
/// A float has 24 significant bits, and 10^12 has 28 above its factor of a power of two: their product is exact.
constexpr int mostExactDecimals = 12;
/// No float in fewer columns has an integer part of 2^64 or more.
constexpr int wideColumns = 20;

constexpr std::array<std::uint64_t, 20> powersOfTen = [] {
    std::array<std::uint64_t, 20> powers{1};
    for (std::size_t i = 1; i < powers.size(); ++i) powers[i] = 10 * powers[i - 1];
    return powers;
}();

/// A magnitude, rounded to a number of decimals.
struct Decimal {
    std::uint64_t whole;
    /// The decimals as an integer.
    std::uint64_t fraction;
};

/// Rounds the magnitude of `value` half to even, as printf and `fcvt` do, to 1 to `mostExactDecimals` digits. False for
/// another number of digits, for 2^64 or more, and if `value` is not finite.
bool roundExactly(float value, int digits, Decimal& result) {
    double const magnitude = std::fabs(static_cast<double>(value));
    if (digits < 1 || digits > mostExactDecimals || !(magnitude < 0x1p64)) return false;
    if (magnitude >= 0x1p62) {
        result = {static_cast<std::uint64_t>(magnitude), 0};
        return true;
    }
    auto const whole = static_cast<std::int64_t>(magnitude);
    auto const unit = static_cast<std::int64_t>(powersOfTen[static_cast<std::size_t>(digits)]);
    double const scaled = (magnitude - static_cast<double>(whole)) * static_cast<double>(unit);
    // A double of 2^52 or more has no bits behind the point: the addition rounds, and its low bits are the integer.
    // Powers of ten are even, so that the fraction alone tells which neighbour of a half is the even one.
    constexpr double integersOnly = 0x1p52;
    auto const rounded = std::bit_cast<std::int64_t>(scaled + integersOnly) - std::bit_cast<std::int64_t>(integersOnly);
    bool const carry = rounded == unit;
    result.whole = static_cast<std::uint64_t>(whole + (carry ? 1 : 0));
    result.fraction = static_cast<std::uint64_t>(carry ? 0 : rounded);
    return true;
}

/// `value` as printf writes it with "%.*f" in the "C" locale.
struct Expansion {
    std::array<char, 128> room;
    std::string_view text;

    Expansion(float value, int digits) {
        auto const result = std::to_chars(room.data(), room.data() + room.size(), static_cast<double>(value),
                                          std::chars_format::fixed, digits);
        text = {room.data(), static_cast<std::size_t>(result.ptr - room.data())};
    }
};

char* put(char* out, std::string_view text) {
    std::memcpy(out, text.data(), text.size());
    return out + text.size();
}

char* putBlanks(char* out, std::ptrdiff_t count) {
    for (; count > 0; --count) *out++ = ' ';
    return out;
}

/// Writes `number` with leading zeros in `count` characters.
char* putDigits(char* out, int count, std::uint64_t number) {
    for (char* c = out + count; c != out; number /= 10) *--c = static_cast<char>('0' + number % 10);
    return out + count;
}

/// What stands in front of the point.
struct LeftPart {
    std::uint64_t whole = 0;
    int digits = 1;
    bool negative = false;

    LeftPart() = default;
    LeftPart(std::uint64_t integer, bool isNegative) : whole(integer), negative(isNegative) {
        while (digits < wideColumns && whole >= powersOfTen[static_cast<std::size_t>(digits)]) ++digits;
    }

    int length() const { return digits + (negative ? 1 : 0); }

    char* put(char* out) const {
        if (negative) *out++ = '-';
        return putDigits(out, digits, whole);
    }
};

/// The left part for less than `wideColumns` columns. From the eighth decimal on no float has a carry that reaches the
/// integer, so that the number of decimals can be limited. A number that is not finite has "0".
LeftPart fitLeft(int width, float value) {
    LeftPart part;
    Decimal rounded;
    if (roundExactly(value, std::clamp(width, 1, mostExactDecimals), rounded)) {
        part = LeftPart(rounded.whole, std::signbit(value));
    } else if (std::isfinite(value)) {
        throw FloatConversion_Error{};
    }
    if (part.length() > width) throw FloatConversion_Error{};
    return part;
}

} // namespace

namespace tarnex {

char* putInt(char* out, int value) {
    constexpr std::ptrdiff_t longest = 11;
    return std::to_chars(out, out + longest, value).ptr;
}

char* putLeft(char* out, int width, float value) {
    if (width < wideColumns || !std::isfinite(value)) return fitLeft(width, value).put(out);
    Expansion const all(value, mostDecimals);
    std::string_view const left = all.text.substr(0, all.text.find('.'));
    if (left.size() > static_cast<std::size_t>(width)) throw FloatConversion_Error{};
    return put(out, left);
}

char* putRight(char* out, int digits, float value) {
    if (digits < 1) return out;
    Decimal rounded;
    if (roundExactly(value, digits, rounded)) return putDigits(out, digits, rounded.fraction);
    Expansion const all(value, std::min(digits, mostDecimals));
    std::string_view right = all.text;
    if (std::isfinite(value)) right.remove_prefix(right.find('.') + 1);
    char* const end = put(out, right.substr(0, static_cast<std::size_t>(digits)));
    return std::fill_n(end, out + digits - end, '0');
}

char* putFloat(char* out, int width, float value) {
    if (width > wideColumns) throw FloatConversion_Error{};
    char* c = fitLeft(width - 1, value).put(out);
    *c++ = '.';
    return putRight(c, static_cast<int>(out + width - c), value);
}

char* putParts(char* out, int leftWidth, int digits, float value) {
    LeftPart const left = fitLeft(leftWidth, value);
    out = left.put(putBlanks(out, leftWidth - left.length()));
    *out++ = '.';
    return putRight(out, digits, value);
}

char* putDecimal(char* out, int width, int digits, float value) {
    Decimal rounded;
    if (roundExactly(value, digits, rounded)) {
        LeftPart const left(rounded.whole, std::signbit(value));
        out = left.put(putBlanks(out, width - left.length() - 1 - digits));
        *out++ = '.';
        return putDigits(out, digits, rounded.fraction);
    }
    Expansion const all(value, digits);
    return put(putBlanks(out, width - static_cast<std::ptrdiff_t>(all.text.size())), all.text);
}

} // namespace tarnex

char* itoa2(int value) {
    static char text[128];
    *tarnex::putInt(text, value) = '\0';
    return text;
}

char* leftFloatToString(int width, float value) {
    static char text[100];
    *tarnex::putLeft(text, width, value) = '\0';
    return text;
}

char* rightFloatToString(int digits, float value) {
    static char text[100];
    constexpr int longest = sizeof text - 1;
    *tarnex::putRight(text, std::min(digits, longest), value) = '\0';
    return text;
}

char* floatToString(int width, float value) {
    static char text[100];
    *tarnex::putFloat(text, width, value) = '\0';
    return text;
}
