#include "gromacs/GROMACSread.h"
#include "gromacs/MolTrajectoryGROMACS.h"
#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "samples.h"
#include "support/testing.h"

#include <climits>

namespace {

using namespace tarnex::test;

constexpr char const* untouched = "-5,-5,-5|-5,-5,-5";

/// A trajectory of molecules of two atoms.
template <class Trajectory>
class Frames : public testing::Test {
protected:
    using Real = decltype(std::declval<Trajectory>().lastHeader->t);
    static constexpr int headerSize = 76 + 2 * sizeof(Real);

    void open(std::string const& bytes) {
        trajectory = new Trajectory(structure.get(), writeFile("in.trr", bytes).c_str());
    }
    /// The positions behind a step that is read into coordinates of -5; `prints` is what is printed meanwhile.
    std::string read(int step) {
        for (McVec3f& place : structure->coords) place = McVec3f(-5.0F, -5.0F, -5.0F);
        prints = printed([&] { EXPECT_TRUE(trajectory->getTimeStep(step, structure.get())); });
        return placesOf(structure->coords);
    }

    std::unique_ptr<Molecule> structure = makeChain(2);
    McHandle<Trajectory> trajectory;
    std::string prints;
};

using Precisions = testing::Types<MolTrajectoryGROMACS, MolTrajectoryGROMACS_SINGLE>;
TYPED_TEST_SUITE(Frames, Precisions);

TYPED_TEST(Frames, AreFoundBySizeAndReadInAnyOrder) {
    using AFrame = Frame<typename TestFixture::Real>;
    AFrame frame{.hasVirial = 1, .hasPressure = 1, .hasVelocities = 1, .hasForces = 1};
    std::string const first = frame.bytes();
    frame.position = 0.5F;
    this->open(first + frame.bytes() + AFrame{}.bytes().substr(0, 100)); // the cut third one does not count
    auto& steps = *this->trajectory;
    ASSERT_EQ(steps.getNumTimeSteps(), 2);
    EXPECT_EQ(steps.streamPositions[1], static_cast<long>(first.size()));
    EXPECT_FALSE(steps.lastHeader);
    EXPECT_EQ(this->read(1), "5,15,25|35,45,55");
    EXPECT_EQ(this->read(0), "10,20,30|40,50,60");
    EXPECT_EQ(this->prints, "magic = 1993\nstrLen = 13\n");
    auto const& header = *steps.lastHeader;
    EXPECT_EQ(std::string(header.version, 16), frame.version);
    EXPECT_EQ((std::tuple{header.natoms, header.step, header.t, header.lambda, header.refCount}),
              (std::tuple{2, 7, 2.5, 0.5, 1}));
    EXPECT_FALSE(steps.getTimeStep(2, this->structure.get()));
    EXPECT_FALSE(steps.getTimeStep(-1, this->structure.get()));
}

TYPED_TEST(Frames, OfMissingArraysAndOtherNumbersOfAtoms) {
    using AFrame = Frame<typename TestFixture::Real>;
    std::pair<AFrame, char const*> const cases[] = {
        {{.hasBox = 0}, "10,20,30|40,50,60"},   {{.hasPositions = 0, .hasForces = 1}, "0,0,0|0,0,0"},
        {{.numAtoms = 5}, "10,20,30|40,50,60"}, {{.numAtoms = 1}, "10,20,30|-5,-5,-5"},
        {{.claimedAtoms = INT_MIN}, untouched}, {{.hasForces = 1, .claimedAtoms = INT_MAX}, "10,20,30|40,50,60"},
    };
    for (auto const& [frame, places] : cases) {
        this->open(frame.bytes());
        EXPECT_EQ(this->trajectory->getNumTimeSteps(), 1);
        EXPECT_EQ(this->read(0), places) << frame.claimedAtoms;
    }
}

TYPED_TEST(Frames, CutAnywhere) {
    std::string const whole = Frame<typename TestFixture::Real>{.hasVirial = 1, .hasVelocities = 1}.bytes();
    constexpr int width = sizeof(typename TestFixture::Real);
    constexpr int positions = TestFixture::headerSize + 36 * width;
    for (int length = 0; length < static_cast<int>(whole.size()); ++length) {
        this->open(whole.substr(0, static_cast<std::size_t>(length)));
        ASSERT_EQ(this->trajectory->getNumTimeSteps() > 0, length >= 4) << length;
        if (length < 4) continue;
        int const there = length < positions ? 0 : (length - positions) / width;
        auto const place = [there](int i) { return std::to_string(i < there ? 10 * (i + 1) : 0); };
        auto const atom = [&](int i) { return joined(3, ",", [&](int axis) { return place(3 * i + axis); }); };
        bool const hasCount = length >= 68;
        EXPECT_EQ(this->read(0), hasCount ? joined(2, "|", atom) : untouched) << length;
    }
}

TYPED_TEST(Frames, VersionTextsOfOtherLengths) {
    for (auto const& [strLen, length, isRead] : {std::tuple{0, 3U, true},
                                                 {20, 23U, true},
                                                 {21, 24U, false},
                                                 {-1, 2U, false},
                                                 {INT_MIN, 0U, false},
                                                 {INT_MAX, 5U, false}}) {
        this->open(Frame<typename TestFixture::Real>{.strLen = strLen, .version = std::string(length, 'v')}.bytes());
        ASSERT_EQ(this->trajectory->getNumTimeSteps(), 1) << strLen;
        EXPECT_EQ(this->read(0), isRead ? "10,20,30|40,50,60" : untouched) << strLen;
        EXPECT_EQ(this->prints, "magic = 1993\nstrLen = " + std::to_string(strLen) + "\n" +
                                    (isRead ? "" : "returning because strLen..\n"));
        EXPECT_EQ(this->trajectory->lastHeader->strLen, isRead ? strLen : 20);
        EXPECT_EQ(this->trajectory->lastHeader->natoms, isRead ? 2 : 0);
    }
}

TYPED_TEST(Frames, PositionsBehindTwoGigabytesComeFromA32BitProduct) {
    // A file with holes: frames of 90 million atoms, of which only headers and the first atoms stand there.
    Frame<typename TestFixture::Real> frame{.numAtoms = 1, .claimedAtoms = 90000000};
    this->open(frame.bytes());
    std::string const path = scratchPath("in.trr");
    long const size = this->headerSize + static_cast<long>(sizeof frame.position) * (9 + 3 * 90000000L);
    for (long i = 1; i < 4; ++i) {
        frame.position = static_cast<typename TestFixture::Real>(i + 1);
        std::fstream(path, std::ios::binary | std::ios::in | std::ios::out).seekp(i * size) << frame.bytes();
    }
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(4 * size));
    EXPECT_EQ(this->trajectory->setStreamPos(), 1);
    ASSERT_EQ(this->trajectory->getNumTimeSteps(), 4);
    for (int i = 0; i < 4; ++i) {
        long const position = this->trajectory->streamPositions[i];
        EXPECT_EQ(position, static_cast<int>(static_cast<std::uint32_t>(i * size)));
        std::string const places = this->read(i);
        if (position < 0) EXPECT_EQ(this->prints + places, untouched);
        if (position == i * size) EXPECT_THAT(places, StartsWith(std::to_string(10 * (i + 1)) + ","));
    }
    std::filesystem::remove(path);
}

TYPED_TEST(Frames, FilesThatAreMissingOrGoAway) {
    for (std::string const& name : {std::string("no.trr"), scratchPath("")}) {
        this->trajectory = new TypeParam(this->structure.get(), name.c_str());
        EXPECT_EQ(this->trajectory->getNumTimeSteps(), 0);
    }
    this->open(Frame<typename TestFixture::Real>{}.bytes());
    std::filesystem::remove(scratchPath("in.trr"));
    EXPECT_EQ(this->read(0) + this->prints, untouched);
    EXPECT_EQ(this->trajectory->lastHeader->natoms, 0);
}

TEST(GromacsTrajectory, BondsComeFromTheTopologyOrFromLengthsInDoublePrecisionOnly) {
    std::string const gro = writeFile("in.gro", "t\n2\n    1HOH     OW    1   0.000   0.000   0.000\n"
                                                "    1HOH    HW1    2   0.090   0.000   0.000\n");
    std::string const trr = writeFile("in.trr", Frame<double>{}.bytes());
    std::string const top = writeFile("in.top", "[ bonds ]\n    2     1     4\n");
    auto const bonds = [&](char const* topology, bool isSingle) {
        McHandle<MolTrajectory> const held(
            isSingle ? GROMACSread_SINGLE(nullptr, nullptr)
                           .readGROMACS_SINGLEMolTrajectory(trr.c_str(), gro.c_str(), topology)
                     : GROMACSread(nullptr, nullptr).readGROMACSMolTrajectory(trr.c_str(), gro.c_str(), topology));
        return groupsOf(held->getTopology()->getLevel(1));
    };
    EXPECT_EQ(bonds(nullptr, false), "0,1");
    EXPECT_EQ(bonds(top.c_str(), false), "1,0");
    EXPECT_EQ(bonds("no.top", false), "");
    EXPECT_EQ(bonds(nullptr, true), "");
    EXPECT_EQ(bonds(top.c_str(), true), "1,0");
    EXPECT_FALSE(GROMACSread(nullptr, nullptr).readGROMACSMolTrajectory(trr.c_str(), "no.gro", nullptr));
    EXPECT_FALSE(GROMACSread_SINGLE(nullptr, nullptr).readGROMACS_SINGLEMolTrajectory(trr.c_str(), nullptr, nullptr));
}

TEST(CheckFormat, LooksForTheSecondFrame) {
    std::string const inDouble = Frame<double>{.hasVelocities = 1}.bytes();
    std::string const inSingle = Frame<float>{.hasVelocities = 1}.bytes();
    std::pair<std::string, int> const cases[] = {
        {inDouble + inDouble, 2},
        {inDouble, -1},
        {inDouble + inDouble.substr(0, 4), 2},
        {inDouble + inDouble.substr(0, 3), -1},
        {inSingle + inSingle, -1},
        {inSingle + std::string(4, '\0') + inSingle, 1}, // so much more is what passes as single precision
        {"", -1},
        {"abcd", -1},
        {std::string(500, '\0'), 1}};
    for (auto const& [bytes, result] : cases) {
        EXPECT_EQ(GROMACSread(nullptr, nullptr).checkFormat(writeFile("in.trr", bytes).c_str()), result)
            << bytes.size();
    }
    EXPECT_EQ(GROMACSread(nullptr, nullptr).checkFormat("no.trr"), -1);
    EXPECT_EQ(GROMACSread(nullptr, nullptr).checkFormat(scratchPath("").c_str()), -1);
}

} // namespace
