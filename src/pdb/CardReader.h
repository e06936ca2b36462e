#pragma once

#include "pdb/Columns.h"
#include "textio/lengthizer.h"
#include "textio/numberParsing.h"
#include "textio/plainNumber.h"
#include "textio/textScan.h"

#include <bit>
#include <cstdint>
#include <cstring>

namespace tarnex::pdb {

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
    /// Writes the text, which ends at a NUL, and returns its end. Room for eight characters is needed.
    char* put(char* out) const {
        std::memcpy(out, characters, sizeof characters);
        return out + std::countr_zero(mark(loadWord(characters), '\0')) / 8;
    }
    /// Whether all characters agree, also those behind a NUL.
    bool operator==(FieldText const& other) const {
        return std::memcmp(characters, other.characters, sizeof characters) == 0;
    }

private:
    char characters[wordLength] = "";
};

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
        digits &= ~((isNegative ? character : 0) << front);
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
        double const magnitude =
            static_cast<std::int32_t>(joinDigits(withoutPoint)) / shortPowersOfTen[static_cast<std::size_t>(decimals)];
        value = isNegative ? -magnitude : magnitude;
        return true;
    }

private:
    static constexpr std::uint64_t character = 0xff;

    /// Each character's value if it is a digit; 0 for blanks and the minus.
    std::uint64_t digits = 0;
    bool isNegative = false;
};

/// The columns of a line behind its keyword. Those that the line lacks are blank.
class Card {
public:
    static constexpr Columns columns{keywordColumns.last + 1, 80};

    /// `first` is the character of column 7. As in all scans by words, characters behind the last column are looked at.
    explicit Card(char const* first) : text(first) {}

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
    /// By `strtol`.
    int integer(Columns c) const {
        int value;
        return PlainNumber(at(c.first), c.width()).toInteger(value) ? value : parseInt(unblanked(c));
    }
    /// By `strtod`, in the "C" locale. Fastest with as many decimals as the format states.
    float real(Columns c, int usualDecimals) const {
        double value;
        bool const isUsual = PlainNumber(at(c.first), c.width()).toReal(usualDecimals, value);
        return static_cast<float>(isUsual ? value : parseDouble(unblanked(c)));
    }

private:
    /// For 0 to 7 characters.
    static constexpr std::uint64_t charactersBelow(int count) { return (std::uint64_t{1} << (8 * count)) - 1; }

    char const* at(int column) const { return text + (column - columns.first); }
    std::string_view unblanked(Columns c) const {
        char const* const begin = skipBlanks(at(c.first), at(c.last + 1));
        return {begin, static_cast<std::size_t>(cutBlanks(begin, at(c.last + 1)) - begin)};
    }

    char const* text;
};

/// Scans a PDB file line by line. The fields of a line are taken one by one, as from any `lengthizer`, or as a card.
class CardReader : public lengthizer {
public:
    using lengthizer::lengthizer;

    /// Reads the keyword of a line at its start.
    std::uint64_t readKeyword() {
        constexpr std::uint64_t atomCard = packed("ATOM  ");
        constexpr std::uint64_t hetatmCard = packed("HETATM");
        constexpr std::uint64_t ofKeyword = ~(~std::uint64_t{0} << (8 * keywordColumns.width()));
        std::uint64_t const word = loadWord(cursor) & ofKeyword;
        bool const isAtHand = blockEnd - cursor >= keywordColumns.width();
        if (!isAtHand || (word != atomCard && word != hetatmCard)) return packed(getString(keywordColumns.width()));
        cursor += keywordColumns.width();
        return word == atomCard ? packed("ATOM") : hetatmCard;
    }

    /// Reads the columns behind the keyword. They stay in place until the next call of any kind.
    Card readCard() {
        char const* const begin = passCard();
        if (cursor - begin == Card::columns.width()) return Card(begin);
        std::memset(shortCard, ' ', sizeof shortCard);
        std::memcpy(shortCard, begin, static_cast<std::size_t>(cursor - begin));
        return Card(shortCard);
    }

    /// Passes the columns behind the keyword, as far as the line has them. Returns where they begin.
    char const* passCard() {
        std::size_t const held = provide(Card::columns.width());
        char const* const begin = cursor;
        bool const isWhole = held == Card::columns.width() && isPlain(begin);
        cursor = isWhole ? begin + held : findLineEnd(begin, begin + held);
        return begin;
    }

private:
    /// Whether all columns of a card are free of control characters, as line ends are.
    static bool isPlain(char const* text) {
        std::uint64_t below = 0; // the high bit of each character that is below a blank
        for (std::ptrdiff_t i = 0; i + wordLength <= Card::columns.width(); i += wordLength) {
            below |= belowBlank(loadWord(text + i));
        }
        below |= belowBlank(loadWord(text + Card::columns.width() - wordLength));
        return (below & repeated('\x80')) == 0;
    }
    static std::uint64_t belowBlank(std::uint64_t word) { return (word - repeated(' ')) & ~word; }

    char shortCard[Card::columns.width() + slack];
};

} // namespace tarnex::pdb
