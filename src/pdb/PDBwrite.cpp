#include "pdb/PDBwrite.h"

#include "foundation/Progress.h"
#include "foundation/report.h"
#include "pdb/writtenRecords.h"

#include <algorithm>

// NOLINTNEXTLINE(performance-unnecessary-value-param): the path comes by value, as from every host
PDBwrite::PDBwrite(McFilename residueDatabasePath, std::ostream* messageStream, McProgressInterface* progressInterface)
    : residueDatabase(residueDatabasePath), messages(messageStream), progress(progressInterface) {}

namespace {

bool isCreated(writer const& out, std::ostream* messages) {
    if (!out.isOpen()) tarnex::report(messages, "Could not create file !\n");
    return out.isOpen();
}

bool isEmpty(Molecule* molecule, std::ostream* messages) {
    bool const empty = !molecule || !molecule->getTopology();
    if (empty) tarnex::report(messages, "Empty molecule!\n");
    return empty;
}

/// One file: the tables of its topology and the counts of its records.
class PdbFile {
public:
    PdbFile(PDBwrite& pdbWriter, writer& fileOut, MolTopology* fileTopology, bool withChargeColumn)
        : pdb(pdbWriter), out(fileOut), topology(fileTopology), info(fileTopology), chargeColumn(withChargeColumn) {
        deriveTables();
    }

    void writeRecordsAheadOfAtoms() {
        pdb.writeHeaderRecords(out);
        pdb.writeSeqResRecords(out, info, hetResidue, numSeqRes);
        pdb.writeSecStructRecords(out, info, secondaryStructure, pdbIndexOfResidue, chainOfResidue, numHelix, numSheet,
                                  numTurn);
        pdb.writeSiteRecords(out, info, pdbIndexOfResidue, chainOfResidue, numSite);
        pdb.writeSSBondRecords(out, info, ssBonds, residueOfAtom, chainOfResidue, pdbIndexOfResidue, numSsBond);
    }

    /// Atoms without coordinates are written at the origin.
    void writeModel(Molecule const& model) {
        McVec3f const* coordinates = model.coords.data;
        McDArray<McVec3f> completed;
        if (model.coords.size < numAtoms) {
            completed = model.coords;
            completed.resize(numAtoms);
            std::fill(completed.begin() + model.coords.size, completed.end(), McVec3f(0.0F, 0.0F, 0.0F));
            coordinates = completed.data;
        }
        pdb.writeAtomRecords(out, info, coordinates, atomInChain, hetResidue, atomOrder, residueOfAtom, serialOfAtom,
                             pdbIndexOfResidue, chainOfResidue, numAtom, numTer, chargeColumn);
        tarnex::pdb::writeTextRecord(out, "ENDMDL", "");
    }

    void writeRecordsBehindAtoms() {
        pdb.writeConectRecords(out, serialOfAtom, bondedAtoms, numConect);
        pdb.writeMasterRecord(out, numHelix, numSheet, numTurn, numSite, numAtom, numTer, numConect, numSeqRes);
    }

private:
    void deriveTables() {
        numAtoms = info.atoms->groups.size;
        pdb.generateResidueData1(info, hetResidue);
        pdb.generateResidueData2(info, topology, residueOrder, pdbIndexOfResidue, chainOfResidue, secondaryStructure);
        residueOfAtom.resize(numAtoms);
        atomOrder.resize(numAtoms);
        serialOfAtom.resize(numAtoms);
        pdb.generateAtomData1(info, residueOrder, atomOrder, serialOfAtom, residueOfAtom);
        pdb.generateAtomData2(info, atomInChain);
        bondedAtoms.resize(numAtoms);
        pdb.generateBondData(info, residueOfAtom, hetResidue, bondedAtoms, ssBonds);
    }

    PDBwrite& pdb;
    writer& out;
    MolTopology* topology;
    molInfo info;
    bool chargeColumn;
    std::int64_t numAtoms = 0;

    McBitfield hetResidue;
    McDArray<int> residueOrder;
    McDArray<int> pdbIndexOfResidue;
    McDArray<int> chainOfResidue;
    McDArray<McDArray<PDBwrite::secInfo>> secondaryStructure;
    McDArray<int> atomOrder;
    McDArray<int> serialOfAtom;
    McDArray<int> residueOfAtom;
    McBitfield atomInChain;
    McDArray<McDArray<int>> bondedAtoms;
    McDArray<int> ssBonds;

    int numSeqRes = 0;
    int numHelix = 0;
    int numSheet = 0;
    int numTurn = 0;
    int numSite = 0;
    int numSsBond = 0;
    int numAtom = 0;
    int numTer = 0;
    int numConect = 0;
};

} // namespace

bool PDBwrite::writePDBMolecule(Molecule* moleculeToWrite, char const* filename, bool chargeColumn) {
    if (isEmpty(moleculeToWrite, messages)) return false;
    molecule = moleculeToWrite;
    writer out(filename);
    if (!isCreated(out, messages)) return false;
    tarnex::WorkingPhase const phase(progress, "");
    tarnex::Progress(progress).value(0.0F);
    PdbFile file(*this, out, molecule->getTopology(), chargeColumn);
    file.writeRecordsAheadOfAtoms();
    file.writeModel(*molecule);
    file.writeRecordsBehindAtoms();
    return true;
}

bool PDBwrite::writePDBMolTrajectory(MolTrajectory* trajectory, char const* filename, bool chargeColumn) {
    if (!trajectory) return false;
    int const numSteps = trajectory->getNumTimeSteps();
    if (numSteps <= 0) {
        tarnex::report(messages, "Empty trajectory !\n");
        return false;
    }
    firstStep = new Molecule(trajectory->getTopology(), false);
    molecule = firstStep;
    trajectory->getTimeStep(0, molecule);
    if (isEmpty(molecule, messages)) return false;
    writer out(filename);
    if (!isCreated(out, messages)) return false;
    tarnex::WorkingPhase const phase(progress, "");
    tarnex::Progress(progress).value(0.0F);
    PdbFile file(*this, out, molecule->getTopology(), chargeColumn);
    file.writeRecordsAheadOfAtoms();
    for (int i = 0; i < numSteps; ++i) {
        tarnex::pdb::writeTextRecord(out, "MODEL", itoa2(i));
        McHandle<Molecule> const step(new Molecule(trajectory->getTopology(), false));
        trajectory->getTimeStep(i, step);
        file.writeModel(*step);
    }
    file.writeRecordsBehindAtoms();
    return true;
}
