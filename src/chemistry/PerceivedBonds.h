#pragma once

#include "foundation/McDArray.h"
#include "foundation/McVec3f.h"

namespace tarnex {

constexpr int hydrogen = 1;

/// The atoms of a molecule as bond perception sees them, by atom index.
struct BondableAtoms {
    McDArray<McVec3f> coords;
    /// Atomic numbers; 0 for an atom that takes no part, or no further part since it has all its bonds.
    McDArray<unsigned char> elements;
};

struct PerceivedBond {
    int atomA, atomB; ///< the lower index first
    int order;
};

inline PerceivedBond makeBond(int atomA, int atomB, int order) {
    return atomA < atomB ? PerceivedBond{atomA, atomB, order} : PerceivedBond{atomB, atomA, order};
}

} // namespace tarnex
