#pragma once

#include "foundation/McDArray.h"
#include "foundation/McVec3f.h"

#include <algorithm>
#include <climits>
#include <cstdint>

namespace tarnex {

constexpr int hydrogen = 1;

/// The atoms of a molecule as bond perception sees them, by atom index. The coordinates are not owned, and only those
/// of atoms that take part are there.
struct BondableAtoms {
    McVec3f const* coords = nullptr;
    /// Atomic numbers; 0 for an atom that takes no part, or no further part since it has all its bonds.
    McDArray<unsigned char> elements;

    /// To be told of a bond: a hydrogen that has one gets no other.
    void finishHydrogensOf(int atomA, int atomB) {
        for (int const atom : {atomA, atomB}) {
            if (atom >= 0 && atom < elements.size && elements[atom] == hydrogen) elements[atom] = 0;
        }
    }
};

/// A bond in eight bytes, since millions of them are sorted. They are in the order of their two atoms.
class PerceivedBond {
public:
    PerceivedBond() = default;
    /// `order` is 1 to 3, or 0 if it plays no part.
    PerceivedBond(int someAtom, int otherAtom, int order)
        : bits(static_cast<std::uint64_t>(std::min(someAtom, otherAtom)) << shiftA |
               static_cast<std::uint64_t>(std::max(someAtom, otherAtom)) << shiftB | static_cast<unsigned>(order)) {}

    /// The lower one of its atoms.
    int atomA() const { return static_cast<int>(bits >> shiftA); }
    int atomB() const { return static_cast<int>(bits >> shiftB & INT_MAX); }
    int order() const { return static_cast<int>(bits & ((1U << shiftB) - 1)); }
    bool operator<(PerceivedBond const& other) const { return bits < other.bits; }
    bool joinsAtomsOf(PerceivedBond const& other) const { return bits >> shiftB == other.bits >> shiftB; }

private:
    static constexpr int shiftB = 2;
    static constexpr int shiftA = shiftB + 31;

    std::uint64_t bits;
};

} // namespace tarnex
