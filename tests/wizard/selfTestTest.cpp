#include "model/MolTrajectoryMem.h"
#include "support/printed.h"
#include "wizard/TarnexWizard.h"

#include <filesystem>
#include <gtest/gtest.h>
#include <string>
#include <vector>

namespace {

using tarnex::test::printed;

/// The lines that begin with `start`, each once, without it.
std::vector<std::string> told(std::string const& text, std::string const& start) {
    std::vector<std::string> lines;
    for (std::size_t at = text.find(start); at != std::string::npos; at = text.find(start, at + 1)) {
        std::size_t const begin = at + start.size();
        std::string const line = text.substr(begin, text.find('\n', begin) - begin);
        if (lines.empty() || lines.back() != line) lines.push_back(line);
    }
    return lines;
}

TEST(TarnexWizardSelfTest, GoesOverAllFormats) {
    if (std::filesystem::exists("/share/molecules/MolWizardTest")) GTEST_SKIP() << "sample files are there";
    std::string const load = "/share/molecules/MolWizardTest/Load/Molecules/";
    EXPECT_EQ(told(printed(TarnexWizard::readTestMolecule), "error while reading "),
              (std::vector<std::string>{
                  "AMBER Molecule: " + load + "AMBER.top", "GRO_SINGLE Molecule: " + load + "GRO_SINGLE.gro",
                  "GRO Molecule: " + load + "GRO.gro", "MDL Molecule: " + load + "MDL.sdf",
                  "PDB Molecule: " + load + "PDB.pdb", "TRIPOS Molecule: " + load + "TRIPOS.mol2",
                  "UNICHEM Molecule: " + load + "UNICHEM.uni", "QLTMolecule: " + load + "QLT.qlt"}));
    Molecule molecule(new MolTopology, true);
    MolTrajectoryMem trajectory(&molecule, 1);
    std::string const save = "/share/molecules/MolWizardTest/Save/";
    EXPECT_EQ(told(printed([&] { TarnexWizard::writeTestMolecule(&molecule); }), "Not saving molecule to " + save),
              (std::vector<std::string>{"Molecules/GRO_SINGLE", "Molecules/GRO", "Molecules/MDL.sdf",
                                        "Molecules/PDB.pdb", "Molecules/TRIPOS.mol2", "Molecules/UNI.uni"}));
    // A failure of the GROMACS writers is -1, which is none to the wizard.
    EXPECT_EQ(
        told(printed([&] { TarnexWizard::writeTestMolTrajectory(&trajectory); }), "Not saving molecule to " + save),
        (std::vector<std::string>{"MolTrajectories/MDL.sdf", "MolTrajectories/PDB.pdb"}));
    EXPECT_EQ(printed(TarnexWizard::readTestMolTrajectory), "");
}

} // namespace
