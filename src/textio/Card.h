#pragma once

#include "foundation/ShortText.h"
#include "textio/Columns.h"
#include "textio/numberParsing.h"
#include "textio/plainNumber.h"
#include "textio/textScan.h"

#include <algorithm>
#include <bit>
#include <cstdint>
#include <cstring>

namespace tarnex {

/// Up to eight characters as one number, so that a comparison or a `switch` takes a single step.
constexpr std::uint64_t packed(char const* text) {
    std::uint64_t word = 0;
    for (int i = 0; i < wordLength && text[i]; ++i) {
        word |= std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i);
    }
    return word;
}

/// The text of a field of up to seven columns, without the blanks around it.
class FieldText {
public:
    FieldText() = default;
    explicit FieldText(std::uint64_t packedText) {
        if constexpr (std::endian::native == std::endian::big) packedText = __builtin_bswap64(packedText);
        std::memcpy(characters, &packedText, sizeof characters);
    }

    char const* c_str() const { return characters; }
    char operator[](int i) const { return characters[i]; }
    /// Up to the first NUL.
    ShortText text() const {
        std::uint64_t const word = loadWord(characters);
        std::uint64_t const ends = mark(word, '\0');
        return ShortText(word & (((ends & (~ends + 1)) >> 7) - 1));
    }

private:
    char characters[wordLength] = "";
};

/// The columns of a line from `firstColumn` on. As in all scans by words, a few characters behind the last one are
/// looked at.
template <int firstColumn>
class CardFrom {
public:
    explicit CardFrom(char const* text) : characters(text) {}

    /// Of up to seven columns.
    FieldText field(Columns c) const {
        std::uint64_t const ofField = charactersBelow(c.width());
        std::uint64_t const word = loadWord(at(c.first)) & ofField;
        if (c.width() == 1) return FieldText(word == ' ' ? 0 : word);
        std::uint64_t const others = word ^ (repeated(' ') & ofField);
        if (!others) return FieldText(0);
        int const begin = std::countr_zero(others) / 8;
        int const end = static_cast<int>(wordLength) - std::countl_zero(others) / 8;
        return FieldText((word & charactersBelow(end)) >> (8 * begin));
    }
    /// Up to seven columns as they are.
    std::uint64_t packed(Columns c) const { return loadWord(at(c.first)) & charactersBelow(c.width()); }
    bool isBlank(Columns c) const { return packed(c) == (repeated(' ') & charactersBelow(c.width())); }
    /// Of up to eight columns, by `strtol`.
    int integer(Columns c) const {
        int value;
        return PlainNumber(at(c.first), c.width()).toInteger(value) ? value : parseInt(unblanked(c));
    }
    /// Of up to 15 columns, by `strtod`, in the "C" locale. Fastest with as many decimals (1 to 6) as the format
    /// states, and no more than eight characters.
    float real(Columns c, int usualDecimals) const {
        constexpr int width = wordLength;
        int const blanks = std::max(c.width() - width, 0);
        double value;
        bool const isUsual = areBlank(at(c.first), blanks) &&
                             PlainNumber(at(c.first + blanks), c.width() - blanks).toReal(usualDecimals, value);
        return static_cast<float>(isUsual ? value : parseDouble(unblanked(c)));
    }

private:
    /// For 0 to 7 characters.
    static constexpr std::uint64_t charactersBelow(int count) { return (std::uint64_t{1} << (8 * count)) - 1; }
    static bool areBlank(char const* text, int count) {
        return ((loadWord(text) ^ repeated(' ')) & charactersBelow(count)) == 0;
    }

    char const* at(int column) const { return characters + (column - firstColumn); }
    std::string_view unblanked(Columns c) const {
        char const* const begin = skipBlanks(at(c.first), at(c.last + 1));
        return {begin, static_cast<std::size_t>(cutBlanks(begin, at(c.last + 1)) - begin)};
    }

    char const* characters;
};

using Card = CardFrom<1>;

} // namespace tarnex
