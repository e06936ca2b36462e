#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarnex {

static_assert(std::endian::native == std::endian::little || std::endian::native == std::endian::big);

/// Turns an integer between the machine's order of bytes and little-endian order.
template <class Integer>
Integer littleEndian(Integer value) {
    if constexpr (std::endian::native == std::endian::big) {
        auto* bytes = reinterpret_cast<unsigned char*>(&value);
        std::reverse(bytes, bytes + sizeof(Integer));
    }
    return value;
}

template <class Integer>
Integer loadLittle(char const* bytes) {
    Integer value;
    std::memcpy(&value, bytes, sizeof(Integer));
    return littleEndian(value);
}

template <class Integer>
void storeLittle(char* bytes, Integer value) {
    value = littleEndian(value);
    std::memcpy(bytes, &value, sizeof(Integer));
}

/// Copies values of four bytes between the machine's order of bytes and little-endian order. The two places may be the
/// same, but must not overlap otherwise.
inline void copyWords(char* to, char const* from, std::size_t words) {
    if constexpr (std::endian::native == std::endian::little) {
        if (to != from && words > 0) std::memcpy(to, from, words * 4);
    } else {
        for (std::size_t end = words * 4, i = 0; i < end; i += 4) {
            auto const word = loadLittle<std::uint32_t>(from + i);
            std::memcpy(to + i, &word, 4);
        }
    }
}

} // namespace tarnex
