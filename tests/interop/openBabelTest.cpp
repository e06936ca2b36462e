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

/// What matches in each line with a match.
std::string inEachLine(std::string const& text, char const* pattern) {
    std::string result;
    std::regex const expression(pattern);
    for (std::sregex_iterator match(text.begin(), text.end(), expression), end; match != end; ++match)
        result += match->str(1) + "\n";
    return result;
}

/// The atoms and bonds of each record, as in columns 1 to 6 of its counts line.
std::string counts(std::string const& sdf) {
    return inEachLine(sdf, "(......).*V2000");
}

TEST(OpenBabel, ReadsTheAtomsBondsAndChargesOfOurSdfAndMol2) {
    if (!succeeds("command -v obabel")) GTEST_SKIP() << "Open Babel is not installed";
    std::string const original = TARNEX_EXAMPLES "/ligands.sdf", sdf = scratchPath("a.sdf"),
                      mol2 = scratchPath("a.mol2");
    auto const bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(original.c_str());
    McDArray<MolTrajectory*> trajectories;
    McDArray<MolObject*> objects;
    for (MolTrajectory* trajectory : bundle) {
        trajectories.append(trajectory);
        objects.append(dynamic_cast<MolObject*>(trajectory));
    }
    ASSERT_TRUE(MDLIO(nullptr, nullptr).writeMDLMolTrajectoryBundle(trajectories, sdf.c_str()));
    ASSERT_TRUE(TriposIO(nullptr, nullptr).writeTriposBundle(objects, mol2.c_str()));
    EXPECT_EQ(counts(obabel(sdf, "sdf")), counts(readFile(original)));
    EXPECT_EQ(counts(obabel(mol2, "sdf")), counts(readFile(original)));

    // Open Babel takes the charges of the atom lines only if "M  END" has its two blanks.
    std::string const text = std::regex_replace(readFile(sdf), std::regex("M END"), "M  END");
    auto const smiles = [](std::string const& file) { return inEachLine(obabel(file, "can"), "(.*)\t.*"); };
    EXPECT_EQ(smiles(writeFile("twoBlanks.sdf", text)), smiles(original));
    EXPECT_THAT(smiles(original), HasSubstr("[O-]"));
}

} // namespace
