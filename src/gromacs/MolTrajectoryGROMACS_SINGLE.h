#pragma once

#include "foundation/export.h"
#include "gromacs/FrameTrajectory.h"
#include "gromacs/GROMACSread_SINGLE.h"

extern template class tarnex::gromacs::FrameTrajectory<GROMACSread_SINGLE, TrnHeader_SINGLE>;

/// A .trr file in single precision as a trajectory.
class TARNEX_API MolTrajectoryGROMACS_SINGLE
    : public tarnex::gromacs::FrameTrajectory<GROMACSread_SINGLE, TrnHeader_SINGLE> {
public:
    using FrameTrajectory::FrameTrajectory;
    ~MolTrajectoryGROMACS_SINGLE() override;
};
