#include "program.h"

namespace {

using namespace tarnex::test;

class Xyz : public ToolTest {};
class Vde : public ToolTest {};
class BundleList : public ToolTest {};

/// Runs a conversion that has to fail and to leave no output behind; returns what it says.
std::string failure(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "convert");
    std::string const said = failureOf(arguments);
    EXPECT_FALSE(std::filesystem::exists(scratchPath(arguments.back())));
    return said;
}

TEST_F(Xyz, FramesAreStepsAndComeBackBitByBit) {
    std::string const frames = "3\nrun\nC  1.5 -2.25 0.1\nHN 1e-7 1234.56789 0\nX 3 3 3\n"
                               "3\n\nC 0 0 0\nHN 1 1 1\nO -0.0000001234 2 2\n";
    writeFile("in.xyz", frames);
    EXPECT_EQ(moleculesIn({"in.xyz"})[0]["steps"], 2);
    runSilently({"convert", "in.xyz", "out.xyz"});
    std::string const written = "3\nin.xyz\n"
                                "C           1.5        -2.25          0.1\n"
                                "HN    0.0000001    1234.5679            0\n"
                                "X             3            3            3\n"
                                "3\nin.xyz\n"
                                "C             0            0            0\n"
                                "HN            1            1            1\n"
                                "X  -0.0000001234            2            2\n";
    EXPECT_EQ(readFile(scratchPath("out.xyz")), written);
    runSilently({"convert", "out.xyz", "a.qlt"});
    runSilently({"convert", "in.xyz", "b.qlt"});
    runSilently({"convert", "--frames", "1", "a.qlt", "a.xyz"});
    runSilently({"convert", "--frames", "1", "b.qlt", "b.xyz"});
    EXPECT_EQ(readFile(scratchPath("a.xyz")).substr(10), readFile(scratchPath("b.xyz")).substr(9));
}

TEST_F(Xyz, LinesThatReadersWouldTakeForTwoGetABlank) {
    std::string const word(260, 'w'); // the line is 299 characters long
    writeFile("in.xyz", "2\n\n" + word + " 1 2 3\nC 4 5 6\n");
    runSilently({"convert", "in.xyz", "out.xyz"});
    writeFile("short.xyz", readFile(scratchPath("out.xyz")));
    EXPECT_EQ(moleculesIn({"short.xyz"})[0]["boundingBox"]["high"], (nlohmann::json{4.0, 5.0, 6.0}));
}

TEST_F(Xyz, DamageIsTold) {
    std::string const frame = "1\n\nC 0 0 0\n";
    EXPECT_THAT(failure({writeFile("none.xyz", "some text\n"), "out.xyz"}), HasSubstr("no whole frame"));
    for (char const* const rest : {"2\n\nC 0 0 0\nC 0 0 0\n", "text\n", "1\n\n"}) {
        std::string const file = writeFile("cut.xyz", frame + rest);
        EXPECT_THAT(failure({file, "out.xyz"}), HasSubstr("cut.xyz: behind frame ")) << rest;
        Program going({"convert", "--keep-going", file, "-", "--to", "xyz", "--frames", "0"});
        EXPECT_EQ(going.status(), 0);
        EXPECT_THAT(going.out(), HasSubstr("C             0            0            0\n"));
    }
    EXPECT_THAT(failure({writeFile("word.xyz", frame + "1\n\nC 0 x 0\n"), "out.sdf"}),
                HasSubstr("step 1 of \"word.xyz\" cannot be read"));
    EXPECT_THAT(failure({ligands, "out.xyz"}), HasSubstr("an XYZ file holds one molecule or trajectory, here are 3"));
}

TEST_F(Vde, FilesInARowAreTheStepsOfOneTrajectory) {
    std::string const picture = "2\n0 0 0 0 1 0 1\n0 0 1.25 1 1 1 1\n1\n0 0 0 0 0 1.25\n";
    writeFile("a.vde", picture);
    writeFile("b.vde", "2\n5 5 5 0 1 0 1\n0 0 0 1 1 1 1\n0\n");
    Program convert({"convert", "a.vde", "b.vde", "a.vde", "run.vde"});
    ASSERT_EQ(convert.status(), 0) << convert.err();
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.vde", "b.vde", "run.vde", "run-1.vde", "run-2.vde"));
    EXPECT_EQ(readFile(scratchPath("run-1.vde")),
              "2\n"
              "           5            5            5 0.0 1.0 0.0 1.0\n"
              "           0            0            0 1.0 1.0 1.0 1.0\n"
              "1\n"
              "           5            5            5            0            0            0\n");
    EXPECT_EQ(readFile(scratchPath("run-2.vde")), readFile(scratchPath("run.vde")));
    auto const molecule = moleculesIn({"run.vde"})[0];
    EXPECT_EQ(molecule["formula"], "CH");
    EXPECT_EQ(molecule["bonds"], 1);
    std::vector<std::string> arguments(13, "a.vde");
    arguments.front() = "convert";
    arguments.back() = "many.vde";
    Program(arguments).status();
    EXPECT_TRUE(std::filesystem::exists(scratchPath("many-01.vde")));
    EXPECT_TRUE(std::filesystem::exists(scratchPath("many-10.vde")));
}

TEST_F(Vde, FailuresAreTold) {
    std::string const atoms = "1\n0 0 0 0 1 0 1\n";
    writeFile("a.vde", atoms + "0\n");
    EXPECT_THAT(failure({writeFile("none.vde", "text"), "out.vde"}), HasSubstr("no number of atoms"));
    writeFile("two.vde", "2\n0 0 0 0 1 0 1\n0 0 0 0 1 0 1\n0\n");
    EXPECT_THAT(failure({"a.vde", "two.vde", "out.vde"}), HasSubstr("two.vde: holds 2 atoms, and a.vde holds 1;"));
    EXPECT_THAT(failure({"a.vde", "a.vde", "--to", "vde", "-"}), HasSubstr("a file for each step"));
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.vde", "none.vde", "two.vde"));
    for (std::string const text : {"1\n0 0 0 0 1 0", "1\n0 0 x 0 1 0 1\n0\n", "1\n0 0 0 0 1 0 1\n2\n0 0 0 0 0 0\n0 0 0",
                                   "1\n0 0 0 0 1 0 1\nx\n"}) {
        writeFile("cut.vde", text);
        EXPECT_THAT(failure({"a.vde", "cut.vde", "out.xyz"}), testing::StartsWith("tarnex: cut.vde: ")) << text;
        EXPECT_EQ(Program({"convert", "-k", "cut.vde", "out.xyz"}).status(), 1) << text;
        EXPECT_EQ(Program({"convert", "-k", "cut.vde", "a.vde", "going.xyz"}).status(), 0) << text;
        EXPECT_EQ(moleculesIn({"going.xyz"})[0]["steps"], 1) << text;
    }
    EXPECT_THAT(notesOf({"info", writeFile("atoms.vde", atoms)}), HasSubstr("note: "));
}

TEST_F(Vde, FurtherStepsReplaceNoFile) {
    writeFile("a.vde", "1\n0 0 0 0 1 0 1\n0\n");
    writeFile("run-2.vde", "mine");
    EXPECT_THAT(failure({"a.vde", "a.vde", "a.vde", "run.vde"}),
                HasSubstr("run.vde: it comes with the file run-2.vde"));
    EXPECT_EQ(readFile(scratchPath("run-2.vde")), "mine");
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.vde", "run-2.vde"));
}

TEST_F(BundleList, LoadsWhatItNamesAndTellsWhatItCannot) {
    std::filesystem::copy_file(ligands, scratchPath("some.sdf"));
    runSilently({"convert", ligands, "three.qlt"});
    writeFile("good.bundle", "MoleculeBundle\nsome.sdf three.qlt\n");
    std::vector<std::string> names;
    for (auto const& molecule : moleculesIn({"good.bundle"})) names.push_back(molecule["name"]);
    EXPECT_EQ(names, (std::vector<std::string>{"some.sdf", "three.qlt", "three.qlt", "three.qlt"}));

    writeFile("bad.bundle", "MoleculeBundle\nsome.sdf absent.sdf bad.bundle\n");
    std::string const told = failure({"bad.bundle", "out.qlt"});
    EXPECT_THAT(told, HasSubstr("bad.bundle: it names absent.sdf, which cannot be read"));
    EXPECT_EQ(Program({"convert", "--keep-going", "bad.bundle", "out.sdf"}).status(), 0);
    writeFile("garbage.sdf", "no molecule\n\n\n\n");
    writeFile("ill.bundle", "MoleculeBundle\ngarbage.sdf some.sdf lost.sdf");
    EXPECT_THAT(failure({"ill.bundle", "out.qlt"}),
                HasSubstr("it names garbage.sdf, which cannot be read: Could not "));
    EXPECT_THAT(notesOf({"convert", "-k", "ill.bundle", "going.qlt"}),
                HasSubstr("closing quote stands behind it: lost.sdf\n"));
    EXPECT_EQ(moleculesIn({"going.qlt"})[0]["name"], "some.sdf");
    EXPECT_THAT(failure({"-k", writeFile("all.bundle", "MoleculeBundle\nno.sdf no.pdb\n"), "none.qlt"}),
                HasSubstr("no.sdf, which cannot be read; nor can the other"));
    EXPECT_THAT(failure({writeFile("text.bundle", "some.sdf\n"), "none.qlt"}), HasSubstr("the word MoleculeBundle"));
    EXPECT_THAT(failure({writeFile("empty.bundle", "MoleculeBundle\n"), "none.qlt"}), HasSubstr("it names no files"));
    writeFile("list.txt", "MoleculeBundle\nsome.sdf\n");
    runSilently({"convert", "--from", "bundle", "list.txt", "one.qlt"});
}

} // namespace
