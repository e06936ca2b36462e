#include "gromacs/MolTrajectoryGROMACS.h"

#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "model/Molecule.h"

namespace tarnex::gromacs {

template <class Reader, class Header>
FrameTrajectory<Reader, Header>::FrameTrajectory(Molecule* structure, McString const& fileName)
    : MolTrajectory(structure->getTopology()), trajectoryFile(fileName), molecule(structure) {
    FrameTrajectory::setStreamPos();
}

template <class Reader, class Header>
FrameTrajectory<Reader, Header>::~FrameTrajectory() = default;

template <class Reader, class Header>
int FrameTrajectory<Reader, Header>::setStreamPos() {
    int frameSize = 0;
    numTimeSteps = Reader(nullptr, nullptr).readGROMACS_TrajCoords(trajectoryFile, &frameSize);
    streamPositions.resize(numTimeSteps);
    for (int i = 0; i < streamPositions.size; ++i) {
        streamPositions[i] = static_cast<int>(static_cast<unsigned>(i) * static_cast<unsigned>(frameSize));
    }
    if (numTimeSteps > 0) {
        observables = new MolObservables;
        observables->setNumTimeSteps(numTimeSteps);
    }
    return 1;
}

template <class Reader, class Header>
int FrameTrajectory<Reader, Header>::getNumTimeSteps() const {
    return numTimeSteps;
}

template <class Reader, class Header>
bool FrameTrajectory<Reader, Header>::getTimeStep(int index, Molecule* result) {
    if (index < 0 || index >= streamPositions.size) return false;
    result->setTopology(topology, false);
    lastHeader = Reader(nullptr, nullptr).readCoordsAt(result, streamPositions[index], trajectoryFile);
    return true;
}

} // namespace tarnex::gromacs

template class tarnex::gromacs::FrameTrajectory<GROMACSread, TrnHeader>;
template class tarnex::gromacs::FrameTrajectory<GROMACSread_SINGLE, TrnHeader_SINGLE>;

MolTrajectoryGROMACS::~MolTrajectoryGROMACS() = default;
MolTrajectoryGROMACS_SINGLE::~MolTrajectoryGROMACS_SINGLE() = default;
