#include "formats/MolTrajectoryXYZ.h"

#include "support/model.h"
#include "support/testing.h"

namespace {

using namespace tarnex::test;

/// An opened file, and what was written to standard error meanwhile.
struct Opened {
    AtomDataBase table;
    McHandle<MolTrajectoryXYZ> trajectory;
    std::string dots;

    explicit Opened(std::string const& text) {
        table.appendAtom(6, 1.7F, "C");
        table.appendAtom(1, 1.2F, "H");
        table.appendAtom(99, 9.0F, "C");
        trajectory = new MolTrajectoryXYZ(nullptr, &table);
        testing::internal::CaptureStderr();
        EXPECT_EQ(trajectory->readXYZMolTrajectory(writeFile("in.xyz", text).c_str()), trajectory);
        dots = testing::internal::GetCapturedStderr();
    }
};

TEST(MolTrajectoryXYZ, FirstFrameMakesTheAtoms) {
    Opened const opened(" 4 atoms\n\nC 1 2 3\nc 4 5 6\n  H\t7 8 9 more\n6 1 1 1\n");
    EXPECT_EQ(opened.dots, ".\n");
    EXPECT_EQ(describe(opened.trajectory->getTopology()),
              ";\natoms(-1) flags 3: 4 atom_type_name=C|c|H|6 atomic_number=6|0|1|0 radius=1.7|0|1.2|0\n"
              "bonds(0) flags 35: ");
    Molecule molecule(new MolTopology, true);
    // What is absent changes nothing.
    for (int const step : {0, -1, 1}) {
        EXPECT_TRUE(opened.trajectory->getTimeStep(step, &molecule));
        EXPECT_EQ(molecule.getTopology(), opened.trajectory->getTopology());
        EXPECT_EQ(placesOf(molecule.coords), "1,2,3|4,5,6|7,8,9|1,1,1");
    }
    EXPECT_FALSE(opened.trajectory->getTimeStep(0, nullptr));
}

TEST(MolTrajectoryXYZ, FramesEndWhereTheNextIsNone) {
    std::string const frame = "2\nx\nC 0 0 0\nC 1 1 1\n";
    // What the file is, how many steps it has, how many dots they make, and whether it is whole.
    for (auto const& [text, steps, dots, isWhole] : {
             std::tuple{frame + frame + "3\nx\nC 0 0 0\nC 1 1 1\nC 2 2 2\n", 2, 2U, false},
             {frame + "\n\n" + frame + "end\n" + frame, 2, 2U, false},
             {"", 0, 0U, true},
             {"two\n", 0, 0U, false},
             {"99999999999\n\n", 0, 0U, false},
             {"0\n\n0\n\n", 2, 2U, true},
             {"0\n", 0, 1U, false},
             {"-2\n\n", 1, 1U, true},
             {"2000000000\n\nC 0 0 0\n", 0, 1U, false},
             {frame + "2\n", 1, 2U, false},
             {frame.substr(0, frame.size() - 1), 1, 1U, true},
             {frame + "\n \n", 1, 1U, true},
             {frame + "2\nx\nC 5 5 5\n", 2, 2U, false},
             {"3\nx\nC 0 0 0\nC 1 1 1", 1, 1U, false},
             // A title or line of 299 characters takes the next line with it.
             {"1\n" + std::string(299, ' ') + "\nx\nC 0 0 0\n1\n\nC 1 1 1\n", 2, 2U, true},
             {"1\n\nC " + std::string(298, 'y') + "\nx\n1\n\nC 1 1 1\n", 2, 2U, true},
         }) {
        Opened const opened(text);
        EXPECT_EQ(opened.trajectory->getNumTimeSteps(), steps) << text;
        EXPECT_EQ(opened.dots, std::string(dots, '.') + "\n") << text;
        EXPECT_EQ(opened.trajectory->isWhole(), isWhole) << text;
    }
    std::ostringstream messages;
    McHandle<MolTrajectoryXYZ> const closed(new MolTrajectoryXYZ(&messages, nullptr));
    EXPECT_STREQ(closed->getTopology()->getName(), "XYZ");
    EXPECT_EQ(closed->readXYZMolTrajectory("/absent"), nullptr);
    EXPECT_EQ(closed->readXYZMolTrajectory(nullptr), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"/absent\"\nCould not load \"\"\n");
    testing::internal::CaptureStderr();
    EXPECT_EQ(closed->readXYZMolTrajectory("/")->getNumTimeSteps(), 0);
    testing::internal::GetCapturedStderr();
}

TEST(MolTrajectoryXYZ, BadNumbersEndTheReadingOfAStep) {
    std::string const frame = "3\n\nC 1 2 3\nC 4 5 6\nC 7 8 9\n";
    for (auto const& [line, places] : {std::pair{"C 1e999 5 6", "1,2,3|3.402823e+38,0,0|0,0,0"},
                                       {"C 1.5 x 6", "1,2,3|1.5,0,0|0,0,0"},
                                       {"C 1,5 2 6", "1,2,3|1,0,0|0,0,0"},
                                       {"C 1d3 5 6", "1,2,3|1,0,0|0,0,0"},
                                       {"C\t+7. -.5\v0.1234567", "1,2,3|7,-0.5,0.1234567|7,8,9"},
                                       {"\nC 4\n5 6", "1,2,3|4,5,6|7,8,9"},
                                       {"C 4 5", "1,2,3|4,5,0|0,0,0"}}) {
        std::string const text = std::string(frame).replace(11, 7, line);
        EXPECT_EQ(placesOf(Opened(frame + text).trajectory, 1), places) << text;
        EXPECT_EQ(placesOf(Opened(frame + text).trajectory, 0), "1,2,3|4,5,6|7,8,9");
    }
}

TEST(MolTrajectoryXYZ, LinesAndBlocksOfAnyLength) {
    std::string text;
    for (unsigned frame = 0; frame < 3; ++frame) {
        text += "1000\n" + std::string(frame * 150, 'c') + "\n";
        for (unsigned i = 0; i < 1000; ++i) {
            text += "C " + std::to_string(frame) + " " + std::to_string(i) + " -1.25";
            text += std::string(i * 37 % 280, i % 2 == 0 ? ' ' : 'z') + "\n";
        }
    }
    Opened const opened(text);
    ASSERT_EQ(opened.trajectory->getNumTimeSteps(), 3);
    for (int const step : {2, 0, 1}) {
        EXPECT_EQ(placesOf(opened.trajectory, step), joined(1000, "|", [step](int i) {
                      return std::to_string(step) + "," + std::to_string(i) + ",-1.25";
                  }));
    }
    EXPECT_EQ(placesOf(Opened("1\n\n" + std::string(200000, 'C') + " 1 2 3\n").trajectory, 0), "1,2,3");
}

} // namespace
