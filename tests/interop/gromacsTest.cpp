#include "gromacs/GROMACSwrite.h"
#include "gromacs/MolTrajectoryGROMACS.h"
#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "gromacs/samples.h"
#include "interop/programs.h"

namespace {

using namespace tarnex::test;

constexpr int numAtoms = 12;
constexpr int numSteps = 3;

/// GROMACS in mixed precision, which writes single, and in double precision.
class Gromacs : public testing::Test {
protected:
    void SetUp() override {
        if (!succeeds("command -v gmx && command -v gmx_d")) GTEST_SKIP() << "GROMACS is not installed";
        for (int i = 0; i < numAtoms; ++i) {
            setText(molecule->getTopology(), 0, "type", i, i % 2 ? "HW1" : "OW");
            setText(molecule->getTopology(), 2, "type", i / 2, "SOL");
        }
        trajectory = new MovingTrajectory(*molecule, numSteps);
        ASSERT_EQ(GROMACSwrite(nullptr, nullptr).writeGROMACSMolTrajectory(trajectory, scratchPath("ours").c_str()), 1);
    }
    void expectStep(McVec3f const* found, int step, float tolerance) {
        trajectory->getTimeStep(step, molecule.get());
        for (int i = 0; i < 3 * numAtoms; ++i)
            EXPECT_NEAR(found[i / 3][i % 3], molecule->coords[i / 3][i % 3], tolerance) << i;
    }
    template <class Trajectory>
    void expectSteps(std::string const& file) {
        Molecule read(trajectory->getTopology(), false);
        McHandle<Trajectory> const frames(new Trajectory(&read, file.c_str()));
        ASSERT_EQ(frames->getNumTimeSteps(), numSteps);
        for (int i = 0; i < numSteps; ++i) {
            frames->getTimeStep(i, &read);
            expectStep(read.coords.data, i, 1e-5F);
        }
    }

    std::unique_ptr<Molecule> molecule = makeChain(numAtoms);
    McHandle<MolTrajectory> trajectory;
};

TEST_F(Gromacs, ReadsOurFrames) {
    std::string const ours = "'" + scratchPath("ours.trr") + "'", check = output("gmx check -f " + ours + " 2>&1");
    EXPECT_THAT(check, HasSubstr("trr version: GMX_trn_file (double precision)"));
    EXPECT_THAT(check, testing::ContainsRegex("Coords +3 "));
    // In nanometres: lines such as "x[    0]={ 4.17219e-02,  8.30337e-01,  1.17372e+00}".
    std::vector<McVec3f> places;
    std::istringstream lines(output("gmx dump -f " + ours));
    for (std::string line; std::getline(lines, line);) {
        McVec3f place;
        if (std::sscanf(line.c_str(), " x[ %*d]={ %f, %f, %f}", &place.x, &place.y, &place.z) != 3) continue;
        places.emplace_back(place.x * 10.0F, place.y * 10.0F, place.z * 10.0F);
    }
    ASSERT_EQ(places.size(), std::size_t{numAtoms * numSteps});
    for (int i = 0; i < numSteps; ++i) expectStep(&places[static_cast<std::size_t>(i) * numAtoms], i, 2e-5F);
}

TEST_F(Gromacs, WritesStructuresAndFramesOfBothPrecisionsThatWeRead) {
    auto const run = [](std::string const& command, std::string const& from, std::string const& to) {
        output(command + " -f '" + scratchPath(from) + "' -o '" + scratchPath(to) + "'");
        return scratchPath(to);
    };
    GROMACSread reader(nullptr, nullptr);
    std::unique_ptr<Molecule> const theirs(reader.readGRO(run("gmx editconf", "ours.gro", "theirs.gro").c_str()));
    ASSERT_TRUE(theirs);
    expectStep(theirs->coords.data, 0, 0.011F);
    ASSERT_EQ(GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(theirs.get(), scratchPath("again.gro").c_str()), 1);
    EXPECT_EQ(readFile(scratchPath("again.gro")), readFile(scratchPath("ours.gro")));

    expectSteps<MolTrajectoryGROMACS_SINGLE>(run("gmx trjconv", "ours.trr", "single.trr"));
    expectSteps<MolTrajectoryGROMACS>(run("gmx_d trjconv", "ours.trr", "double.trr"));
    EXPECT_EQ(reader.checkFormat(scratchPath("double.trr").c_str()), 2);
    EXPECT_EQ(reader.checkFormat(scratchPath("single.trr").c_str()), -1);
}

} // namespace
