#pragma once

#include "chemistry/Resource.h"
#include "pdb/PDBwrite.h"
#include "support/model.h"
#include "support/testing.h"

namespace tarnex::test {

/// Builds a molecule of residues, level by level; each level exists from its first group on.
class PdbSample {
public:
    PdbSample() : topology(new MolTopology), molecule(new Molecule(topology, true)) {}

    int addAtom(char const* type, int atomicNumber) {
        int const atom = topology->addGroup(0, new MtAtom).groupIx;
        text(0, "type", atom, type);
        integer(0, "atomic_number", atom, atomicNumber);
        auto const place = static_cast<float>(atom);
        molecule->coords.append(McVec3f(place + 0.5F, 0.0F - place, 100.0F));
        return atom;
    }
    /// A residue of the last `size` atoms.
    int addResidue(char const* type, int number, int size) {
        int const end = molecule->getNumAtoms();
        int const residue = addGroup("residues", 0, new MtIntraLevelRange(0, end - size, end - 1));
        text(level("residues", 0), "type", residue, type);
        integer(level("residues", 0), "pdb_index", residue, number);
        return residue;
    }
    /// A residue of one carbon.
    int addResidue(char const* type, int number) {
        addAtom("C", 6);
        return addResidue(type, number, 1);
    }
    /// Residues such as "GLY 5 N:7 CA:6 C:6": type, number, and the atoms with their atomic numbers.
    void addResidues(std::initializer_list<char const*> residues) {
        for (char const* residue : residues) {
            std::istringstream words(residue);
            std::string type, atom;
            int number = 0, size = 0;
            for (words >> type >> number; words >> atom; ++size) {
                std::size_t const colon = atom.find(':');
                addAtom(atom.substr(0, colon).c_str(), std::stoi(atom.substr(colon + 1)));
            }
            addResidue(type.c_str(), number, size);
        }
    }
    void addChain(char const* name, int first, int last) {
        addGroup("chains", residuesIx(), new MtIntraLevelRange(residuesIx(), first, last), name);
    }
    void addElement(char const* type, char const* name, std::initializer_list<int> residues) {
        addElementOf(type, name, residuesIx(), residues);
    }
    void addElementOf(char const* type, char const* name, int membersIx, std::initializer_list<int> members) {
        int const element = addGroup("secondary_structure", residuesIx(), listIn(membersIx, members), name);
        if (type) text(level("secondary_structure", residuesIx()), "type", element, type);
    }
    int addStrand(int first, int last) {
        return addGroup("strands", residuesIx(), new MtIntraLevelRange(residuesIx(), first, last));
    }
    void addSite(char const* name, std::initializer_list<int> residues) {
        addGroup("sites", residuesIx(), listIn(residuesIx(), residues), name);
    }
    void addBond(int atomA, int atomB) { topology->addBond(new MtBond(atomA, atomB)); }

    void text(int levelIx, char const* attribute, int group, char const* value) {
        setText(topology, levelIx, attribute, group, value);
    }
    void integer(int levelIx, char const* attribute, int group, int value) {
        setInteger(topology, levelIx, attribute, group, value);
    }

    int residuesIx() { return level("residues", 0); }
    int strandsIx() { return level("strands", residuesIx()); }

    MolTopology* topology;
    std::unique_ptr<Molecule> molecule;

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
        if (name) text(levelIx, "name", groupIx, name);
        return groupIx;
    }
};

inline McFilename residueDatabase() {
    return molchem::Resource::getInstance()->residueDatabase;
}

/// The text of the file that the molecule is written to.
inline std::string written(Molecule& molecule, std::ostream* messages = nullptr, bool chargeColumn = false) {
    std::string const path = scratchPath("written.pdb");
    EXPECT_TRUE(PDBwrite(residueDatabase(), messages, nullptr).writePDBMolecule(&molecule, path.c_str(), chargeColumn));
    return readFile(path);
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
