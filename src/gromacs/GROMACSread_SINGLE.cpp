#include "gromacs/GROMACSread_SINGLE.h"

#include "gromacs/GROMACSread.h"
#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "gromacs/frameCodec.h"

TrnHeader_SINGLE::TrnHeader_SINGLE() = default;
TrnHeader_SINGLE::~TrnHeader_SINGLE() = default;

GROMACSread_SINGLE::GROMACSread_SINGLE(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

Molecule* GROMACSread_SINGLE::readGRO(char const* groFile) {
    fileName = groFile;
    return GROMACSread(messages, progress).readGRO(fileName);
}

int GROMACSread_SINGLE::readTOP(char const* topFile, Molecule* molecule) {
    return GROMACSread(messages, progress).readTOP(topFile, molecule);
}

Molecule* GROMACSread_SINGLE::readGROMACS_SINGLEMolecule(char const* groFile, char const* topFile) {
    fileName = groFile;
    return GROMACSread(messages, progress).readGROMACSMolecule(fileName, topFile);
}

MolTrajectory* GROMACSread_SINGLE::readGROMACS_SINGLEMolTrajectory(char const* trrFile, char const* groFile,
                                                                   char const* topFile) {
    McHandle<Molecule> const molecule(readGRO(groFile));
    if (!molecule) return nullptr;
    if (topFile) readTOP(topFile, molecule);
    return new MolTrajectoryGROMACS_SINGLE(molecule, trrFile);
}

// NOLINTBEGIN(performance-unnecessary-value-param): names come by value, as from every host

int GROMACSread_SINGLE::readGROMACS_TrajCoords(McString trrFile, int* frameSize) {
    auto const table = tarnex::gromacs::readFrameTable<TrnHeader_SINGLE>(trrFile);
    *frameSize = static_cast<int>(table.frameSize);
    return table.numFrames;
}

TrnHeader_SINGLE* GROMACSread_SINGLE::readCoordsAt(Molecule* molecule, long position, McString trrFile) {
    return tarnex::gromacs::readFrameAt<TrnHeader_SINGLE>(molecule, position, trrFile);
}

// NOLINTEND(performance-unnecessary-value-param)
