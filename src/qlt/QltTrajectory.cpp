#include "qlt/QltTrajectory.h"

#include "model/Molecule.h"

namespace tarnex {

QltTrajectory::QltTrajectory(char const* name, QltHeader const& fileHeader, MolTopology* fileTopology,
                             QltEntry const& entry, std::uint64_t offset)
    : MolTrajectory(fileTopology), fileName(name), header(fileHeader), steps(entry), firstStep(offset) {
    observables = new MolObservables;
    observables->setNumTimeSteps(getNumTimeSteps());
}

QltTrajectory::~QltTrajectory() = default;

int QltTrajectory::getNumTimeSteps() const {
    return static_cast<int>(steps.numSteps);
}

bool QltTrajectory::getTimeStep(int step, Molecule* molecule) {
    if (!molecule || step < 0 || step >= getNumTimeSteps()) return false;
    // The topology is open to changes that the file does not know of.
    auto const numAtoms = static_cast<std::int64_t>(steps.numAtoms);
    if (topology->levels[0]->groups.size != numAtoms) return false;

    QltInput const file(fileName);
    if (!file.isOpen() || file.getHeader() != header) return false;
    McDArray<McVec3f> coords(numAtoms);
    if (!file.readStep(firstStep + static_cast<std::uint64_t>(step) * steps.stepLength(), coords)) return false;
    molecule->setTopology(topology, false);
    molecule->coords.swap(coords);
    return true;
}

} // namespace tarnex
