#include "program.h"

namespace {

using namespace tarnex::test;
using testing::Not;
using Pdb = ToolTest;

/// A glycine, a water, and an ion, moved along x.
std::string model(double x) {
    char text[1000];
    std::snprintf(text, sizeof text,
                  "ATOM      1  N   GLY A   1    %8.3f   0.000   0.000  1.00 10.00           N  \n"
                  "ATOM      2  CA  GLY A   1    %8.3f   1.400   0.000  1.00 10.00           C  \n"
                  "ATOM      3  C   GLY A   1    %8.3f   2.000   1.400  1.00 10.00           C  \n"
                  "ATOM      4  O   GLY A   1    %8.3f   1.300   2.400  1.00 10.00           O  \n"
                  "HETATM    5  O   HOH A   2    %8.3f   9.000   9.000  1.00 10.00           O  \n"
                  "HETATM    6 NA    NA A   3    %8.3f  11.000  10.000  1.00 10.00          NA1+\n",
                  x, x + 0.4, x + 0.5, x + 0.6, x, x);
    return text;
}

TEST_F(Pdb, InfoTellsOfResiduesByKindAndOfChains) {
    std::string const file = writeFile("in.pdb", "TITLE     SMALL\n" + model(0.0));
    std::string const text = runSilently({"info", file});
    EXPECT_THAT(text, HasSubstr("3 residues (1 amino acid, 1 ion, 1 water)"));
    EXPECT_THAT(text, HasSubstr("1 chains (A)"));
    auto const molecule = moleculesIn({file})[0];
    EXPECT_EQ(molecule["atoms"], 6);
    EXPECT_EQ(molecule["bonds"], 3); // the ion has none
    EXPECT_EQ(molecule["levels"][2]["kinds"]["water"], 1);
    EXPECT_EQ(molecule["levels"][3]["names"], nlohmann::json::array({"A"}));
}

TEST_F(Pdb, ModelsAreFrames) {
    std::string const file = writeFile("in.pdb", "MODEL        1\n" + model(0.0) + "ENDMDL\nMODEL        2\n" +
                                                     model(5.0) + "ENDMDL\nMODEL        3\n" + model(7.0) + "ENDMDL\n");
    std::string const picked = scratchPath("picked.pdb");
    EXPECT_EQ(Program({"convert", "--frames", "1:2", file, picked}).status(), 0);
    std::string const text = readFile(picked);
    EXPECT_THAT(text, testing::AllOf(HasSubstr("MODEL 0 "), HasSubstr("MODEL 1 "), Not(HasSubstr("MODEL 2 "))));
    EXPECT_THAT(text, HasSubstr("HETATM    1  N   GLY A   1       5.000   0.000   0.000  1.00 10.00           N0+\n"));
    // In place: the input is read to its end before it is replaced.
    EXPECT_EQ(Program({"convert", picked, picked}).status(), 0);
    EXPECT_EQ(readFile(picked), text);
}

TEST_F(Pdb, FailuresAreToldInOneLineAndLeaveNoFile) {
    std::string const out = scratchPath("out.pdb");
    auto const fails = [&](std::vector<std::string> const& arguments, std::string const& reason, rlim_t limit = 0) {
        EXPECT_THAT(failureOf(arguments, limit), HasSubstr(reason));
        EXPECT_FALSE(std::filesystem::exists(out));
    };
    fails({"convert", writeFile("empty.pdb", "REMARK nothing\n"), out}, "no ATOM or HETATM records");
    fails({"convert", writeFile("long.pdb", "HEADER" + std::string(2000, 'x') + "\n"), out}, "exceeds buffer");
    fails({"convert", TARNEX_EXAMPLES "/ligands.sdf", out}, "holds one molecule or trajectory, here are 3");
    fails({"convert", writeFile("in.pdb", model(0.0)), out}, "out.pdb: ", 300);
}

} // namespace
