#pragma once

#include "foundation/McDArray.h"
#include "foundation/McString.h"
#include "model/MolTrajectory.h"

/// An AMBER topology with trajectory text. Step 0 is the state in the topology's restart file, step k above 0 is frame
/// k - 1 of the trajectory file. Frames are read from the files when they are asked for, so that these have to stay in
/// place. The velocity file is indexed only; no velocity reaches a molecule.
class TARNEX_API MolTrajectoryAMBER : public MolTrajectory {
public:
    /// Scans both files for the places of their frames. A file that cannot be opened has none.
    MolTrajectoryAMBER(MolTopology* trajectoryTopology, McString const& coordinates, McString const& velocities,
                       McString const& topologyName);
    ~MolTrajectoryAMBER() override;
    MolTrajectoryAMBER(MolTrajectoryAMBER const&) = delete;
    MolTrajectoryAMBER& operator=(MolTrajectoryAMBER const&) = delete;

    /// Scans the coordinate file (1) or the velocity file (2) and returns the number of positions found, which becomes
    /// the number of steps. 0 for any other `kind`.
    int setStreamPos(int kind);

    /// One more than the coordinate file has frames, if its last line has an end.
    int getNumTimeSteps() const override;

    /// Always true. The molecule gets the trajectory's topology; at step 0 it gets another one, as the topology file is
    /// read anew. Its coordinates stay as they are if there is no such step.
    bool getTimeStep(int step, Molecule* molecule) override;

    int numTimeSteps = 0;
    McDArray<long> coordPositions;
    McString coordFile;
    McDArray<long> velocityPositions;
    McString velocityFile;
    McString dataFile;
    McString topologyFile;

private:
    void getRestartState(Molecule* molecule);
};
