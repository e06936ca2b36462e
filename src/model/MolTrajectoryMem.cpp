#include "model/MolTrajectoryMem.h"

#include <utility>

MolTrajectoryMem::MolTrajectoryMem(Molecule* molecule, int numSteps) : MolTrajectory(molecule->getTopology()) {
    steps.resize(numSteps);
    for (Step& step : steps) {
        step.coords = molecule->coords;
        step.readable = true;
    }
    noteNumTimeSteps();
}

MolTrajectoryMem::MolTrajectoryMem(MolTopology* existing, McDArray<McVec3f>&& coordinates) : MolTrajectory(existing) {
    steps.resize(1);
    steps[0].coords = std::move(coordinates);
    steps[0].readable = true;
    noteNumTimeSteps();
}

MolTrajectoryMem::MolTrajectoryMem(MolTrajectory* source) : MolTrajectory(source->getTopology()) {
    Molecule molecule(topology, false);
    int const numSteps = source->getNumTimeSteps();
    // A file may state more steps than it has; the source tells when it gets there.
    for (int i = 0; i < numSteps; ++i) {
        steps.resize(i + 1);
        steps[i].readable = source->getTimeStep(i, &molecule);
        if (steps[i].readable) steps[i].coords = molecule.coords;
    }
    noteNumTimeSteps();
}

MolTrajectoryMem::~MolTrajectoryMem() = default;

void MolTrajectoryMem::noteNumTimeSteps() {
    observables = new MolObservables;
    observables->setNumTimeSteps(getNumTimeSteps());
}

int MolTrajectoryMem::getNumTimeSteps() const {
    return static_cast<int>(steps.size);
}

bool MolTrajectoryMem::has(int step) const {
    return step >= 0 && step < steps.size && steps[step].readable;
}

bool MolTrajectoryMem::getTimeStep(int step, Molecule* molecule) {
    if (!has(step)) return false;
    molecule->setTopology(topology, false);
    molecule->coords = steps[step].coords;
    return true;
}

MolTopology* MolTrajectoryMem::getTopology() {
    return topology;
}

MolTopology const* MolTrajectoryMem::getTopology() const {
    return topology;
}

void MolTrajectoryMem::getCoordinates(int step, McDArray<McVec3f>& out) const {
    if (has(step))
        out = steps[step].coords;
    else
        out.resize(0);
}
