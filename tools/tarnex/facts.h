#pragma once

#include "foundation/McVec3f.h"
#include "model/MolTrajectory.h"

#include <map>
#include <optional>
#include <string>
#include <utility>
#include <vector>

namespace tarnex::tool {

struct LevelFacts {
    std::string name;
    long long groups;
    std::vector<std::string> attributes;
    /// How many groups there are of each kind: residues by what they are, secondary structure by type.
    std::map<std::string, long long> kinds;
    /// The different names of chains and sites, in their order.
    std::vector<std::string> names;
};

struct DataItem {
    std::string name;
    std::string type;
    std::string value;
};

/// The corners of the box around all atoms, in Angstrom.
struct BoundingBox {
    McVec3f low;
    McVec3f high;
};

/// What is worth knowing of a molecule or trajectory. Atoms count from 1, as in files.
struct MoleculeFacts {
    std::string name;
    /// In the order of Hill: carbon, hydrogen, the others by their symbols. Implicit hydrogens are not in it.
    std::string formula;
    int steps = 0;
    long long atoms = 0;
    long long bonds = 0;
    /// Numbers of bonds by type; empty if the bonds have no types.
    std::map<int, long long> bondTypes;
    /// Of the formal charges; empty if there are none.
    std::optional<long long> netCharge;
    std::vector<std::pair<int, int>> chargedAtoms;
    /// Sum of the partial charges, if the atoms have such.
    std::optional<double> partialCharge;
    std::optional<long long> implicitHydrogens;
    /// Atoms and bonds come first, as "atoms" and "bonds".
    std::vector<LevelFacts> levels;
    /// Of the first step; empty without atoms.
    std::optional<BoundingBox> box;
    std::vector<DataItem> data;
};

/// False in `readable` tells that the first step cannot be read.
MoleculeFacts factsOf(MolTrajectory& trajectory, bool& readable);

} // namespace tarnex::tool
