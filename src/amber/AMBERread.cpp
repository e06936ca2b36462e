#include "amber/AMBERread.h"

#include "chemistry/ElementTable.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "model/MtListGroups.h"
#include "textio/lengthizer.h"

#include <algorithm>
#include <array>

namespace {

// The widths of the fields.
constexpr unsigned char counterWidth = 6;
constexpr unsigned char textWidth = 4;
constexpr unsigned char realWidth = 16;
constexpr unsigned char indexWidth = 6;

/// How many values stand on a line of most integers, texts and reals.
constexpr int integersPerLine = 12;
constexpr int textsPerLine = 20;
constexpr int realsPerLine = 5;
constexpr int bondsPerLine = 4;

/// The square root of the constant of Coulomb's law in kcal Angstrom / (mol e^2), by which the file's charges are
/// multiplied.
constexpr float chargeUnit = 18.2223F;

/// The places of counters in the file, by the names of the format's description.
enum Counter {
    NATOM,
    NTYPES,
    NBONH,
    NTHETH = 4,
    NPHIH = 6,
    NNB = 10,
    NRES,
    NBONA,
    NTHETA,
    NPHIA,
    NUMBND,
    NUMANG,
    NPTRA,
    NATYP,
    NPHB
};

class Counters {
public:
    /// Those of the first line are taken one column further on than those of the others. None is above 999,999, since
    /// they are of six columns; negative ones count as 0.
    explicit Counters(lengthizer& scanner) {
        scanner.skipChars(1);
        for (std::size_t i = 0; i < values.size(); ++i) {
            if (i == integersPerLine || i == 2 * integersPerLine) scanner.nextLine();
            values[i] = std::max(scanner.getInt(counterWidth), 0);
        }
    }
    std::int64_t operator[](Counter counter) const { return values[counter]; }

private:
    std::array<int, 30> values;
};

/// Walks through the blocks of a topology file and turns those that are of use into groups and attributes.
class TopologyReader {
public:
    /// Reads title and counters, and makes the levels with the atoms.
    TopologyReader(lengthizer& fileScanner, MolTopology& emptyTopology)
        : scanner(fileScanner), topology(emptyTopology), counters(readHead(fileScanner)) {
        makeAtoms();
        makeOtherLevels();
    }

    bool hasAtoms() const { return counters[NATOM] > 0; }
    void readBlocks();

private:
    /// Values that begin on a line of their own. A block without values takes no line.
    struct Block {
        std::int64_t values;
        int perLine;
        /// Null for a block that is passed over.
        void (TopologyReader::*read)(Block const&) = nullptr;
    };

    static Counters readHead(lengthizer& scanner) {
        scanner.nextLine(); // the title
        return Counters(scanner);
    }

    void makeAtoms();
    void makeOtherLevels();
    template <class Visit>
    void forEachValue(Block const& block, Visit&& visit);

    void readAtomTypes(Block const& block);
    void readCharges(Block const& block);
    void readMasses(Block const& block);
    void readResidueLabels(Block const& block);
    void readResiduePointers(Block const& block);
    void readBonds(Block const& block);
    void readAtomSymbols(Block const& block);

    MtIntraLevelRange& residue(int i) { return static_cast<MtIntraLevelRange&>(*residues->groups[i]); }

    lengthizer& scanner;
    MolTopology& topology;
    Counters counters;
    MtGroupingLevel* atoms = topology.getLevel(0);
    int residuesIx = -1;
    MtGroupingLevel* residues = nullptr;
    MtIntegerAttribute* atomicNumbers = nullptr;
    MtIntegerAttribute* bondTypes = nullptr;
};

void TopologyReader::makeAtoms() {
    auto const natom = static_cast<int>(counters[NATOM]);
    topology.prepLevelSize(0, natom);
    for (int i = 0; i < natom; ++i) topology.addGroup(0, new (topology.groupPool) MtAtom);
    atomicNumbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    // Ahead of "type", though the charges come later: hosts list attributes in the order in which they were made.
    if (hasAtoms()) atoms->floatAttribute("charge", MtGroupingLevel::CREATE, true);
}

void TopologyReader::makeOtherLevels() {
    residuesIx = topology.addLevel("residues", 0, 12, -1);
    residues = topology.getLevel(residuesIx);
    residues->clearFlag(MtGroupingLevel::flagBit5);
    residues->setFlag(MtGroupingLevel::segmentation);
    MtGroupingLevel* bonds = topology.getLevel(1);
    bonds->clearFlag(MtGroupingLevel::flagBit5);
    bonds->clearFlag(MtGroupingLevel::flagBit0);
    bondTypes = bonds->integerAttribute("type", MtGroupingLevel::CREATE, true);
}

void TopologyReader::readBlocks() {
    using R = TopologyReader;
    std::int64_t const natom = counters[NATOM];
    std::int64_t const ntypes = counters[NTYPES];
    std::int64_t const typePairs = ntypes * (ntypes + 1) / 2;
    std::int64_t const linesAheadOfSymbols = hasAtoms() ? 3 : 0;
    Block const blocks[] = {
        {natom, textsPerLine, &R::readAtomTypes},
        {natom, realsPerLine, &R::readCharges},
        {natom, realsPerLine, &R::readMasses},
        {natom, integersPerLine},           // atom type indices
        {natom, integersPerLine},           // numbers of excluded atoms
        {ntypes * ntypes, integersPerLine}, // non-bonded parameter indices
        {counters[NRES], textsPerLine, &R::readResidueLabels},
        {counters[NRES], integersPerLine, &R::readResiduePointers},
        {counters[NUMBND], realsPerLine}, // bond force constants
        {counters[NUMBND], realsPerLine}, // bond lengths
        {counters[NUMANG], realsPerLine}, // angle force constants
        {counters[NUMANG], realsPerLine}, // angles
        {counters[NPTRA], realsPerLine},  // dihedral force constants
        {counters[NPTRA], realsPerLine},  // dihedral periodicities
        {counters[NPTRA], realsPerLine},  // dihedral phases
        {counters[NATYP], realsPerLine},  // SOLTY, which the format reserves
        {typePairs, realsPerLine},        // Lennard-Jones A
        {typePairs, realsPerLine},        // Lennard-Jones B
        {counters[NBONH], bondsPerLine, &R::readBonds},
        {counters[NBONA], bondsPerLine, &R::readBonds},
        {4 * counters[NTHETH], integersPerLine}, // angles with hydrogen
        {4 * counters[NTHETA], integersPerLine}, // angles without
        {5 * counters[NPHIH], integersPerLine},  // dihedrals with hydrogen
        {5 * counters[NPHIA], integersPerLine},  // dihedrals without
        {counters[NNB], integersPerLine},        // excluded atoms
        {counters[NPHB], realsPerLine},          // hydrogen-bond A
        {counters[NPHB], realsPerLine},          // hydrogen-bond B
        {counters[NPHB], realsPerLine},          // hydrogen-bond cut-offs
        // Without hydrogen-bond terms their three blocks are empty lines. These are taken for there in any case.
        {linesAheadOfSymbols, 1},
        {natom, textsPerLine, &R::readAtomSymbols},
        {natom, textsPerLine}, // tree symbols
    };
    // Without atoms the walk goes on from the last line of counters.
    if (hasAtoms()) scanner.nextLine();
    for (Block const& block : blocks) {
        if (block.values == 0) continue;
        if (block.read)
            (this->*block.read)(block);
        else
            scanner.skipLines((block.values + block.perLine - 1) / block.perLine);
    }
}

/// Calls `visit(i)` with the scanner at the value number `i`, and leaves the block.
template <class Visit>
void TopologyReader::forEachValue(Block const& block, Visit&& visit) {
    int leftOnLine = block.perLine;
    for (int i = 0; i < block.values; ++i, --leftOnLine) {
        if (leftOnLine == 0) {
            scanner.nextLine();
            leftOnLine = block.perLine;
        }
        visit(i);
    }
    scanner.nextLine();
}

void TopologyReader::readAtomTypes(Block const& block) {
    auto* types = atoms->stringAttribute("type", MtGroupingLevel::CREATE, true);
    forEachValue(block, [&](int atom) { types->setValue(atom, scanner.getString(textWidth)); });
}

void TopologyReader::readCharges(Block const& block) {
    auto* charges = atoms->floatAttribute("charge", MtGroupingLevel::CREATE, true);
    forEachValue(block, [&](int atom) { charges->setValue(atom, scanner.getFloat(realWidth) / chargeUnit); });
}

void TopologyReader::readMasses(Block const& block) {
    auto* masses = atoms->floatAttribute("atom_mass", MtGroupingLevel::CREATE, true);
    forEachValue(block, [&](int atom) { masses->setValue(atom, scanner.getFloat(realWidth)); });
}

/// Adds the residues, whose atoms are not known yet.
void TopologyReader::readResidueLabels(Block const& block) {
    topology.prepLevelSize(residuesIx, static_cast<int>(block.values));
    auto* types = residues->stringAttribute("type", MtGroupingLevel::CREATE, true);
    residues->stringAttribute("name", MtGroupingLevel::CREATE, true);
    forEachValue(block, [&](int) {
        int const added = topology.addGroup(residuesIx, new (topology.groupPool) MtIntraLevelRange).groupIx;
        types->setValue(added, scanner.getString(textWidth));
    });
}

/// A pointer is the number of a residue's first atom, from 1. Hosts rely on ranges that begin at this number as it is,
/// but for the first of several residues, and that end one ahead of the next one's.
void TopologyReader::readResiduePointers(Block const& block) {
    forEachValue(block, [this](int i) {
        int const pointer = scanner.getInt(indexWidth);
        residue(i).first = pointer;
        if (i > 0) residue(i - 1).last = pointer - 1;
    });
    auto const numResidues = static_cast<int>(block.values);
    if (numResidues > 1) --residue(0).first;
    residue(numResidues - 1).last = static_cast<int>(counters[NATOM]) - 1;
    // Behind a last line that is full, one more is taken for a line of the block.
    if (numResidues % integersPerLine == 0) scanner.nextLine();
}

/// Atoms stand as offsets in an array of coordinates, three for each.
void TopologyReader::readBonds(Block const& block) {
    topology.prepLevelSize(1, static_cast<int>(topology.getLevel(1)->groups.size + block.values));
    forEachValue(block, [this](int) {
        int const first = scanner.getInt(indexWidth) / 3;
        int const second = scanner.getInt(indexWidth) / 3;
        scanner.skipChars(indexWidth); // the parameters
        int const bond = topology.addBond(new (topology.groupPool) MtBond(first, second)).groupIx;
        bondTypes->setValue(bond, 1);
    });
}

void TopologyReader::readAtomSymbols(Block const& block) {
    forEachValue(block, [this](int atom) {
        int const number = tarnex::elementAtStartOfName(scanner.getString(textWidth)).getAtomicNumber();
        if (number > 0) atomicNumbers->setValue(atom, number);
    });
}

/// The name of a file that belongs to a topology: other characters in place of its last three.
McString siblingName(McString const& topologyFile, char const* ending) {
    auto const length = static_cast<int>(topologyFile.length());
    return McString(topologyFile, 0, length - 3) + ending;
}

} // namespace

AMBERread::AMBERread(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the arrays come by value, as from every host
McHandle<Molecule> AMBERread::read(char const* topologyFile, int step, McDArray<long> coordPositions, McDArray<long>) {
    filename = topologyFile;
    lengthizer scanner(filename);
    if (!scanner.isOpen()) {
        tarnex::report(messages, "Could not load \"", filename.data, "\"\n");
        return nullptr;
    }
    tarnex::WorkingPhase const phase(progress, "");
    auto* topology = new MolTopology;
    McHandle<MolTopology> const held(topology);
    TopologyReader file(scanner, *topology);
    McHandle<Molecule> molecule(new Molecule(topology, true));
    if (file.hasAtoms()) {
        if (step < 1)
            readAmberCoords(molecule, siblingName(filename, "crd"));
        else
            readCoordsAt(molecule, step - 1, coordPositions, siblingName(filename, "md.crd"));
    }
    file.readBlocks();
    return molecule;
}

Molecule* AMBERread::readAmberMolecule(char const* topologyFile) {
    return read(topologyFile, 0, {}, {}).handOut();
}
