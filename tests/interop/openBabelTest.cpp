#include "chemistry/Resource.h"
#include "interop/programs.h"
#include "mdl/MDLIO.h"
#include "pdb/PDBread.h"
#include "pdb/PDBwrite.h"
#include "tripos/TriposIO.h"

#include <array>
#include <map>
#include <regex>

namespace {

using namespace tarnex::test;

/// What Open Babel makes of a file in another format.
std::string obabel(std::string const& file, std::string const& format) {
    return output("obabel '" + file + "' -o" + format);
}

/// The atoms and bonds of each record, as in columns 1 to 6 of its counts line.
std::string counts(std::string const& sdf) {
    std::string result;
    std::istringstream lines(sdf);
    for (std::string line; std::getline(lines, line);) {
        if (line.find("V2000") != std::string::npos) result += line.substr(0, 6) + "\n";
    }
    return result;
}

/// The SMILES without the titles.
std::string smiles(std::string const& file) {
    std::string result;
    std::istringstream lines(obabel(file, "can"));
    for (std::string line; std::getline(lines, line);) result += line.substr(0, line.find('\t')) + "\n";
    return result;
}

class OpenBabel : public testing::Test {
protected:
    void SetUp() override {
        if (!succeeds("command -v obabel")) GTEST_SKIP() << "Open Babel is not installed";
    }
};

TEST_F(OpenBabel, ReadsTheAtomsBondsAndChargesOfOurSdf) {
    std::string const original = TARNEX_EXAMPLES "/ligands.sdf";
    std::string const ours = scratchPath("ours.sdf");
    auto const bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(original.c_str());
    ASSERT_EQ(bundle.size, 3);
    McDArray<MolTrajectory*> trajectories;
    for (auto const& trajectory : bundle) trajectories.append(trajectory);
    ASSERT_TRUE(MDLIO(nullptr, nullptr).writeMDLMolTrajectoryBundle(trajectories, ours.c_str()));
    EXPECT_EQ(counts(obabel(ours, "sdf")), counts(readFile(original)));

    // Open Babel takes the charges of the atom lines only if "M  END" has its two blanks.
    std::string const text = std::regex_replace(readFile(ours), std::regex("M END"), "M  END");
    EXPECT_EQ(smiles(writeFile("twoBlanks.sdf", text)), smiles(original));
}

/// The three molecules of the sample, with aromatic bonds, as a mol2 file of ours.
std::string writeMol2() {
    auto const bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(TARNEX_EXAMPLES "/ligands.sdf");
    McDArray<MolObject*> objects;
    for (MolTrajectory* trajectory : bundle) objects.append(dynamic_cast<MolObject*>(trajectory));
    std::string const file = scratchPath("ours.mol2");
    EXPECT_TRUE(TriposIO(nullptr, nullptr).writeTriposBundle(objects, file.c_str()));
    return file;
}

TEST_F(OpenBabel, CountsTheAtomsAndBondsOfOurMol2) {
    EXPECT_EQ(counts(obabel(writeMol2(), "sdf")), counts(readFile(TARNEX_EXAMPLES "/ligands.sdf")));
}

/// Atoms by element and residue, as columns 18-26 and 77-78 of atom lines tell.
std::map<std::string, int> atomsOfPdb(std::string const& text) {
    std::map<std::string, int> atoms;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        if (line.rfind("ATOM  ", 0) == 0 || line.rfind("HETATM", 0) == 0) {
            ++atoms[line.substr(17, 9) + line.substr(76, 2)];
        }
    }
    return atoms;
}

TEST_F(OpenBabel, CountsTheAtomsAndResiduesOfOurPdb) {
    std::string text;
    char line[100];
    for (int i = 0; i < 60; ++i) {
        std::snprintf(line, sizeof line, "ATOM  %5d  %-2s  ALA %c%4d    %8.3f%8.3f%8.3f  1.00  0.00           %c\n",
                      i + 1, std::array{"N", "CA", "C", "O", "CB"}[std::size_t(i % 5)], i < 30 ? 'A' : 'B', i / 5 + 1,
                      i * 1.1, i % 3 * 0.9, i < 30 ? 0.0 : 20.0, "NCCOC"[i % 5]);
        text += line;
    }
    McDArray<McHandle<MolTrajectory>> bundle;
    ASSERT_EQ(PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(writeFile("in.pdb", text).c_str(), bundle), 1);
    Molecule molecule(bundle[0]->getTopology(), false);
    ASSERT_TRUE(bundle[0]->getTimeStep(0, &molecule));
    std::string const ours = scratchPath("ours.pdb");
    PDBwrite pdb(molchem::Resource::getInstance()->residueDatabase, nullptr, nullptr);
    ASSERT_TRUE(pdb.writePDBMolecule(&molecule, ours.c_str(), false));
    EXPECT_EQ(atomsOfPdb(readFile(ours)), atomsOfPdb(text));
    EXPECT_EQ(atomsOfPdb(obabel(ours, "pdb")), atomsOfPdb(text));
}

} // namespace
