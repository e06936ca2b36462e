#include "formats/MolTrajectoryXYZ.h"

#include "foundation/report.h"
#include "model/Molecule.h"
#include "textio/StreamExtractor.h"

#include <algorithm>
#include <iostream>
#include <memory>
#include <string>
#include <string_view>
#include <unordered_map>
#include <utility>

namespace {

/// A count that a file cannot keep is believed up to here when room is reserved.
constexpr int mostReserved = 1000000;
constexpr std::streamoff largestBlock = 65536;
constexpr std::streamoff smallestBlock = 4096;

/// Rows of the host's table by name; of equal names the first row.
std::unordered_map<std::string_view, int> rowsByName(AtomDataBase* atomDataBase) {
    std::unordered_map<std::string_view, int> rows;
    int const size = atomDataBase ? static_cast<int>(atomDataBase->size()) : 0;
    for (int row = 0; row < size; ++row) rows.emplace(atomDataBase->getShortName(row).data, row);
    return rows;
}

/// False if lines are missing.
bool passLines(tarnex::StreamExtractor& in, int count) {
    for (int i = 0; i < count; ++i) {
        std::streamoff const begin = in.taken();
        if (in.good()) in.ignoreLineInPieces();
        if (in.taken() == begin) return false;
    }
    return true;
}

} // namespace

MolTrajectoryXYZ::MolTrajectoryXYZ(std::ostream* messageStream, AtomDataBase* dataBase)
    : messages(messageStream), atomDataBase(dataBase) {
    getTopology()->setName("XYZ");
}

MolTrajectory* MolTrajectoryXYZ::readXYZMolTrajectory(char const* filename) {
    char const* const name = filename ? filename : "";
    auto opened = std::make_unique<std::ifstream>(name);
    if (!*opened) {
        tarnex::report(messages, "Could not load \"", name, "\"\n");
        return nullptr;
    }
    delete std::exchange(stream, opened.release());
    topology = new MolTopology;
    framePositions.resize(0);
    whole = true;
    tarnex::StreamExtractor in(*stream);
    scanFrames(in);
    std::cerr << '\n';
    observables = new MolObservables;
    observables->setNumTimeSteps(getNumTimeSteps());
    return this;
}

void MolTrajectoryXYZ::scanFrames(tarnex::StreamExtractor& in) {
    int count = 0;
    for (int previous = 0; whole; previous = count) {
        in.skipWhiteSpace();
        if (in.eof()) return;
        whole = false;
        if (!(in >> count) || (framePositions.size > 0 && count != previous)) return;
        std::cerr << '.';
        whole = scanFrame(in, count);
    }
}

/// Passes over a frame, from behind its number of atoms on. False if the file ends in it. A frame counts nevertheless
/// if only lines are missing, but a place at the end of a file is none where a frame could begin.
bool MolTrajectoryXYZ::scanFrame(tarnex::StreamExtractor& in, int count) {
    in.ignoreLineInPieces();
    in.ignoreLineInPieces();
    if (in.fail()) return false;
    bool const hasPosition = in.good();
    std::streampos const position = in.taken();
    bool const hasAllLines = framePositions.size == 0 ? readAtoms(in, count) : passLines(in, count);
    if (!hasPosition || in.fail()) return false;
    framePositions.append(position);
    return hasAllLines;
}

bool MolTrajectoryXYZ::readAtoms(tarnex::StreamExtractor& in, int count) {
    MtGroupingLevel& atoms = *topology->levels[0];
    MtStringAttribute* names = atoms.stringAttribute("atom_type_name", MtGroupingLevel::CREATE, true);
    MtIntegerAttribute* numbers = atoms.integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    MtFloatAttribute* radii = atoms.floatAttribute("radius", MtGroupingLevel::CREATE, true);
    atoms.flags &= static_cast<unsigned char>(~MtGroupingLevel::flagBit5);
    topology->prepLevelSize(0, std::min(count, mostReserved));
    auto const rows = rowsByName(atomDataBase);
    std::string name;
    for (int i = 0; i < count && in.good(); ++i) {
        int const atom = topology->addGroup(0, new (topology->groupPool) MtAtom).groupIx;
        std::string_view word;
        in >> word;
        name = word;
        in.ignoreLineInPieces();
        names->setValue(atom, name.c_str());
        auto const row = rows.find(name.c_str());
        if (row == rows.end()) continue;
        numbers->setValue(atom, atomDataBase->getId(row->second));
        radii->setValue(atom, atomDataBase->getRadius(row->second));
    }
    return atoms.groups.size >= count;
}

void MolTrajectoryXYZ::notifyDelete() {
    delete stream;
    stream = nullptr;
}

int MolTrajectoryXYZ::getNumTimeSteps() const {
    return static_cast<int>(framePositions.size);
}

bool MolTrajectoryXYZ::getTimeStep(int step, Molecule* molecule) {
    if (!molecule) return false;
    molecule->setTopology(topology, false);
    if (step < 0 || step >= getNumTimeSteps()) return true;
    std::streampos const begin = framePositions[step];
    std::streamoff const frameSize = step + 1 < getNumTimeSteps() ? framePositions[step + 1] - begin : largestBlock;
    stream->clear();
    stream->seekg(begin);
    tarnex::StreamExtractor in(*stream, static_cast<std::size_t>(std::clamp(frameSize, smallestBlock, largestBlock)));
    std::string_view word;
    for (std::int64_t i = 0; i < molecule->coords.size && in.good(); ++i) {
        McVec3f& place = molecule->coords[i];
        in >> word >> place.x >> place.y >> place.z;
        in.ignoreLineInPieces();
    }
    return true;
}
