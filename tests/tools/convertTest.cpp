#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"
#include "tools/program.h"

namespace {

using namespace tarnex::test;

class Convert : public ToolTest {};
class Frames : public ToolTest {};

/// Writes an atom that is at `step` on the x axis in each of its steps.
void writeWalk(char const* name, int steps, char const* residueLevel = nullptr) {
    McHandle<MolTrajectory> const walk(
        new MadeTrajectory(newTopology(1), steps, [](int step, McDArray<McVec3f>& coords) {
            coords[0] = McVec3f(static_cast<float>(step), 0.0F, 0.0F);
            return true;
        }));
    walk->getTopology()->setName("walk");
    if (residueLevel) {
        MolTopology* topology = walk->getTopology();
        topology->addGroup(topology->addLevel(residueLevel, 0, 12, -1), new MtIntraLevelRange(0, 0, 0));
        setText(topology, 0, "name", 0, "CA");
    }
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(walk, scratchPath(name).c_str()));
}

/// The x coordinates of the one-atom records that the program writes for these arguments.
std::string stepsWritten(std::vector<std::string> arguments) {
    arguments.insert(arguments.begin(), "convert");
    arguments.insert(arguments.end(), {"walk.qlt", "walk.sdf"});
    runSilently(arguments);
    std::istringstream lines(readFile(scratchPath("walk.sdf")));
    std::string line, steps;
    for (int i = 0; std::getline(lines, line); ++i) {
        if (i % 8 == 4) steps += std::to_string(std::stoi(line)) + " ";
    }
    return steps;
}

TEST_F(Convert, givesEverythingBackOnTheWayThroughQlt) {
    runSilently({"convert", ligands, "direct.sdf"});
    runSilently({"convert", ligands, "there.QLT"});
    runSilently({"convert", "there.QLT", "back.SD"});
    std::string const direct = readFile(scratchPath("direct.sdf"));
    EXPECT_EQ(readFile(scratchPath("back.SD")), direct);
    EXPECT_THAT(direct, StartsWith("caffeine\n -VelorNelst-\n\n"
                                   " 24 25  0  0  0  0  0  0  0  0  1 V2000\n"
                                   "   -3.2456   -1.1367    0.0333 C   0  0  0  0   0  0  0\n"));
    EXPECT_THAT(direct, HasSubstr("\n 14 24  1  0  0  0\nM END\n\n> <name>\ncaffeine\n\n> <CAS>\n58-08-2\n\n"));
    EXPECT_THAT(direct, HasSubstr("\n    1.2050   -0.0661   -0.5860 O   0  5  0  0   0  0  0\n"));

    // A second time nothing is left to lose.
    runSilently({"convert", "direct.sdf", "again.sdf"});
    EXPECT_EQ(readFile(scratchPath("again.sdf")), direct);
}

TEST_F(Convert, joinsItsInputsInOrder) {
    runSilently({"convert", ligands, "three.qlt"});
    std::string const three = runSilently({"convert", "--to", "sdf", "three.qlt", "-"});
    EXPECT_EQ(runSilently({"convert", "--to", "sdf", "three.qlt", ligands, "-"}), three + three);
    std::filesystem::copy(ligands, scratchPath("ligands.txt"));
    EXPECT_EQ(runSilently({"convert", "--from", "sdf", "--to", "sdf", "ligands.txt", "-"}), three);
}

TEST_F(Convert, namesRecordsByTheirTopologyOrElseByTheOutput) {
    MolTopology* topology = new MolTopology;
    McHandle<Molecule> const molecule(new Molecule(topology, true));
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(molecule, scratchPath("nameless.qlt").c_str()));
    topology->setName("two\nlines");
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(molecule, scratchPath("named.qlt").c_str()));
    std::filesystem::create_directory(scratchPath("folder"));
    runSilently({"convert", "nameless.qlt", "named.qlt", "folder/out.sdf"});
    std::string const rest = "\n -VelorNelst-\n\n  0  0  0  0  0  0  0  0  0  0  1 V2000\nM END\n\n$$$$\n";
    EXPECT_EQ(readFile(scratchPath("folder/out.sdf")), "out.sdf" + rest + "two" + rest);
}

TEST_F(Convert, notesWhatTheOutputCannotKeep) {
    writeWalk("walk.qlt", 1, "residues");
    EXPECT_EQ(notesOf({"convert", "walk.qlt", "walk.sdf"}),
              "tarnex: note: sdf does not keep the levels residues; of the atoms name\n");
    runSilently({"convert", "--quiet", "walk.qlt", "walk.sdf"});
    runSilently({"convert", "walk.qlt", "copy.qlt"});
}

TEST_F(Convert, tellsInOneLineWhyAMoleculeCannotBeWritten) {
    MolTopology* topology = newTopology(1000);
    topology->setName("big");
    McHandle<Molecule> const big(new Molecule(topology, true));
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(big, scratchPath("big.qlt").c_str()));
    EXPECT_EQ(failureOf({"convert", "big.qlt", "out.sdf"}),
              "tarnex: out.sdf: molecule \"big\": Molecule contains too many atoms for sdf format\n");
    writeWalk("far.qlt", 100001);
    EXPECT_EQ(failureOf({"convert", "--frames", "100000", "far.qlt", "out.sdf"}),
              "tarnex: out.sdf: molecule \"walk\": a number does not fit in its columns\n");
    EXPECT_THAT(filesLeft(), testing::UnorderedElementsAre("far.qlt", "big.qlt"));
}

TEST_F(Convert, refusesADamagedFileUnlessToldToGoOn) {
    std::string damaged = readFile(ligands);
    damaged.replace(damaged.find(" 10  9  0"), 9, "  9  9  0");
    writeFile("damaged.sdf", damaged);
    EXPECT_THAT(failureOf({"convert", "damaged.sdf", "out.sdf"}), StartsWith("tarnex: damaged.sdf: record 2, line "));
    EXPECT_THAT(filesLeft(), ElementsAre("damaged.sdf"));
    EXPECT_THAT(notesOf({"convert", "--keep-going", "damaged.sdf", "out.sdf"}),
                HasSubstr(": Atomnumber is out of range; what cannot be read is left out\n"));
    std::string const whole = runSilently({"convert", "--to", "sdf", ligands, "-"});
    EXPECT_EQ(readFile(scratchPath("out.sdf")), whole.substr(0, whole.find("$$$$\n") + 5));

    // A cut in the lines ahead of a record's counts line is damage as well.
    writeFile("cut.sdf", readFile(ligands) + "fourth\n  Tarnex\n");
    failureOf({"convert", "cut.sdf", "out.sdf"});
    writeFile("closed.sdf", readFile(ligands) + "\n \r\n");
    runSilently({"convert", "closed.sdf", "out.sdf"});
}

TEST_F(Frames, areTakenFromEndToEndWithBothEndsIncluded) {
    writeWalk("walk.qlt", 10);
    std::istringstream cases(
        ":|0 1 2 3 4 5 6 7 8 9 \n0:9:3|0 3 6 9 \n0:100:4|0 4 8 \n2:4|2 3 4 \n5|5 \n7:|7 8 9 \n:1|0 1 \n"
        "::5|0 5 \n-2:|8 9 \n-100:-9|0 1 \n-1|9 \n1:8:2147483647|1 \n");
    for (std::string frames, steps; std::getline(cases, frames, '|') && std::getline(cases, steps);) {
        EXPECT_EQ(stepsWritten({"--frames=" + frames}), steps) << frames;
    }
    EXPECT_EQ(stepsWritten({"--frames", "8:"}), "8 9 ");
}

TEST_F(Frames, leaveSingleStepsAloneAndMustNotBeNone) {
    writeWalk("one.qlt", 1);
    writeWalk("walk.qlt", 10);
    runSilently({"convert", "--frames", "4:6", "one.qlt", "walk.qlt", "both.qlt"});
    EXPECT_THAT(runSilently({"info", "both.qlt"}), HasSubstr(": 2 trajectories of 4 steps\n"));
    for (char const* const none : {"10", "10:20", "5:4"}) {
        EXPECT_EQ(failureOf({"convert", "--frames", none, "walk.qlt", "out.qlt"}),
                  "tarnex: walk.qlt: --frames selects none of the 10 steps of \"walk\"\n");
    }
}

} // namespace
