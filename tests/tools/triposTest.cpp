#include "program.h"

namespace {

using namespace tarnex::test;

class Mol2 : public ToolTest {};
class UniChem : public ToolTest {};

std::string const methanol = "@<TRIPOS>MOLECULE\nmethanol\n3 2 1\nSMALL\nUSER_CHARGES\n\n@<TRIPOS>ATOM\n"
                             "1 C1 1.5 0 0 C.3 1 MOH 0.25\n2 O1 0 0.5 0 O.3 1 MOH -0.5\n3 H1 0 0 1 H 1 MOH 0.25\n"
                             "@<TRIPOS>BOND\n1 1 2 1\n2 2 3 1\n";

TEST_F(Mol2, TellsWhatIsLost) {
    writeFile("in.mol2", methanol + methanol);
    EXPECT_EQ(notesOf({"convert", "in.mol2", "out.sdf"}),
              "tarnex: note: sdf does not keep the levels residues; of the atoms type, name, charge\n");
    EXPECT_EQ(notesOf({"convert", "out.sdf", "back.mol2"}),
              "tarnex: note: mol2 does not keep of the atoms formal_charge\n");
    EXPECT_THAT(readFile(scratchPath("back.mol2")), StartsWith("# Name: back.mol2\n"));
    EXPECT_EQ(moleculesIn({"back.mol2"})[1]["name"], "methanol");
}

TEST_F(Mol2, EachStepIsAMolecule) {
    std::string const atom = "HETATM    1 FE   HEM A   1    %s   2.000   3.000  1.00 10.00          FE\n";
    std::string models;
    for (char const* x : {"   1.000", "   7.000", "   9.000"}) {
        models += "MODEL 1\n" + std::string(atom).replace(atom.find("%s"), 2, x) + "ENDMDL\n";
    }
    writeFile("in.pdb", models);
    runSilently({"convert", "--quiet", "--frames", "1:2", "in.pdb", "out.mol2"});
    std::string const text = readFile(scratchPath("out.mol2"));
    EXPECT_THAT(text, HasSubstr("\n1 0 1 0 0\nPROTEIN\nUSER_CHARGES\n"));
    EXPECT_THAT(text, HasSubstr("\n1       FE        7.00000000 2.00000000 3.00000000 Fe    1    HEM 0.000000\n"));
    EXPECT_THAT(text, HasSubstr(" 9.00000000 2.0"));
    EXPECT_EQ(moleculesIn({"out.mol2"}).size(), 2U);
}

TEST_F(Mol2, FailuresAreToldInOneLine) {
    writeFile("in.mol2", methanol + methanol.substr(0, methanol.find("@<TRIPOS>BOND")));
    EXPECT_THAT(failureOf({"convert", "in.mol2", "out.mol2"}),
                StartsWith("tarnex: in.mol2: Could not find @<TRIPOS>BOND record in line 24; "));
    EXPECT_EQ(filesLeft(), std::vector<std::string>{"in.mol2"});
    EXPECT_EQ(Program({"convert", "--keep-going", "in.mol2", "out.mol2"}).status(), 0);
    EXPECT_EQ(moleculesIn({"out.mol2"}).size(), 1U);

    writeFile("none.mol2", "nothing");
    EXPECT_EQ(failureOf({"info", "none.mol2"}),
              "tarnex: none.mol2: End of file reached without @<TRIPOS>MOLECULE record in line 1\n");
    writeFile("far.mol2", "@<TRIPOS>MOLECULE\nx\n1 0 0\n\nX\n@<TRIPOS>ATOM\n1 A 1e12 0 0 C\n");
    EXPECT_EQ(failureOf({"convert", "far.mol2", "out2.mol2"}),
              "tarnex: out2.mol2: a number does not fit in its columns\n");
    failureOf({"convert", "in.mol2", "--keep-going", "full.mol2"}, 100);
    EXPECT_FALSE(std::filesystem::exists(scratchPath("full.mol2")));
}

TEST_F(UniChem, HoldsOneMolecule) {
    writeFile("in.mol2", methanol);
    EXPECT_EQ(notesOf({"convert", "in.mol2", "out.uni"}),
              "tarnex: note: unichem does not keep the levels residues; of the atoms type, name, charge; data items\n");
    std::string const text = readFile(scratchPath("out.uni"));
    EXPECT_THAT(text, StartsWith("VERSION UNICHEM^TYPE 1\nSTRUCTURE 3 out.uni \n\nGEOMETRY\n"));
    runSilently({"convert", "out.uni", "again.uni"});
    EXPECT_EQ(moleculesIn({"out.uni"})[0]["formula"], "CHO");
    EXPECT_THAT(text, testing::EndsWith("BONDS\nMOLECULE 2 unnamed\n1 2 1\n2 3 1\n\nEND\n"));

    EXPECT_EQ(failureOf({"convert", "--quiet", "out.uni", "in.mol2", "two.uni"}),
              "tarnex: two.uni: a UniChem file holds one molecule or trajectory, here are 2\n");
    writeFile("cut.uni", text.substr(0, text.find("BONDS")));
    EXPECT_EQ(failureOf({"info", "cut.uni"}), "tarnex: cut.uni: Keyword END expected in line 9\n");
}

TEST_F(Mol2, NumbersThatNoTextHoldsAreRefused) {
    writeFile("nan.mol2", "@<TRIPOS>MOLECULE\nn\n1 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n1 C nan 0 0 C\n");
    for (char const* name : {"x.mol2", "x.uni", "x.pdb", "x.sdf", "x.xyz", "x.vde"}) {
        EXPECT_THAT(failureOf({"convert", "nan.mol2", name}),
                    HasSubstr("has a coordinate that is not a finite number"));
        EXPECT_FALSE(std::filesystem::exists(scratchPath(name)));
    }
    runSilently({"convert", "nan.mol2", "x.qlt"});
}

} // namespace
