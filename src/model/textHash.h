#pragma once

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarnex {

/// The `length` (1 to 7) characters of a text as one number, by reads that may overlap.
inline std::uint64_t loadShort(char const* text, std::size_t length) {
    if (length >= 4) {
        std::uint32_t front = 0;
        std::uint32_t back = 0;
        std::memcpy(&front, text, 4);
        std::memcpy(&back, text + length - 4, 4);
        return std::uint64_t{back} << 32U | front;
    }
    auto const at = [text](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(text[i])}; };
    return at(0) | at(length / 2) << 8U | at(length - 1) << 16U;
}

/// Hash of a text, for tables in memory only. Takes eight bytes at a step.
inline std::uint64_t textHash(char const* text, std::size_t length) {
    std::uint64_t h = length * 0x9E3779B97F4A7C15ULL;
    for (; length >= 8; text += 8, length -= 8) {
        std::uint64_t word = 0;
        std::memcpy(&word, text, 8);
        h = (h ^ word) * 0xD6E8FEB86659FD93ULL;
        h ^= h >> 32U;
    }
    if (length == 0) return h;
    h = (h ^ loadShort(text, length)) * 0xD6E8FEB86659FD93ULL;
    return h ^ h >> 32U;
}

} // namespace tarnex
