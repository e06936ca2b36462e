#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

/// Searches over eight characters at a time. Branches that depend on the text are few, since a wrong guess of one costs
/// as much as a dozen characters. All of them may look at up to seven characters behind the end of what they are given.
namespace tarnex {

constexpr std::ptrdiff_t wordLength = 8;

/// A word whose eight characters are all `c`.
constexpr std::uint64_t repeated(char c) {
    return static_cast<unsigned char>(c) * std::uint64_t{0x0101010101010101U};
}

/// Eight characters, the first one in the lowest bits.
inline std::uint64_t loadWord(char const* text) {
    std::uint64_t word;
    std::memcpy(&word, text, sizeof word);
    if constexpr (std::endian::native == std::endian::big) word = __builtin_bswap64(word);
    return word;
}

/// The `length` (1 to 8) first characters of a word, moved to its end; zeros go in front.
constexpr std::uint64_t alignRight(std::uint64_t word, std::ptrdiff_t length) {
    return word << (8 * (wordLength - length));
}

/// Sets the high bit of the first character that is `c`; characters above the first one may be marked wrongly.
constexpr std::uint64_t mark(std::uint64_t word, char c) {
    std::uint64_t const zeroWhereEqual = word ^ repeated(c);
    return (zeroWhereEqual - repeated(1)) & ~zeroWhereEqual & (repeated(1) << 7U);
}

/// True if a character is below `c`, which is at most 128; never only because of characters from 128 on.
constexpr bool hasBelow(std::uint64_t word, char c) {
    return ((word - repeated(c)) & ~word & (repeated(1) << 7U)) != 0;
}

constexpr bool isLineEnd(char c) {
    return c == '\n' || c == '\r';
}

/// The first LF or CR in [first, last), or `last`.
inline char const* findLineEnd(char const* first, char const* last) {
    for (; first < last; first += wordLength) {
        std::uint64_t const word = loadWord(first);
        if (!hasBelow(word, '\r' + 1)) continue;
        std::uint64_t const ends = mark(word, '\n') | mark(word, '\r');
        if (ends) return std::min(first + std::countr_zero(ends) / 8, last);
    }
    return last;
}

/// The first character other than a blank in [first, last), or `last`.
inline char const* skipBlanks(char const* first, char const* last) {
    for (; first < last; first += wordLength) {
        std::uint64_t const others = loadWord(first) ^ repeated(' ');
        if (others) return std::min(first + std::countr_zero(others) / 8, last);
    }
    return last;
}

/// The end of [first, last) without its trailing blanks.
inline char const* cutBlanks(char const* first, char const* last) {
    for (; last - first >= wordLength; last -= wordLength) {
        std::uint64_t const others = loadWord(last - wordLength) ^ repeated(' ');
        if (others) return last - std::countl_zero(others) / 8;
    }
    if (first == last) return first;
    std::uint64_t const others = alignRight(loadWord(first) ^ repeated(' '), last - first);
    return std::max(last - std::countl_zero(others) / 8, first);
}

} // namespace tarnex
