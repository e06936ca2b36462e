#include "textio/numberParsing.h"

#include "foundation/CLocale.h"

#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <string>

namespace {

/// Any number of this many digits fits in 64 bits.
constexpr std::ptrdiff_t safeDigits = 18;
constexpr std::uint64_t largestExactInteger = std::uint64_t{1} << 53U;
constexpr int largestExactPower = 22;
constexpr std::array<double, largestExactPower + 1> powersOfTen = {1e0,  1e1,  1e2,  1e3,  1e4,  1e5,  1e6,  1e7,
                                                                   1e8,  1e9,  1e10, 1e11, 1e12, 1e13, 1e14, 1e15,
                                                                   1e16, 1e17, 1e18, 1e19, 1e20, 1e21, 1e22};

/// Walks over the characters of a text.
struct Cursor {
    char const* at;
    char const* end;

    bool take(char c) {
        if (at == end || *at != c) return false;
        ++at;
        return true;
    }

    /// Passes an optional sign; true if it is a minus.
    bool takeSign() {
        bool const negative = take('-');
        if (!negative) take('+');
        return negative;
    }

    /// Passes digits and appends them to `number`, which is only right for up to `safeDigits` in all. Returns how many.
    std::ptrdiff_t takeDigits(std::uint64_t& number) {
        char const* const first = at;
        for (; at != end; ++at) {
            unsigned const digit = static_cast<unsigned char>(*at) - unsigned{'0'};
            if (digit > 9) break;
            number = number * 10 + digit;
        }
        return at - first;
    }
};

bool isCountSafe(std::ptrdiff_t digits) {
    return digits > 0 && digits <= safeDigits;
}

/// True if the whole text is a decimal integer that cannot overflow.
bool parsePlainInt(std::string_view text, int& value) {
    Cursor c{text.data(), text.data() + text.size()};
    bool const negative = c.takeSign();
    std::uint64_t magnitude = 0;
    if (!isCountSafe(c.takeDigits(magnitude)) || c.at != c.end) return false;
    value = static_cast<int>(negative ? -static_cast<std::int64_t>(magnitude) : static_cast<std::int64_t>(magnitude));
    return true;
}

/// Passes the exponent and adds it to `power`; false if it is none, or of too many digits.
bool takeExponent(Cursor& c, std::ptrdiff_t& power) {
    if (!c.take('e') && !c.take('E')) return false;
    bool const negative = c.takeSign();
    std::uint64_t magnitude = 0;
    if (!isCountSafe(c.takeDigits(magnitude))) return false;
    auto const exponent = static_cast<std::ptrdiff_t>(magnitude);
    power += negative ? -exponent : exponent;
    return true;
}

/// True if the whole text is a decimal number whose value is one correctly rounded operation away: digits that form an
/// integer of at most 2^53 and a power of ten up to 10^22 are both exact doubles (W. D. Clinger, "How to Read Floating
/// Point Numbers Accurately", 1990).
bool parsePlainDouble(std::string_view text, double& value) {
    Cursor c{text.data(), text.data() + text.size()};
    bool const negative = c.takeSign();
    std::uint64_t digits = 0;
    std::ptrdiff_t count = c.takeDigits(digits);
    std::ptrdiff_t power = 0;
    if (c.take('.')) {
        power = -c.takeDigits(digits);
        count -= power;
    }
    if (!isCountSafe(count) || digits > largestExactInteger) return false;
    if (c.at != c.end && !(takeExponent(c, power) && c.at == c.end)) return false;
    if (power < -largestExactPower || power > largestExactPower) return false;
    auto const integer = static_cast<double>(static_cast<std::int64_t>(digits));
    double const magnitude = power < 0 ? integer / powersOfTen[static_cast<std::size_t>(-power)]
                                       : integer * powersOfTen[static_cast<std::size_t>(power)];
    value = negative ? -magnitude : magnitude;
    return true;
}

/// Calls `convert`, a conversion of C texts, on a terminated copy of `text`.
template <class Convert>
auto convertCopy(std::string_view text, Convert convert) {
    std::array<char, 128> room;
    if (text.size() >= room.size()) return convert(std::string(text).c_str());
    std::memcpy(room.data(), text.data(), text.size());
    room[text.size()] = '\0';
    return convert(room.data());
}

} // namespace

namespace tarnex {

int parseInt(std::string_view text) {
    int value = 0;
    if (text.empty() || parsePlainInt(text, value)) return value;
    return convertCopy(text, [](char const* t) { return static_cast<int>(std::strtol(t, nullptr, 10)); });
}

double parseDouble(std::string_view text) {
    double value = 0;
    if (text.empty() || parsePlainDouble(text, value)) return value;
    return convertCopy(text, [](char const* t) { return strtod_l(t, nullptr, ScopedCLocale::object()); });
}

} // namespace tarnex
