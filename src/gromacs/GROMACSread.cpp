#include "gromacs/GROMACSread.h"

#include "chemistry/BondCalc.h"
#include "gromacs/MolTrajectoryGROMACS.h"
#include "gromacs/frameCodec.h"

TrnHeader::TrnHeader() = default;
TrnHeader::~TrnHeader() = default;

GROMACSread::GROMACSread(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

Molecule* GROMACSread::readGROMACSMolecule(char const* groFile, char const* topFile) {
    McHandle<Molecule> molecule(readGRO(groFile));
    if (molecule && topFile && readTOP(topFile, molecule) == 0) return nullptr;
    return molecule.handOut();
}

MolTrajectory* GROMACSread::readGROMACSMolTrajectory(char const* trrFile, char const* groFile, char const* topFile) {
    McHandle<Molecule> const molecule(readGRO(groFile));
    if (!molecule) return nullptr;
    if (topFile) {
        readTOP(topFile, molecule);
    } else {
        McBitfield allAtoms(static_cast<unsigned long>(molecule->getNumAtoms()), McBitfield::CLEARED);
        allAtoms.setAll();
        BondCalc::bondLengthConnectSelection(molecule, allAtoms);
    }
    return new MolTrajectoryGROMACS(molecule, trrFile);
}

// NOLINTBEGIN(performance-unnecessary-value-param): names come by value, as from every host

int GROMACSread::readGROMACS_TrajCoords(McString trrFile, int* frameSize) {
    auto const table = tarnex::gromacs::readFrameTable<TrnHeader>(trrFile);
    *frameSize = static_cast<int>(table.frameSize);
    return table.numFrames;
}

TrnHeader* GROMACSread::readCoordsAt(Molecule* molecule, long position, McString trrFile) {
    return tarnex::gromacs::readFrameAt<TrnHeader>(molecule, position, trrFile);
}

// NOLINTEND(performance-unnecessary-value-param)
