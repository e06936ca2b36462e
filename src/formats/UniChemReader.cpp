#include "chemistry/ElementTable.h"
#include "formats/UniChemIO.h"
#include "formats/uniChemRecords.h"
#include "foundation/Progress.h"
#include "foundation/report.h"

#include <algorithm>
#include <initializer_list>
#include <utility>

UniChemIO::UniChemIO(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

namespace {

using tarnex::Progress;

/// Turns the blocks of a file into a molecule. A block begins with its keyword as the scanner's last token and ends
/// with that of the next one.
class FileReader {
public:
    FileReader(tokenizer& fileScanner, Progress const& fileProgress) : scanner(fileScanner), progress(fileProgress) {}

    /// Null if the user stopped the work. Throws `Parse_Error` for a malformed file.
    McHandle<Molecule> read() {
        readHeader();
        passAttributes();
        if (scanner.equals("GEOMETRY") && !readGeometry()) return nullptr;
        if (scanner.equals("JOB")) passJob();
        if (!scanner.equals("END")) throw Parse_Error{"Keyword END expected"};
        if (molecule->coords.size < numAtoms) throw Parse_Error{"More atoms than the file can hold"};
        return std::move(molecule);
    }

private:
    void readHeader();
    void makeMolecule();
    void passAttributes();
    bool readGeometry();
    bool readAtoms();
    void passInternals();
    bool readBonds();
    void addBond(tarnex::unichem::BondLine const& line);
    void passJob();

    void nextKeyword() {
        scanner.nextLine();
        scanner.getNextToken();
    }

    /// At some of the lines of a block, which is one half of the work, reports how far it is; true if the user asked to
    /// stop.
    bool interruptedAt(int line, int linesOfBlock, double workBefore) const {
        if (!progress || line % tarnex::unichem::linesPerProgress != 0) return false;
        float const part = static_cast<float>(line) / static_cast<float>(linesOfBlock);
        return progress.interruptedAt(static_cast<float>(static_cast<double>(part) * 0.5 + workBefore));
    }

    tokenizer& scanner;
    Progress const& progress;
    molchem::ElementTable const& elements = tarnex::elementTable();

    int numAtoms = 0;
    MolTopology* topology = nullptr;
    McHandle<Molecule> molecule;
    MtIntegerAttribute* atomicNumbers = nullptr;
    MtFloatAttribute* radii = nullptr;
    MtIntegerAttribute* bondTypes = nullptr;
};

void FileReader::readHeader() {
    scanner.getToken();
    while (!scanner.equals("STRUCTURE")) {
        scanner.nextLine();
        scanner.getToken();
        if (scanner.eof) throw Parse_Error{"End of file reached without STRUCTURE expression"};
    }
    numAtoms = tarnex::unichem::CountLine::read(scanner).count;
    makeMolecule();
    scanner.nextLine();
    nextKeyword();
}

void FileReader::makeMolecule() {
    topology = new MolTopology;
    molecule = new Molecule(topology, true);
    topology->prepLevelSize(0, scanner.believableCount(numAtoms));
    molecule->coords.resize(scanner.believableCount(numAtoms));
    std::fill(molecule->coords.begin(), molecule->coords.end(), McVec3f(0.0F, 0.0F, 0.0F));
    MtGroupingLevel* atoms = topology->getLevel(0);
    atomicNumbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    radii = atoms->floatAttribute("radius", MtGroupingLevel::CREATE, true);
    MtGroupingLevel* bonds = topology->getLevel(1);
    bonds->clearFlag(MtGroupingLevel::flagBit0);
    bondTypes = bonds->integerAttribute("type", MtGroupingLevel::CREATE, true);
}

void FileReader::passAttributes() {
    if (scanner.equals("SERIES_ELEMENT")) nextKeyword();
    if (!scanner.equals("ATTRIBUTES")) return;
    scanner.getNextToken();
    auto const isBehind = [this] {
        return scanner.equals("GEOMETRY") || scanner.equals("JOB") || scanner.equals("END");
    };
    while (!isBehind() && !scanner.eof) nextKeyword();
}

bool FileReader::readGeometry() {
    nextKeyword();
    if (scanner.equals("COORDINATES") && !readAtoms()) return false;
    if (scanner.equals("INTERNALS")) passInternals();
    while (scanner.equals("BONDS")) {
        if (!readBonds()) return false;
    }
    return true;
}

bool FileReader::readAtoms() {
    scanner.getToken();
    scanner.nextLine();
    progress.info("Parsing coordinates block.");
    // Here and below, lines behind the end of the file are none: the keyword that ends the file is missing then.
    for (int i = 0; i < molecule->coords.size && !scanner.eof; ++i) {
        if (interruptedAt(i, numAtoms, 0.0)) return false;
        auto const line = tarnex::unichem::AtomLine::read(scanner);
        molchem::Element const* element = elements.getElement(line.atomicNumber);
        int const atom = topology->addGroup(0, new (topology->groupPool) MtAtom).groupIx;
        atomicNumbers->setValue(atom, element->getAtomicNumber());
        radii->setValue(atom, element->getRadius());
        molecule->coords[atom] = line.position;
        scanner.nextLine();
    }
    scanner.getNextToken();
    return true;
}

void FileReader::passInternals() {
    auto const internals = tarnex::unichem::CountLine::read(scanner);
    scanner.nextLine();
    scanner.skipLines(internals.count);
    scanner.getNextToken();
}

bool FileReader::readBonds() {
    nextKeyword();
    if (!scanner.equals("MOLECULE")) throw Parse_Error{"Keyword MOLECULE expected"};
    int const numBonds = tarnex::unichem::CountLine::read(scanner).count;
    topology->prepLevelSize(1, scanner.believableCount(numBonds));
    scanner.nextLine();
    progress.info("Parsing bonds block.");
    for (int i = 0; i < numBonds && !scanner.eof; ++i) {
        if (interruptedAt(i + 1, numBonds, 0.5)) return false;
        addBond(tarnex::unichem::BondLine::read(scanner));
        scanner.nextLine();
    }
    scanner.getNextToken();
    return true;
}

void FileReader::addBond(tarnex::unichem::BondLine const& line) {
    auto const isAtom = [this](int number) { return number >= 1 && number <= topology->levels[0]->groups.size; };
    if (!isAtom(line.firstAtom) || !isAtom(line.secondAtom)) return;
    int const bond =
        topology->addBond(new (topology->groupPool) MtBond(line.firstAtom - 1, line.secondAtom - 1)).groupIx;
    bondTypes->setValue(bond, line.type);
}

void FileReader::passJob() {
    do {
        nextKeyword();
        if (scanner.eof) throw Parse_Error{"End of file before JOB statement was ended"};
    } while (!scanner.equals("END"));
}

} // namespace

Molecule* UniChemIO::readUniChemMolecule(char const* filename) {
    tokenizer scanner(filename);
    if (!scanner.isOpen()) {
        tarnex::report(messages, "Could not load \"", filename ? filename : "", "\"\n");
        return nullptr;
    }
    Progress const fileProgress(progress);
    tarnex::WorkingPhase const phase(fileProgress, "");
    try {
        return FileReader(scanner, fileProgress).read().handOut();
    } catch (Parse_Error const& error) {
        tarnex::report(messages, "The file ", filename, " is not a valid unichem file. ", error.message, " in line ",
                       scanner.lineNumber, ".\n");
        return nullptr;
    }
}
