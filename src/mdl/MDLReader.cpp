#include "chemistry/ElementTable.h"
#include "foundation/McFilename.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "mdl/MDLIO.h"
#include "mdl/records.h"
#include "model/MolTrajectoryMem.h"

#include <cctype>
#include <cstring>
#include <string>
#include <utility>

namespace {

using tarnex::Progress;

constexpr char const* workTitle = "Reading SDF-Molecule";

/// Turns the lines of one record into the groups and attributes of a molecule.
class RecordReader {
public:
    RecordReader(Molecule& recordMolecule, MolTopology& recordTopology, lengthizer& recordScanner,
                 Progress const& recordProgress)
        : molecule(recordMolecule), topology(recordTopology), scanner(recordScanner), progress(recordProgress) {}

    /// False if the user stopped the work. Throws `Parse_Error` for a malformed record.
    bool read() {
        readCounts();
        makeAttributes();
        if (!readAtoms() || !readBonds()) return false;
        readDataItems();
        return true;
    }

private:
    void readCounts();
    void makeAttributes();
    bool readAtoms();
    void addAtom(tarnex::mdl::AtomLine const& line);
    bool readBonds();
    void addBond(tarnex::mdl::BondLine const& line);
    void readDataItems();
    void readDataValue(char const* name);

    /// At some of the lines of a block, reports how far the work is; true if the user asked to stop.
    bool interruptedAt(int line, int linesOfBlocksBefore) const {
        if (!progress || line % tarnex::mdl::linesPerProgress != 0) return false;
        float const part =
            static_cast<float>(linesOfBlocksBefore + line) / static_cast<float>(counts.numAtoms + counts.numBonds);
        return progress.interruptedAt(static_cast<float>(static_cast<double>(part) * 0.9 + 0.1));
    }

    Molecule& molecule;
    MolTopology& topology;
    lengthizer& scanner;
    Progress const& progress;

    molchem::ElementTable const& elements = tarnex::elementTable();
    tarnex::mdl::CountsLine counts;
    MtIntegerAttribute* atomicNumbers = nullptr;
    MtFloatAttribute* radii = nullptr;
    MtIntegerAttribute* formalCharges = nullptr;
    /// Made when the first hydrogen count is met.
    MtIntegerAttribute* implicitHydrogens = nullptr;
    MtIntegerAttribute* bondTypes = nullptr;
};

void RecordReader::readCounts() {
    progress.info("Searching counts line.");
    if (!counts.find(scanner)) throw Parse_Error{"Could not find counts line by V2000 or V3000 token"};
    progress.value(0.1F);
    scanner.nextLine();
    topology.prepLevelSize(0, counts.numAtoms);
    molecule.coords.resize(counts.numAtoms);
    topology.prepLevelSize(1, counts.numBonds);
}

void RecordReader::makeAttributes() {
    MtGroupingLevel* atoms = topology.getLevel(0);
    atoms->clearFlag(MtGroupingLevel::flagBit5);
    atomicNumbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    radii = atoms->floatAttribute("radius", MtGroupingLevel::CREATE, true);
    formalCharges = topology.getAtomFormalChargeAttribute(MolTopology::CREATE);
    MtGroupingLevel* bonds = topology.getLevel(1);
    bonds->clearFlag(MtGroupingLevel::flagBit5);
    bonds->clearFlag(MtGroupingLevel::flagBit0);
    bondTypes = bonds->integerAttribute("type", MtGroupingLevel::CREATE, true);
}

bool RecordReader::readAtoms() {
    progress.info("Parsing atom block");
    for (int i = 0; i < counts.numAtoms; ++i) {
        if (interruptedAt(i, 0)) return false;
        auto const line = tarnex::mdl::AtomLine::read(scanner);
        molecule.coords[i] = line.position;
        addAtom(line);
        scanner.nextLine();
    }
    return true;
}

void RecordReader::addAtom(tarnex::mdl::AtomLine const& line) {
    int const atom = topology.addGroup(0, new (topology.groupPool) MtAtom).groupIx;
    molchem::Element const* element = elements.getElement(line.symbol.c_str(), false);
    atomicNumbers->setValue(atom, element->getAtomicNumber());
    radii->setValue(atom, element->getRadius());
    formalCharges->setValue(atom, tarnex::mdl::AtomLine::chargeOfCode(line.chargeCode));
    if (line.hydrogenCount != 0) {
        if (!implicitHydrogens) implicitHydrogens = topology.addIntegerAttribute(0, "implicit_hnum");
        implicitHydrogens->setValue(atom, line.hydrogenCount - 1);
    }
}

bool RecordReader::readBonds() {
    progress.info("Parsing bond block");
    for (int i = 0; i < counts.numBonds; ++i) {
        if (interruptedAt(i, counts.numAtoms)) return false;
        addBond(tarnex::mdl::BondLine::read(scanner));
        scanner.nextLine();
    }
    return true;
}

void RecordReader::addBond(tarnex::mdl::BondLine const& line) {
    auto const isAtom = [this](int number) { return number >= 1 && number <= counts.numAtoms; };
    if (!isAtom(line.firstAtom) || !isAtom(line.secondAtom)) throw Parse_Error{"Atomnumber is out of range"};
    int const bond = topology.addBond(new (topology.groupPool) MtBond(line.firstAtom - 1, line.secondAtom - 1)).groupIx;
    bondTypes->setValue(bond, line.type);
}

/// Reads up to the end of the record or of the file. The end line of the connection table, property lines and further
/// lines of a value are none of a data item's own and are passed over.
void RecordReader::readDataItems() {
    char name[sizeof scanner.buffer];
    while (!scanner.eof) {
        char const* line = scanner.getUntrimmedLineString();
        bool const atEnd = std::strncmp(line, tarnex::mdl::recordEnd, std::strlen(tarnex::mdl::recordEnd)) == 0;
        bool const isHeader = !atEnd && tarnex::mdl::readDataHeader(line, name);
        scanner.nextLine();
        if (atEnd) return;
        if (isHeader) readDataValue(name);
    }
}

void RecordReader::readDataValue(char const* name) {
    char const* value = scanner.getUntrimmedLineString();
    // Only a single digit is a number: longer values are text, as they stand.
    bool const isDigit = std::isdigit(static_cast<unsigned char>(value[0])) && value[1] == '\0';
    if (isDigit)
        topology.setData(new (topology.groupPool) MolDataInt(name, value[0] - '0'));
    else if (*value)
        topology.setData(new (topology.groupPool) MolDataString(name, value));
    scanner.nextLine();
}

/// A trajectory of one step, into which a molecule that nobody else holds is turned.
MolTrajectory* takeTrajectory(Molecule* molecule) {
    auto* trajectory = new MolTrajectoryMem(molecule->getTopology(), std::move(molecule->coords));
    delete molecule;
    return trajectory;
}

/// A name of file and number.
void nameByNumber(MolTopology& topology, McFilename const& file, std::int64_t number) {
    std::string const name = std::string(file.basename()) + '-' + std::to_string(static_cast<int>(number));
    topology.setName(name.c_str());
}

/// The name is the record's data item "name", if that is text, or else made of file and number.
void nameTopology(MolTopology& topology, McFilename const& file, std::int64_t number) {
    auto const* name = dynamic_cast<MolDataString const*>(topology.getData("name"));
    if (name)
        topology.setName(name->getValue());
    else
        nameByNumber(topology, file, number);
}

} // namespace

bool MDLIO::readMolecule(Molecule* molecule, MolTopology* topology, lengthizer& scanner, char const*) {
    // A molecule that a handle of the caller's holds as well is left to it.
    McHandle<Molecule> held(molecule);
    Progress const recordProgress(progress);
    try {
        if (!RecordReader(*molecule, *topology, scanner, recordProgress).read()) {
            held = nullptr;
            recordProgress.stop();
            return false;
        }
    } catch (Parse_Error const&) {
        recordProgress.stop();
        throw;
    }
    held.handOut();
    return true;
}

McDArray<McHandle<MolTrajectory>> MDLIO::readMDLMolTrajectoryBundle(char const* filename) {
    McDArray<McHandle<MolTrajectory>> bundle;
    lengthizer scanner(filename);
    if (!scanner.isOpen()) {
        tarnex::report(messages, "Could not open \"", filename ? filename : "", "\"\n");
        return bundle;
    }
    McFilename const file(filename);
    Progress const fileProgress(progress);
    fileProgress.start(workTitle);
    try {
        tarnex::GroupPool pool;
        // The search for a counts line behind the last record ends the loop.
        while (true) {
            auto* topology = new MolTopology(std::move(pool));
            auto* molecule = new Molecule(topology, true);
            if (!readMolecule(molecule, topology, scanner, filename)) {
                bundle.clear();
                return bundle;
            }
            bundle.append(takeTrajectory(molecule));
            nameTopology(*topology, file, bundle.size);
            pool = std::move(topology->groupPool);
        }
    } catch (Parse_Error const& error) {
        if (bundle.size == 0) {
            tarnex::report(messages, "Parse error in file ", filename, ".\n", error.message, " in line ",
                           scanner.lineNumber, ".\n");
        }
    }
    fileProgress.stop();
    return bundle;
}

MolTrajectory* MDLIO::readMDLMolTrajectory(char const* filename) {
    lengthizer scanner(filename);
    if (!scanner.isOpen()) {
        tarnex::report(messages, "Could not load \"", filename ? filename : "", "\"\n");
        return nullptr;
    }
    Progress const fileProgress(progress);
    fileProgress.start(workTitle);
    auto* topology = new MolTopology;
    auto* molecule = new Molecule(topology, true);
    if (!readMolecule(molecule, topology, scanner, filename)) {
        fileProgress.start(workTitle);
        fileProgress.stop();
        return nullptr;
    }
    fileProgress.stop();
    // Hosts that count phases see one more begin here, which stays open.
    fileProgress.start(workTitle);
    MolTrajectory* trajectory = takeTrajectory(molecule);
    nameByNumber(*trajectory->getTopology(), filename, 1);
    return trajectory;
}
