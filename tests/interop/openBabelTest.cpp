#include "mdl/MDLIO.h"
#include "support/files.h"

#include <cstdio>
#include <cstdlib>
#include <gtest/gtest.h>
#include <regex>

namespace {

using namespace tarnex::test;

/// What Open Babel makes of a file in another format; its own messages are dropped.
std::string obabel(std::string const& file, std::string const& format) {
    std::string output;
    FILE* pipe = popen(("obabel '" + file + "' -o" + format + " 2>/dev/null").c_str(), "r");
    char block[4096];
    while (std::size_t const count = std::fread(block, 1, sizeof block, pipe)) output.append(block, count);
    pclose(pipe);
    return output;
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

TEST(OpenBabel, ReadsTheAtomsBondsAndChargesOfOurSdf) {
    if (std::system("command -v obabel >/dev/null") != 0) GTEST_SKIP() << "Open Babel is not installed";
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

} // namespace
