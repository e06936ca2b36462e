#pragma once

#include "foundation/ShortText.h"

#include <cstddef>
#include <cstdint>

namespace tarnex {

/// A text of up to seven characters, as nearly all names of atoms and residues are, or the offset of a longer one that
/// is kept elsewhere.
class TextSlot {
public:
    TextSlot() = default;
    /// The text must fit.
    explicit TextSlot(ShortText text) : word(inMemory(text.packed())) {}
    static TextSlot ofLongText(std::int64_t offset) {
        TextSlot slot;
        slot.word = inMemory(static_cast<std::uint64_t>(offset) | longTextMark);
        return slot;
    }

    static bool fits(ShortText text) { return text.length() < ShortText::maxLength; }

    /// Where the NUL of a short text stands at the latest, a long one has its mark.
    bool isLong() const { return text()[ShortText::maxLength - 1] != '\0'; }
    char const* text() const { return reinterpret_cast<char const*>(&word); }
    std::int64_t offset() const { return static_cast<std::int64_t>(inMemory(word) & ~longTextMark); }

private:
    static constexpr std::uint64_t longTextMark = std::uint64_t{1} << 63U;

    /// The first character in the lowest address.
    static constexpr std::uint64_t inMemory(std::uint64_t packed) {
        return std::endian::native == std::endian::big ? __builtin_bswap64(packed) : packed;
    }

    std::uint64_t word = 0;
};

} // namespace tarnex
