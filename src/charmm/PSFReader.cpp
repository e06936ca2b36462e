#include "charmm/MolTrajectoryDCD.h"
#include "chemistry/ElementTable.h"
#include "model/MtListGroups.h"
#include "textio/StreamExtractor.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>

namespace {

constexpr int levelKind = 12;

/// The fields of an atom, between white space of any kind.
struct AtomFields {
    int number = 0;
    int residueNumber = 0;
    std::string residueName;
    std::string name;
    std::string type;
    float charge = 0;
    float mass = 0;

    static constexpr int count = 9;

    void read(tarnex::StreamExtractor& in) {
        std::string_view word;
        int fixed = 0;
        in >> number >> word >> residueNumber;
        in >> word;
        residueName = word;
        in >> word;
        name = word;
        in >> word;
        type = word;
        in >> charge >> mass >> fixed;
    }

    /// A name begins with the symbol of its element, whose second letter is a small one: CA is carbon, Ca calcium.
    molchem::Element const& element(molchem::ElementTable const& elements) const {
        bool const isLong = name.size() > 1 && name[1] >= 'a' && name[1] <= 'z';
        char const symbol[] = {name[0], isLong ? name[1] : '\0', '\0'};
        return *elements.getElement(symbol, false);
    }
};

/// A level of groups of atoms and the section that fills it.
struct GroupSection {
    char const* token;
    char const* level;
    MtGroup* (*readGroup)(tarnex::StreamExtractor& in, tarnex::GroupPool& pool);
    int atomsPerGroup;
};

/// Atoms count from 1 in the file.
int readAtomIndex(tarnex::StreamExtractor& in) {
    int number = 0;
    in >> number;
    return static_cast<int>(static_cast<unsigned>(number) - 1U);
}

template <int size>
MtGroup* readGroup(tarnex::StreamExtractor& in, tarnex::GroupPool& pool) {
    auto* group = new (pool) MtSmallGroup<size>;
    for (MtGroupRef& element : group->elements) element = {0, readAtomIndex(in)};
    return group;
}

constexpr GroupSection groupSections[] = {
    {"!NTHETA: angles", "angles", readGroup<3>, 3},           {"!NPHI: dihedrals", "dihedrals", readGroup<4>, 4},
    {"!NIMPHI: impropers", "imp_dihedrals", readGroup<4>, 4}, {"!NDON: donors", "donors", readGroup<2>, 2},
    {"!NACC: acceptors", "acceptors", readGroup<2>, 2},
};

/// 0 if the stream cannot tell.
std::streamoff bytesLeft(std::istream& stream) {
    auto const here = stream.tellg();
    if (here < 0) return 0;
    stream.seekg(0, std::ios::end);
    auto const end = stream.tellg();
    stream.seekg(here);
    return end - here;
}

/// Reads the sections in their order into an empty topology. A bad number stops all extraction, so that the section
/// behind it is not found.
class PSFReader {
public:
    PSFReader(std::istream& stream, MolTopology& psfTopology)
        : topology(psfTopology), bytes(bytesLeft(stream)), in(stream) {}

    void read() {
        readTitle();
        readAtoms();
        readBonds();
        for (GroupSection const& section : groupSections) readGroups(section);
    }

private:
    void readTitle();
    int readCount(char const* word);
    void readAtoms();
    void addAtom(AtomFields const& fields);
    void startResidue(int atom, char const* name);
    int readSectionHead(char const* token);
    void readBonds();
    void readGroups(GroupSection const& section);

    /// Makes room for `count` groups of some fields each, as far as the file can hold them.
    void prepareLevel(int level, int count, int fields) {
        auto const possible = static_cast<int>(std::min<std::streamoff>(bytes / (2 * fields) + 1, count));
        topology.prepLevelSize(level, possible);
    }

    MolTopology& topology;
    std::streamoff bytes;
    tarnex::StreamExtractor in;

    molchem::ElementTable const& elements = tarnex::elementTable();
    MtIntegerAttribute* atomicNumbers = nullptr;
    MtFloatAttribute* radii = nullptr;
    MtFloatAttribute* charges = nullptr;
    MtFloatAttribute* masses = nullptr;
    MtStringAttribute* names = nullptr;
    MtStringAttribute* types = nullptr;
    int residueLevel = -1;
    MtStringAttribute* residueNames = nullptr;
    MtIntraLevelRange* residue = nullptr;
};

void PSFReader::readTitle() {
    std::string_view word;
    in >> word;
    if (word != "PSF") throw TokenExpected("PSF");
    int const lines = readCount("!NTITLE");
    in.ignoreLine();
    for (int i = 0; i < lines && in; ++i) in.ignoreLine();
}

/// A number with a word behind it that tells what it counts.
int PSFReader::readCount(char const* word) {
    int count = 0;
    std::string_view found;
    in >> count >> found;
    if (found != word) throw TokenExpected(word);
    return count;
}

void PSFReader::readAtoms() {
    int const count = readCount("!NATOM");
    prepareLevel(0, count, AtomFields::count);
    MtGroupingLevel* level = topology.getLevel(0);
    level->clearFlag(MtGroupingLevel::flagBit5);
    atomicNumbers = level->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    radii = level->floatAttribute("radius", MtGroupingLevel::CREATE, true);
    charges = level->floatAttribute("charge", MtGroupingLevel::CREATE, true);
    masses = level->floatAttribute("mass", MtGroupingLevel::CREATE, true);
    names = level->stringAttribute("type", MtGroupingLevel::CREATE, true);
    types = level->stringAttribute("type_name", MtGroupingLevel::CREATE, true);
    residueLevel = topology.addLevel("residues", 0, levelKind, -1);
    residueNames = topology.getLevel(residueLevel)->stringAttribute("name", MtGroupingLevel::CREATE, true);

    AtomFields fields;
    int lastNumber = 0;
    int lastResidue = 0;
    for (int atom = 0; atom < count; ++atom) {
        fields.read(in);
        if (!in) return;
        int const expected = static_cast<int>(static_cast<unsigned>(lastNumber) + 1U);
        if (fields.number != expected) {
            std::cerr << "Warning: Expected atom nr. " + std::to_string(expected) + " but found nr. " +
                             std::to_string(fields.number) + " !\n";
        }
        lastNumber = fields.number;
        addAtom(fields);
        if (fields.residueNumber != lastResidue) startResidue(atom, fields.residueName.c_str());
        if (residue) residue->last = atom;
        lastResidue = fields.residueNumber;
    }
}

void PSFReader::addAtom(AtomFields const& fields) {
    int const atom = topology.addGroup(0, new (topology.groupPool) MtAtom).groupIx;
    molchem::Element const& element = fields.element(elements);
    names->setValue(atom, fields.name.c_str());
    atomicNumbers->setValue(atom, element.getAtomicNumber());
    radii->setValue(atom, element.getRadius());
    charges->setValue(atom, fields.charge);
    masses->setValue(atom, fields.mass);
    types->setValue(atom, fields.type.c_str());
}

void PSFReader::startResidue(int atom, char const* name) {
    residue = new (topology.groupPool) MtIntraLevelRange(0, atom, atom);
    residueNames->setValue(topology.addGroup(residueLevel, residue).groupIx, name);
}

/// Returns the number of entries. Text behind the token is passed over, however long it is.
int PSFReader::readSectionHead(char const* token) {
    char line[200];
    int count = 0;
    in >> count;
    in.skipWhiteSpace();
    std::size_t const length = in.getLine(line, sizeof line);
    bool const isCut = in.fail() && length == sizeof line - 1;
    if (isCut) {
        in.clear();
        in.ignoreLine();
    }
    if (std::strncmp(line, token, std::strlen(token)) != 0) throw TokenExpected(token);
    return count;
}

void PSFReader::readBonds() {
    int const count = readSectionHead("!NBOND: bonds");
    prepareLevel(1, count, 2);
    MtGroupingLevel* level = topology.getLevel(1);
    level->clearFlag(MtGroupingLevel::flagBit5);
    level->clearFlag(MtGroupingLevel::flagBit0);
    for (int i = 0; i < count; ++i) {
        int const first = readAtomIndex(in);
        int const second = readAtomIndex(in);
        if (!in) return;
        topology.addBond(new (topology.groupPool) MtBond(first, second));
    }
}

void PSFReader::readGroups(GroupSection const& section) {
    int const count = readSectionHead(section.token);
    int const level = topology.addLevel(section.level, 0, levelKind, -1);
    prepareLevel(level, count, section.atomsPerGroup);
    topology.getLevel(level)->clearFlag(MtGroupingLevel::flagBit5);
    for (int i = 0; i < count; ++i) {
        MtGroup* group = section.readGroup(in, topology.groupPool);
        if (!in) {
            delete group;
            return;
        }
        topology.addGroup(level, group);
    }
}

} // namespace

void MolTrajectoryDCD::readPSF() {
    PSFReader(*psfStream, *topology).read();
}
