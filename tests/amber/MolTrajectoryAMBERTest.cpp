#include "amber/MolTrajectoryAMBER.h"

#include "amber/AMBERread.h"
#include "amberSamples.h"
#include "support/testing.h"
#include "textio/slowScanner.h"

#include <bit>
#include <cstdint>
#include <cstdlib>
#include <random>

namespace {

using namespace tarnex::test;

std::string topologyOf(int natoms) {
    writeFile("a.crd", restartText(natoms));
    std::vector<std::string> const symbols(static_cast<std::size_t>(natoms), "C");
    return writeFile("a.top", AmberText{.symbols = symbols, .pointers = {1}}.text());
}

/// x of atom a in frame f is 100 f + a, both from 1.
std::string framesText(int natoms, int frames) {
    std::string text = "title\n";
    for (int f = 1; f <= frames; ++f) {
        text += block(3 * natoms, 10, [f](int i) { return formatted("%8.3f", 100 * f + i / 3 + 1 + 0.1 * (i % 3)); });
    }
    return text;
}

McHandle<MolTrajectory> open(int natoms, std::string const& frames) {
    return AMBERread(nullptr, nullptr)
        .readAmberMolTrajectory(writeFile("a.mdcrd", frames).c_str(), topologyOf(natoms).c_str(), nullptr);
}

TEST(MolTrajectoryAMBER, StepsAreTheRestartStateAndTheFrames) {
    for (int const natoms : {1, 4, 10}) {
        auto const trajectory = open(natoms, framesText(natoms, 3));
        ASSERT_EQ(trajectory->getNumTimeSteps(), 4);
        Molecule molecule(new MolTopology, true);
        int const last = natoms - 1;
        for (int const step : {2, 0, 3, 1}) {
            EXPECT_TRUE(trajectory->getTimeStep(step, &molecule));
            EXPECT_EQ(molecule.getTopology() == trajectory->getTopology(), step != 0);
            ASSERT_EQ(molecule.coords.size, natoms);
            auto const x = static_cast<float>(100 * step + natoms);
            EXPECT_EQ(molecule.coords[last], McVec3f(x, x + 0.1F, x + 0.2F)) << natoms << ' ' << step;
        }
    }
}

TEST(MolTrajectoryAMBER, EndsOfFiles) {
    std::string const two = framesText(2, 2);
    EXPECT_EQ(open(2, two.substr(0, two.size() - 1))->getNumTimeSteps(), 2);
    EXPECT_EQ(open(2, "title\n")->getNumTimeSteps(), 1);
    EXPECT_EQ(open(2, "title")->getNumTimeSteps(), 0);
    EXPECT_EQ(open(2, "")->getNumTimeSteps(), 0);
    EXPECT_EQ(open(0, "title\n\n\n")->getNumTimeSteps(), 3);

    auto const cut = open(2, two.substr(0, two.size() - 10));
    Molecule molecule(cut->getTopology(), false);
    EXPECT_TRUE(cut->getTimeStep(2, &molecule));
    EXPECT_EQ(molecule.coords[1], McVec3f(202.0F, 202.1F, 0.0F));
    for (int const step : {-1, 99, 1 << 30}) EXPECT_TRUE(cut->getTimeStep(step, &molecule));
    EXPECT_EQ(molecule.coords[0].x, 201.0F); // what does not exist changes nothing

    std::filesystem::remove(scratchPath("a.mdcrd"));
    std::filesystem::remove(scratchPath("a.top"));
    EXPECT_TRUE(cut->getTimeStep(0, &molecule) && cut->getTimeStep(1, &molecule));
    EXPECT_EQ(molecule.coords[0].x, 201.0F);
}

TEST(MolTrajectoryAMBER, ObservablesAreAsManyAsTheVelocities) {
    struct Opened : MolTrajectoryAMBER {
        using MolTrajectoryAMBER::MolTrajectoryAMBER;
        int numObservables() const { return observables->getNumTimeSteps(); }
    };
    auto* topology = new MolTopology;
    topology->addGroup(0, new MtAtom);
    McString const velocities = writeFile("a.mdvel", framesText(1, 5)).c_str();
    Opened opened(topology, writeFile("a.mdcrd", framesText(1, 2)).c_str(), velocities, "none");
    EXPECT_EQ(opened.numObservables(), 6);
    EXPECT_EQ(opened.getNumTimeSteps(), 3);
    EXPECT_EQ(opened.setStreamPos(3), 0);
    EXPECT_EQ(opened.getNumTimeSteps(), 3);
    EXPECT_EQ(opened.setStreamPos(2), 6);
    EXPECT_EQ(opened.getNumTimeSteps(), 6);
}

/// Lines that are short, long or blank, with any line end and with letters in their numbers.
std::string oddText(std::mt19937& random) {
    auto const pick = [&random](unsigned limit) { return static_cast<unsigned>(random()) % limit; };
    static constexpr char const* ends[] = {"\n", "\r\n", "\n\r", "\r", "\n\n"};
    static constexpr char const* fields[] = {"   1.250", "-100.125", "12345678", "  1.5e2 ",
                                             "abc  1.0", "        ", "1.0"};
    std::string text;
    for (unsigned lines = pick(40); lines > 0; --lines) {
        for (unsigned i = pick(4) == 0 ? pick(13) : 10; i > 0; --i) text += fields[pick(5) == 0 ? pick(7) : pick(2)];
        text += ends[pick(10) == 0 ? pick(5) : 0];
    }
    return text;
}

TEST(MolTrajectoryAMBER, EqualsCharacterByCharacterReading) {
    for (unsigned seed = 0; seed < 300 && !HasFailure(); ++seed) {
        std::mt19937 random(seed);
        std::string const file = writeFile("odd.mdcrd", oddText(random));
        int const natoms = 1 + static_cast<int>(random() % 9);
        SlowScanner slow(file.c_str());
        std::vector<long> expected;
        slow.nextLine();
        while (!slow.eof) {
            expected.push_back(std::ftell(slow.file));
            for (int i = 0; i < 3 * natoms; i += 10) slow.nextLine();
        }
        McDArray<long> positions;
        AMBERread amber(nullptr, nullptr);
        ASSERT_EQ(amber.readAmber_TrajCoords(positions, natoms, file.c_str()), static_cast<int>(expected.size()));
        Molecule molecule(new MolTopology, true);
        for (int i = 0; i < natoms; ++i) molecule.getTopology()->addGroup(0, new MtAtom);
        for (int frame = 0; frame < static_cast<int>(expected.size()); ++frame) {
            ASSERT_EQ(positions[frame], expected[static_cast<std::size_t>(frame)]);
            ASSERT_TRUE(amber.readCoordsAt(&molecule, frame + 1, positions, file.c_str()));
            slow.setStreamPos(positions[frame]);
            for (int i = 0; i < 3 * natoms; ++i) {
                slow.field(8);
                auto const value = static_cast<float>(std::strtod(slow.buffer.c_str(), nullptr));
                ASSERT_EQ(std::bit_cast<std::uint32_t>(molecule.coords[i / 3][i % 3]),
                          std::bit_cast<std::uint32_t>(value))
                    << seed << ' ' << frame << ' ' << i;
                if (i % 10 == 9) slow.nextLine();
            }
        }
    }
}

} // namespace
