#include "amber/MolTrajectoryAMBER.h"

#include "amber/AMBERread.h"
#include "amberSamples.h"
#include "support/model.h"
#include "support/testing.h"

namespace {

using namespace tarnex::test;

/// x of atom a in frame f is 100 f + a, both from 1.
std::string framesText(int natoms, int frames) {
    std::string text = "title\n";
    for (int f = 1; f <= frames; ++f) {
        text += block(3 * natoms, 10, [f](int i) { return formatted("%8.3f", 100 * f + i / 3 + 1 + 0.1 * (i % 3)); });
    }
    return text;
}

McHandle<MolTrajectory> open(int natoms, std::string const& frames) {
    writeFile("a.crd", restartText(natoms));
    std::vector<std::string> const symbols(static_cast<std::size_t>(natoms), "C");
    std::string const topology = writeFile("a.top", AmberText{.symbols = symbols, .pointers = {1}}.text());
    return AMBERread(nullptr, nullptr)
        .readAmberMolTrajectory(writeFile("a.mdcrd", frames).c_str(), topology.c_str(), nullptr);
}

TEST(MolTrajectoryAMBER, StepsAreTheRestartStateAndTheFrames) {
    for (int const natoms : {1, 4, 10}) { // frames of a part of a line, of a full line and more, of full lines
        auto const trajectory = open(natoms, framesText(natoms, 3));
        ASSERT_EQ(trajectory->getNumTimeSteps(), 4);
        Molecule molecule(new MolTopology, true);
        for (int const step : {2, 0, 3, 1}) {
            EXPECT_TRUE(trajectory->getTimeStep(step, &molecule));
            EXPECT_EQ(molecule.getTopology() == trajectory->getTopology(), step != 0);
            EXPECT_EQ(placesOf(molecule.coords), joined(natoms, "|", [step](int atom) {
                          std::string const x = std::to_string(100 * step + atom + 1);
                          return x + "," + x + ".1," + x + ".2";
                      }));
        }
    }
}

TEST(MolTrajectoryAMBER, EndsOfFiles) {
    std::string const two = framesText(2, 2);
    EXPECT_EQ(open(2, two.substr(0, two.size() - 1))->getNumTimeSteps(), 2);
    EXPECT_EQ(open(2, "title\n")->getNumTimeSteps(), 1);
    EXPECT_EQ(open(2, "title")->getNumTimeSteps(), 0);
    EXPECT_EQ(open(0, "title\n\n\n")->getNumTimeSteps(), 3);

    auto const cut = open(2, two.substr(0, two.size() - 10));
    Molecule molecule(cut->getTopology(), false);
    // What does not exist changes nothing.
    for (int const step : {2, -1, 99, 1 << 30}) {
        EXPECT_TRUE(cut->getTimeStep(step, &molecule));
        EXPECT_EQ(placesOf(molecule.coords), "201,201.1,201.2|202,202.1,0") << step;
    }
    std::filesystem::remove(scratchPath("a.mdcrd"));
    std::filesystem::remove(scratchPath("a.top"));
    EXPECT_TRUE(cut->getTimeStep(0, &molecule) && cut->getTimeStep(1, &molecule));
    EXPECT_EQ(molecule.coords[0].x, 201.0F);
}

TEST(MolTrajectoryAMBER, NumbersStandInColumnsWhateverTheyAre) {
    auto const trajectory = open(2, "title\r\n-100.12512345678  1.5e2 abc  1.0        \r\n1.0\n\n   7.000");
    EXPECT_EQ(trajectory->getNumTimeSteps(), 4);
    EXPECT_EQ(placesOf(trajectory, 1), "-100.125,1.234568e+07,150|0,0,0");
    EXPECT_EQ(placesOf(trajectory, 2), "1,0,0|0,0,0");
    EXPECT_EQ(placesOf(trajectory, 4), "7,0,0|0,0,0");
}

TEST(MolTrajectoryAMBER, ObservablesAreAsManyAsTheVelocities) {
    struct Opened : MolTrajectoryAMBER {
        using MolTrajectoryAMBER::MolTrajectoryAMBER;
        int numObservables() const { return observables->getNumTimeSteps(); }
    };
    McString const velocities = writeFile("a.mdvel", framesText(1, 5)).c_str();
    Opened opened(newTopology(1), writeFile("a.mdcrd", framesText(1, 2)).c_str(), velocities, "none");
    EXPECT_EQ(opened.numObservables(), 6);
    EXPECT_EQ(opened.getNumTimeSteps(), 3);
    EXPECT_EQ(opened.setStreamPos(3), 0);
    EXPECT_EQ(opened.setStreamPos(2), 6);
    EXPECT_EQ(opened.getNumTimeSteps(), 6);
}

} // namespace
