#include "gromacs/structureFiles.h"

#include "gromacs/records.h"
#include "model/MtListGroups.h"
#include "model/members.h"
#include "textio/writer.h"

#include <algorithm>
#include <cstdio>
#include <cstring>

namespace tarnex::gromacs {

namespace {

constexpr char const* residueLevel = "residues";

/// The last residue that holds each atom, or -1.
McDArray<int> residuesOfAtoms(MolTopology const& topology, int residuesIx, int numAtoms) {
    McDArray<int> residueOfAtom(numAtoms);
    std::fill(residueOfAtom.begin(), residueOfAtom.end(), -1);
    McDArray<MtGroup*> const& residues = topology.levels[residuesIx]->groups;
    McDArray<int> atoms;
    for (int residue = 0; residue < residues.size; ++residue) {
        topology.getAtomsOfGroup({residuesIx, residue}, atoms);
        for (int const atom : atoms) residueOfAtom[atom] = residue;
    }
    return residueOfAtom;
}

/// What has been written may have failed to arrive, as on a full disk.
bool hasArrived(writer& out) {
    out.flush();
    return std::ferror(out.file) == 0;
}

void writeAtoms(Molecule& molecule, int residuesIx, writer& out) {
    MolTopology& topology = *molecule.getTopology();
    MtGroupingLevel* residues = topology.getLevel(residuesIx);
    auto* residueTypes = residues->stringAttribute("type", MtGroupingLevel::CREATE, true);
    residues->stringAttribute("name", MtGroupingLevel::CREATE, true);
    MtGroupingLevel* atoms = topology.getLevel(0);
    atoms->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    auto* types = atoms->stringAttribute("type", MtGroupingLevel::CREATE, true);
    int const numAtoms = molecule.getNumAtoms();
    McDArray<int> const residueOfAtom = residuesOfAtoms(topology, residuesIx, numAtoms);
    for (int i = 0; i < numAtoms; ++i) {
        AtomLine line;
        line.residueNumber = residueOfAtom[i] + 1;
        line.residueName = residueTypes->getValue(residueOfAtom[i]);
        line.atomName = types->getValue(i);
        line.atomNumber = i + 1;
        if (i < molecule.coords.size) {
            McVec3f const& position = molecule.coords[i];
            line.position = McVec3f(position.x / angstromPerNanometre, position.y / angstromPerNanometre,
                                    position.z / angstromPerNanometre);
        }
        line.write(out);
    }
}

bool writeGro(Molecule& molecule, int residuesIx, char const* name) {
    writer out(name);
    if (!out.isOpen()) return false;
    writeGroHead(out, molecule.getNumAtoms());
    writeAtoms(molecule, residuesIx, out);
    writeGroBox(out);
    return hasArrived(out);
}

bool writeTop(MolTopology& topology, char const* name) {
    MtGroupingLevel* bonds = topology.getLevel(1);
    auto* types = bonds->integerAttribute("type", MtGroupingLevel::CREATE, true);
    writer out(name);
    if (!out.isOpen()) return false;
    writeBondsHead(out);
    for (int i = 0; i < bonds->groups.size; ++i) {
        int atomA = -1;
        int atomB = -1;
        if (!getExistingBondAtoms(topology, bonds->groups[i], atomA, atomB)) continue;
        BondedRow<2>{{atomA + 1, atomB + 1}, types->getValue(i)}.write(out);
    }
    writeSectionEnd(out);
    return hasArrived(out);
}

} // namespace

StructureNames::StructureNames(McFilename const& fileName) : gro(fileName) {
    bool const isGro = std::strcmp(fileName.extension(), ".gro") == 0 || std::strcmp(fileName.extension(), ".GRO") == 0;
    if (!isGro) gro += ".gro";
    top = gro;
    std::strcpy(top.data + top.length() - 4, ".top");
}

bool isWritable(Molecule* molecule) {
    return molecule && molecule->getTopology() && molecule->getTopology()->getLevelIx(residueLevel) >= 0;
}

bool writeStructure(Molecule& molecule, StructureNames const& names) {
    MolTopology& topology = *molecule.getTopology();
    return writeGro(molecule, topology.getLevelIx(residueLevel), names.gro) && writeTop(topology, names.top);
}

} // namespace tarnex::gromacs
