#include "pdb/MolTrajectoryPDB.h"

#include "model/Molecule.h"

#include <cstdlib>
#include <cstring>

MolTrajectoryPDB::MolTrajectoryPDB(char const* filename, McDArray<PDBread::streamPositions>& modelPositions)
    : fileName(nullptr), numTimeSteps(static_cast<int>(modelPositions.size)), positions(modelPositions) {
    observables = new MolObservables;
    observables->setNumTimeSteps(numTimeSteps);
    if (numTimeSteps > 0) {
        Molecule firstModel(topology, false);
        if (!PDBread(nullptr, nullptr).readMolecule(&firstModel, filename, positions[0], 0)) topology = new MolTopology;
    }
    McString name;
    name.printf("Model %d-%d", 1, numTimeSteps);
    getTopology()->setName(name);
    fileName = strdup(filename ? filename : "");
}

MolTrajectoryPDB::~MolTrajectoryPDB() {
    std::free(fileName);
}

int MolTrajectoryPDB::getNumTimeSteps() const {
    return numTimeSteps;
}

bool MolTrajectoryPDB::getTimeStep(int step, Molecule* molecule) {
    if (step < 0 || step >= numTimeSteps) return false;
    return PDBread(nullptr, nullptr).readCoordinates(molecule, fileName, positions[step], step);
}
