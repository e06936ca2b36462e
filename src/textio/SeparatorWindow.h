#pragma once

#include "textio/textScan.h"

#include <bit>
#include <cstddef>
#include <cstdint>

#if defined(__SSE2__)
#include <emmintrin.h>
#endif

namespace tarnex {

constexpr bool isSeparator(char c) {
    return c == ' ' || c == '\t';
}

/// Where the tokens of a short piece of text begin and end, a bit for each character. Going from token to token then
/// needs no character of the text, so that the search for the next one does not wait for what was loaded for the last.
/// It ends ahead of a token with a NUL.
class SeparatorWindow {
public:
    static constexpr std::size_t width = 64;

    /// Looks at the `width` characters from `first` on, which is not in the middle of a token.
    explicit SeparatorWindow(char const* first) : text(first) {
        std::uint64_t separators = 0;
        std::uint64_t lineEnds = 0;
        std::uint64_t nuls = 0;
        for (std::size_t i = 0; i < width; i += step) lookAt(first + i, i, separators, lineEnds, nuls);
        std::uint64_t const outside = separators | lineEnds;
        std::uint64_t const stops = lineEnds | nuls;
        std::uint64_t const line = stops ^ (stops - 1); // up to the first of them and with it, or all
        begins = ~outside & (outside << 1U | 1U) & line;
        ends = outside & ~(outside << 1U | 1U) & line;
    }

    /// Takes the next token that ends in the window and in the line of its beginning; false if there is none.
    bool take(char const*& begin, char const*& end) {
        if (!ends) return false;
        begin = text + std::countr_zero(begins);
        end = text + std::countr_zero(ends);
        begins &= begins - 1;
        ends &= ends - 1;
        return true;
    }

private:
#if defined(__SSE2__)
    static constexpr std::size_t step = 16;

    static void lookAt(char const* piece, std::size_t place, std::uint64_t& separators, std::uint64_t& lineEnds,
                       std::uint64_t& nuls) {
        __m128i const characters = _mm_loadu_si128(reinterpret_cast<__m128i const*>(piece));
        auto const where = [characters](char c) { return _mm_cmpeq_epi8(characters, _mm_set1_epi8(c)); };
        auto const bits = [place](__m128i found) {
            return std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(found))} << place;
        };
        separators |= bits(_mm_or_si128(where(' '), where('\t')));
        lineEnds |= bits(_mm_or_si128(where('\n'), where('\r')));
        nuls |= bits(where('\0'));
    }
#else
    static constexpr std::size_t step = 1;

    static void lookAt(char const* piece, std::size_t place, std::uint64_t& separators, std::uint64_t& lineEnds,
                       std::uint64_t& nuls) {
        separators |= std::uint64_t{isSeparator(*piece)} << place;
        lineEnds |= std::uint64_t{isLineEnd(*piece)} << place;
        nuls |= std::uint64_t{*piece == '\0'} << place;
    }
#endif

    char const* text;
    std::uint64_t begins;
    std::uint64_t ends;
};

} // namespace tarnex
