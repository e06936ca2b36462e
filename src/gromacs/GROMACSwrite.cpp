#include "gromacs/GROMACSwrite.h"

#include "gromacs/TrnHeader.h"
#include "gromacs/writeTrajectory.h"

GROMACSwrite::GROMACSwrite(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

int GROMACSwrite::writeGROMACSMolecule(Molecule* molecule, char const* fileName) {
    if (!tarnex::gromacs::isWritable(molecule)) return 0;
    tarnex::gromacs::StructureNames const names(fileName);
    tarnex::gromacs::TargetFiles files{names.gro, names.top};
    if (!files.canBeWritten() || !tarnex::gromacs::writeStructure(*molecule, names)) return 0;
    files.keep();
    return 1;
}

int GROMACSwrite::writeGROMACSMolTrajectory(MolTrajectory* trajectory, char const* fileName) {
    using tarnex::gromacs::FrameMolecule;
    return tarnex::gromacs::writeTrajectory<TrnHeader>(trajectory, fileName, FrameMolecule::shared, messages, progress);
}
