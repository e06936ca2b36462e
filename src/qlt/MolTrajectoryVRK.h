#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"

/// The house format (".qlt"): a container of whole trajectories, exact to the bit, in which every byte stands under a
/// checksum. Nothing is printed; failures are told by the results. What a call writes appears under its name only once
/// it is complete: a failed or interrupted call leaves an older file of that name as it was.
class TARNEX_API MolTrajectoryVRK {
public:
    /// Fills `result`, which is cleared first, with the trajectories of a file. They read their steps from the file
    /// when they are asked for them. Empty on failure: a file that is damaged anywhere is refused as a whole.
    static void readBundle(char const* name, McDArray<McHandle<MolTrajectory>>& result);

    /// Writes a molecule as a trajectory of one step. False on failure. A molecule fails that has not one place for
    /// each of its atoms, or whose topology holds what the format cannot: groups, attributes or data of a class that is
    /// not the model's, a group of fixed size that names a missing group, a bond that is no pair of existing atoms.
    static bool writeQLTMolecule(Molecule* molecule, char const* name);
    /// Writes a trajectory with all of its steps; the file may be the one that it reads from. False on failure, as for
    /// a molecule, and if a step cannot be read.
    static bool writeQLTMolTrajectory(MolTrajectory* trajectory, char const* name);
};

namespace tarnex {

/// Writes several trajectories into one house format file. False on failure, as `MolTrajectoryVRK`; a bundle without
/// trajectories fails as well, since it could not be told from a failure when it is read.
TARNEX_API bool writeQltBundle(McDArray<McHandle<MolTrajectory>> const& bundle, char const* name);

} // namespace tarnex
