#include "tarnex.h"
#include "tarnexVersion.h"

#include <cstdio>
#include <cstring>
#include <memory>

/// host <sample file> <residue database>: fails unless the loaded library is the one of these headers, reads the
/// caffeine of the sample file, and has a residue database of its own at that path.
int main(int argc, char** argv) {
    if (argc != 3) return 2;
    int const version = TARNEX_VERSION_MAJOR * 10000 + TARNEX_VERSION_MINOR * 100 + TARNEX_VERSION_PATCH;
    char const* const database = molchem::Resource::getInstance()->residueDatabase.data;
    McDArray<McHandle<MolTrajectory>> const residues =
        TarnexWizard::readBundle(database, TarnexWizard::ReadBundles::READ_QLT);
    std::unique_ptr<Molecule> const molecule(
        TarnexWizard::readMolecule(argv[1], TarnexWizard::ReadMolecules::READ_AUTO, nullptr));
    int const numAtoms = molecule ? molecule->getNumAtoms() : 0;
    std::printf("version %d, %d atoms, %d residues in %s\n", velorpackage_tarnex(), numAtoms,
                static_cast<int>(residues.size), database);
    bool const good = velorpackage_tarnex() == version && numAtoms == 24 && residues.size > 0;
    return good && std::strcmp(database, argv[2]) == 0 ? 0 : 1;
}
