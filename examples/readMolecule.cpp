// Reads the first molecule of a file and prints its atoms.
#include "tarnex.h"

#include <cstdio>
#include <string>

int main(int argc, char** argv) {
    std::string const folder = argc > 1 ? argv[1] : ".";
    std::string const file = folder + "/ligands.sdf";

    // Null if the file cannot be read; otherwise the handle keeps the molecule for as long as it is needed.
    McHandle<Molecule> const molecule(
        TarnexWizard::readMolecule(file.c_str(), TarnexWizard::ReadMolecules::READ_AUTO, nullptr));
    if (!molecule) return 1;

    molInfo const info(molecule->getTopology());
    std::printf("%s: %d atoms\n", molecule->getTopology()->getName(), molecule->getNumAtoms());
    for (int i = 0; i < molecule->getNumAtoms(); ++i) {
        McVec3f const& position = molecule->coords[i];
        std::printf("%3d  atomic number %2d  %8.4f %8.4f %8.4f\n", i, info.atomicNumber->getValue(i), position.x,
                    position.y, position.z);
    }
    return 0;
}
