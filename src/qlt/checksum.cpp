#include "qlt/checksum.h"

#include "qlt/littleEndian.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace tarnex {

namespace {

constexpr std::uint64_t prime1 = 0x9E3779B185EBCA87U;
constexpr std::uint64_t prime2 = 0xC2B2AE3D27D4EB4FU;
constexpr std::uint64_t prime3 = 0x165667B19E3779F9U;
constexpr std::uint64_t prime4 = 0x85EBCA77C2B2AE63U;
constexpr std::uint64_t prime5 = 0x27D4EB2F165667C5U;

std::uint64_t mix(std::uint64_t lane, std::uint64_t word) {
    return std::rotl(lane + word * prime2, 31) * prime1;
}

} // namespace

Checksum::Checksum() : lanes{prime1 + prime2, prime2, 0, 0 - prime1} {}

/// Takes in the whole stripes up to `end` and returns the place behind them.
char const* Checksum::addStripes(char const* bytes, char const* end) {
    // Local lanes stay in registers.
    std::uint64_t lane0 = lanes[0];
    std::uint64_t lane1 = lanes[1];
    std::uint64_t lane2 = lanes[2];
    std::uint64_t lane3 = lanes[3];
    for (; end - bytes >= static_cast<std::ptrdiff_t>(stripe); bytes += stripe) {
        lane0 = mix(lane0, loadLittle<std::uint64_t>(bytes));
        lane1 = mix(lane1, loadLittle<std::uint64_t>(bytes + 8));
        lane2 = mix(lane2, loadLittle<std::uint64_t>(bytes + 16));
        lane3 = mix(lane3, loadLittle<std::uint64_t>(bytes + 24));
    }
    lanes[0] = lane0;
    lanes[1] = lane1;
    lanes[2] = lane2;
    lanes[3] = lane3;
    return bytes;
}

void Checksum::add(void const* bytes, std::size_t count) {
    if (count == 0) return;
    auto const* next = static_cast<char const*>(bytes);
    char const* const end = next + count;
    std::size_t const waiting = total % stripe;
    total += count;
    if (waiting > 0) {
        std::size_t const taken = std::min(stripe - waiting, count);
        std::memcpy(rest + waiting, next, taken);
        next += taken;
        if (waiting + taken < stripe) return;
        addStripes(rest, rest + stripe);
    }
    next = addStripes(next, end);
    std::memcpy(rest, next, static_cast<std::size_t>(end - next));
}

std::uint64_t Checksum::value() const {
    std::uint64_t h = prime5;
    if (total >= stripe) {
        h = std::rotl(lanes[0], 1) + std::rotl(lanes[1], 7) + std::rotl(lanes[2], 12) + std::rotl(lanes[3], 18);
        for (std::uint64_t const lane : lanes) h = (h ^ mix(0, lane)) * prime1 + prime4;
    }
    h += total;

    char const* next = rest;
    char const* const end = rest + total % stripe;
    for (; end - next >= 8; next += 8) {
        h = std::rotl(h ^ mix(0, loadLittle<std::uint64_t>(next)), 27) * prime1 + prime4;
    }
    if (end - next >= 4) {
        h = std::rotl(h ^ loadLittle<std::uint32_t>(next) * prime1, 23) * prime2 + prime3;
        next += 4;
    }
    for (; next < end; ++next) h = std::rotl(h ^ static_cast<unsigned char>(*next) * prime5, 11) * prime1;

    h = (h ^ h >> 33U) * prime2;
    h = (h ^ h >> 29U) * prime3;
    return h ^ h >> 32U;
}

} // namespace tarnex
