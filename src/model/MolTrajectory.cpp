#include "model/MolTrajectory.h"

MolObservables::~MolObservables() = default;

MolTrajectory::MolTrajectory() : topology(new MolTopology) {}

MolTrajectory::MolTrajectory(MolTopology* existing) : topology(existing) {}

MolTrajectory::~MolTrajectory() {
    observables = nullptr;
    topology = nullptr;
}

int MolTrajectory::getNumFields(int) const {
    return 0;
}

void MolTrajectory::getFieldDims(int, int, int*) const {}

void MolTrajectory::getFieldData(int, int, float*) const {}

void MolTrajectory::getFieldBbox(int, int, float*) const {}

void MolTrajectory::getFieldNames(char**) const {}

MolTopology* MolTrajectory::getTopology() {
    return topology;
}

MolTopology const* MolTrajectory::getTopology() const {
    return topology;
}

char const* MolTrajectory::getInfoText() const {
    return nullptr;
}
