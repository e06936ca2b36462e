#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"
#include "tools/program.h"

namespace {

using namespace tarnex::test;

class Convert : public ToolTest {};
class Frames : public ToolTest {};

/// Writes the first atom of a molecule at `step` on the x axis in each of its steps.
void writeWalk(char const* name, int steps, MolTopology* topology = newTopology(1)) {
    McHandle<MolTrajectory> const walk(new MadeTrajectory(topology, steps, [](int step, McDArray<McVec3f>& coords) {
        coords[0] = McVec3f(static_cast<float>(step), 0.0F, 0.0F);
        return true;
    }));
    walk->getTopology()->setName(name);
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(walk, scratchPath(name).c_str()));
}

TEST_F(Convert, givesEverythingBackOnTheWayThroughQlt) {
    runSilently("convert ligands.sdf direct.sdf");
    runSilently("convert ligands.sdf there.QLT");
    runSilently("convert there.QLT back.SD");
    std::string const direct = content("direct.sdf");
    EXPECT_EQ(content("back.SD"), direct);
    EXPECT_THAT(direct, StartsWith("caffeine\n -VelorNelst-\n\n"
                                   " 24 25  0  0  0  0  0  0  0  0  1 V2000\n"
                                   "   -3.2456   -1.1367    0.0333 C   0  0  0  0   0  0  0\n"));
    EXPECT_THAT(direct, HasSubstr("\n 14 24  1  0  0  0\nM END\n\n> <name>\ncaffeine\n\n> <CAS>\n58-08-2\n\n"));
    EXPECT_THAT(direct, HasSubstr("\n    1.2050   -0.0661   -0.5860 O   0  5  0  0   0  0  0\n"));
    // A second time nothing is left to lose. Inputs are joined in their order.
    std::filesystem::copy(scratchPath("direct.sdf"), scratchPath("direct.txt"));
    EXPECT_EQ(runSilently("convert --from sdf --to sdf direct.txt direct.sdf -"), direct + direct);
    // The output may be one of the inputs.
    runSilently("convert direct.sdf there.QLT direct.sdf");
    EXPECT_EQ(content("direct.sdf"), direct + direct);
}

TEST_F(Convert, namesRecordsByTheFirstLineOfTheirTopologysNameOrElseByTheOutput) {
    McHandle<Molecule> const molecule(new Molecule(new MolTopology, true));
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(molecule, scratchPath("nameless.qlt").c_str()));
    molecule->getTopology()->setName("two\nlines");
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(molecule, scratchPath("named.qlt").c_str()));
    std::filesystem::create_directory(scratchPath("folder"));
    runSilently("convert nameless.qlt named.qlt folder/out.sdf");
    std::string const rest = "\n -VelorNelst-\n\n  0  0  0  0  0  0  0  0  0  0  1 V2000\nM END\n\n$$$$\n";
    EXPECT_EQ(content("folder/out.sdf"), "out.sdf" + rest + "two" + rest);
}

TEST_F(Convert, notesWhatTheOutputCannotKeep) {
    MolTopology* topology = newTopology(1);
    topology->addGroup(topology->addLevel("residues", 0, 12, -1), new MtIntraLevelRange(0, 0, 0));
    topology->addLevel("empty", 0, 12, -1);
    setText(topology, 0, "name", 0, "CA");
    writeWalk("walk.qlt", 1, topology);
    EXPECT_EQ(notesOf("convert walk.qlt walk.sdf"),
              "tarnex: note: sdf does not keep the levels residues; of the atoms name\n");
    runSilently("convert --quiet walk.qlt walk.sdf");
    runSilently("convert walk.qlt copy.qlt");
}

TEST_F(Convert, tellsInOneLineWhyAMoleculeCannotBeWritten) {
    writeWalk("big.qlt", 1, newTopology(1000));
    EXPECT_EQ(notesOf("convert big.qlt out.sdf", 1),
              "tarnex: out.sdf: molecule \"big.qlt\": Molecule contains too many atoms for sdf format\n");
    writeWalk("far.qlt", 100001);
    EXPECT_EQ(notesOf("convert --frames 100000 far.qlt out.sdf", 1),
              "tarnex: out.sdf: molecule \"far.qlt\": a number does not fit in its columns\n");
}

TEST_F(Convert, refusesADamagedFileUnlessToldToGoOn) {
    std::string const ligands = content("ligands.sdf");
    std::string damaged = ligands;
    writeFile("damaged.sdf", damaged.replace(damaged.find(" 10  9  0"), 9, "  9  9  0"));
    EXPECT_THAT(notesOf("convert damaged.sdf out.sdf", 1), StartsWith("tarnex: damaged.sdf: record 2, line "));
    EXPECT_FALSE(exists("out.sdf"));
    EXPECT_THAT(notesOf("convert --keep-going damaged.sdf out.sdf"),
                HasSubstr(": Atomnumber is out of range; what cannot be read is left out\n"));
    EXPECT_EQ(moleculesIn("out.sdf").size(), 1U);
    // A cut in the lines ahead of a record's counts line is damage as well, but not blank lines.
    writeFile("cut.sdf", ligands + "fourth\n  Tarnex\n");
    notesOf("convert cut.sdf out.sdf", 1);
    writeFile("closed.sdf", ligands + "\n \r\n");
    runSilently("convert closed.sdf out.sdf");
}

TEST_F(Frames, areTakenFromEndToEndWithBothEndsIncluded) {
    writeWalk("walk.qlt", 10);
    for (auto const& [frames, expected] : {std::pair{":", "0123456789"},
                                           {"0:9:3", "0369"},
                                           {"0:100:4", "048"},
                                           {"2:4", "234"},
                                           {"5", "5"},
                                           {":1", "01"},
                                           {"::5", "05"},
                                           {"-2:", "89"},
                                           {"-100:-9", "01"},
                                           {"-1", "9"},
                                           {"1:8:2147483647", "1"}}) {
        std::istringstream lines(runSilently(std::string("convert --to xyz walk.qlt - --frames=") + frames));
        std::string line, steps;
        for (int i = 0; std::getline(lines, line); ++i) {
            if (i % 3 == 2) steps += line.at(14);
        }
        EXPECT_EQ(steps, expected) << frames;
    }
    // Single steps are left alone, and there must be some.
    writeWalk("one.qlt", 1);
    runSilently("convert --frames 4:6 one.qlt walk.qlt both.qlt");
    EXPECT_THAT(runSilently("info both.qlt"), HasSubstr(": 2 trajectories of 4 steps\n"));
    for (std::string const none : {"10", "10:20", "5:4"}) {
        EXPECT_EQ(notesOf("convert walk.qlt out.qlt --frames " + none, 1),
                  "tarnex: walk.qlt: --frames selects none of the 10 steps of \"walk.qlt\"\n");
    }
}

} // namespace
