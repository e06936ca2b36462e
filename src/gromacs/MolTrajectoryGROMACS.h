#pragma once

#include "foundation/export.h"
#include "gromacs/FrameTrajectory.h"
#include "gromacs/GROMACSread.h"

extern template class tarnex::gromacs::FrameTrajectory<GROMACSread, TrnHeader>;

/// A .trr file in double precision as a trajectory.
class TARNEX_API MolTrajectoryGROMACS : public tarnex::gromacs::FrameTrajectory<GROMACSread, TrnHeader> {
public:
    using FrameTrajectory::FrameTrajectory;
    ~MolTrajectoryGROMACS() override;
};
