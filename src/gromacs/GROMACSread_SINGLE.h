#pragma once

#include "foundation/McString.h"
#include "foundation/export.h"
#include "gromacs/TrnHeader_SINGLE.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

#include <iosfwd>

class McProgressInterface;

/// Reads GROMACS files as `GROMACSread` does, but .trr trajectories in single precision. No file states its precision:
/// the other one reads as numbers without meaning.
class TARNEX_API GROMACSread_SINGLE {
public:
    /// Both may be null; neither is owned.
    GROMACSread_SINGLE(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// As the operations of `GROMACSread`.
    Molecule* readGRO(char const* groFile);
    int readTOP(char const* topFile, Molecule* molecule);
    Molecule* readGROMACS_SINGLEMolecule(char const* groFile, char const* topFile);

    /// As in double precision, but without the name of a .top file there are no bonds.
    MolTrajectory* readGROMACS_SINGLEMolTrajectory(char const* trrFile, char const* groFile, char const* topFile);
    int readGROMACS_TrajCoords(McString trrFile, int* frameSize);
    TrnHeader_SINGLE* readCoordsAt(Molecule* molecule, long position, McString trrFile);

    std::ostream* messages;
    McProgressInterface* progress;
    /// The name last given to `readGRO`.
    McString fileName;
};
