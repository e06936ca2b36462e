#include "gromacs/GROMACSwrite_SINGLE.h"

#include "gromacs/GROMACSwrite.h"
#include "gromacs/TrnHeader_SINGLE.h"
#include "gromacs/writeTrajectory.h"

GROMACSwrite_SINGLE::GROMACSwrite_SINGLE(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

int GROMACSwrite_SINGLE::writeGROMACS_SINGLEMolecule(Molecule* molecule, char const* fileName) {
    return GROMACSwrite(messages, progress).writeGROMACSMolecule(molecule, fileName);
}

int GROMACSwrite_SINGLE::writeGROMACS_SINGLEMolTrajectory(MolTrajectory* trajectory, char const* fileName) {
    using tarnex::gromacs::FrameMolecule;
    return tarnex::gromacs::writeTrajectory<TrnHeader_SINGLE>(trajectory, fileName, FrameMolecule::own, messages,
                                                              progress);
}
