#pragma once

#include "foundation/McDArray.h"
#include "foundation/McVec3f.h"

namespace tarnex {

constexpr int hydrogen = 1;

/// The atoms of a molecule as bond perception sees them, by atom index. The coordinates are not owned, and only those
/// of atoms that take part are there.
struct BondableAtoms {
    McVec3f const* coords = nullptr;
    /// Atomic numbers; 0 for an atom that takes no part, or no further part since it has all its bonds.
    McDArray<unsigned char> elements;
};

struct PerceivedBond {
    int atomA, atomB; ///< the lower index first
    int order;
};

inline bool isAheadOf(PerceivedBond const& a, PerceivedBond const& b) {
    return a.atomA != b.atomA ? a.atomA < b.atomA : a.atomB < b.atomB;
}

inline PerceivedBond makeBond(int atomA, int atomB, int order) {
    return atomA < atomB ? PerceivedBond{atomA, atomB, order} : PerceivedBond{atomB, atomA, order};
}

} // namespace tarnex
