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
        ASSERT_EQ(GROMACSwrite(nullptr, nullptr).writeGROMACSMolTrajectory(trajectory, path("ours").c_str()), 1);
    }

    std::string path(std::string const& name) const { return scratchPath(name); }
    McDArray<McVec3f> const& stepWritten(int step) {
        trajectory->getTimeStep(step, molecule.get());
        return molecule->coords;
    }

    std::unique_ptr<Molecule> molecule = makeChain(numAtoms);
    McHandle<MolTrajectory> trajectory;
};

void expectNear(McDArray<McVec3f> const& found, McDArray<McVec3f> const& expected, float tolerance) {
    ASSERT_EQ(found.size, expected.size);
    for (int i = 0; i < found.size; ++i) {
        for (int axis = 0; axis < 3; ++axis) EXPECT_NEAR(found[i][axis], expected[i][axis], tolerance) << i;
    }
}

/// The positions of a dump, in Angstrom: lines such as "x[    0]={ 4.17219e-02,  8.30337e-01,  1.17372e+00}".
McDArray<McVec3f> positionsOfDump(std::string const& dump) {
    McDArray<McVec3f> positions;
    std::istringstream lines(dump);
    for (std::string line; std::getline(lines, line);) {
        McVec3f place;
        int atom = 0;
        if (std::sscanf(line.c_str(), " x[ %d]={ %f, %f, %f}", &atom, &place.x, &place.y, &place.z) != 4) continue;
        positions.append(McVec3f(place.x * 10.0F, place.y * 10.0F, place.z * 10.0F));
    }
    return positions;
}

TEST_F(Gromacs, ReadsOurFrames) {
    std::string const check = output("gmx check -f '" + path("ours.trr") + "' 2>&1");
    EXPECT_THAT(check, HasSubstr("trr version: GMX_trn_file (double precision)"));
    EXPECT_THAT(check, HasSubstr("# Atoms  12"));
    EXPECT_THAT(check, testing::ContainsRegex("Coords +3 "));
    McDArray<McVec3f> expected;
    for (int i = 0; i < numSteps; ++i) expected.insert(expected.size, numAtoms, stepWritten(i).data);
    expectNear(positionsOfDump(output("gmx dump -f '" + path("ours.trr") + "'")), expected, 2e-5F);
}

TEST_F(Gromacs, ReadsOurStructureAndWritesOneThatWeRead) {
    output("gmx editconf -f '" + path("ours.gro") + "' -o '" + path("theirs.gro") + "'");
    std::unique_ptr<Molecule> const theirs(GROMACSread(nullptr, nullptr).readGRO(path("theirs.gro").c_str()));
    ASSERT_TRUE(theirs);
    expectNear(theirs->coords, stepWritten(0), 0.011F);
    ASSERT_EQ(GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(theirs.get(), path("again.gro").c_str()), 1);
    EXPECT_EQ(readFile(path("again.gro")), readFile(path("ours.gro")));
}

template <class Trajectory>
void expectSteps(std::string const& file, MolTrajectory& written, Molecule& expected) {
    Molecule molecule(written.getTopology(), false);
    McHandle<Trajectory> const frames(new Trajectory(&molecule, file.c_str()));
    ASSERT_EQ(frames->getNumTimeSteps(), written.getNumTimeSteps());
    for (int i = 0; i < frames->getNumTimeSteps(); ++i) {
        frames->getTimeStep(i, &molecule);
        written.getTimeStep(i, &expected);
        expectNear(molecule.coords, expected.coords, 1e-5F);
    }
}

TEST_F(Gromacs, WritesFramesInBothPrecisionsThatWeRead) {
    output("gmx trjconv -f '" + path("ours.trr") + "' -o '" + path("single.trr") + "'");
    output("gmx_d trjconv -f '" + path("ours.trr") + "' -o '" + path("double.trr") + "'");
    expectSteps<MolTrajectoryGROMACS_SINGLE>(path("single.trr"), *trajectory, *molecule);
    expectSteps<MolTrajectoryGROMACS>(path("double.trr"), *trajectory, *molecule);
    EXPECT_EQ(GROMACSread(nullptr, nullptr).checkFormat(path("double.trr").c_str()), 2);
    EXPECT_EQ(GROMACSread(nullptr, nullptr).checkFormat(path("single.trr").c_str()), -1);
}

} // namespace
