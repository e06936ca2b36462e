#include "formatSamples.h"
#include "program.h"

namespace {

using namespace tarnex::test;
using testing::AllOf;
using testing::Not;
using Json = nlohmann::json;

class Amber : public ToolTest {};
class Charmm : public ToolTest {};
class Gromacs : public ToolTest {};
class Pdb : public ToolTest {};
class Xyz : public ToolTest {};
class Vde : public ToolTest {};
class Mol2 : public ToolTest {};
class UniChem : public ToolTest {};
class BundleList : public ToolTest {};

TEST_F(Amber, NamesStandInEitherOrder) {
    writeFile("a.top", amberTopology);
    writeFile("a.crd", restartText(2));
    writeFile("a.mdcrd", amberFrames);
    EXPECT_EQ(moleculesIn("a.top a.mdcrd"), moleculesIn("a.mdcrd a.top"));
    // A restart file is one though its extension is that of trajectories.
    std::vector<std::string> found;
    for (Json const& molecule : moleculesIn("a.mdcrd a.top a.mdcrd a.top a.top a.top a.crd a.mdcrd"))
        found.push_back(molecule["name"].get<std::string>() + " " + molecule["steps"].dump());
    EXPECT_THAT(found, ElementsAre("a.mdcrd 3", "a.mdcrd 3", "a.top 1", "a.crd 1", "a.mdcrd 3"));
    runSilently("convert -q --frames 1: a.top a.mdcrd out.sdf");
    EXPECT_THAT(content("out.sdf"), AllOf(HasSubstr("    4.0000    0.0000    0.0000 O"), Not(HasSubstr("    1.1000"))));
}

TEST_F(Charmm, TakesTheFilesInAnyOrder) {
    writeFile("longer.psf", PsfText());
    writeFile("run.dcd", DcdBytes{.swapped = true});
    writeFile("two.dcd", DcdBytes{.numFrames = 2});
    Json const molecules = moleculesIn("run.dcd longer.psf two.dcd");
    EXPECT_EQ(molecules[0]["name"], "run.dcd");
    EXPECT_EQ(molecules[1]["steps"], 2);
    runSilently("convert --quiet --frames 1::2 longer.psf run.dcd out.sdf");
    EXPECT_THAT(content("out.sdf"),
                AllOf(HasSubstr("    1.5000  101.5000  201.5000 O "), HasSubstr("    3.6250  103.6250  203.6250 H "),
                      Not(HasSubstr("    2.5000"))));
}

TEST_F(Gromacs, StructureAndTopologyAreOneInput) {
    writeFile("a.gro", gro("   0.500"));
    writeFile("A.TOP", waterBonds);
    Json const reports = Json::parse(runSilently("info --json a.gro A.TOP a.gro"));
    ASSERT_EQ(reports.size(), 2);
    EXPECT_EQ(reports[0]["molecules"][0]["bonds"], 2);
    EXPECT_EQ(reports[1]["molecules"][0]["bonds"], 0);
    EXPECT_THAT(notesOf("convert a.gro A.TOP out.gro"), HasSubstr("tarnex: note: out.top is written as well\n"));
    EXPECT_THAT(content("out.gro"), HasSubstr("    1  HOH   OW    1   0.500   0.000   0.000  0.0000"));
    EXPECT_THAT(content("out.top"), HasSubstr("    1     2     1\n    1     3     1\n"));
    // A stream takes the structure alone.
    EXPECT_EQ(runSilently("convert -q --to gro out.gro out.top -"), content("out.gro"));
}

TEST_F(Gromacs, FramesOfBothPrecisions) {
    writeFile("d.trr", trr<double>({1, 2, 3, 4, 5}));
    writeFile("s.trr", trr<float>({1, 2, 3, 4, 5}));
    writeFile("a.gro", gro());
    writeFile("a.top", waterBonds);
    // The readers' prints reach neither a report nor a written stream.
    std::string const pdb = runSilently("convert -q --frames 0:4:2 --to pdb d.trr a.gro a.top -");
    EXPECT_THAT(pdb, AllOf(HasSubstr("      50.000  60.000  70.000"), Not(HasSubstr("MODEL 3"))));
    EXPECT_EQ(runSilently("convert -q --frames 0:4:2 --single --to pdb s.trr a.gro a.top -"), pdb);
    EXPECT_EQ(moleculesIn("--single s.trr a.gro")[0]["steps"], 5);

    EXPECT_THAT(notesOf("convert --from trr-single --to trr s.trr a.gro a.top x.trr"),
                HasSubstr("x.gro is written as well\ntarnex: note: x.top is written as well\n"));
    runSilently("convert -q --single s.trr a.gro a.top y.trr");
    EXPECT_EQ(content("x.trr").size(), 5U * (164 + 72));
    EXPECT_EQ(content("y.trr").size(), 5U * (120 + 36));
    EXPECT_EQ(runSilently("convert -q --to pdb x.trr x.gro x.top -"),
              runSilently("convert -q --single --to pdb y.trr y.gro y.top -"));
}

TEST_F(Pdb, ModelsAreFramesAndInfoTellsOfResiduesAndChains) {
    writeFile("in.pdb", "ATOM      1  N   GLY A   1       0.000   0.000   0.000  1.00 10.00           N  \n"
                        "ATOM      2  CA  GLY A   1       0.400   1.400   0.000  1.00 10.00           C  \n"
                        "HETATM    5  O   HOH A   2       0.000   9.000   9.000  1.00 10.00           O  \n"
                        "HETATM    6 NA    NA A   3       0.000   9.000  10.000  1.00 10.00          NA1+\n");
    EXPECT_THAT(runSilently("info in.pdb"),
                AllOf(HasSubstr("3 residues (1 amino acid, 1 ion, 1 water)"), HasSubstr("1 chains (A)")));
    Json const molecule = moleculesIn("in.pdb")[0];
    EXPECT_EQ(molecule["bonds"], 1); // the ion has none
    EXPECT_EQ(molecule["levels"][2]["kinds"]["water"], 1);
    EXPECT_EQ(molecule["levels"][3]["names"], Json::array({"A"}));

    writeFile("models.pdb", pdbModels({"   1.000", "   7.000", "   9.000"}));
    runSilently("convert -q --frames 1:2 models.pdb picked.pdb");
    std::string const text = content("picked.pdb");
    EXPECT_THAT(text, AllOf(HasSubstr("MODEL 0 "), HasSubstr("MODEL 1 "), Not(HasSubstr("MODEL 2 "))));
    EXPECT_THAT(text, HasSubstr("HEM A   1       7.000   2.000   3.000  1.00 10.00"));
    // In place: the input is read to its end before it is replaced.
    runSilently("convert -q picked.pdb picked.pdb");
    EXPECT_EQ(content("picked.pdb"), text);
    runSilently("convert -q picked.pdb out.mol2");
    EXPECT_THAT(content("out.mol2"), HasSubstr("\n1 0 1 0 0\nPROTEIN\nUSER_CHARGES\n"));
    EXPECT_THAT(content("out.mol2"), HasSubstr("9.00000000 2.00000000 3.00000000 Fe    1    HEM 0.000000\n"));
    EXPECT_EQ(moleculesIn("out.mol2").size(), 2U);
}

TEST_F(Xyz, FramesAreStepsAndComeBackBitByBit) {
    std::string const wide(260, 'w');
    writeFile("in.xyz", "3\nrun\nC  1.5 -2.25 0.1\nHN 1e-7 1234.56789 0\n" + wide +
                            " 3 3 3\n3\n\nC 0 0 0\nHN 1 1 1\nO -0.0000001234 2 2\n");
    runSilently("convert in.xyz out.xyz");
    // The line of 299 characters gets a blank, since readers would take it for two.
    EXPECT_EQ(content("out.xyz"), "3\nin.xyz\n"
                                  "C           1.5        -2.25          0.1\n"
                                  "HN    0.0000001    1234.5679            0\n" +
                                      wide +
                                      "            3            3            3 \n"
                                      "3\nin.xyz\n"
                                      "C             0            0            0\n"
                                      "HN            1            1            1\n" +
                                      wide + " -0.0000001234            2            2\n");
    std::string const frame = "1\n\nC 0 0 0\n";
    for (char const* const rest : {"2\n\nC 0 0 0\nC 0 0 0\n", "text\n", "1\n\n"}) {
        writeFile("cut.xyz", frame + rest);
        EXPECT_THAT(notesOf("convert cut.xyz out.xyz", 1), HasSubstr("cut.xyz: behind frame ")) << rest;
        notesOf("convert --keep-going cut.xyz - --to xyz --frames 0");
        EXPECT_EQ(content("program.out"), "1\ncut.xyz\nC             0            0            0\n");
    }
}

TEST_F(Vde, FilesInARowAreTheStepsOfOneTrajectory) {
    writeFile("a.vde", vdePicture);
    writeFile("b.vde", "2\n5 5 5 0 1 0 1\n0 0 0 1 1 1 1\n0\n");
    notesOf("convert a.vde b.vde a.vde run.vde");
    EXPECT_EQ(content("run-1.vde"), "2\n"
                                    "           5            5            5 0.0 1.0 0.0 1.0\n"
                                    "           0            0            0 1.0 1.0 1.0 1.0\n"
                                    "1\n"
                                    "           5            5            5            0            0            0\n");
    EXPECT_EQ(content("run-2.vde"), content("run.vde"));
    notesOf("convert a.vde a.vde a.vde a.vde a.vde a.vde a.vde a.vde a.vde a.vde a.vde many.vde");
    EXPECT_TRUE(exists("many-01.vde") && exists("many-10.vde"));
    for (char const* const text : {"2\n0 0 0 0 1 0", "2\n0 0 x 0 1 0 1\n0 0 0 0 1 0 1\n0\n",
                                   "1\n0 0 0 0 1 0 1\n2\n0 0 0 0 0 0\n0 0 0", "1\n0 0 0 0 1 0 1\nx\n"}) {
        writeFile("cut.vde", text);
        EXPECT_THAT(notesOf("convert -k cut.vde out.xyz", 1), StartsWith("tarnex: cut.vde: ")) << text;
        notesOf("convert -k cut.vde a.vde going.xyz");
        EXPECT_EQ(moleculesIn("going.xyz")[0]["steps"], 1) << text;
    }
}

TEST_F(Mol2, TellsWhatIsLost) {
    writeFile("in.mol2", methanol + methanol);
    runSilently("convert -q in.mol2 out.sdf");
    EXPECT_EQ(notesOf("convert out.sdf back.mol2"), "tarnex: note: mol2 does not keep of the atoms formal_charge\n");
    EXPECT_THAT(content("back.mol2"), StartsWith("# Name: back.mol2\n"));
    EXPECT_EQ(moleculesIn("back.mol2")[1]["name"], "methanol");
    writeFile("in.mol2", methanol + methanolAtoms);
    notesOf("convert --keep-going in.mol2 out.mol2");
    EXPECT_EQ(moleculesIn("out.mol2").size(), 1U);
}

TEST_F(UniChem, HoldsOneMolecule) {
    writeFile("in.mol2", methanol);
    runSilently("convert -q in.mol2 out.uni");
    EXPECT_THAT(content("out.uni"), AllOf(StartsWith("VERSION UNICHEM^TYPE 1\nSTRUCTURE 3 out.uni \n\nGEOMETRY\n"),
                                          EndsWith("BONDS\nMOLECULE 2 unnamed\n1 2 1\n2 3 1\n\nEND\n")));
    EXPECT_EQ(moleculesIn("out.uni")[0]["formula"], "CHO");
}

TEST_F(BundleList, LoadsWhatItNamesAndTellsWhatItCannot) {
    runSilently("convert ligands.sdf three.qlt");
    writeFile("list.txt", "MoleculeBundle\nthree.qlt ligands.sdf\n");
    std::vector<std::string> names;
    for (Json const& molecule : moleculesIn("--from bundle list.txt")) names.push_back(molecule["name"]);
    EXPECT_THAT(names, ElementsAre("three.qlt", "three.qlt", "three.qlt", "ligands.sdf"));
}

} // namespace
