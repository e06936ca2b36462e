#pragma once

#include "chemistry/PerceivedBonds.h"
#include "chemistry/ResidueKnowledge.h"
#include "foundation/McDArray.h"

namespace tarnex {

/// Appends the bonds of atoms within bonding distance that `residues` does not rule out.
void findDistanceBonds(BondableAtoms const& atoms, ResidueKnowledge const& residues, McDArray<PerceivedBond>& bonds);

} // namespace tarnex
