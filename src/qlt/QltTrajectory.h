#pragma once

#include "foundation/McString.h"
#include "model/MolTrajectory.h"
#include "qlt/QltFile.h"

namespace tarnex {

/// A trajectory of a house format file. It keeps the topology in memory and reads each step from the file when it is
/// asked for; once the file is gone or has another content, no step can be read any more.
class QltTrajectory : public MolTrajectory {
public:
    /// `offset` is the place of the first step.
    QltTrajectory(char const* name, QltHeader const& fileHeader, MolTopology* fileTopology, QltEntry const& entry,
                  std::uint64_t offset);
    ~QltTrajectory() override;

    int getNumTimeSteps() const override;
    /// On failure the molecule is left as it was.
    bool getTimeStep(int step, Molecule* molecule) override;

private:
    McString fileName;
    QltHeader header;
    QltEntry steps;
    std::uint64_t firstStep;
};

} // namespace tarnex
