// Writes the residue database: one molecule for each residue type that the library knows. Run by the build.

#include "chemistry/ElementTable.h"
#include "chemistry/ResidueTemplates.h"
#include "geometry.h"
#include "model/MolTrajectoryMem.h"
#include "model/Molecule.h"
#include "model/MtListGroups.h"
#include "qlt/MolTrajectoryVRK.h"

#include <cstdio>
#include <exception>
#include <vector>

namespace {

using tarnex::ResidueTemplate;
using tarnex::TemplateAtom;
using tarnex::TemplateBond;

constexpr auto create = MtGroupingLevel::CREATE;

/// Appends the atoms that are not optional, and returns the index of each template atom in the molecule, or -1.
std::vector<int> addAtoms(ResidueTemplate const& residue, Molecule& molecule) {
    MolTopology& topology = *molecule.getTopology();
    MtGroupingLevel& level = *topology.getLevel(0);
    level.clearFlag(MtGroupingLevel::flagBit5);
    auto* names = level.stringAttribute("name", create, true);
    auto* types = level.stringAttribute("type", create, true);
    auto* numbers = level.integerAttribute("atomic_number", create, true);
    auto* radii = level.floatAttribute("radius", create, true);

    std::vector<McVec3f> const places = residuedb::idealGeometry(residue);
    std::vector<int> atoms;
    for (TemplateAtom const& atom : residue.atoms) {
        if (atom.optional) {
            atoms.push_back(-1);
            continue;
        }
        molecule.coords.append(places[atoms.size()]);
        int const index = topology.addGroup(0, new MtAtom).groupIx;
        names->setValue(index, atom.name.c_str());
        types->setValue(index, atom.name.c_str());
        numbers->setValue(index, atom.atomicNumber);
        radii->setValue(index, tarnex::elementTable().getElement(atom.atomicNumber)->getRadius());
        atoms.push_back(index);
    }
    return atoms;
}

void addBonds(ResidueTemplate const& residue, std::vector<int> const& atoms, MolTopology& topology) {
    MtGroupingLevel& level = *topology.getLevel(1);
    level.clearFlag(MtGroupingLevel::flagBit5);
    level.clearFlag(MtGroupingLevel::flagBit0);
    auto* orders = level.integerAttribute("type", create, true);
    for (TemplateBond const& bond : residue.bonds) {
        int const a = atoms[static_cast<std::size_t>(bond.atomA)];
        int const b = atoms[static_cast<std::size_t>(bond.atomB)];
        if (a >= 0 && b >= 0) orders->setValue(topology.addBond(new MtBond(a, b)).groupIx, bond.order);
    }
}

void addResidue(ResidueTemplate const& residue, MolTopology& topology) {
    int const levelIx = topology.addLevel("residues", 0, 12, -1);
    MtGroupingLevel& level = *topology.getLevel(levelIx);
    level.clearFlag(MtGroupingLevel::flagBit5);
    level.setFlag(MtGroupingLevel::segmentation);
    int const lastAtom = static_cast<int>(topology.getLevel(0)->groups.size) - 1;
    int const group = topology.addGroup(levelIx, new MtIntraLevelRange(0, 0, lastAtom)).groupIx;
    level.stringAttribute("type", create, true)->setValue(group, residue.name.c_str());
    level.stringAttribute("name", create, true)->setValue(group, residue.name.c_str());
}

McHandle<MolTrajectory> makeTrajectory(ResidueTemplate const& residue) {
    McHandle<Molecule> const molecule = new Molecule(new MolTopology, true);
    MolTopology& topology = *molecule->getTopology();
    topology.setName(residue.name.c_str());
    addBonds(residue, addAtoms(residue, *molecule), topology);
    addResidue(residue, topology);
    return new MolTrajectoryMem(molecule, 1);
}

} // namespace

int main(int argc, char** argv) try {
    if (argc != 2) {
        std::fprintf(stderr, "usage: %s <output file>\n", argv[0]);
        return 2;
    }
    McDArray<McHandle<MolTrajectory>> bundle;
    for (ResidueTemplate const& residue : tarnex::ResidueTemplates::instance().all()) {
        bundle.append(makeTrajectory(residue));
    }
    if (tarnex::writeQltBundle(bundle, argv[1])) return 0;
    std::fprintf(stderr, "could not write %s\n", argv[1]);
    return 1;
} catch (std::exception const& error) {
    std::fprintf(stderr, "%s\n", error.what());
    return 1;
}
