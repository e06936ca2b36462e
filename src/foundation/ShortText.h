#pragma once

#include <bit>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace tarnex {

/// A text of up to eight characters as one number, so that it is copied, compared and put together in single steps.
class ShortText {
public:
    static constexpr std::size_t maxLength = 8;
    static constexpr std::size_t room = maxLength + 1; ///< for any text with its NUL

    constexpr ShortText() = default;
    /// The first character stands in the lowest bits. A NUL may only be followed by others.
    constexpr explicit ShortText(std::uint64_t packedCharacters) : word(packedCharacters) {}
    /// By reads that may overlap, since short copies of any length take longer.
    ShortText(char const* text, std::size_t length) {
        auto const at = [text](std::size_t i) { return std::uint64_t{static_cast<unsigned char>(text[i])} << (8 * i); };
        if (length >= 4)
            word = fourFrom(text) | fourFrom(text + length - 4) << (8 * (length - 4));
        else if (length > 0)
            word = at(0) | at(length / 2) | at(length - 1);
    }

    constexpr std::uint64_t packed() const { return word; }
    constexpr std::size_t length() const { return maxLength - static_cast<std::size_t>(std::countl_zero(word)) / 8; }
    constexpr bool operator==(ShortText const&) const = default;

    /// Both texts together have no more than eight characters, and this one has no more than seven.
    constexpr ShortText operator+(ShortText behind) const { return ShortText(word | behind.word << (8 * length())); }

    /// Writes the text with its NUL, and returns the place of the NUL. All of `room` is written.
    char* put(char* out) const {
        std::uint64_t ordered = word;
        if constexpr (std::endian::native == std::endian::big) ordered = __builtin_bswap64(ordered);
        std::memcpy(out, &ordered, sizeof ordered);
        out[maxLength] = '\0';
        return out + length();
    }

private:
    static std::uint64_t fourFrom(char const* text) {
        std::uint32_t four = 0;
        std::memcpy(&four, text, sizeof four);
        if constexpr (std::endian::native == std::endian::big) four = __builtin_bswap32(four);
        return four;
    }

    std::uint64_t word = 0;
};

} // namespace tarnex
