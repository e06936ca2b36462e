#pragma once

#include "foundation/McString.h"
#include "foundation/export.h"
#include "gromacs/TrnHeader.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

#include <iosfwd>

class McProgressInterface;

/// Reads GROMACS files (GROMACS Reference Manual, "File formats"): .gro structures, the bonded sections of .top
/// topologies, and .trr trajectories in double precision. Files hold nanometres, the model Angstrom.
class TARNEX_API GROMACSread {
public:
    /// Both may be null; neither is owned.
    GROMACSread(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// Reads a .gro file: atoms with their elements, which their names tell, residues and coordinates, but no bonds.
    /// The molecule belongs to the caller. Null, with a message, if the file cannot be opened; anything else is a
    /// structure, and atoms that the file lacks are made of empty fields.
    Molecule* readGRO(char const* groFile);
    /// Adds what a .top file knows to a molecule of `readGRO`: charges, masses, bonds, and the levels "pairs", "angles"
    /// and "dihedrals". 1, or 0 with a message if the file cannot be opened, which changes nothing. Throws
    /// `Parse_Error` for a line that is too long.
    int readTOP(char const* topFile, Molecule* molecule);
    /// `readGRO` and, if a name is given, `readTOP`. Null if either fails.
    Molecule* readGROMACSMolecule(char const* groFile, char const* topFile);

    /// A file-backed trajectory with the structure of the .gro file. Bonds are those of the .top file or, without a
    /// name of one, found by their lengths. The caller owns it; null if the .gro file cannot be opened. A .trr file
    /// that cannot be opened has no steps.
    MolTrajectory* readGROMACSMolTrajectory(char const* trrFile, char const* groFile, char const* topFile);
    /// The number of frames, which are all taken to have the size of the first one: `*frameSize` in bytes, cut to 32
    /// bits. Both are 0 for a file that cannot be opened or has no frame.
    int readGROMACS_TrajCoords(McString trrFile, int* frameSize);
    /// Reads the frame at an offset: its coordinates go to the atoms that both it and the molecule have. The caller
    /// owns the header, whose reference count is 0. Prints what the frame begins with on standard output. Where nothing
    /// can be read all fields are 0 and the coordinates stay as they were.
    TrnHeader* readCoordsAt(Molecule* molecule, long position, McString trrFile);

    /// Guesses the precision of a .trr file from where its second frame begins: 2 for double precision, 1 for single
    /// precision with a `t` of eight bytes and no other, -1 if neither fits or there is no second frame.
    int checkFormat(McString trrFile);

    std::ostream* messages;
    McProgressInterface* progress;
    /// The name last given to `readGRO`.
    McString fileName;
};
