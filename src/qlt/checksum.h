#pragma once

#include "foundation/export.h"

#include <cstddef>
#include <cstdint>

namespace tarnex {

/// The 64-bit checksum of a sequence of bytes, which may come in pieces of any size: XXH64 with seed 0 (Y. Collet,
/// "xxHash fast digest algorithm", version 0.1.1). Four independent lanes keep up with the memory. It finds accidents;
/// it is no protection against malice. The same on machines of either byte order.
class TARNEX_API Checksum {
public:
    Checksum();
    void add(void const* bytes, std::size_t count);
    /// The checksum of all bytes added so far.
    std::uint64_t value() const;

private:
    static constexpr std::size_t stripe = 32;

    char const* addStripes(char const* bytes, char const* end);

    std::uint64_t lanes[4];
    /// The bytes behind the last whole stripe.
    char rest[stripe];
    std::uint64_t total = 0;
};

inline std::uint64_t checksumOf(void const* bytes, std::size_t count) {
    Checksum checksum;
    checksum.add(bytes, count);
    return checksum.value();
}

} // namespace tarnex
