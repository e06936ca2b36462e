#include "qlt/MolTrajectoryVRK.h"

#include "model/Molecule.h"
#include "qlt/QltTrajectory.h"
#include "qlt/topologyCodec.h"

void MolTrajectoryVRK::readBundle(char const* name, McDArray<McHandle<MolTrajectory>>& result) {
    // The name may be a text of a trajectory in the array.
    McString const fileName(name);
    result.clear();
    tarnex::QltInput const file(fileName);
    std::uint64_t offset = sizeof(tarnex::QltHeader);
    std::uint64_t atomsLeft = tarnex::atomsWithoutBytes + file.length();
    McDArray<McHandle<MolTrajectory>> trajectories;
    for (tarnex::QltEntry const& entry : file.readIndex()) {
        McHandle<MolTopology> const topology = file.readTopology(offset, entry, atomsLeft);
        offset += entry.topologyLength;
        if (!topology || !file.verifySteps(offset, entry)) return;
        trajectories.append(new tarnex::QltTrajectory(fileName, file.getHeader(), topology, entry, offset));
        offset += entry.numSteps * entry.stepLength();
    }
    result.swap(trajectories);
}

bool MolTrajectoryVRK::writeQLTMolecule(Molecule* molecule, char const* name) {
    if (!molecule || !molecule->getTopology()) return false;
    tarnex::QltOutput file(name);
    return file.addTrajectory(*molecule->getTopology()) && file.addStep(molecule->coords) && file.commit();
}

namespace {

bool addTrajectory(tarnex::QltOutput& file, MolTrajectory* trajectory) {
    MolTopology* topology = trajectory ? trajectory->getTopology() : nullptr;
    if (!topology || !file.addTrajectory(*topology)) return false;
    Molecule molecule(topology, false);
    for (int step = 0, numSteps = trajectory->getNumTimeSteps(); step < numSteps; ++step) {
        if (!trajectory->getTimeStep(step, &molecule) || !file.addStep(molecule.coords)) return false;
    }
    return true;
}

} // namespace

bool MolTrajectoryVRK::writeQLTMolTrajectory(MolTrajectory* trajectory, char const* name) {
    tarnex::QltOutput file(name);
    return addTrajectory(file, trajectory) && file.commit();
}

bool tarnex::writeQltBundle(McDArray<McHandle<MolTrajectory>> const& bundle, char const* name) {
    QltOutput file(name);
    for (MolTrajectory* trajectory : bundle) {
        if (!addTrajectory(file, trajectory)) return false;
    }
    return file.commit();
}
