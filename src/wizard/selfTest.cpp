#include "foundation/McFilename.h"
#include "wizard/TarnexWizard.h"

#include <cstdio>
#include <memory>

namespace {

constexpr char const* moleculesToLoad = "/share/molecules/MolWizardTest/Load/Molecules/";
constexpr char const* savedMolecules = "/share/molecules/MolWizardTest/Save/Molecules/";
constexpr char const* savedTrajectories = "/share/molecules/MolWizardTest/Save/MolTrajectories/";

struct LoadedSample {
    char const* name;
    TarnexWizard::ReadMolecules type;
    /// Null for a format of one file.
    char const* second;
    char const* failure;
    /// The name that the message tells.
    char const* toldName;
};

template <class Selector>
struct SavedSample {
    char const* name;
    Selector type;
};

using Read = TarnexWizard::ReadMolecules;
using WriteMolecule = TarnexWizard::WriteMolecules;
using WriteTrajectory = TarnexWizard::WriteTrajectories;

/// The last one loads one file and tells of another.
constexpr LoadedSample loadedMolecules[] = {
    {"AMBER.top", Read::READ_AMBER, nullptr, "error while reading AMBER Molecule: %s\n\n", "AMBER.top"},
    {"GRO_SINGLE.gro", Read::READ_GRO_SINGLE, "GRO_SINGLE.top", "error while reading GRO_SINGLE Molecule: %s\n\n",
     "GRO_SINGLE.gro"},
    {"GRO.gro", Read::READ_GRO, "GRO.top", "error while reading GRO Molecule: %s\n\n", "GRO.gro"},
    {"MDL.sdf", Read::READ_MDL, nullptr, "error while reading MDL Molecule: %s\n\n", "MDL.sdf"},
    {"PDB.pdb", Read::READ_PDB, nullptr, "error while reading PDB Molecule: %s\n\n", "PDB.pdb"},
    {"TRIPOS.mol2", Read::READ_TRIPOS, nullptr, "error while reading TRIPOS Molecule: %s\n\n", "TRIPOS.mol2"},
    {"UNICHEM.uni", Read::READ_UNICHEM, nullptr, "error while reading UNICHEM Molecule: %s\n\n", "UNICHEM.uni"},
    {"QLT.uni", Read::READ_QLT, nullptr, "error while reading QLTMolecule: %s\n\n", "QLT.qlt"},
};

/// The names of GROMACS files get their extensions from the writers.
constexpr SavedSample<WriteMolecule> moleculesToSave[] = {
    {"GRO_SINGLE", WriteMolecule::WRITE_GRO_SINGLE}, {"GRO", WriteMolecule::WRITE_GRO},
    {"MDL.sdf", WriteMolecule::WRITE_MDL},           {"PDB.pdb", WriteMolecule::WRITE_PDB},
    {"TRIPOS.mol2", WriteMolecule::WRITE_TRIPOS},    {"UNI.uni", WriteMolecule::WRITE_UNICHEM},
};

constexpr SavedSample<WriteTrajectory> trajectoriesToSave[] = {
    {"GRO_SINGLE", WriteTrajectory::WRITE_GRO_SINGLE},
    {"GRO", WriteTrajectory::WRITE_GRO},
    {"MDL.sdf", WriteTrajectory::WRITE_MDL},
    {"PDB.pdb", WriteTrajectory::WRITE_PDB},
};

} // namespace

void TarnexWizard::readTestMolecule() {
    McFilename const folder(moleculesToLoad);
    for (LoadedSample const& sample : loadedMolecules) {
        McString const second = folder + sample.second;
        std::unique_ptr<Molecule> const molecule(
            readMolecule(folder + sample.name, sample.type, sample.second ? second.data : nullptr));
        if (!molecule) std::printf(sample.failure, (folder + sample.toldName).data);
    }
}

void TarnexWizard::writeTestMolecule(Molecule* molecule) {
    McFilename const folder(savedMolecules);
    for (auto const& sample : moleculesToSave) writeMolecule(folder + sample.name, molecule, sample.type);
}

void TarnexWizard::writeTestMolTrajectory(MolTrajectory* trajectory) {
    McFilename const folder(savedTrajectories);
    for (auto const& sample : trajectoriesToSave) writeMolTrajectory(folder + sample.name, trajectory, sample.type);
}

void TarnexWizard::readTestMolTrajectory() {}
