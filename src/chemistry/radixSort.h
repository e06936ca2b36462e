#pragma once

#include "foundation/McDArray.h"

#include <algorithm>
#include <array>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <numeric>

namespace tarnex {

/// Sorts plain records by the number that `keyOf` gives for each, which is at most `largestKey`. Records of one key
/// keep their order. Time is linear in the records: a few bits of the keys at a time, fewer for few records.
template <class Record, class KeyOf>
void radixSort(McDArray<Record>& records, KeyOf keyOf, std::uint64_t largestKey) {
    constexpr int mostBits = 11;
    auto const keyBits = static_cast<int>(std::bit_width(largestKey));
    auto const sizeBits = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(records.size)));
    int const goodBits = std::clamp(sizeBits - 4, 4, mostBits);
    int const numPasses = (keyBits + goodBits - 1) / goodBits;
    if (numPasses == 0 || records.size == 0) return;
    int const bits = (keyBits + numPasses - 1) / numPasses;

    McDArray<Record> sorted(records.size);
    std::array<std::int64_t, std::size_t{1} << mostBits> places; // of the next record with each digit
    auto* const placesEnd = places.begin() + (std::ptrdiff_t{1} << bits);
    for (int shift = 0; shift < keyBits; shift += bits) {
        auto const digitOf = [&](Record const& record) {
            return static_cast<std::size_t>(keyOf(record) >> shift & ((std::uint64_t{1} << bits) - 1));
        };
        std::fill(places.begin(), placesEnd, 0);
        for (Record const& record : records) ++places[digitOf(record)];
        std::exclusive_scan(places.begin(), placesEnd, places.begin(), std::int64_t{0});
        for (Record const& record : records) sorted[places[digitOf(record)]++] = record;
        sorted.swap(records);
    }
}

} // namespace tarnex
