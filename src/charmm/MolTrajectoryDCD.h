#pragma once

#include "charmm/DCDException.h"
#include "foundation/McDArray.h"
#include "foundation/McVec3f.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

#include <fstream>
#include <ostream>

/// A trajectory of CHARMM: a PSF file with the topology, which is read as a whole, and a DCD file with the coordinates,
/// which are read frame by frame when they are asked for, so that it has to stay in place. Layouts: the CHARMM
/// documentation, "Protein Structure File" (struct.doc) and "Dynamics" (dynamc.doc). Coordinates are in Angstrom.
///
/// The topology has the levels "residues", "angles", "dihedrals", "imp_dihedrals", "donors" and "acceptors", and the
/// atom attributes "atomic_number", "radius" and "mass" in Dalton, "charge" in elementary charges, "type" with the
/// atom's name and "type_name" with its type.
///
/// One object serves one caller at a time, since all frames come from one stream.
class TARNEX_API MolTrajectoryDCD : public MolTrajectory {
public:
    /// `messageStream` is not owned and may be null.
    explicit MolTrajectoryDCD(std::ostream* messageStream);
    /// Leaves the streams to whoever still has them; `notifyDelete` is what closes them.
    ~MolTrajectoryDCD() override;
    MolTrajectoryDCD(MolTrajectoryDCD const&) = delete;
    MolTrajectoryDCD& operator=(MolTrajectoryDCD const&) = delete;

    /// Opens a PSF and a DCD file, which are told apart by ".psf" and ".dcd" at the end of their names. The DCD file
    /// may stand second only if ".dcd" begins where it would in the first name, as in names of the same length. Returns
    /// this object, or null on any failure; then the object is still the caller's. Writes a line to standard error.
    MolTrajectory* readDCDMolTrajectory(int numFiles, char const** fileNames);

    /// Reads the topology from `psfStream`. Throws `TokenExpected` where a section is missing. A gap in the numbers of
    /// the atoms makes a line on standard error.
    void readPSF();
    /// Reads the header from `dcdStream`. Throws `UnknownEndian`, `Unability64` or `WrongNumberOfAtoms`.
    void readDCD();

    /// Moves `dcdStream` to the start of a frame. The frames ahead of it are skipped, not read. For a frame that does
    /// not exist the stream fails or stands at a place without data.
    void setDCDPosition(int step);

    /// As the header says, whatever the file holds.
    int getNumTimeSteps() const override;
    /// True unless `molecule` is null. Throws `WrongNumberOfAtoms` for a frame that does not exist, is cut off or has
    /// another number of atoms; the molecule is unchanged then.
    bool getTimeStep(int step, Molecule* molecule) override;

    /// Reverses the bytes of each of `count` items of 2, 4 or 8 bytes. Items of another width stay as they are.
    void swapBytes(void* data, int width, int count);

    /// Closes the files, once the last handle has let go.
    void notifyDelete() override;

    std::ostream* messages;
    /// Where frame k starts, for all frames that have been passed so far. Never shrinks.
    McDArray<std::streampos> framePositions;
    std::ifstream* psfStream = nullptr;
    std::ifstream* dcdStream = nullptr;
    /// The file's byte order is not the machine's.
    bool swapNeeded = false;
    bool is64Bit = false;
    /// Each frame starts with a record more.
    bool hasUnitCell = false;
    /// Each frame ends with a record more.
    bool has4thDimension = false;
    int numTimeSteps = 0;

private:
    bool openFiles(char const* psfName, char const* dcdName);
    void closeFiles();
    int numAtoms() const { return static_cast<int>(topology->levels[0]->groups.size); }
    /// The bytes of the three records of coordinates.
    std::streamoff coordinatesSize() const { return 12 * std::streamoff{numAtoms()} + 24; }
    template <class Int>
    Int toNative(Int value);
    int readInt();
    void skipRecord();
    std::streamoff endOfRecord(std::streamoff start);
    std::streamoff endOfFrame(std::streamoff start);
    void readCoordinates(McDArray<float>& records);
    void interleave(McDArray<float>& records, McVec3f* points);
};
