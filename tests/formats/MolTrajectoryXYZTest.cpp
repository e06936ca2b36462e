#include "formats/MolTrajectoryXYZ.h"

#include "support/model.h"
#include "support/testing.h"

#include <locale>

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
    std::string places(int step) const { return placesOf(trajectory, step); }
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
    struct {
        std::string text;
        int steps;
        char const* dots;
        bool isWhole = false;
    } const cases[] = {
        {frame + frame + "3\nx\nC 0 0 0\nC 1 1 1\nC 2 2 2\n", 2, "..\n"},
        {frame + "\n\n" + frame + "end\n" + frame, 2, "..\n"},
        {"", 0, "\n", true},
        {"two\n", 0, "\n"},
        {"99999999999\n\n", 0, "\n"},
        {"0\n\n0\n\n", 2, "..\n", true},
        {"0\n", 0, ".\n"},
        {"-2\n\n", 1, ".\n", true},
        {"2000000000\n\nC 0 0 0\n", 0, ".\n"},
        {frame + "2\n", 1, "..\n"},
        {frame.substr(0, frame.size() - 1), 1, ".\n", true},
        {frame + "\n \n", 1, ".\n", true},
        {frame + "2\nx\nC 5 5 5\n", 2, "..\n"},
        {"3\nx\nC 0 0 0\nC 1 1 1", 1, ".\n"},
        // A title or line of 299 characters takes the next line with it.
        {"1\n" + std::string(299, ' ') + "\nx\nC 0 0 0\n1\n\nC 1 1 1\n", 2, "..\n", true},
        {"1\n\nC " + std::string(298, 'y') + "\nx\n1\n\nC 1 1 1\n", 2, "..\n", true},
    };
    for (auto const& c : cases) {
        Opened const opened(c.text);
        EXPECT_EQ(opened.trajectory->getNumTimeSteps(), c.steps) << c.text;
        EXPECT_EQ(opened.dots, c.dots) << c.text;
        EXPECT_EQ(opened.trajectory->isWhole(), c.isWhole) << c.text;
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
                                       {"C 1d3 5 6", "1,2,3|1,0,0|0,0,0"},
                                       {"C\t+7. -.5\v0.1234567", "1,2,3|7,-0.5,0.1234567|7,8,9"},
                                       {"\nC 4\n5 6", "1,2,3|4,5,6|7,8,9"},
                                       {"C 4 5", "1,2,3|4,5,0|0,0,0"}}) {
        std::string const text = std::string(frame).replace(11, 7, line);
        EXPECT_EQ(Opened(frame + text).places(1), places) << text;
        EXPECT_EQ(Opened(frame + text).places(0), "1,2,3|4,5,6|7,8,9");
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
        EXPECT_EQ(opened.places(step), joined(1000, "|", [step](int i) {
                      return std::to_string(step) + "," + std::to_string(i) + ",-1.25";
                  }));
    }
    EXPECT_EQ(Opened("1\n\n" + std::string(200000, 'C') + " 1 2 3\n").places(0), "1,2,3");
}

/// Numbers such as 1.000,5.
struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(MolTrajectoryXYZ, TheHostsLocalePlaysNoPart) {
    std::locale const before = std::locale::global(std::locale(std::locale(), new DecimalComma));
    EXPECT_EQ(Opened("1\n\nC 1.5 2,5 3\n").places(0), "1.5,2,0");
    std::locale::global(before);
}

} // namespace
