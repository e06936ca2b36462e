#pragma once

#include "foundation/McDArray.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnex {

/// Sorts plain records by the 64-bit number that `keyOf` gives for each. Records of one key keep their order. Time is
/// linear in the records: one pass for each byte in which their keys differ.
template <class Record, class KeyOf>
void radixSort(McDArray<Record>& records, KeyOf keyOf) {
    constexpr std::size_t numBytes = sizeof(std::uint64_t);
    constexpr std::size_t byteValues = 256;
    auto const byteOf = [](std::uint64_t key, std::size_t byte) { return key >> (8 * byte) & 0xffU; };

    std::array<std::array<std::int64_t, byteValues>, numBytes> counts{};
    for (Record const& record : records) {
        std::uint64_t const key = keyOf(record);
        for (std::size_t byte = 0; byte < numBytes; ++byte) ++counts[byte][byteOf(key, byte)];
    }
    McDArray<Record> sorted;
    for (std::size_t byte = 0; byte < numBytes && records.size > 0; ++byte) {
        if (counts[byte][byteOf(keyOf(records[0]), byte)] == records.size) continue;
        std::int64_t next = 0;
        std::array<std::int64_t, byteValues> places{};
        for (std::size_t value = 0; value < byteValues; ++value) {
            places[value] = next;
            next += counts[byte][value];
        }
        sorted.resize(records.size);
        for (Record const& record : records) sorted[places[byteOf(keyOf(record), byte)]++] = record;
        sorted.swap(records);
    }
}

} // namespace tarnex
