#pragma once

#include "foundation/McDArray.h"
#include "model/AtomDataBase.h"
#include "model/MolTrajectory.h"

#include <fstream>
#include <iosfwd>

namespace tarnex {
class StreamExtractor;
}

/// A file of plain XYZ frames as a trajectory, in Angstrom. A frame is a line that begins with the number of atoms, a
/// comment line, and a line for each atom: a word and three numbers. What else stands on these lines is passed over,
/// and so is the comment. All frames have the number of atoms of the first one.
///
/// The first frame makes the topology: atoms with "atom_type_name", the word, and with "atomic_number" and "radius" of
/// the entry in the host's table whose name is exactly that word. There are no bonds.
class TARNEX_API MolTrajectoryXYZ : public MolTrajectory {
public:
    /// Neither is owned; both may be null. The table must live as long as the trajectory is being read.
    MolTrajectoryXYZ(std::ostream* messageStream, AtomDataBase* dataBase);

    /// Passes over the whole file once and keeps it open. Returns this trajectory, or null with a message if the file
    /// cannot be opened; a null name is an empty one. The frames end ahead of the first one that does not begin with a
    /// number, or not with that of the first frame; a file without a frame is a trajectory of no steps. Writes a point
    /// for each frame, and a line feed, to standard error.
    MolTrajectory* readXYZMolTrajectory(char const* filename);

    /// Whether nothing but white space follows the last frame, and that one has all of its lines.
    bool isWhole() const { return whole; }

    /// Closes the file, as the last handle gives the trajectory up. A trajectory that is deleted without a handle
    /// leaves it open.
    void notifyDelete() override;

    int getNumTimeSteps() const override;
    /// False only for a null molecule. What cannot be read as a number ends the reading of the step: the coordinates
    /// behind it stay as they were, and so do all of them for a step that does not exist.
    bool getTimeStep(int step, Molecule* molecule) override;

    std::ostream* messages;
    /// Where the first atom line of each frame begins.
    McDArray<std::streampos> framePositions;
    std::ifstream* stream = nullptr;
    AtomDataBase* atomDataBase;

private:
    void scanFrames(tarnex::StreamExtractor& in);
    bool scanFrame(tarnex::StreamExtractor& in, int count);
    bool readAtoms(tarnex::StreamExtractor& in, int count);

    bool whole = true;
};
