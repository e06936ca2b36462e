#include "chemistry/ElementTable.h"
#include "foundation/Progress.h"
#include "foundation/ShortText.h"
#include "foundation/report.h"
#include "model/MolTrajectoryMem.h"
#include "model/MtListGroups.h"
#include "textio/numberText.h"
#include "tripos/AtomIds.h"
#include "tripos/TriposIO.h"
#include "tripos/records.h"

#include <algorithm>
#include <string>
#include <string_view>
#include <utility>

TriposIO::TriposIO(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

namespace {

using tarnex::Progress;

/// Moves to the next line whose first token is `record`; false at the end of the file.
bool findRecord(tokenizer& scanner, char const* record) {
    scanner.getToken();
    while (!scanner.equals(record)) {
        scanner.nextLine();
        if (scanner.eof) return false;
        scanner.getToken();
    }
    return true;
}

/// The element of a symbol; no symbol has three characters.
molchem::Element const* elementOf(std::string_view symbol) {
    auto const at = [symbol](std::size_t i) { return i < symbol.size() ? symbol[i] : '\0'; };
    char const start[] = {at(0), at(1), at(2), '\0'};
    return tarnex::elementTable().getElement(start, false);
}

/// Sets a value that has no NUL in it.
void setText(MtStringAttribute* attribute, int group, std::string_view text) {
    if (text.size() <= tarnex::ShortText::maxLength)
        attribute->setValue(group, tarnex::ShortText(text.data(), text.size()));
    else
        attribute->setValue(group, std::string(text).c_str());
}

/// Turns the lines of the molecules, one after the other, into groups and attributes.
class MoleculeReader {
public:
    MoleculeReader(tokenizer& fileScanner, Progress const& fileProgress)
        : scanner(fileScanner), progress(fileProgress) {}

    /// Reads what follows the line of the molecule record. Null if the user stopped the work. Throws `Parse_Error` for
    /// a malformed molecule.
    MolTrajectory* read() {
        topology = new MolTopology(std::move(pool));
        readHeader();
        if (!readAtoms() || !readBonds()) return nullptr;
        pool = std::move(topology->groupPool);
        return new MolTrajectoryMem(topology, std::move(coords));
    }

private:
    void readHeader();
    void makeRoom();
    void makeAttributes(tarnex::tripos::TypeLines const& types);
    void makeResidues(bool isSmall);
    bool readAtoms();
    void addAtom(tarnex::tripos::AtomLine const& line);
    void addToResidue(int atom, tarnex::tripos::AtomLine const& line);
    bool readBonds();
    bool readBond();

    /// At some of the lines of a block, reports how far the work is; true if the user asked to stop.
    bool interruptedAt(int line, int linesOfBlocksBefore) const {
        if (!progress || line % tarnex::tripos::linesPerProgress != 0) return false;
        return progress.interruptedAt(static_cast<float>(linesOfBlocksBefore + line) /
                                      static_cast<float>(std::int64_t{counts.numAtoms} + counts.numBonds));
    }

    tokenizer& scanner;
    Progress const& progress;

    tarnex::GroupPool pool; // between two molecules
    McHandle<MolTopology> topology;
    McDArray<McVec3f> coords;
    tarnex::tripos::CountsLine counts;
    tarnex::tripos::AtomColumns columns;
    tarnex::tripos::AtomLine::Texts texts;
    tarnex::tripos::AtomIds atomIds;

    MtIntegerAttribute* atomicNumbers = nullptr;
    MtStringAttribute* atomTypes = nullptr;
    MtFloatAttribute* radii = nullptr;
    MtStringAttribute* atomNames = nullptr;
    MtFloatAttribute* charges = nullptr;
    MtIntegerAttribute* bondTypes = nullptr;
    MtStringAttribute* residueTexts = nullptr;
    int residuesIx = -1;
    int residueIx = -1;
    MtIntraLevelRange* residue = nullptr;
    int highestSubstructure = 0;
};

void MoleculeReader::readHeader() {
    scanner.nextLine();
    topology->setData(new (topology->groupPool) MolDataString("name", scanner.getLineString()));
    scanner.nextLine();
    counts = tarnex::tripos::CountsLine::read(scanner);
    // The search for the atoms goes on from here, since an empty line may stand in the place of the types.
    reader::Place const behindCounts = scanner.place();
    auto const types = tarnex::tripos::TypeLines::read(scanner);
    columns = {counts.numSubstructures > 0, types.hasCharges};
    makeAttributes(types);
    makeRoom();
    scanner.returnTo(behindCounts);
}

void MoleculeReader::makeAttributes(tarnex::tripos::TypeLines const& types) {
    MtGroupingLevel* atoms = topology->getLevel(0);
    atoms->clearFlag(MtGroupingLevel::flagBit5);
    atomicNumbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    atomTypes = atoms->stringAttribute("type", MtGroupingLevel::CREATE, true);
    radii = atoms->floatAttribute("radius", MtGroupingLevel::CREATE, true);
    atomNames = atoms->stringAttribute("name", MtGroupingLevel::CREATE, true);
    if (columns.charge) charges = atoms->floatAttribute("charge", MtGroupingLevel::CREATE, true);
    MtGroupingLevel* bonds = topology->getLevel(1);
    bonds->clearFlag(MtGroupingLevel::flagBit5);
    bonds->clearFlag(MtGroupingLevel::flagBit0);
    bondTypes = bonds->integerAttribute("type", MtGroupingLevel::CREATE, true);
    residuesIx = -1;
    if (columns.substructure) makeResidues(types.molecule == tarnex::tripos::TypeLines::SMALL);
}

void MoleculeReader::makeResidues(bool isSmall) {
    residuesIx = topology->addLevel("residues", 0, 12, -1);
    MtGroupingLevel* residues = topology->getLevel(residuesIx);
    residues->clearFlag(MtGroupingLevel::flagBit5);
    residueTexts = residues->stringAttribute(isSmall ? "name" : "type", MtGroupingLevel::CREATE, true);
    residue = nullptr;
    residueIx = -1;
    highestSubstructure = 0;
}

/// No count is believed beyond what the file can hold.
void MoleculeReader::makeRoom() {
    int const numAtoms = scanner.believableCount(counts.numAtoms);
    topology->prepLevelSize(0, numAtoms);
    coords.resize(numAtoms);
    topology->prepLevelSize(1, scanner.believableCount(counts.numBonds));
    topology->prepLevelSize(residuesIx, std::min(counts.numSubstructures, numAtoms));
}

bool MoleculeReader::readAtoms() {
    atomIds.clear();
    if (counts.numAtoms == 0) return true;
    if (!findRecord(scanner, tarnex::tripos::atomRecord)) throw Parse_Error{"Could not find @<TRIPOS>ATOM record"};
    if (coords.size < counts.numAtoms) throw Parse_Error{"More atoms than the file can hold"};
    scanner.nextLine();
    progress.info("Parsing ATOM block");
    for (int i = 0; i < counts.numAtoms; ++i) {
        addAtom(tarnex::tripos::AtomLine::read(scanner, columns, texts));
        if (interruptedAt(i, 0)) return false;
        scanner.nextLine();
    }
    return true;
}

void MoleculeReader::addAtom(tarnex::tripos::AtomLine const& line) {
    int const atom = topology->addGroup(0, new (topology->groupPool) MtAtom).groupIx;
    coords[atom] = line.position;
    char id[tarnex::numberTextRoom];
    setText(atomNames, atom, {id, static_cast<std::size_t>(tarnex::putInt(id, line.id) - id)});
    setText(atomTypes, atom, line.name);
    molchem::Element const* element = elementOf(line.element);
    atomicNumbers->setValue(atom, element->getAtomicNumber());
    radii->setValue(atom, element->getRadius());
    atomIds.append(line.id);
    if (columns.substructure && line.substructure > 0) addToResidue(atom, line);
    if (columns.charge) charges->setValue(atom, line.charge);
}

/// The order of the atoms decides: an id that comes back belongs to the last residue, too.
void MoleculeReader::addToResidue(int atom, tarnex::tripos::AtomLine const& line) {
    if (line.substructure > highestSubstructure) {
        highestSubstructure = line.substructure;
        residue = new (topology->groupPool) MtIntraLevelRange(0, atom, atom);
        residueIx = topology->addGroup(residuesIx, residue).groupIx;
    } else {
        residue->last = atom;
    }
    if (line.substructureName != residueTexts->getValue(residueIx)) {
        setText(residueTexts, residueIx, line.substructureName);
    }
}

bool MoleculeReader::readBonds() {
    if (counts.numBonds == 0) return true;
    if (!findRecord(scanner, tarnex::tripos::bondRecord)) throw Parse_Error{"Could not find @<TRIPOS>BOND record"};
    scanner.nextLine();
    progress.info("Parsing BOND block");
    // Lines behind the end of the file hold no bonds.
    for (int i = 0; i < counts.numBonds && !scanner.eof; ++i) {
        if (readBond() && interruptedAt(i, counts.numAtoms)) return false;
        scanner.nextLine();
    }
    return true;
}

/// False if the first atom is unknown. A bond without a second one is dropped as well.
bool MoleculeReader::readBond() {
    tarnex::tripos::BondLine line;
    tarnex::LineTokens tokens(scanner, tarnex::tripos::BondLine::numTokens);
    line.readFirstAtom(tokens);
    int const first = atomIds.find(line.firstAtom);
    if (first < 0) return false;
    line.readSecondAtom(tokens);
    int const second = line.secondAtom > 0 ? atomIds.find(line.secondAtom) : -1;
    if (second < 0) return true;
    line.readType(tokens);
    int const bond = topology->addBond(new (topology->groupPool) MtBond(first, second)).groupIx;
    bondTypes->setValue(bond, line.type);
    return true;
}

} // namespace

bool TriposIO::readTriposBundle(char const* filename, McDArray<McHandle<MolTrajectory>>& result) {
    tokenizer scanner(filename);
    if (!scanner.isOpen()) {
        tarnex::report(messages, "Could not load \"", filename ? filename : "", "\"\n");
        return false;
    }
    Progress const fileProgress(progress);
    tarnex::WorkingPhase const phase(fileProgress, "");
    try {
        MoleculeReader moleculeReader(scanner, fileProgress);
        while (findRecord(scanner, tarnex::tripos::moleculeRecord)) {
            McHandle<MolTrajectory> const trajectory = moleculeReader.read();
            if (!trajectory) return false;
            MolTopology* topology = trajectory->getTopology();
            auto const* name = static_cast<MolDataString const*>(topology->getData("name"));
            tarnex::report(messages, "Molecule ", name->getValue().data, " successfully imported.\n");
            topology->setName(name->getValue());
            result.append(trajectory);
        }
        if (result.size > 0) return true;
        // The search has closed the phase already; hosts that count hear of it twice.
        fileProgress.stop();
        throw Parse_Error{"End of file reached without @<TRIPOS>MOLECULE record"};
    } catch (Parse_Error const& error) {
        tarnex::report(messages, "The file ", filename, " is not a valid mol2 file. ", error.message, " in line ",
                       scanner.lineNumber, ".\n");
        return false;
    }
}

Molecule* TriposIO::readTriposMolecule(char const* filename) {
    McDArray<McHandle<MolTrajectory>> bundle;
    if (!readTriposBundle(filename, bundle) || bundle.size == 0) return nullptr;
    McHandle<Molecule> molecule(new Molecule(bundle[0]->getTopology(), true));
    return bundle[0]->getTimeStep(0, molecule) ? molecule.handOut() : nullptr;
}
