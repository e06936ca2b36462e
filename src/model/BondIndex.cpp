#include "model/BondIndex.h"

#include "model/members.h"

#include <algorithm>
#include <cstdint>
#include <utility>

namespace tarnex {

namespace {

constexpr std::int64_t firstTableSize = 16;

std::uint64_t pairHash(int atomA, int atomB) {
    auto const low = static_cast<std::uint32_t>(std::min(atomA, atomB));
    auto const high = static_cast<std::uint32_t>(std::max(atomA, atomB));
    std::uint64_t h = (std::uint64_t{high} << 32U | low) * 0x9E3779B97F4A7C15ULL;
    return h ^ h >> 32U;
}

bool joins(MtGroup const* group, int atomA, int atomB) {
    int a = 0;
    int b = 0;
    if (!getBondAtoms(group, a, b)) return false;
    return (a == atomA && b == atomB) || (a == atomB && b == atomA);
}

} // namespace

int BondIndex::find(McDArray<MtGroup*> const& bonds, int atomA, int atomB) {
    if (numIndexed > bonds.size) forgetAll();
    if (numIndexed < bonds.size) takeIn(bonds);
    return slots.size == 0 ? -1 : *slotOf(bonds, atomA, atomB);
}

void BondIndex::forgetAll() {
    slots.clear();
    usedSlots = 0;
    numIndexed = 0;
}

/// The slot that holds the bond of two atoms, or the empty one where it belongs.
int* BondIndex::slotOf(McDArray<MtGroup*> const& bonds, int atomA, int atomB) {
    auto const mask = static_cast<std::uint64_t>(slots.size - 1);
    std::uint64_t i = pairHash(atomA, atomB) & mask;
    while (slots.data[i] >= 0 && !joins(bonds[slots.data[i]], atomA, atomB)) i = (i + 1) & mask;
    return &slots.data[i];
}

void BondIndex::takeIn(McDArray<MtGroup*> const& bonds) {
    for (; numIndexed < bonds.size; ++numIndexed) {
        int a = 0;
        int b = 0;
        if (!getBondAtoms(bonds[numIndexed], a, b)) continue;
        if (2 * (usedSlots + 1) > slots.size) enlargeTable(bonds);
        int* slot = slotOf(bonds, a, b);
        if (*slot >= 0) continue;
        *slot = static_cast<int>(numIndexed);
        ++usedSlots;
    }
}

void BondIndex::enlargeTable(McDArray<MtGroup*> const& bonds) {
    McDArray<int> old;
    old.swap(slots);
    std::int64_t size = firstTableSize;
    while (size < 2 * std::max(2 * usedSlots, bonds.size)) size *= 2;
    slots.resize(size);
    std::fill(slots.begin(), slots.end(), -1);
    for (int bond : old) {
        int a = 0;
        int b = 0;
        if (bond >= 0 && getBondAtoms(bonds[bond], a, b)) *slotOf(bonds, a, b) = bond;
    }
}

} // namespace tarnex
