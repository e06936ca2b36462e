#pragma once

#include "foundation/McHandle.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "gromacs/TargetFiles.h"
#include "gromacs/frameCodec.h"
#include "gromacs/structureFiles.h"
#include "model/MolTrajectory.h"

#include <cstdio>
#include <utility>

namespace tarnex::gromacs {

/// Whether the frames of a trajectory are read into the molecule of the first step, where a step that cannot be read
/// leaves those of the frame before it, or each into a molecule of its own.
enum class FrameMolecule { shared, own };

/// Writes the steps of a trajectory as frames of the precision of `Header`.
template <class Header>
class FrameWriter {
public:
    FrameWriter(MolTrajectory& stepTrajectory, McHandle<Molecule> firstStep, FrameMolecule use,
                McProgressInterface* stepProgress)
        : trajectory(stepTrajectory), molecule(std::move(firstStep)), moleculeUse(use), progress(stepProgress) {}

    /// 1, 0 if the user stopped the work, -1 if the file cannot be written.
    int write(char const* name) {
        File file(std::fopen(name, "wb"));
        if (!file) return -1;
        bool const stopped = !writeSteps(file.get());
        bool const failed = std::ferror(file.get()) != 0;
        if (std::fclose(file.release()) != 0 || failed) return -1;
        if (stopped && progress) progress->setProgressValue(1.0F);
        return stopped ? 0 : 1;
    }

private:
    bool writeSteps(FILE* file) {
        int const numSteps = trajectory.getNumTimeSteps();
        for (int i = 0; i < numSteps; ++i) {
            if (interruptedAt(i, numSteps)) return false;
            if (moleculeUse == FrameMolecule::own) molecule = new Molecule(trajectory.getTopology(), false);
            trajectory.getTimeStep(i, molecule);
            writeFrame<Header>(i, molecule->coords, molecule->getNumAtoms(), file);
        }
        return true;
    }
    bool interruptedAt(int step, int numSteps) const {
        constexpr int stepsPerProgress = 100;
        if (!progress || step % stepsPerProgress != 0) return false;
        if (progress->wasInterrupted(1) != 0) return true;
        progress->setProgressValue(static_cast<float>(static_cast<double>(step) / numSteps));
        progress->setProgressInfo("writing timestep %d of %d", step, numSteps);
        return false;
    }

    MolTrajectory& trajectory;
    McHandle<Molecule> molecule;
    FrameMolecule moleculeUse;
    McProgressInterface* progress;
};

/// The work of the writers of both precisions.
template <class Header>
int writeTrajectory(MolTrajectory* trajectory, char const* fileName, FrameMolecule use, std::ostream* messages,
                    McProgressInterface* progress) {
    if (!trajectory) {
        report(messages, "Empty molecule!\n");
        return -1;
    }
    WorkingPhase const phase(progress, "writing trajectory...");
    McHandle<Molecule> const molecule(new Molecule(trajectory->getTopology(), false));
    trajectory->getTimeStep(0, molecule);
    if (!isWritable(molecule)) return -1;
    StructureNames const names(fileName);
    McString const trr = McString(fileName) + ".trr";
    TargetFiles files{names.gro, names.top, trr};
    if (!files.canBeWritten() || !writeStructure(*molecule, names)) return -1;
    int const result = FrameWriter<Header>(*trajectory, molecule, use, progress).write(trr);
    if (result >= 0) files.keep();
    return result;
}

} // namespace tarnex::gromacs
