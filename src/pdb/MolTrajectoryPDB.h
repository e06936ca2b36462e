#pragma once

#include "model/MolTrajectory.h"
#include "pdb/PDBread.h"

/// The models of a PDB file as steps of a trajectory. The topology is that of the first model; coordinates are read
/// from the file when they are asked for, so that it has to stay in place.
class TARNEX_API MolTrajectoryPDB : public MolTrajectory {
public:
    /// Reads the first model. If that fails the topology is empty.
    MolTrajectoryPDB(char const* filename, McDArray<PDBread::streamPositions>& modelPositions);
    ~MolTrajectoryPDB() override;
    MolTrajectoryPDB(MolTrajectoryPDB const&) = delete;
    MolTrajectoryPDB& operator=(MolTrajectoryPDB const&) = delete;

    int getNumTimeSteps() const override;
    /// The molecule must hold the trajectory's topology already. False if the model has another number of atoms or
    /// there is no such step.
    bool getTimeStep(int step, Molecule* molecule) override;

    /// Owned, from `mcmalloc`.
    char* fileName;
    int numTimeSteps;
    /// Of each model.
    McDArray<PDBread::streamPositions> positions;
};
