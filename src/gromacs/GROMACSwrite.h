#pragma once

#include "foundation/export.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

#include <iosfwd>

class McProgressInterface;

/// Writes GROMACS files (GROMACS Reference Manual, "File formats"): structures as .gro with the bonds as .top, and
/// trajectories as .trr in double precision beside them. The files hold nanometres, the model Angstrom. The topology
/// needs a level "residues"; attributes that it lacks are added to it.
///
/// The .gro file has the given name, with ".gro" behind it unless it ends in that or in ".GRO"; the .top file has that
/// name with ".top" in the place of ".gro". Either all files of a call are written or none of them is left
/// half-written.
class TARNEX_API GROMACSwrite {
public:
    /// Both may be null; neither is owned.
    GROMACSwrite(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// 1, or 0 if there are no residues or a file cannot be written. Nothing is reported.
    int writeGROMACSMolecule(Molecule* molecule, char const* fileName);
    /// Writes the first step as a structure and all steps as frames of a .trr file, which has the given name with
    /// ".trr" behind it. 1, or 0 if the user stopped the work, which leaves the frames written so far; -1 if there are
    /// no residues, a file cannot be written, or, with a message, the trajectory is null.
    int writeGROMACSMolTrajectory(MolTrajectory* trajectory, char const* fileName);

    std::ostream* messages;
    McProgressInterface* progress;
};
