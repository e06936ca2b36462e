#pragma once

#include "foundation/ShortText.h"

#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarnex {

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
    h = (h ^ ShortText(text, length).packed()) * 0xD6E8FEB86659FD93ULL;
    return h ^ h >> 32U;
}

} // namespace tarnex
