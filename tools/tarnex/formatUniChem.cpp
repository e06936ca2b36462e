#include "TextOutput.h"
#include "formatFunctions.h"
#include "formats/UniChemIO.h"
#include "foundation/McFilename.h"
#include "model/MolTrajectoryMem.h"
#include "text.h"

#include <sstream>

namespace tarnex::tool {

namespace {

void readUniChemFile(std::string const& file, Document& document, Console& console) {
    std::ostringstream messages;
    McHandle<Molecule> const molecule(UniChemIO(&messages, &console).readUniChemMolecule(file.c_str()));
    console.throwIfInterrupted();
    if (!molecule) throw Failure(file, reasonInMessages(messages.str()));
    // Without a table of coordinates there are no atoms either.
    molecule->coords.resize(molecule->getNumAtoms());
    document.bundle.append(new MolTrajectoryMem(molecule, 1));
    molecule->getTopology()->setName(McFilename(file.c_str()).basename());
}

} // namespace

void readUniChem(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) readUniChemFile(file, document, console);
}

void writeUniChem(Bundle const& bundle, OutputFile const& output, Console& console) {
    MolTrajectory& trajectory = onlyTrajectory(bundle, output, "a UniChem file holds");
    int const numSteps = trajectory.getNumTimeSteps();
    if (numSteps != 1) {
        throw Failure(output.name(),
                      "a UniChem file holds one step, here are " + std::to_string(numSteps) + "; --frames picks one");
    }
    McHandle<Molecule> const molecule(new Molecule(trajectory.getTopology(), false));
    if (!trajectory.getTimeStep(0, molecule)) throw Failure(output.name(), "the step cannot be read");
    TextOutput file(output);
    std::string const title = file.title();
    UniChemIO(nullptr, &console).writeUniChemMolecule(molecule, title.c_str(), file.text());
    console.throwIfInterrupted();
    file.finish();
}

} // namespace tarnex::tool
