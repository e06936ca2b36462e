#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/McString.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

#include <iosfwd>

class McProgressInterface;

/// Reads the files of AMBER: topologies in the layout of fixed columns that has no section flags, as the programs wrote
/// it up to AMBER 6 (its PARM file, ambermd.org), restart files, and trajectory text.
///
/// Nothing in a topology names its blocks: their places follow from thirty counters, and a file of any other kind gives
/// a molecule that is empty or wrong, without a message. So does the newer layout with %FLAG lines. A file that ends
/// early gives as many atoms as it counts, with values of 0. Coordinates are in Angstrom, charges in elementary charges
/// (the file's, divided by 18.2223), masses in atomic mass units.
class TARNEX_API AMBERread {
public:
    /// Both may be null; neither is owned.
    AMBERread(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// Reads a topology: atoms with "type", "charge", "atom_mass" and "atomic_number", residues with "type", and bonds,
    /// all of type 1. A residue but the first begins one atom behind its true first atom, which is the last one of the
    /// residue ahead of it.
    ///
    /// With a `step` below 1 the coordinates are those of the restart file, whose name is that of the topology with
    /// "crd" in place of the last three characters. With a higher one they are those of frame `step` - 2 of the
    /// trajectory with "md.crd" in that place, whose frames begin at `coordPositions`. Coordinates that cannot be read
    /// stay 0, with a message. `velocityPositions` has no effect. A null handle, with a message, if the topology cannot
    /// be opened.
    McHandle<Molecule> read(char const* topologyFile, int step, McDArray<long> coordPositions,
                            McDArray<long> velocityPositions);

    /// A topology with the coordinates of its restart file, owned by the caller; null, with a message, if the topology
    /// cannot be opened.
    Molecule* readAmberMolecule(char const* topologyFile);

    /// A trajectory on a topology, owned by the caller; null, with a message, if the topology cannot be opened. A null
    /// name counts as the empty one.
    MolTrajectory* readAmberMolTrajectory(char const* coordFile, char const* topologyFile, char const* velocityFile);

    /// Reads the coordinates of a restart file into a molecule. False, with a message, if the file cannot be opened or
    /// counts other atoms than the molecule has.
    bool readAmberCoords(Molecule* molecule, McString coordFile);

    /// Fills `positions` with the file offsets at which the frames of trajectory text begin and returns how many they
    /// are. Behind the last line end of the file one more frame begins, which has no numbers. 0, with a message, if the
    /// file cannot be opened.
    int readAmber_TrajCoords(McDArray<long>& positions, int natoms, McString coordFile);
    /// The same for a file of velocities.
    int readAMBER_TrajVelocities(McDArray<long>& positions, int natoms, McString velocityFile);

    /// Reads the frame of trajectory text that begins at `positions[step - 1]` into a molecule. Numbers that the file
    /// lacks are 0. False, with a message, if the file cannot be opened; false if there is no such position.
    bool readCoordsAt(Molecule* molecule, int step, McDArray<long>& positions, McString coordFile);

    std::ostream* messages;
    McProgressInterface* progress;
    /// The topology of the current read.
    McString filename;
};
