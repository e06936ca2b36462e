#include "chemistry/ElementTable.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "gromacs/GROMACSread.h"
#include "gromacs/records.h"
#include "model/MtListGroups.h"
#include "textio/tokenizer.h"

#include <cstring>

namespace {

using tarnex::gromacs::angstromPerNanometre;
using tarnex::gromacs::AtomLine;
using tarnex::gromacs::AtomRow;
using tarnex::gromacs::BondedRow;
using tarnex::gromacs::NameRoom;
using tarnex::gromacs::Section;

// ---- Structures ----

/// Cuts the atoms into residues: an atom begins one if its number differs from that of the atom before it. The residue
/// has the name of its last atom.
class ResidueBuilder {
public:
    explicit ResidueBuilder(MolTopology& residueTopology)
        : topology(residueTopology), levelIx(topology.addLevel("residues", 0, 12, -1)) {
        MtGroupingLevel* level = topology.getLevel(levelIx);
        level->clearFlag(MtGroupingLevel::flagBit5);
        level->setFlag(MtGroupingLevel::segmentation);
        types = level->stringAttribute("type", MtGroupingLevel::CREATE, true);
        level->stringAttribute("name", MtGroupingLevel::CREATE, true);
    }

    void add(int atom, AtomLine const& line) {
        // Nothing begins at a -1, the mark of an atom that goes on with its residue.
        if (atom > 0 && line.residueNumber != number && line.residueNumber != -1) finish(atom);
        number = line.residueNumber;
        std::strcpy(name, line.residueName);
    }
    /// Ends the residue ahead of an atom.
    void finish(int atom) {
        if (atom == first) return;
        auto* range = new (topology.groupPool) MtIntraLevelRange(0, first, atom - 1);
        types->setValue(topology.addGroup(levelIx, range).groupIx, name);
        first = atom;
    }

private:
    MolTopology& topology;
    int levelIx;
    MtStringAttribute* types;
    int first = 0;
    int number = 0;
    char name[NameRoom::width + 1] = "";
};

/// Turns the lines of a .gro file into the groups and attributes of a new molecule.
class StructureBuilder {
public:
    explicit StructureBuilder(lengthizer& structureScanner) : scanner(structureScanner) {}

    Molecule* read() {
        scanner.nextLine();
        numAtoms = tarnex::gromacs::readAtomCount(scanner);
        scanner.nextLine();
        auto* topology = new MolTopology;
        topology->prepLevelSize(0, numAtoms);
        for (int i = 0; i < numAtoms; ++i) topology->addGroup(0, new (topology->groupPool) MtAtom);
        auto* molecule = new Molecule(topology, true);
        topology->getLevel(0)->clearFlag(MtGroupingLevel::flagBit5);
        readAtoms(*molecule, *topology);
        topology->getLevel(1)->integerAttribute("type", MtGroupingLevel::CREATE, true);
        return molecule;
    }

private:
    void readAtoms(Molecule& molecule, MolTopology& topology) {
        ResidueBuilder residues(topology);
        MtGroupingLevel* atoms = topology.getLevel(0);
        auto* types = atoms->stringAttribute("type", MtGroupingLevel::CREATE, true);
        auto* radii = atoms->floatAttribute("radius", MtGroupingLevel::CREATE, true);
        auto* atomicNumbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
        NameRoom names;
        for (int i = 0; i < numAtoms; ++i) {
            AtomLine const line = AtomLine::read(scanner, names);
            residues.add(i, line);
            types->setValue(i, line.atomName);
            molchem::Element const& element = tarnex::elementAtStartOfName(line.atomName);
            if (element.getAtomicNumber() > 0) {
                atomicNumbers->setValue(i, element.getAtomicNumber());
                radii->setValue(i, element.getRadius());
            }
            molecule.coords[i] = McVec3f(line.position.x * angstromPerNanometre, line.position.y * angstromPerNanometre,
                                         line.position.z * angstromPerNanometre);
            scanner.nextLine();
        }
        residues.finish(numAtoms);
    }

    lengthizer& scanner;
    int numAtoms = 0;
};

// ---- Topologies ----

/// Where the rows of one section go.
struct BondedLevel {
    int levelIx;
    MtGroupingLevel* level;
    MtIntegerAttribute* functions;
    /// Rows so far, in all sections of the kind.
    int rows = 0;

    BondedLevel(MolTopology& topology, char const* name)
        : levelIx(topology.addLevel(name, 0, 12, -1)), level(topology.getLevel(levelIx)),
          functions(level->integerAttribute(name, MtGroupingLevel::CREATE, true)) {}
};

/// Turns the rows of a .top file into groups and attributes of a molecule.
class TopologyBuilder {
public:
    explicit TopologyBuilder(MolTopology& moleculeTopology)
        : topology(moleculeTopology), atoms(topology.getLevel(0)), bonds(topology.getLevel(1)),
          pairs(topology, "pairs"), angles(topology, "angles"), dihedrals(topology, "dihedrals") {
        charges = atoms->floatAttribute("charge", MtGroupingLevel::CREATE, true);
        masses = atoms->floatAttribute("atom_mass", MtGroupingLevel::CREATE, true);
        bondTypes = bonds->integerAttribute("type", MtGroupingLevel::CREATE, true);
    }

    void addRow(Section section, std::string_view line) {
        switch (section) {
        case Section::atoms:
            return setAtom(AtomRow::read(line));
        case Section::bonds:
            return addBond(BondedRow<2>::read(line));
        case Section::pairs:
            return addGroup(pairs, BondedRow<2>::read(line));
        case Section::angles:
            return addGroup(angles, BondedRow<3>::read(line));
        case Section::dihedrals:
            return addGroup(dihedrals, BondedRow<4>::read(line));
        case Section::moleculetype:
        case Section::none:
            return;
        }
    }

private:
    static int atomIndex(int number) { return static_cast<int>(static_cast<unsigned>(number) - 1U); }

    void setAtom(AtomRow const& row) {
        charges->setValue(atomIndex(row.number), row.charge);
        masses->setValue(atomIndex(row.number), row.mass);
        atoms->clearFlag(MtGroupingLevel::flagBit5);
    }
    void addBond(BondedRow<2> const& row) {
        auto* bond = new (topology.groupPool) MtBond(atomIndex(row.atoms[0]), atomIndex(row.atoms[1]));
        bondTypes->setValue(topology.addBond(bond).groupIx, row.function);
        bonds->clearFlag(MtGroupingLevel::flagBit5);
    }
    /// The function type goes by the number of the row, also where the topology refuses a group.
    template <int N>
    void addGroup(BondedLevel& bonded, BondedRow<N> const& row) {
        auto* group = new (topology.groupPool) MtSmallGroup<N>;
        for (int i = 0; i < N; ++i) group->setElement(i, {0, atomIndex(row.atoms[i])});
        topology.addGroup(bonded.levelIx, group);
        bonded.level->clearFlag(MtGroupingLevel::flagBit5);
        bonded.functions->setValue(bonded.rows++, row.function);
    }

    MolTopology& topology;
    MtGroupingLevel* atoms;
    MtGroupingLevel* bonds;
    BondedLevel pairs;
    BondedLevel angles;
    BondedLevel dihedrals;
    MtFloatAttribute* charges;
    MtFloatAttribute* masses;
    MtIntegerAttribute* bondTypes;
};

/// Leaves the text in the scanner's buffer and moves to the next line.
std::string_view readLine(tokenizer& scanner, char (&room)[sizeof scanner.buffer]) {
    std::strcpy(room, scanner.getUntrimmedLineString());
    scanner.nextLine();
    return room;
}

void readSections(tokenizer& scanner, TopologyBuilder& builder) {
    constexpr std::size_t shortestRow = 3;
    char room[sizeof scanner.buffer];
    while (!scanner.eof) {
        Section const section = tarnex::gromacs::sectionOpenedBy(readLine(scanner, room).data());
        if (section == Section::none) continue;
        // A line that is too short for a row ends the section, and nothing else does.
        for (auto line = readLine(scanner, room); line.size() >= shortestRow; line = readLine(scanner, room)) {
            if (line.front() != ';') builder.addRow(section, line);
        }
    }
}

} // namespace

Molecule* GROMACSread::readGRO(char const* groFile) {
    fileName = groFile;
    lengthizer scanner(fileName);
    if (!scanner.isOpen()) {
        tarnex::report(messages, "Could not load \"", fileName.data, "\"\n");
        return nullptr;
    }
    tarnex::WorkingPhase const phase(progress, "");
    return StructureBuilder(scanner).read();
}

int GROMACSread::readTOP(char const* topFile, Molecule* molecule) {
    tokenizer scanner(topFile);
    if (!scanner.isOpen()) {
        tarnex::report(messages, "Could not load \"", topFile ? topFile : "", "\"\n");
        return 0;
    }
    TopologyBuilder builder(*molecule->getTopology());
    readSections(scanner, builder);
    return 1;
}
