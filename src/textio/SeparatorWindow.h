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
/// The piece ends with its first control character, such as a tab or a line end; one that is part of a token, such as a
/// NUL, leaves that token out.
class SeparatorWindow {
public:
    static constexpr std::size_t width = 64;

    /// Looks at the `width` characters from `first` on, which is not in the middle of a token.
    explicit SeparatorWindow(char const* first) : text(first) {
        std::uint64_t blanks = 0;
        std::uint64_t controls = 0;
        for (std::size_t i = 0; i < width; i += step) lookAt(first + i, i, blanks, controls);
        controls &= ~blanks;
        std::uint64_t const piece = controls ^ (controls - 1);
        std::uint64_t outside = blanks;
        if (controls) {
            char const stop = first[std::countr_zero(controls)];
            if (isSeparator(stop) || isLineEnd(stop)) outside |= controls;
        }
        begins = ~outside & (outside << 1U | 1U) & piece;
        ends = outside & ~(outside << 1U | 1U) & piece;
    }

    /// Puts the tokens that end in the piece, each with its begin and end, from `token` on and ahead of `last`. Returns
    /// the place behind them.
    template <class Token>
    Token* take(Token* token, Token* last) const {
        std::uint64_t begin = begins;
        for (std::uint64_t end = ends; end && token != last; end &= end - 1) {
            if (!begin) __builtin_unreachable(); // each end has a beginning ahead of it
            *token++ = {text + std::countr_zero(begin), text + std::countr_zero(end)};
            begin &= begin - 1;
        }
        return token;
    }

private:
    // A character that is a blank is marked in both of the words.
#if defined(__SSE2__)
    static constexpr std::size_t step = 16;

    static void lookAt(char const* characters, std::size_t place, std::uint64_t& blanks, std::uint64_t& controls) {
        __m128i const row = _mm_loadu_si128(reinterpret_cast<__m128i const*>(characters));
        __m128i const blank = _mm_set1_epi8(' ');
        auto const bits = [place](__m128i found) {
            return std::uint64_t{static_cast<unsigned>(_mm_movemask_epi8(found))} << place;
        };
        blanks |= bits(_mm_cmpeq_epi8(row, blank));
        controls |= bits(_mm_cmpeq_epi8(_mm_min_epu8(row, blank), row));
    }
#else
    static constexpr std::size_t step = 1;

    static void lookAt(char const* character, std::size_t place, std::uint64_t& blanks, std::uint64_t& controls) {
        blanks |= std::uint64_t{*character == ' '} << place;
        controls |= std::uint64_t{static_cast<unsigned char>(*character) <= ' '} << place;
    }
#endif

    char const* text;
    std::uint64_t begins;
    std::uint64_t ends;
};

} // namespace tarnex
