#include "pdb/MoleculeBuilder.h"

#include "chemistry/ElementTable.h"
#include "pdb/identifiers.h"

#include <algorithm>
#include <climits>
#include <cstring>

namespace tarnex::pdb {

namespace {

constexpr auto CREATE = MtGroupingLevel::CREATE;
constexpr int levelKind = 12;
constexpr int levelReserved = -1;
constexpr int bondType = 1;
constexpr int atomsOfWater = 3; // most residues of large files

/// Iodine. Guessed from the atom name, heavier elements are less likely than the element of the second letter.
constexpr int heaviestGuess = 53;

bool isUpperCase(char c) {
    return c >= 'A' && c <= 'Z';
}

bool isLetter(char c) {
    return isUpperCase(c) || (c >= 'a' && c <= 'z');
}

bool isKnown(molchem::Element const* element) {
    return element->getAtomicNumber() > 0;
}

void copyWithoutDigits(FieldText const& text, char* out) {
    for (char const* c = text.c_str(); *c; ++c) {
        if (*c < '0' || *c > '9') *out++ = *c;
    }
    *out = '\0';
}

/// By the element columns or, where they have none, by the atom name: its first half, then only the second letter of
/// that, then the first letter of the other half.
molchem::Element const* findElement(AtomLine const& line) {
    molchem::ElementTable const& table = elementTable();
    FieldText const fromColumns = line.element();
    bool const guessed = !isUpperCase(fromColumns[0]);
    char guess[sizeof(FieldText)];
    if (guessed) copyWithoutDigits(line.nameStart(), guess);
    char const* symbol = guessed ? guess : fromColumns.c_str();
    if (symbol[0] == 'A' && symbol[1] == '\0') symbol = "C"; // aromatic carbon of some programs

    molchem::Element const* element = table.getElement(symbol, false);
    if (*symbol && (!isKnown(element) || (guessed && element->getAtomicNumber() > heaviestGuess))) {
        molchem::Element const* second = table.getElement(symbol + 1, false);
        bool const isLikely = isKnown(second) && second->getAtomicNumber() <= heaviestGuess;
        if (isLikely || !isKnown(element)) element = second;
    }
    if (isKnown(element)) return element;
    char const nameEnd[] = {line.nameEnd()[0], '\0'};
    return table.getElement(nameEnd, false);
}

/// A digit ahead of its sign; other texts are no charge.
float chargeOf(FieldText const& text) {
    bool const isNegative = text[1] == '-';
    if (text[0] == '\0' || (!isNegative && text[1] != '+')) return 0.0F;
    auto const charge = static_cast<float>(parseDouble({text.c_str(), 1}));
    return isNegative ? -charge : charge;
}

} // namespace

void SerialTable::set(int serial, int atom) {
    static_assert(AtomLine::serialColumns.width() == 5 && ConectLine::serialColumns.width() == 5 &&
                  ConectLine::partnerColumns.width() == 5);
    std::int64_t const place = std::int64_t{serial} - lowest;
    std::int64_t const known = atoms.size;
    if (place >= known) {
        atoms.resize(std::max(place + 1, 2 * known));
        std::fill(atoms.begin() + known, atoms.end(), -1);
    }
    atoms[place] = atom;
}

int SerialTable::atomOf(int serial) const {
    std::int64_t const place = std::int64_t{serial} - lowest;
    return place < atoms.size ? atoms[place] : -1;
}

MoleculeBuilder::MoleculeBuilder(Molecule& moleculeToFill)
    : molecule(moleculeToFill), topology(*moleculeToFill.getTopology()) {
    makeAtomAttributes();
    makeResidueAttributes();
}

void MoleculeBuilder::makeAtomAttributes() {
    MtGroupingLevel* atoms = topology.getLevel(0);
    atoms->clearFlag(MtGroupingLevel::flagBit5);
    atomNames = atoms->stringAttribute("name", CREATE, true);
    atomTypes = atoms->stringAttribute("type", CREATE, true);
    atomicNumbers = atoms->integerAttribute("atomic_number", CREATE, true);
    radii = atoms->floatAttribute("radius", CREATE, true);
    charges = atoms->floatAttribute("charge", CREATE, true);
    temperatures = atoms->floatAttribute("temperature", CREATE, true);
    occupancies = atoms->floatAttribute("occupancy", CREATE, true);

    MtGroupingLevel* bonds = topology.getLevel(1);
    bonds->clearFlag(MtGroupingLevel::flagBit5);
    bonds->clearFlag(MtGroupingLevel::flagBit0);
    bondTypes = bonds->integerAttribute("type", CREATE, true);
}

void MoleculeBuilder::makeResidueAttributes() {
    residuesIx = topology.addLevel("residues", 0, levelKind, levelReserved);
    MtGroupingLevel* residues = topology.getLevel(residuesIx);
    residues->clearFlag(MtGroupingLevel::flagBit5);
    residues->setFlag(MtGroupingLevel::segmentation);
    residueNames = residues->stringAttribute("name", CREATE, true);
    residueTypes = residues->stringAttribute("type", CREATE, true);
    residueNumbers = residues->integerAttribute("pdb_index", CREATE, true);

    chainsIx = topology.addLevel("chains", residuesIx, levelKind, levelReserved);
    MtGroupingLevel* chains = topology.getLevel(chainsIx);
    chains->clearFlag(MtGroupingLevel::flagBit5);
    chains->setFlag(MtGroupingLevel::segmentation);
    chainNames = chains->stringAttribute("name", CREATE, true);
}

void MoleculeBuilder::expectAtoms(std::int64_t numAtoms) {
    auto const expected = static_cast<int>(std::min<std::int64_t>(numAtoms, INT_MAX));
    topology.prepLevelSize(0, expected);
    topology.prepLevelSize(residuesIx, expected / atomsOfWater);
    molecule.coords.reserve(expected);
}

void MoleculeBuilder::addAtom(AtomLine const& line, bool isHet) {
    FieldText const location = line.location();
    if (isLetter(location[0]) && location[0] != 'A') return;
    FieldText const chainId = line.chain();
    ShortText const nameOfChain =
        isInUnnamedChain(chainId.c_str(), isHet) ? ShortText(packed(unnamedChain)) : chainId.text();
    bool const hasChain = nameOfChain.length() > 0;
    if (hasChain) enterChain(nameOfChain, isHet);

    molecule.coords.append(line.position());
    int const atom = topology.addGroup(0, new (topology.groupPool) MtAtom).groupIx;
    setAtomAttributes(line, atom, nameOfChain);
    enterResidue(line, atom, nameOfChain, isHet);
    lastAtomHasChain = hasChain;
}

/// A name that comes back behind another chain, or behind atoms without chain, is that of a new chain. So only the
/// newest chain can go on.
void MoleculeBuilder::enterChain(ShortText name, bool isHet) {
    bool const isSplit = terSeen && !isHet;
    if (lastAtomHasChain && !isSplit && name == chainName) return;
    chain = new (topology.groupPool) MtIntraLevelRange(residuesIx, 0, 0);
    chainNames->setValue(topology.addGroup(chainsIx, chain).groupIx, name);
    chainName = name;
    newChainPending = true;
    terSeen = false;
}

void MoleculeBuilder::setAtomAttributes(AtomLine const& line, int atom, ShortText nameOfChain) {
    int const serial = line.serial();
    atomOfSerial.set(serial, atom);
    molchem::Element const* element = findElement(line);
    atomicNumbers->setValue(atom, element->getAtomicNumber());
    radii->setValue(atom, element->getRadius());
    if (line.hasCharge()) charges->setValue(atom, chargeOf(line.charge())); // else it stays 0
    temperatures->setValue(atom, line.temperature(temperature));
    occupancies->setValue(atom, line.occupancy(occupancy));
    atomNames->setValue(atom, nameOfChain + decimalText(serial));
    atomTypes->setValue(atom, line.name());
}

/// An id that comes back behind another residue is that of a new residue. So only the newest residue can go on, and new
/// ones stand behind all others: the chain that they go into is the newest one, and whatever was added behind its last
/// residue is in no chain and has ended it.
void MoleculeBuilder::enterResidue(AtomLine const& line, int atom, ShortText nameOfChain, bool isHet) {
    ResidueKey const key{line.residueText(), isHet};
    if (!residue || key != residueKey) {
        // The same id can stand in the columns in several ways, and a HETATM record without chain can say the number 31
        // where others say chain 3, number 1.
        ShortText const id = residueId(nameOfChain, line.residueNumber(), line.insertionCode().text());
        bool const isNew = !residue || id != idOfResidue || isHet != residueKey.isHet;
        residueKey = key;
        idOfResidue = id;
        if (isNew) startResidue(line, atom, nameOfChain.length() > 0);
    }
    residue->last = atom;
}

void MoleculeBuilder::startResidue(AtomLine const& line, int atom, bool hasChain) {
    residue = new (topology.groupPool) MtIntraLevelRange(0, atom, atom);
    int const ix = topology.addGroup(residuesIx, residue).groupIx;
    residueTypes->setValue(ix, line.residueType().text());
    setResidueName(ix);
    residueNumbers->setValue(ix, line.residueNumber());
    if (!hasChain) return;
    if (newChainPending) chain->first = ix;
    chain->last = ix;
    newChainPending = false;
}

void MoleculeBuilder::setResidueName(int ix) {
    if (!residueKey.isHet) return residueNames->setValue(ix, idOfResidue);
    ShortText const prefix(packed(hetPrefix));
    if (prefix.length() + idOfResidue.length() <= ShortText::maxLength) {
        return residueNames->setValue(ix, prefix + idOfResidue);
    }
    char name[2 * ShortText::room];
    idOfResidue.put(prefix.put(name));
    residueNames->setValue(ix, name);
}

void MoleculeBuilder::addBonds(ConectLine const& line) {
    int const atom = atomOfSerial.atomOf(line.serial);
    if (atom < 0) return;
    for (int const serial : line.partners) {
        if (serial <= 0) continue;
        int const partner = atomOfSerial.atomOf(serial);
        if (partner < 0 || topology.findBond(atom, partner) >= 0) continue;
        int const bond = topology.addBond(new (topology.groupPool) MtBond(atom, partner)).groupIx;
        bondTypes->setValue(bond, bondType);
    }
}

} // namespace tarnex::pdb
