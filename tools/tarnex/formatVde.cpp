#include "CheckedSteps.h"
#include "StepFile.h"
#include "formatFunctions.h"
#include "formats/MolTrajectoryVDE.h"
#include "foundation/McFilename.h"
#include "model/Molecule.h"
#include "model/members.h"
#include "text.h"
#include "textio/StreamExtractor.h"

#include <filesystem>
#include <fstream>

namespace tarnex::tool {

namespace {

/// The colours that readers know, as red, green and blue.
struct ElementColour {
    int atomicNumber;
    char const* colour;
};

constexpr ElementColour elementColours[] = {{1, "1.0 1.0 1.0"}, {6, "0.0 1.0 0.0"},  {7, "0.0 0.0 1.0"},
                                            {8, "1.0 0.0 0.0"}, {15, "0.5 0.5 0.5"}, {16, "1.0 1.0 0.0"}};
constexpr char const* otherColour = "1.0 0.0 1.0";

char const* colourOf(int atomicNumber) {
    for (ElementColour const& element : elementColours) {
        if (element.atomicNumber == atomicNumber) return element.colour;
    }
    return otherColour;
}

/// What is the same in all steps.
struct Picture {
    std::vector<char const*> colours;
    std::vector<std::pair<int, int>> bonds;

    explicit Picture(MolTopology const& topology) {
        MtGroupingLevel& atoms = *topology.levels[0];
        MtIntegerAttribute const* numbers = atoms.integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
        for (int atom = 0; atom < atoms.groups.size; ++atom) {
            colours.push_back(colourOf(numbers ? numbers->getValue(atom) : 0));
        }
        for (MtGroup const* bond : topology.levels[1]->groups) {
            int first = 0;
            int second = 0;
            if (getExistingBondAtoms(topology, bond, first, second)) bonds.emplace_back(first, second);
        }
    }

    void write(Molecule const& molecule, OutputFile const& output) const {
        StepFile out(output);
        out.line = std::to_string(colours.size());
        out.endLine();
        for (std::size_t atom = 0; atom < colours.size(); ++atom) {
            out.addPlace(molecule.coords[static_cast<std::int64_t>(atom)]);
            out.line.append(" ").append(colours[atom]).append(" 1.0");
            out.endLine();
        }
        out.line = std::to_string(bonds.size());
        out.endLine();
        for (auto const& [first, second] : bonds) {
            out.addPlace(molecule.coords[first]);
            out.addPlace(molecule.coords[second]);
            out.endLine();
        }
        out.finish();
    }
};

bool passNumbers(StreamExtractor& in, long long count) {
    float unused = 0.0F;
    for (; count > 0 && in >> unused; --count) {
    }
    return count <= 0;
}

/// Reads the file as its class does, which tells of nothing that it lacks. Why it is no whole picture; empty if it is.
/// Its atoms are counted.
std::string faultOf(std::string const& file, int& atoms, Console& console) {
    std::ifstream stream(file, std::ios::binary);
    StreamExtractor in(stream);
    std::string const notWhole = "holds less, or something other than numbers, ahead of the end of its ";
    if (!(in >> atoms) || atoms <= 0) return "no number of atoms in its first line, or no atoms";
    in.ignoreLineInPieces();
    if (!passNumbers(in, 7LL * atoms)) return notWhole + counted(atoms, "atom");
    int bonds = 0;
    if (!(in >> bonds)) {
        if (!in.eof()) return "no number of bonds behind its " + counted(atoms, "atom");
        console.note(file + ": ends behind its atoms, without a number of bonds");
        return "";
    }
    in.ignoreLineInPieces();
    return passNumbers(in, 6LL * bonds) ? "" : notWhole + counted(bonds, "bond");
}

/// The files that can be steps of one trajectory. The others are damage.
FileNames wholePictures(FileNames const& files, Document& document, Console& console) {
    FileNames whole;
    int atomsOfFirst = 0;
    for (std::size_t i = 0; i < files.size(); ++i) {
        console.throwIfInterrupted();
        console.setProgressValue(static_cast<float>(i) / static_cast<float>(files.size()));
        int atoms = 0;
        std::string fault = faultOf(files[i], atoms, console);
        if (whole.empty()) atomsOfFirst = atoms;
        if (fault.empty() && atoms != atomsOfFirst)
            fault =
                "holds " + counted(atoms, "atom") + ", and " + whole.front() + " holds " + std::to_string(atomsOfFirst);
        if (fault.empty())
            whole.push_back(files[i]);
        else
            document.damage.emplace_back(files[i], fault);
    }
    return whole;
}

/// "run.vde" and the step 3 of 100 steps make "run-003.vde".
std::string nameOfStep(std::string const& name, int step, int steps) {
    std::filesystem::path path(name);
    std::string number = std::to_string(step);
    number.insert(0, std::to_string(steps - 1).size() - number.size(), '0');
    path.replace_filename(path.stem().string() + "-" + number + path.extension().string());
    return path.string();
}

} // namespace

/// All files are the steps of one trajectory. Its bonds are those of the first step.
void readVde(FileNames const& files, Document& document, Console& console) {
    FileNames const whole = wholePictures(files, document, console);
    if (whole.empty()) throw Failure(document.damage.front());
    std::vector<char const*> names;
    for (std::string const& file : whole) names.push_back(file.c_str());
    auto* vde = new MolTrajectoryVDE(nullptr, nullptr);
    McHandle<MolTrajectory> const trajectory(vde);
    vde->readVDEMolTrajectory(static_cast<int>(names.size()), names.data());
    McHandle<Molecule> const first(new Molecule(vde->getTopology(), false));
    vde->getTimeStep(0, first);
    first->getTopology()->setName(McFilename(names.front()).basename());
    document.bundle.append(new CheckedSteps(vde, first->getTopology()));
}

/// The first step gets the name of the output, each further one a name of its own. All appear when all are whole.
void writeVde(Bundle const& bundle, OutputFile& output, Console&) {
    MolTrajectory& trajectory = onlyTrajectory(bundle, output, "VDE files hold");
    int const steps = trajectory.getNumTimeSteps();
    if (steps > 1 && !output.isPlainFile())
        throw Failure(output.name(), "VDE needs a file for each step; take one by --frames");
    Picture const picture(*trajectory.getTopology());
    McHandle<Molecule> const molecule(new Molecule(trajectory.getTopology(), false));
    std::vector<OutputFile const*> files = {&output};
    for (int step = 1; step < steps; ++step) files.push_back(&output.addBeside(nameOfStep(output.name(), step, steps)));
    for (int step = 0; step < steps; ++step) {
        if (!trajectory.getTimeStep(step, molecule)) throw Failure(output.name(), "a step cannot be read");
        picture.write(*molecule, *files[static_cast<std::size_t>(step)]);
    }
}

} // namespace tarnex::tool
