#pragma once

#include "foundation/export.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

#include <iosfwd>

class McProgressInterface;

/// Writes GROMACS files as `GROMACSwrite` does, but .trr trajectories in single precision. The size fields of their
/// frames are those of double precision, so that only `GROMACSread_SINGLE` reads them.
class TARNEX_API GROMACSwrite_SINGLE {
public:
    /// Both may be null; neither is owned.
    GROMACSwrite_SINGLE(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// As the operations of `GROMACSwrite`.
    int writeGROMACS_SINGLEMolecule(Molecule* molecule, char const* fileName);
    int writeGROMACS_SINGLEMolTrajectory(MolTrajectory* trajectory, char const* fileName);

    std::ostream* messages;
    McProgressInterface* progress;
};
