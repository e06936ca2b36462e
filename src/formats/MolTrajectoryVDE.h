#pragma once

#include "foundation/McDArray.h"
#include "foundation/McString.h"
#include "model/AtomDataBase.h"
#include "model/MolTrajectory.h"

#include <fstream>
#include <iosfwd>

/// A series of VDE files as a trajectory, one file for each step, in Angstrom. Such a file describes a picture: the
/// number of spheres, seven numbers for each (place, colour in red, green and blue, and one more), the number of line
/// segments, and six numbers for each (its two ends). What follows either count on its line is passed over.
///
/// The spheres are atoms, whose colours tell the elements H, C, N, O, P and S. A segment is a bond between the atoms
/// that its ends are nearest to. Every step has bonds of its own, and so a topology of its own.
class TARNEX_API MolTrajectoryVDE : public MolTrajectory {
public:
    /// Neither is owned, and neither is used.
    MolTrajectoryVDE(std::ostream* messageStream, AtomDataBase* dataBase);

    /// Takes the names of the steps and reads the atoms of the first one. Always returns this trajectory; files that
    /// cannot be opened are steps without content.
    MolTrajectory* readVDEMolTrajectory(int numFiles, char const** fileNames);

    int getNumTimeSteps() const override;
    /// Gives the molecule a topology of its own with the atoms of the first step and the bonds of this one. False only
    /// for a null molecule. A file that cannot be opened, or has another number of atoms, leaves the coordinates as
    /// they were.
    bool getTimeStep(int step, Molecule* molecule) override;

    /// Opens the file of a step in a new stream, which belongs to the caller and may have failed.
    std::ifstream* openStep(int step);

    // These read one part of a file each, from the place where the stream stands, and leave it behind that part.

    /// Makes the topology of atoms, for the colours of the spheres.
    void readBaseTopo(std::istream& in);
    /// Puts the places of the spheres into the molecule if there are as many as it has atoms.
    void readAtomPositions(std::istream& in, Molecule* molecule);
    /// Adds the bonds, of "type" 1, to the topology of the molecule.
    void readBonds(std::istream& in, Molecule* molecule);

    std::ostream* messages;
    McDArray<McString> stepFiles;
    /// The atoms of the first step, without bonds; also `topology`.
    McHandle<MolTopology> baseTopology;
    AtomDataBase* atomDataBase;
};
