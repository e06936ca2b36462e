#include "amber/AMBERread.h"
#include "formatFunctions.h"
#include "foundation/McFilename.h"
#include "model/MolTrajectoryMem.h"

#include <algorithm>
#include <cerrno>
#include <fstream>
#include <iterator>
#include <sstream>
#include <string_view>

namespace tarnex::tool {

namespace {

/// A topology with the files of coordinates that belong to it.
struct FileSet {
    std::string topology;
    FileNames coordinates;
    bool beganWithTopology;
};

bool holdsCoordinates(std::string const& file) {
    constexpr std::string_view extensions[] = {".crd", ".mdcrd", ".rst7", ".inpcrd", ".restrt"};
    return std::find(std::begin(extensions), std::end(extensions), extensionOf(file)) != std::end(extensions);
}

/// Coordinates follow their topology, or the topology follows them.
std::vector<FileSet> sortIntoSets(FileNames const& files) {
    std::vector<FileSet> sets;
    for (std::string const& file : files) {
        bool const isTopology = !holdsCoordinates(file);
        bool const isOpen =
            !sets.empty() && (sets.back().topology.empty() || (sets.back().beganWithTopology && !isTopology));
        if (!isOpen) sets.push_back({.topology = {}, .coordinates = {}, .beganWithTopology = isTopology});
        if (isTopology)
            sets.back().topology = file;
        else
            sets.back().coordinates.push_back(file);
    }
    return sets;
}

/// The count of atoms in the second line tells restart files from trajectories: all numbers of those have a point.
bool isRestartFile(std::string const& file) {
    std::ifstream stream(file);
    std::string title;
    std::string firstNumber;
    std::getline(stream, title);
    return stream >> firstNumber && firstNumber.find('.') == std::string::npos;
}

/// The reader takes any file for a topology.
void requireOldLayout(std::string const& file) {
    std::ifstream stream(file);
    std::string line;
    std::getline(stream, line);
    if (line.starts_with("%VERSION") || line.starts_with("%FLAG")) {
        throw Failure(file, "a topology in the newer layout with %FLAG sections; only the older layout, without them, "
                            "can be read");
    }
}

/// The topology with the state of its restart file. What that file gives cause for goes to `messages`.
McHandle<Molecule> readTopology(std::string const& file, std::ostream* messages) {
    requireOldLayout(file);
    McHandle<Molecule> molecule(AMBERread(messages, nullptr).readAmberMolecule(file.c_str()));
    if (!molecule) throw Failure(file, errno);
    if (molecule->getNumAtoms() == 0) throw Failure(file, "no atoms in it, or no AMBER topology in the older layout");
    return molecule;
}

void append(MolTrajectory* trajectory, std::string const& file, Document& document) {
    trajectory->getTopology()->setName(McFilename(file.c_str()).basename());
    document.bundle.append(trajectory);
}

void readRestart(std::string const& topology, std::string const& file, Document& document) {
    McHandle<Molecule> const molecule = readTopology(topology, nullptr);
    if (!AMBERread(nullptr, nullptr).readAmberCoords(molecule, file.c_str())) {
        throw Failure(file, "it does not have the number of atoms of its topology");
    }
    append(new MolTrajectoryMem(molecule, 1), file, document);
}

/// Whether the text from `begin` on, up to `end`, has the columns of a frame. Behind the last frame stands nothing.
bool isWholeFrame(std::string const& file, long begin, long end, int natoms) {
    constexpr long columnsPerAtom = 24;
    return begin == end ? !hasTextFrom(file, begin) : end - begin > columnsPerAtom * natoms;
}

/// Any text gives frames. Those that do not come out even are of another topology, or have lines of box sizes.
void requireWholeFrames(std::string const& file, int natoms, Document& document) {
    McDArray<long> positions;
    int const count = AMBERread(nullptr, nullptr).readAmber_TrajCoords(positions, natoms, file.c_str());
    if (count == 0) throw Failure(file, "no frames in it");
    for (int i = 0; i < count; ++i) {
        if (isWholeFrame(file, positions[i], positions[std::min(i + 1, count - 1)], natoms)) continue;
        document.damage.emplace_back(file, "frame " + std::to_string(i + 1) +
                                               " lacks numbers or its last line end; frames with lines of box sizes "
                                               "cannot be read");
        return;
    }
}

/// A topology alone has the state of its restart file. That is step 0 of a trajectory as well.
void readWithRestart(std::string const& topology, std::string const* trajectoryFile, Document& document,
                     Console& console) {
    std::ostringstream messages;
    McHandle<Molecule> const molecule = readTopology(topology, &messages);
    if (trajectoryFile) {
        requireWholeFrames(*trajectoryFile, molecule->getNumAtoms(), document);
        append(AMBERread(nullptr, nullptr).readAmberMolTrajectory(trajectoryFile->c_str(), topology.c_str(), nullptr),
               *trajectoryFile, document);
    } else {
        append(new MolTrajectoryMem(molecule, 1), topology, document);
    }
    std::string reason = messages.str();
    if (reason.empty()) return;
    if (reason.ends_with("\n")) reason.pop_back();
    console.note(topology + ": all positions" + (trajectoryFile ? " of step 0" : "") +
                 " are 0, since its restart file cannot be used: " + reason);
}

void readSet(FileSet const& set, Document& document, Console& console) {
    if (set.topology.empty()) throw Failure(set.coordinates.front(), "has to be read together with its topology");
    if (set.coordinates.empty()) readWithRestart(set.topology, nullptr, document, console);
    for (std::string const& file : set.coordinates) {
        console.throwIfInterrupted();
        if (isRestartFile(file))
            readRestart(set.topology, file, document);
        else
            readWithRestart(set.topology, &file, document, console);
    }
}

} // namespace

void readAmber(FileNames const& files, Document& document, Console& console) {
    for (FileSet const& set : sortIntoSets(files)) readSet(set, document, console);
}

} // namespace tarnex::tool
