#pragma once

#include "model/MolTrajectory.h"

namespace tarnex::tool {

/// A trajectory whose class leaves the coordinates of a step as they were where they cannot be read, and says nothing.
/// Here such a step fails.
class CheckedSteps : public MolTrajectory {
public:
    /// The steps of `whole`, which is kept, on a topology of the same atoms.
    CheckedSteps(MolTrajectory* whole, MolTopology* stepTopology);

    int getNumTimeSteps() const override;
    bool getTimeStep(int step, Molecule* molecule) override;

private:
    McHandle<MolTrajectory> source;
};

} // namespace tarnex::tool
