#pragma once

#include "chemistry/ResidueTemplates.h"

#include <array>
#include <vector>

namespace residuedb {

struct DistanceGoal {
    int a, b;
    double length;
    double tolerance;
    bool isLeast; // only a smaller distance is wrong
};

/// The volume that three atoms span as seen from the first: 0 for four in a plane; its sign tells the chirality.
struct VolumeGoal {
    std::array<int, 4> atoms;
    double volume;
};

struct Goals {
    std::vector<DistanceGoal> distances;
    std::vector<VolumeGoal> volumes;
};

/// What is usual for the atoms of a residue that are not optional: bond lengths, angles by hybridisation, planes, the
/// configuration of L-amino acids and D-nucleotides, and no contact too close. In Angstrom.
Goals usualGoals(tarnex::ResidueTemplate const& residue);

} // namespace residuedb
