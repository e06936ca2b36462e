#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/McString.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"

namespace tarnex::gromacs {

/// The frames of a .trr file as steps, in the precision of a reader's class and its header's. Only their offsets are
/// kept: each step opens the file, which has to stay as it is, and reads one frame.
template <class Reader, class Header>
class TARNEX_API FrameTrajectory : public MolTrajectory {
public:
    /// Takes the topology of the structure, which stays the caller's.
    FrameTrajectory(Molecule* structure, McString const& fileName);
    ~FrameTrajectory() override;

    /// Works out the table of offsets from the first frame and the length of the file. Returns 1.
    int setStreamPos();
    int getNumTimeSteps() const override;
    /// Puts the topology and the positions of a frame, in Angstrom, into a molecule. True also if the frame could not
    /// be read, which leaves the coordinates as they were; false outside the table.
    bool getTimeStep(int index, Molecule* result) override;

    int numTimeSteps = 0;
    McString trajectoryFile;
    /// The structure that the trajectory was made from. Not owned and not used afterwards.
    Molecule* molecule;
    /// Of the frame that was read last; null until then.
    McHandle<Header> lastHeader;
    /// The offset of each frame: its index times the size of the first frame, in 32 bits, so that those behind 2 GiB
    /// are wrong.
    McDArray<long> streamPositions;
};

} // namespace tarnex::gromacs
