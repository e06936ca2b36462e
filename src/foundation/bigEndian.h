#pragma once

#include <bit>
#include <cstdint>
#include <cstring>
#include <type_traits>

namespace tarnex {

/// The unsigned integer with the bytes of a number of 32 or 64 bits.
template <class Number>
using BytesOf = std::conditional_t<sizeof(Number) == 4, std::uint32_t, std::uint64_t>;

/// Turns the bytes of a number between the machine's order and big-endian order.
template <class Word>
Word bigEndian(Word word) {
    if constexpr (std::endian::native == std::endian::big) return word;
    if constexpr (sizeof(Word) == 4)
        return __builtin_bswap32(word);
    else
        return __builtin_bswap64(word);
}

/// The number whose bytes stand in big-endian order at any address.
template <class Number>
Number loadBig(unsigned char const* bytes) {
    BytesOf<Number> word;
    std::memcpy(&word, bytes, sizeof word);
    return std::bit_cast<Number>(bigEndian(word));
}

template <class Number>
void storeBig(unsigned char* bytes, Number number) {
    auto const word = bigEndian(std::bit_cast<BytesOf<Number>>(number));
    std::memcpy(bytes, &word, sizeof word);
}

} // namespace tarnex
