#include "CheckedSteps.h"
#include "DivertedOutput.h"
#include "StepFile.h"
#include "chemistry/ElementTable.h"
#include "formatFunctions.h"
#include "formats/MolTrajectoryXYZ.h"
#include "foundation/McFilename.h"
#include "model/Molecule.h"
#include "text.h"

#include <cctype>
#include <cerrno>

namespace tarnex::tool {

namespace {

AtomDataBase elementsAsAtomTable() {
    constexpr int lastElement = 118;
    AtomDataBase table;
    for (int number = 1; number <= lastElement; ++number) {
        molchem::Element const& element = *elementTable().getElement(number);
        table.appendAtom(number, element.getRadius(), element.getSymbol());
    }
    return table;
}

void readXyzFile(std::string const& file, Document& document) {
    AtomDataBase table = elementsAsAtomTable();
    auto* xyz = new MolTrajectoryXYZ(nullptr, &table);
    McHandle<MolTrajectory> const trajectory(xyz);
    {
        // A point for each frame.
        SilentOutput const points(stderr);
        if (!xyz->readXYZMolTrajectory(file.c_str())) throw Failure(file, errno);
    }
    int const steps = xyz->getNumTimeSteps();
    if (steps == 0) throw Failure(file, "no whole frame that begins with its number of atoms");
    xyz->getTopology()->setName(McFilename(file.c_str()).basename());
    document.bundle.append(new CheckedSteps(xyz, xyz->getTopology()));
    if (xyz->isWhole()) return;
    std::string const atoms = std::to_string(xyz->getTopology()->levels[0]->groups.size);
    document.damage.emplace_back(file, "behind frame " + std::to_string(steps) + ": not a whole frame of " + atoms +
                                           " atoms");
}

/// The words of the atom lines: symbols of the elements, and for atoms without an element what an XYZ file called them.
std::vector<std::string> wordsOf(MolTopology& topology) {
    MtGroupingLevel& atoms = *topology.levels[0];
    MtIntegerAttribute const* numbers = atoms.integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    MtStringAttribute const* names = atoms.stringAttribute("atom_type_name", MtGroupingLevel::FIND, true);
    std::vector<std::string> words;
    for (int atom = 0; atom < atoms.groups.size; ++atom) {
        molchem::Element const& element = *elementTable().getElement(numbers ? numbers->getValue(atom) : 0);
        std::string word = names ? names->getValue(atom) : "";
        if (word.empty() || element.getAtomicNumber() > 0) word = element.getSymbol();
        for (char& c : word) {
            if (std::isspace(static_cast<unsigned char>(c))) c = '_';
        }
        words.push_back(word);
    }
    return words;
}

void writeFrame(Molecule const& molecule, std::vector<std::string> const& words, std::string const& title,
                StepFile& out) {
    out.line = std::to_string(words.size());
    out.endLine();
    out.line = title;
    out.endLine();
    for (std::size_t atom = 0; atom < words.size(); ++atom) {
        out.line = words[atom];
        if (out.line.size() < 2) out.line.append(2 - out.line.size(), ' ');
        out.addPlace(molecule.coords[static_cast<std::int64_t>(atom)]);
        out.endLine();
    }
}

} // namespace

void readXyz(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) {
        console.throwIfInterrupted();
        readXyzFile(file, document);
    }
}

void writeXyz(Bundle const& bundle, OutputFile const& output, Console&) {
    MolTrajectory& trajectory = onlyTrajectory(bundle, output, "an XYZ file holds");
    MolTopology& topology = *trajectory.getTopology();
    std::vector<std::string> const words = wordsOf(topology);
    std::string const title = printable(topology.getName());
    McHandle<Molecule> const molecule(new Molecule(&topology, false));
    StepFile out(output);
    for (int step = 0; step < trajectory.getNumTimeSteps(); ++step) {
        if (!trajectory.getTimeStep(step, molecule)) throw Failure(output.name(), "a step cannot be read");
        writeFrame(*molecule, words, title, out);
    }
    out.finish();
}

} // namespace tarnex::tool
