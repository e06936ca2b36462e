#include "CheckedSteps.h"

#include "model/Molecule.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnex::tool {

CheckedSteps::CheckedSteps(MolTrajectory* whole, MolTopology* stepTopology)
    : MolTrajectory(stepTopology), source(whole) {
    observables = new MolObservables;
    observables->setNumTimeSteps(getNumTimeSteps());
}

int CheckedSteps::getNumTimeSteps() const {
    return source->getNumTimeSteps();
}

/// The last coordinate is read last, and no text is read as "not a number".
bool CheckedSteps::getTimeStep(int step, Molecule* molecule) {
    constexpr float unread = std::numeric_limits<float>::quiet_NaN();
    molecule->setTopology(topology, false);
    McDArray<McVec3f>& coords = molecule->coords;
    std::fill(coords.begin(), coords.end(), McVec3f(unread, unread, unread));
    bool const isRead =
        source->getTimeStep(step, molecule) && (coords.size == 0 || !std::isnan(coords[coords.size - 1].z));
    molecule->setTopology(topology, false);
    return isRead;
}

} // namespace tarnex::tool
