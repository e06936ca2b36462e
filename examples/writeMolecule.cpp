// Builds a molecule of water and writes it as an SD file and in Tarnex's own format.
#include "tarnex.h"

int main() {
    // The topology holds atoms, bonds and whatever belongs to them; the molecule adds a position for each atom.
    auto* topology = new MolTopology;
    McHandle<Molecule> const molecule(new Molecule(topology, true));
    topology->setName("water");

    MtIntegerAttribute* atomicNumber =
        topology->getLevel(0)->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    for (int const number : {8, 1, 1}) {
        int const atom = topology->addGroup(0, new MtAtom).groupIx;
        atomicNumber->setValue(atom, number);
    }

    MtIntegerAttribute* bondType = topology->getLevel(1)->integerAttribute("type", MtGroupingLevel::CREATE, true);
    for (int const hydrogen : {1, 2}) {
        int const bond = topology->addBond(new MtBond(0, hydrogen)).groupIx;
        bondType->setValue(bond, 1);
    }

    molecule->coords.resize(3); // in Angstrom
    molecule->coords[0] = McVec3f(0.0F, 0.0F, 0.1173F);
    molecule->coords[1] = McVec3f(0.0F, 0.7572F, -0.4692F);
    molecule->coords[2] = McVec3f(0.0F, -0.7572F, -0.4692F);

    topology->setData(new MolDataString("name", "water"));

    bool const written =
        TarnexWizard::writeMolecule("water.sdf", molecule, TarnexWizard::WriteMolecules::WRITE_MDL) != 0 &&
        TarnexWizard::writeMolecule("water.qlt", molecule, TarnexWizard::WriteMolecules::WRITE_QLT) != 0;
    return written ? 0 : 1;
}
