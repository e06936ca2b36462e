#include "gromacs/samples.h"
#include "program.h"

namespace {

using namespace tarnex::test;
class Gromacs : public ToolTest {};

/// A water whose oxygen has a place of its own.
std::string gro(double x) {
    char text[300];
    std::snprintf(
        text, sizeof text,
        "water\n    3\n    1HOH     OW    1%8.3f   0.000   0.000\n    1HOH    HW1    2   0.100   0.000   0.000\n"
        "    1HOH    HW2    3   0.000   0.100   0.000\n   1.00000   1.00000   1.00000\n",
        x);
    return text;
}

constexpr char const* bonds = "[ bonds ]\n    1     2     1\n    1     3     1\n\n";

template <class Real>
std::string frames(std::initializer_list<int> positions) {
    std::string bytes;
    for (int const position : positions) bytes += Frame<Real>{.numAtoms = 3, .position = Real(position)}.bytes();
    return bytes;
}

TEST_F(Gromacs, StructureAndTopologyAreOneInput) {
    writeFile("a.gro", gro(0.5));
    writeFile("A.TOP", bonds);
    Program json({"info", "--json", "a.gro", "A.TOP", "a.gro"});
    auto const reports = nlohmann::json::parse(json.out());
    ASSERT_EQ(reports.size(), 2);
    EXPECT_EQ(reports[0]["molecules"][0]["bonds"], 2);
    EXPECT_EQ(reports[1]["molecules"][0]["bonds"], 0);

    EXPECT_THAT(notesOf({"convert", "a.gro", "A.TOP", "out.gro"}),
                HasSubstr("tarnex: note: out.top is written as well\n"));
    EXPECT_THAT(readFile(scratchPath("out.gro")), HasSubstr("    1  HOH   OW    1   0.500   0.000   0.000  0.0000"));
    EXPECT_THAT(readFile(scratchPath("out.top")), HasSubstr("    1     2     1\n    1     3     1\n"));
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.gro", "A.TOP", "out.gro", "out.top"));
    // A topology that the user gave is not replaced by one that nobody named.
    writeFile("given.top", "; given\n" + std::string(bonds));
    EXPECT_THAT(failureOf({"convert", "a.gro", "given.top", "given.gro"}), HasSubstr("given.top, which is an input"));
    EXPECT_THAT(readFile(scratchPath("given.top")), HasSubstr("; given"));
    EXPECT_FALSE(std::filesystem::exists(scratchPath("given.gro")));
    // A stream takes the structure alone.
    EXPECT_EQ(runSilently({"convert", "-q", "--to", "gro", "out.gro", "out.top", "-"}),
              readFile(scratchPath("out.gro")));
    EXPECT_THAT(readFile(scratchPath("out.top")), HasSubstr("    1     2     1\n"));
}

TEST_F(Gromacs, StructuresThatAreNotWhatTheySay) {
    writeFile("cut.gro", gro(0.0).substr(0, 70));
    EXPECT_THAT(failureOf({"convert", "cut.gro", "out.pdb"}), HasSubstr("ends ahead of the last of its 3 atoms"));
    writeFile("many.gro", "t\n100000\n");
    EXPECT_THAT(failureOf({"info", "many.gro"}), HasSubstr("its count, 100000, does not fit in five columns"));
    writeFile("empty.gro", "");
    EXPECT_THAT(failureOf({"info", "empty.gro"}), HasSubstr("no atoms in it"));
    writeFile("two.gro", gro(0.0) + gro(1.0));
    EXPECT_THAT(notesOf({"info", "two.gro"}), HasSubstr("what stands behind the first structure is left out"));
    writeFile("a.gro", gro(0.0));
    EXPECT_THAT(failureOf({"info", "a.gro", "a.top"}), HasSubstr("a.top: No such file"));
    writeFile("a.top", bonds);
    EXPECT_THAT(failureOf({"info", "a.gro", "a.top", "a.top"}), HasSubstr("which has a.top already"));
}

TEST_F(Gromacs, FramesOfBothPrecisions) {
    writeFile("d.trr", frames<double>({1, 2, 3, 4, 5}));
    writeFile("s.trr", frames<float>({1, 2, 3, 4, 5}));
    writeFile("a.gro", gro(0.0));
    writeFile("a.top", bonds);
    runSilently({"convert", "-q", "--frames", "0:4:2", "d.trr", "a.gro", "a.top", "d.pdb"});
    runSilently({"convert", "-q", "--frames", "0:4:2", "--single", "s.trr", "a.gro", "a.top", "s.pdb"});
    std::string const pdb = readFile(scratchPath("d.pdb"));
    EXPECT_THAT(pdb, HasSubstr("      50.000  60.000  70.000"));
    EXPECT_THAT(pdb, testing::Not(HasSubstr("MODEL 3")));
    EXPECT_EQ(readFile(scratchPath("s.pdb")), pdb);

    // The readers' prints reach neither a report nor a written stream.
    EXPECT_EQ(moleculesIn({"--single", "s.trr", "a.gro"})[0]["steps"], 5);
    EXPECT_EQ(runSilently({"convert", "-q", "--frames", "0:4:2", "--to", "pdb", "d.trr", "a.gro", "a.top", "-"}), pdb);

    EXPECT_THAT(notesOf({"convert", "--from", "trr-single", "--to", "trr", "s.trr", "a.gro", "a.top", "x.trr"}),
                HasSubstr("x.gro is written as well\ntarnex: note: x.top is written as well\n"));
    EXPECT_EQ(std::filesystem::file_size(scratchPath("x.trr")), 5U * (164 + 72));
    runSilently({"convert", "-q", "--single", "s.trr", "a.gro", "a.top", "y.trr"});
    EXPECT_EQ(std::filesystem::file_size(scratchPath("y.trr")), 5U * (120 + 36));
    runSilently({"convert", "-q", "x.trr", "x.gro", "x.top", "x.pdb"});
    runSilently({"convert", "-q", "--single", "y.trr", "y.gro", "y.top", "y.pdb"});
    EXPECT_EQ(readFile(scratchPath("x.pdb")), readFile(scratchPath("y.pdb")));
}

TEST_F(Gromacs, TheOtherPrecisionIsSeenByTheLengthOfTheFile) {
    writeFile("a.gro", gro(0.0));
    writeFile("d.trr", frames<double>({1}));
    writeFile("s.trr", frames<float>({1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(
        notesOf({"info", "s.trr", "a.gro"}),
        "tarnex: s.trr: warning: read as double precision, but the length of the file is that of single precision: "
        "use --single or --from trr-single\n");
    EXPECT_THAT(notesOf({"info", "--single", "d.trr", "a.gro"}), HasSubstr("leave out --single or --from trr\n"));
    EXPECT_THAT(failureOf({"convert", "s.trr", "a.gro", "out.pdb"}),
                HasSubstr("step 0 of \"s.trr\" has a coordinate that is not a finite number"));
    runSilently({"info", "d.trr", "a.gro"});
    runSilently({"info", "--single", "s.trr", "a.gro"});
}

TEST_F(Gromacs, TrajectoriesThatAreNotWhatTheySay) {
    writeFile("a.gro", gro(0.0));
    auto const tells = [](std::string const& bytes) {
        writeFile("x.trr", bytes);
        return failureOf({"convert", "x.trr", "a.gro", "out.pdb"});
    };
    std::string const two = frames<double>({1, 2});
    EXPECT_THAT(failureOf({"info", writeFile("x.trr", two)}), HasSubstr("name its .gro file behind it"));
    EXPECT_THAT(tells(""), HasSubstr("no .trr file"));
    EXPECT_THAT(tells(gro(0.0)), HasSubstr("no .trr file"));
    EXPECT_THAT(tells(two.substr(0, 200)), HasSubstr("ends within its first frame"));
    EXPECT_THAT(tells(two.substr(0, 300)), HasSubstr("ends within a frame"));
    EXPECT_THAT(tells(two + Frame<double>{.numAtoms = 3, .hasForces = true}.bytes() + two),
                HasSubstr("has frames of different sizes"));
    EXPECT_THAT(failureOf({"convert", "-k", "x.trr", "a.gro", "out.pdb"}),
                HasSubstr("step 3 of \"x.trr\" cannot be read"));
    EXPECT_THAT(tells(Frame<double>{.strLen = 21, .version = std::string(24, 'v')}.bytes()), HasSubstr("too long"));
    EXPECT_THAT(tells(two.substr(0, 300)), testing::Not(HasSubstr("note")));
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.gro", "x.trr"));
    writeFile("x.trr", Frame<double>{.numAtoms = 4}.bytes());
    EXPECT_THAT(notesOf({"info", "x.trr", "a.gro"}),
                HasSubstr("warning: its frames have 4 atoms, the structure has 3"));
}

TEST_F(Gromacs, OutputsThatCannotBeMade) {
    writeFile("a.gro", gro(0.0));
    writeFile("d.trr", frames<double>({1, 2}));
    EXPECT_THAT(failureOf({"convert", ligands, "out.gro"}), HasSubstr("holds one molecule"));
    EXPECT_THAT(failureOf({"convert", "d.trr", "a.gro", "out.gro"}),
                HasSubstr("take one with --frames, or write a .trr"));
    std::filesystem::create_directory(scratchPath("out.top"));
    EXPECT_EQ(failureOf({"convert", "a.gro", "out.gro"}), "tarnex: out.top: Is a directory\n");
    std::filesystem::remove(scratchPath("out.top"));
    EXPECT_THAT(failureOf({"convert", "--to", "gro", "a.gro", "out.top"}), HasSubstr("has the same name"));
    for (char const* name : {"out.gro", "out.top", "out.trr"}) writeFile(name, "old");
    EXPECT_THAT(failureOf({"convert", "d.trr", "a.gro", "out.trr"}, 300),
                HasSubstr("tarnex: out.trr: File too large\n"));
    for (char const* name : {"out.gro", "out.top", "out.trr"}) EXPECT_EQ(readFile(scratchPath(name)), "old");
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.gro", "d.trr", "out.gro", "out.top", "out.trr"));
}

TEST_F(Gromacs, FieldsThatDoNotFitAreTold) {
    std::string const pdb = "HETATM    1 FE   HEM A   1       1.000   2.000   3.000  1.00 10.00          FE\n";
    writeFile("a.pdb", pdb);
    EXPECT_THAT(notesOf({"convert", "a.pdb", "a.gro"}), testing::Not(HasSubstr("do not fit")));
    std::string waters = "t\n99999\n";
    for (int i = 0; i < 99999; ++i) waters += i % 2 ? "    1A\n" : "    2B\n";
    writeFile("all.gro", waters + "\n");
    runSilently({"convert", "-q", "all.gro", "all.gro"});
    EXPECT_THAT(runSilently({"info", "-q", "all.gro"}), HasSubstr("99999 residues"));
}

} // namespace
