#pragma once

#include "chemistry/ResidueTemplates.h"
#include "foundation/McVec3f.h"

#include <vector>

namespace residuedb {

/// Ideal coordinates in Angstrom for the atoms of a residue template, those that are optional left at 0.0: usual bond
/// lengths, angles by hybridisation, planar where bonds are, the configuration of L-amino acids and D-nucleotides, and
/// no clash. Which conformation it is, is left to chance, but it is the same at each call. Throws std::runtime_error if
/// none is found.
std::vector<McVec3f> idealGeometry(tarnex::ResidueTemplate const& residue);

} // namespace residuedb
