#include "interop/programs.h"
#include "mdl/MDLIO.h"
#include "tripos/TriposIO.h"

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

} // namespace
