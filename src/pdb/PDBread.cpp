#include "pdb/PDBread.h"

#include "chemistry/BondCalc.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "model/MolTrajectoryMem.h"
#include "pdb/MolTrajectoryPDB.h"
#include "pdb/MoleculeBuilder.h"
#include "pdb/PDBScan.h"
#include "pdb/SecondaryStructureBuilder.h"
#include "pdb/identifiers.h"
#include "textio/numberText.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <system_error>
#include <utility>

using tarnex::packed;
using tarnex::Progress;
using tarnex::pdb::AtomLine;
using tarnex::pdb::CardReader;
using tarnex::pdb::ConectLine;
using tarnex::pdb::HelixLine;
using tarnex::pdb::MoleculeBuilder;
using tarnex::pdb::PDBScan;
using tarnex::pdb::SecondaryStructureBuilder;
using tarnex::pdb::SheetLine;
using tarnex::pdb::SiteLine;
using tarnex::pdb::TurnLine;

namespace {

constexpr int atomsPerProgress = 100;
constexpr int bondLinesPerProgress = 30;
constexpr int secStructLinesPerProgress = 10;
constexpr int coordinatesPerProgress = 50;
constexpr char const* parsingAtoms = "Parsing ATOM and HETATM Records";
constexpr long usualLineLength = 81;

bool isValid(long first, long last) {
    return first >= 0 && first <= last;
}

bool isAtomRecord(std::uint64_t keyword) {
    return keyword == packed("ATOM") || keyword == packed("HETATM");
}

float fractionOf(long current, long first, long last) {
    return static_cast<float>(current - first) / static_cast<float>(last - first);
}

/// 0 if it is not known.
long sizeOf(char const* filename) {
    std::error_code unknown;
    auto const size = std::filesystem::file_size(filename, unknown);
    return unknown ? 0 : static_cast<long>(size);
}

/// Walks over the lines from one offset to another. The scanner stands behind the keyword of the current line.
class LineWalk {
public:
    LineWalk(CardReader& scanner, long firstLine, long lastLine)
        : in(scanner), first(firstLine), last(lastLine), current(firstLine) {
        in.setStreamPos(first);
        keyword = in.readKeyword();
    }

    /// Offsets that are not of this file lead beyond its end.
    bool atEnd() const { return current > last || in.eof; }
    void next() {
        in.nextLine();
        current = in.tell();
        keyword = in.readKeyword();
    }
    float fraction() const { return fractionOf(current, first, last); }

    std::uint64_t keyword;

private:
    CardReader& in;
    long first;
    long last;
    long current;
};

/// The passes over the records of one model. Each returns false if the user stopped the work.
class ModelPasses {
public:
    ModelPasses(CardReader& scanner, Molecule& moleculeToFill, Progress const& workProgress)
        : in(scanner), progress(workProgress), topology(moleculeToFill.getTopology()), builder(moleculeToFill) {}

    bool readAtoms(long first, long last, long sizeOfFile);
    bool readBonds(long first, long last);
    bool readSecondaryStructure(PDBread const& pdb, std::ostream* messages, long first, long last);

private:
    bool parseSecondaryStructure(std::uint64_t keyword, SecondaryStructureBuilder& structures);
    /// All passes count on from each other.
    bool interrupted(LineWalk const& lines, int linesPerProgress) const {
        return progress && lineCount % linesPerProgress == 0 && progress.interruptedAt(lines.fraction());
    }

    CardReader& in;
    Progress const& progress;
    MolTopology* topology;
    MoleculeBuilder builder;
    std::int64_t lineCount = 0;
};

bool ModelPasses::readAtoms(long first, long last, long sizeOfFile) {
    if (!isValid(first, last)) return true;
    progress.info(parsingAtoms);
    builder.expectAtoms(std::min(last - first, sizeOfFile) / usualLineLength + 1);
    for (LineWalk lines(in, first, last); !lines.atEnd();) {
        if (isAtomRecord(lines.keyword)) {
            ++lineCount;
            builder.addAtom(AtomLine(in.readCard()), lines.keyword == packed("HETATM"));
        } else if (lines.keyword == packed("TER")) {
            builder.endChain();
        }
        lines.next();
        if (interrupted(lines, atomsPerProgress)) return false;
    }
    return true;
}

bool ModelPasses::readBonds(long first, long last) {
    if (!isValid(first, last)) return true;
    progress.info("Parsing CONECT Records");
    progress.value(0.0F);
    for (LineWalk lines(in, first, last); !lines.atEnd();) {
        if (lines.keyword == packed("CONECT")) {
            ++lineCount;
            builder.addBonds(ConectLine::read(in));
        }
        lines.next();
        if (interrupted(lines, bondLinesPerProgress)) return false;
    }
    return true;
}

bool ModelPasses::readSecondaryStructure(PDBread const& pdb, std::ostream* messages, long first, long last) {
    if (!isValid(first, last)) return true;
    progress.info("Parsing HELIX/SHEET/TURN and SITE Records");
    progress.value(0.0F);
    molInfo info(topology);
    SecondaryStructureBuilder structures(pdb, messages, *topology, info);
    for (LineWalk lines(in, first, last); !lines.atEnd(); lines.next()) {
        if (parseSecondaryStructure(lines.keyword, structures)) ++lineCount;
        if (interrupted(lines, secStructLinesPerProgress)) return false;
    }
    return true;
}

/// False for a record of another kind.
bool ModelPasses::parseSecondaryStructure(std::uint64_t keyword, SecondaryStructureBuilder& structures) {
    switch (keyword) {
    case packed("HELIX"):
        structures.addHelix(HelixLine::read(in));
        return true;
    case packed("SHEET"):
        structures.addStrand(SheetLine::read(in));
        return true;
    case packed("TURN"):
        structures.addTurn(TurnLine::read(in));
        return true;
    case packed("SITE"):
        structures.addToSite(SiteLine::read(in));
        return true;
    default:
        return false;
    }
}

/// Appends the coordinates of one model; false if the user stopped the work.
bool appendCoordinates(CardReader& in, long first, long last, Progress const& progress, McDArray<McVec3f>& coords) {
    in.setStreamPos(first);
    std::uint64_t keyword = in.readKeyword();
    std::int64_t count = 0;
    for (long current = first; current <= last && !in.eof;) {
        McVec3f position;
        if (isAtomRecord(keyword)) {
            ++count;
            if (AtomLine::readPosition(in, position)) coords.append(position);
        }
        // Within the line: the fraction counts what has been read of it.
        current = in.tell();
        in.nextLine();
        keyword = in.readKeyword();
        if (progress && count % coordinatesPerProgress == 0 &&
            progress.interruptedAt(fractionOf(current, first, last))) {
            return false;
        }
    }
    return true;
}

bool perceiveBonds(Molecule* molecule) {
    McBitfield allAtoms(static_cast<unsigned long>(molecule->getNumAtoms()), McBitfield::CLEARED);
    allAtoms.setAll();
    return BondCalc::standardConnectSelection(molecule, allAtoms);
}

void updateSegmentation(MolTopology* topology) {
    int const secondaryStructure = topology->getLevelIx("secondary_structure");
    for (int i = 2; i < topology->levels.size; ++i) {
        if (i != secondaryStructure) topology->levels[i]->updateSegmentationFlag(topology, i);
    }
}

} // namespace

PDBread::PDBread(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

int PDBread::readPDBMolTrajectoryBundle(char const* filename, McDArray<McHandle<MolTrajectory>>& bundle) {
    McHandle<MolTrajectory> const trajectory = readTrajectory(filename);
    if (!trajectory) {
        bundle.clear();
        return 0;
    }
    bundle.append(trajectory);
    tarnex::report(messages, "Successfully imported.\n");
    return 1;
}

/// Null on failure.
McHandle<MolTrajectory> PDBread::readTrajectory(char const* filename) {
    CardReader in(filename);
    if (!in.isOpen()) {
        tarnex::report(messages, "Could not load \"", filename ? filename : "", "\"\n");
        return nullptr;
    }
    PDBScan const scan(in);
    if (!scan.hasModel()) {
        tarnex::report(messages, "The file ", filename, " contained no ATOM or HETATM records.\n");
        return nullptr;
    }
    if (scan.getNumModels() > 1) {
        McDArray<streamPositions> models = scan.positionsOfModels();
        return new MolTrajectoryPDB(filename, models);
    }
    Molecule molecule(new MolTopology, true);
    if (!readMolecule(&molecule, filename, scan.positionsOfModel(0), 0)) return nullptr;
    scan.storeHeader(*molecule.getTopology());
    return new MolTrajectoryMem(molecule.getTopology(), std::move(molecule.coords));
}

McHandle<Molecule> PDBread::readPDBMolecule(char const* filename) {
    McDArray<McHandle<MolTrajectory>> bundle;
    if (readPDBMolTrajectoryBundle(filename, bundle) == 0 || bundle[0]->getNumTimeSteps() == 0) return nullptr;
    McHandle<Molecule> molecule = new Molecule(bundle[0]->getTopology(), false);
    bundle[0]->getTimeStep(0, molecule);
    return molecule;
}

bool PDBread::readMolecule(Molecule* molecule, char const* filename, streamPositions const& positions, int) {
    CardReader in(filename);
    if (!in.isOpen()) {
        tarnex::report(messages, "Could not load \"", filename ? filename : "", "\"\n");
        return false;
    }
    Progress const readProgress(progress);
    tarnex::WorkingPhase const work(readProgress, "");
    ModelPasses passes(in, *molecule, readProgress);
    if (!passes.readAtoms(positions.atomFirst, positions.atomLast, sizeOf(filename)) ||
        !passes.readBonds(positions.conectFirst, positions.conectLast) ||
        !passes.readSecondaryStructure(*this, messages, positions.secStructFirst, positions.secStructLast) ||
        !perceiveBonds(molecule)) {
        return false;
    }
    updateSegmentation(molecule->getTopology());
    return true;
}

bool PDBread::readCoordinates(Molecule* molecule, char const* filename, streamPositions const& positions, int) {
    CardReader in(filename);
    if (!in.isOpen()) {
        tarnex::report(messages, "Could not load \"", filename ? filename : "", "\"\n");
        return false;
    }
    molecule->coords.resize(0);
    if (!isValid(positions.atomFirst, positions.atomLast)) return false;
    Progress const readProgress(progress);
    tarnex::WorkingPhase const work(readProgress, "");
    readProgress.info(parsingAtoms);
    if (!appendCoordinates(in, positions.atomFirst, positions.atomLast, readProgress, molecule->coords)) return false;
    if (molecule->coords.size == molecule->getNumAtoms()) return true;
    tarnex::report(messages, "Timestep corrupt. Fewer coordinates than atoms.\n");
    return false;
}

void PDBread::resIDConversion(char const* chain, int sequence, char const* insertionCode, char* result,
                              bool isHet) const {
    std::strcpy(result, isHet ? tarnex::pdb::hetPrefix : "");
    std::strcat(result, chain);
    *tarnex::putInt(result + std::strlen(result), sequence) = '\0';
    std::strcat(result, insertionCode);
}

void PDBread::chainIDConversion(char const* chain, char* result, bool isHet) const {
    std::strcpy(result, tarnex::pdb::isInUnnamedChain(chain, isHet) ? tarnex::pdb::unnamedChain : chain);
}

char* PDBread::chainIDConversion(char* chain, bool isHet) const {
    if (*chain == '\0') chainIDConversion("", chain, isHet);
    return chain;
}

void PDBread::parseHelixRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    SecondaryStructureBuilder(*this, messages, *topology, info).addHelix(HelixLine::read(in));
}

void PDBread::parseSheetRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    SecondaryStructureBuilder(*this, messages, *topology, info).addStrand(SheetLine::read(in));
}

void PDBread::parseTurnRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    SecondaryStructureBuilder(*this, messages, *topology, info).addTurn(TurnLine::read(in));
}

void PDBread::parseSiteRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    SecondaryStructureBuilder(*this, messages, *topology, info).addToSite(SiteLine::read(in));
}
