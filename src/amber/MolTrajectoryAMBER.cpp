#include "amber/MolTrajectoryAMBER.h"

#include "amber/AMBERread.h"

MolTrajectoryAMBER::MolTrajectoryAMBER(MolTopology* trajectoryTopology, McString const& coordinates,
                                       McString const& velocities, McString const& topologyName)
    : MolTrajectory(trajectoryTopology), coordFile(coordinates), velocityFile(velocities), dataFile(coordinates),
      topologyFile(topologyName) {
    // The observables are as many as the velocities, the steps as many as the coordinates.
    setStreamPos(2);
    observables = new MolObservables;
    observables->setNumTimeSteps(numTimeSteps);
    setStreamPos(1);
}

MolTrajectoryAMBER::~MolTrajectoryAMBER() = default;

int MolTrajectoryAMBER::setStreamPos(int kind) {
    AMBERread amber(nullptr, nullptr);
    auto const natoms = static_cast<int>(topology->getLevel(0)->groups.size);
    if (kind == 1)
        numTimeSteps = amber.readAmber_TrajCoords(coordPositions, natoms, coordFile);
    else if (kind == 2)
        numTimeSteps = amber.readAMBER_TrajVelocities(velocityPositions, natoms, velocityFile);
    else
        return 0;
    return numTimeSteps;
}

int MolTrajectoryAMBER::getNumTimeSteps() const {
    return numTimeSteps;
}

bool MolTrajectoryAMBER::getTimeStep(int step, Molecule* molecule) {
    if (step == 0) {
        getRestartState(molecule);
    } else {
        molecule->setTopology(topology, false);
        AMBERread(nullptr, nullptr).readCoordsAt(molecule, step, coordPositions, coordFile);
    }
    return true;
}

/// Leaves the molecule as it is if the topology file is gone.
void MolTrajectoryAMBER::getRestartState(Molecule* molecule) {
    McHandle<Molecule> const restart = AMBERread(nullptr, nullptr).read(topologyFile, 0, {}, {});
    if (!restart) return;
    molecule->setTopology(restart->getTopology(), false);
    molecule->coords = restart->coords;
}
