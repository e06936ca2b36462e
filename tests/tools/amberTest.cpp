#include "amber/amberSamples.h"
#include "program.h"

namespace {

using namespace tarnex::test;

class Amber : public ToolTest {
protected:
    void SetUp() override {
        ToolTest::SetUp();
        writeFile("a.top", AmberText{.symbols = {"CT", "OH"}, .pointers = {1}, .bondsWithout = {0, 3, 1}}.text());
        writeFile("a.crd", restartText(2));
        writeFile("a.mdcrd", frames);
    }
    std::string const frames = "title\n   1.000   0.000   0.000   2.000   0.000   0.000\n"
                               "   3.000   0.000   0.000   4.000   0.000   0.000\n";
};

std::string errorOf(std::vector<std::string> files) {
    files.insert(files.begin(), "info");
    return failureOf(files);
}

TEST_F(Amber, NamesStandInEitherOrder) {
    EXPECT_EQ(moleculesIn({"a.top", "a.mdcrd"}), moleculesIn({"a.mdcrd", "a.top"}));
    auto const molecules = moleculesIn({"a.mdcrd", "a.top", "a.mdcrd", "a.top", "a.top", "a.top", "a.crd", "a.mdcrd"});
    ASSERT_EQ(molecules.size(), 5U);
    EXPECT_EQ(molecules[1]["steps"], 3);
    EXPECT_EQ(molecules[2]["name"], "a.top");
    EXPECT_EQ(molecules[3]["name"], "a.crd"); // a restart file, though its extension is that of trajectories
    EXPECT_EQ(molecules[3]["formula"], "CO");
    EXPECT_EQ(molecules[3]["bonds"], 1);
    EXPECT_EQ(molecules[4]["steps"], 3);
}

TEST_F(Amber, FramesAreConverted) {
    EXPECT_EQ(Program({"convert", "-q", "--frames", "1:", "a.top", "a.mdcrd", "out.sdf"}).status(), 0);
    std::string const text = readFile(scratchPath("out.sdf"));
    EXPECT_THAT(text, HasSubstr("    4.0000    0.0000    0.0000 O"));
    EXPECT_EQ(text.find("    1.1000"), std::string::npos); // of the restart state
}

TEST_F(Amber, TellsWhatCannotBeRead) {
    writeFile("new.parm7", "%VERSION  VERSION_STAMP = V0001.000\n%FLAG TITLE\n");
    EXPECT_EQ(errorOf({"new.parm7"}), "tarnex: new.parm7: a topology in the newer layout with %FLAG sections; only the "
                                      "older layout, without them, can be read\n");
    writeFile("not.top", "[ moleculetype ]\n");
    EXPECT_THAT(errorOf({"not.top"}), EndsWith("no atoms in it, or no AMBER topology in the older layout\n"));
    EXPECT_THAT(errorOf({"a.mdcrd"}), EndsWith("has to be read together with its topology\n"));
    writeFile("other.rst7", restartText(3));
    EXPECT_THAT(errorOf({"a.top", "other.rst7"}), EndsWith("it does not have the number of atoms of its topology\n"));
    writeFile("box.mdcrd", frames + "  10.000  10.000  10.000\n");
    EXPECT_THAT(errorOf({"a.top", "box.mdcrd"}), HasSubstr("frame 3 lacks numbers or its last line end"));
    writeFile("cut.mdcrd", frames.substr(0, frames.size() - 1));
    EXPECT_THAT(errorOf({"a.top", "cut.mdcrd"}), HasSubstr("frame 2 lacks numbers or its last line end"));
    writeFile("empty.mdcrd", "");
    EXPECT_THAT(errorOf({"a.top", "empty.mdcrd"}), EndsWith("no frames in it\n"));

    std::filesystem::remove(scratchPath("a.crd"));
    EXPECT_EQ(
        notesOf({"info", "a.top", "a.mdcrd"}),
        "tarnex: note: a.top: all positions of step 0 are 0, since its restart file cannot be used: Could not load "
        "\"a.crd\"\n");
}

} // namespace
