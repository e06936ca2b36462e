#pragma once

#include "model/MolObject.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

/// A trajectory in memory.
class TARNEX_API MolTrajectoryMem : public MolTrajectory, public MolObject {
public:
    /// Copies the molecule's coordinates as each of its steps and shares its topology. The molecule stays the caller's.
    MolTrajectoryMem(Molecule* molecule, int numSteps);
    /// Has one step, of coordinates that it takes over.
    MolTrajectoryMem(MolTopology* existing, McDArray<McVec3f>&& coordinates);
    /// Copies all steps of a trajectory and shares its topology. A step that the source cannot read stays unreadable.
    explicit MolTrajectoryMem(MolTrajectory* source);
    ~MolTrajectoryMem() override;

    int getNumTimeSteps() const override;
    bool getTimeStep(int step, Molecule* molecule) override;
    MolTopology* getTopology() override;
    MolTopology const* getTopology() const override;
    void getCoordinates(int step, McDArray<McVec3f>& out) const override;

private:
    struct Step {
        McDArray<McVec3f> coords;
        bool readable = false;
    };

    bool has(int step) const;
    void noteNumTimeSteps();

    McDArray<Step> steps;
};
