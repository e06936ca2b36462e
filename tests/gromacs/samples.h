#pragma once

#include "support/Bytes.h"
#include "support/model.h"

#include <memory>

namespace tarnex::test {

/// A frame as a file may hold it. Each array is filled with one number, apart from the positions, which count up from
/// `position` in steps of one.
template <class Real>
struct Frame {
    int numAtoms = 2;
    Real position = 1;
    int hasBox = 1, hasVirial = 0, hasPressure = 0, hasPositions = 1, hasVelocities = 0, hasForces = 0;
    int strLen = 13;
    std::string version = std::string("\0\0\0\x0c", 4) + "GMX_trn_file";
    int claimedAtoms = numAtoms;

    std::string bytes() const {
        Bytes all{.isBig = true};
        all.put(1993).put(strLen).raw(version).put(0, 2).put(hasBox).put(hasVirial).put(hasPressure).put(0, 2);
        all.put(hasPositions).put(hasVelocities).put(hasForces);
        all.put(claimedAtoms).put(7).put(0).put(Real(2.5)).put(Real(0.5));
        all.put(Real(5), 9 * hasBox).put(Real(8), 27 * hasVirial).put(Real(9), 27 * hasPressure);
        for (int i = 0; i < 3 * numAtoms * hasPositions; ++i) all.put(static_cast<Real>(position + Real(i)));
        return all.put(Real(-1), 3 * numAtoms * hasVelocities).put(Real(-2), 3 * numAtoms * hasForces).bytes;
    }
};

/// Atoms in residues of two, bonded in a chain; the coordinates count up from 0.
inline std::unique_ptr<Molecule> makeChain(int numAtoms) {
    MolTopology* topology = newTopology(numAtoms);
    for (int i = 1; i < numAtoms; ++i) topology->addBond(new MtBond(i - 1, i));
    int const level = topology->addLevel("residues", 0, 12, -1);
    for (int i = 0; i < numAtoms; i += 2) {
        topology->addGroup(level, new MtIntraLevelRange(0, i, std::min(i + 1, numAtoms - 1)));
    }
    auto molecule = std::make_unique<Molecule>(topology, true);
    for (int i = 0; i < numAtoms; ++i) {
        auto const x = static_cast<float>(i);
        molecule->coords[i] = McVec3f(x, x + 0.25F, -x);
    }
    return molecule;
}

/// Steps that add their number to the x of all atoms of a molecule. A step `unreadable` leaves the coordinates alone.
struct MovingTrajectory : MadeTrajectory {
    MovingTrajectory(Molecule& start, int numSteps)
        : MadeTrajectory(start.getTopology(), numSteps,
                         [this, places = start.coords](int step, McDArray<McVec3f>& coords) {
                             if (step == unreadable) return false;
                             coords = places;
                             for (McVec3f& place : coords) place.x += static_cast<float>(step);
                             return true;
                         }) {}
    int unreadable = -1;
};

} // namespace tarnex::test
