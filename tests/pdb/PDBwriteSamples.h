#pragma once

#include "chemistry/Resource.h"
#include "pdb/PDBwrite.h"
#include "support/model.h"
#include "support/testing.h"

namespace tarnex::test {

/// Builds a molecule of residues, level by level; each level exists from its first group on.
class PdbSample {
public:
    explicit PdbSample(std::initializer_list<char const*> residues = {}) {
        for (char const* residue : residues) addResidue(residue);
    }

    /// Such as "GLY 5 N:7 CA:6": type, number, and atoms with their atomic numbers; without any a carbon.
    void addResidue(std::string const& text) {
        std::istringstream words(text);
        std::string type, atom;
        int number = 0, size = 0;
        for (words >> type >> number; words >> atom; ++size) {
            std::size_t const colon = atom.find(':');
            addAtom(atom.substr(0, colon).c_str(), std::stoi(atom.substr(colon + 1)));
        }
        if (size == 0) addAtom("C", 6);
        addResidue(type.c_str(), number, std::max(size, 1));
    }
    void addAtom(char const* type, int atomicNumber) {
        int const atom = topology->addGroup(0, new MtAtom).groupIx;
        setText(topology, 0, "type", atom, type);
        setInteger(topology, 0, "atomic_number", atom, atomicNumber);
        auto const place = static_cast<float>(atom);
        molecule->coords.append(McVec3f(place + 0.5F, 0.0F - place, 100.0F));
    }
    /// A residue of the last atoms.
    void addResidue(char const* type, int number, int numAtoms) {
        int const end = molecule->getNumAtoms();
        int const residue = addGroup("residues", 0, new MtIntraLevelRange(0, end - numAtoms, end - 1));
        setText(topology, residuesIx(), "type", residue, type);
        setInteger(topology, residuesIx(), "pdb_index", residue, number);
    }
    void addChain(char const* name, int first, int last) {
        addGroup("chains", residuesIx(), new MtIntraLevelRange(residuesIx(), first, last), name);
    }
    /// A list of residues, or of groups of another level.
    void addElement(char const* type, char const* name, std::initializer_list<int> members, int membersIx = -1) {
        MtGroup* list = listIn(membersIx < 0 ? residuesIx() : membersIx, members);
        int const element = addGroup("secondary_structure", residuesIx(), list, name);
        if (type) setText(topology, topology->getLevelIx("secondary_structure"), "type", element, type);
    }
    int addStrand(int first, int last) {
        return addGroup("strands", residuesIx(), new MtIntraLevelRange(residuesIx(), first, last));
    }
    void addSite(char const* name, std::initializer_list<int> residues) {
        addGroup("sites", residuesIx(), listIn(residuesIx(), residues), name);
    }
    void addBond(int atomA, int atomB) { topology->addBond(new MtBond(atomA, atomB)); }

    int residuesIx() { return level("residues", 0); }
    int strandsIx() { return level("strands", residuesIx()); }

    MolTopology* topology = new MolTopology;
    std::unique_ptr<Molecule> molecule = std::make_unique<Molecule>(topology, true);

private:
    static MtGroup* listIn(int levelIx, std::initializer_list<int> members) {
        MtDynamicGroup* list = listOf({});
        for (int const member : members) list->members.append({levelIx, member});
        return list;
    }
    int level(char const* name, int lowerLevelIx) {
        int const levelIx = topology->getLevelIx(name);
        return levelIx >= 0 ? levelIx : topology->addLevel(name, lowerLevelIx, 12, -1);
    }
    int addGroup(char const* levelName, int lowerLevelIx, MtGroup* group, char const* name = nullptr) {
        int const levelIx = level(levelName, lowerLevelIx);
        int const groupIx = topology->addGroup(levelIx, group).groupIx;
        if (name) setText(topology, levelIx, "name", groupIx, name);
        return groupIx;
    }
};

inline PDBwrite pdbWriter(std::ostream* messages = nullptr, McProgressInterface* progress = nullptr) {
    return {molchem::Resource::getInstance()->residueDatabase, messages, progress};
}

/// The file that the molecule is written to.
inline std::string written(Molecule& molecule, std::ostream* messages = nullptr,
                           McProgressInterface* progress = nullptr, bool chargeColumn = false) {
    std::string const path = scratchPath("written.pdb");
    EXPECT_TRUE(pdbWriter(messages, progress).writePDBMolecule(&molecule, path.c_str(), chargeColumn));
    return readFile(path);
}

/// Those lines of the file that begin with a keyword.
inline std::string writtenRecords(PdbSample const& sample, std::string const& keyword) {
    std::istringstream file(written(*sample.molecule));
    std::string records;
    for (std::string line; std::getline(file, line);) {
        if (line.starts_with(keyword)) records += line + "\n";
    }
    return records;
}

/// Lines filled up with blanks to 80 columns; one that closes with '|' ends there.
inline std::string cards(std::initializer_list<char const*> lines) {
    std::string text;
    for (std::string line : lines) {
        if (!line.empty() && line.back() == '|')
            line.pop_back();
        else if (line.size() < 80)
            line.resize(80, ' ');
        text += line + "\n";
    }
    return text;
}

} // namespace tarnex::test
