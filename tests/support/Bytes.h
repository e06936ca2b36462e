#pragma once

#include <algorithm>
#include <array>
#include <bit>
#include <cstdint>
#include <string>

namespace tarnex::test {

/// Bytes of a binary file, put together by hand. Numbers are little-endian unless `isBig`; texts are closed by a NUL.
struct Bytes {
    bool isBig = false;
    std::string bytes = {};

    template <class Number>
    Bytes& put(Number number, int count = 1) {
        auto word = std::bit_cast<std::array<char, sizeof(Number)>>(number);
        if (isBig != (std::endian::native == std::endian::big)) std::reverse(word.begin(), word.end());
        for (; count > 0; --count) bytes.append(word.data(), word.size());
        return *this;
    }
    Bytes& u8(unsigned value) { return put(static_cast<std::uint8_t>(value)); }
    Bytes& i32(int value) { return put(value); }
    Bytes& u32(std::uint32_t value) { return put(value); }
    Bytes& u64(std::uint64_t value) { return put(value); }
    Bytes& text(std::string const& value) { return raw(value + '\0'); }
    Bytes& raw(std::string const& value) {
        bytes += value;
        return *this;
    }
};

} // namespace tarnex::test
