#include "gromacs/GROMACSread.h"
#include "gromacs/MolTrajectoryGROMACS.h"
#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "samples.h"
#include "support/testing.h"

#include <climits>

namespace {

using namespace tarnex::test;

struct Double {
    using Real = double;
    using Reader = GROMACSread;
    using Trajectory = MolTrajectoryGROMACS;
};
struct Single {
    using Real = float;
    using Reader = GROMACSread_SINGLE;
    using Trajectory = MolTrajectoryGROMACS_SINGLE;
};

template <class Precision>
class Frames : public testing::Test {
protected:
    using Real = typename Precision::Real;
    using AFrame = Frame<Real>;

    /// A trajectory of molecules of two atoms.
    void open(std::string const& bytes) {
        trajectory = new typename Precision::Trajectory(structure.get(), writeFile("in.trr", bytes).c_str());
    }
    /// The positions behind a step that is read into coordinates of -5, and what is printed meanwhile.
    std::string read(int step, Molecule& molecule) {
        for (McVec3f& place : molecule.coords) place = McVec3f(-5.0F, -5.0F, -5.0F);
        return printed([&] { EXPECT_TRUE(trajectory->getTimeStep(step, &molecule)); });
    }
    McDArray<McVec3f> const& read(int step) {
        prints = read(step, *structure);
        return structure->coords;
    }
    static constexpr int headerSize = 76 + 2 * sizeof(Real);

    std::unique_ptr<Molecule> structure = makeChain(2);
    McHandle<typename Precision::Trajectory> trajectory;
    std::string prints;
};

using Precisions = testing::Types<Double, Single>;
TYPED_TEST_SUITE(Frames, Precisions);

constexpr char const* regularPrints = "magic = 1993\nstrLen = 13\n";
McVec3f const untouched(-5.0F, -5.0F, -5.0F);
McVec3f const zero(0.0F, 0.0F, 0.0F);

TYPED_TEST(Frames, AreFoundBySizeAndReadInAnyOrder) {
    typename TestFixture::AFrame frame{
        .hasVirial = true, .hasPressure = true, .hasVelocities = true, .hasForces = true};
    std::string bytes = frame.bytes();
    auto const size = static_cast<long>(bytes.size());
    EXPECT_EQ(size, this->headerSize + (9 + 54 + 18) * static_cast<long>(sizeof(typename TypeParam::Real)));
    frame.position = 0.5F;
    bytes += frame.bytes() + typename TestFixture::AFrame{}.bytes().substr(0, 100);
    this->open(bytes);
    auto& steps = *this->trajectory;
    ASSERT_EQ(steps.getNumTimeSteps(), 2); // the cut third one does not count
    EXPECT_EQ(steps.streamPositions[0], 0);
    EXPECT_EQ(steps.streamPositions[1], size);
    EXPECT_FALSE(steps.lastHeader);
    EXPECT_EQ(this->read(1)[0], McVec3f(5.0F, 15.0F, 25.0F));
    EXPECT_EQ(this->read(0)[1], McVec3f(40.0F, 50.0F, 60.0F));
    EXPECT_EQ(this->prints, regularPrints);
    auto const& header = *steps.lastHeader;
    EXPECT_EQ(std::string(header.version, 16), std::string("\0\0\0\x0c", 4) + "GMX_trn_file");
    EXPECT_EQ(header.natoms, 2);
    EXPECT_EQ(header.step, 7);
    EXPECT_EQ(header.t, typename TypeParam::Real(2.5));
    EXPECT_EQ(header.lambda, typename TypeParam::Real(0.5));
    EXPECT_EQ(header.refCount, 1);
    EXPECT_FALSE(steps.getTimeStep(2, this->structure.get()));
    EXPECT_FALSE(steps.getTimeStep(-1, this->structure.get()));
    Molecule other(new MolTopology, true);
    this->read(0, other);
    EXPECT_EQ(other.getTopology(), steps.getTopology());
    EXPECT_EQ(other.coords.size, 2);
}

TYPED_TEST(Frames, ArraysThatAreMissing) {
    this->open(typename TestFixture::AFrame{.hasBox = false}.bytes());
    EXPECT_EQ(this->read(0)[1], McVec3f(40.0F, 50.0F, 60.0F));
    this->open(typename TestFixture::AFrame{.hasPositions = false, .hasForces = true}.bytes());
    EXPECT_EQ(this->trajectory->getNumTimeSteps(), 1);
    EXPECT_EQ(this->read(0)[1], zero);
}

TYPED_TEST(Frames, OfOtherNumbersOfAtoms) {
    this->open(typename TestFixture::AFrame{.numAtoms = 5}.bytes());
    EXPECT_EQ(this->read(0)[1], McVec3f(40.0F, 50.0F, 60.0F));
    this->open(typename TestFixture::AFrame{.numAtoms = 1}.bytes());
    EXPECT_EQ(this->read(0)[0], McVec3f(10.0F, 20.0F, 30.0F));
    EXPECT_EQ(this->structure->coords[1], untouched);
    for (int const claimed : {-1, INT_MIN, 0}) {
        this->open(typename TestFixture::AFrame{.claimedAtoms = claimed}.bytes());
        EXPECT_EQ(this->read(0)[0], untouched) << claimed;
    }
    this->open(typename TestFixture::AFrame{.hasForces = true, .claimedAtoms = INT_MAX}.bytes());
    EXPECT_EQ(this->trajectory->getNumTimeSteps(), 1);
    EXPECT_EQ(this->read(0)[1], McVec3f(40.0F, 50.0F, 60.0F));
}

TYPED_TEST(Frames, CutAnywhere) {
    typename TestFixture::AFrame const frame{.hasVirial = true, .hasVelocities = true};
    std::string const whole = frame.bytes();
    constexpr auto width = sizeof(typename TypeParam::Real);
    std::size_t const positions = this->headerSize + 36 * width;
    for (std::size_t length = 0; length < whole.size(); ++length) {
        this->open(whole.substr(0, length));
        if (length < 4) {
            EXPECT_EQ(this->trajectory->getNumTimeSteps(), 0) << length;
            continue;
        }
        ASSERT_GE(this->trajectory->getNumTimeSteps(), 1) << length;
        auto const& coords = this->read(0);
        if (length < 68) {
            EXPECT_EQ(coords[0], untouched) << length; // the number of atoms is missing
            continue;
        }
        std::size_t const there = length < positions ? 0 : (length - positions) / width;
        for (std::size_t i = 0; i < 6; ++i) {
            float const expected = i < there ? 10.0F * static_cast<float>(i + 1) : 0.0F;
            EXPECT_EQ(coords[static_cast<int>(i / 3)][static_cast<int>(i % 3)], expected) << length << " " << i;
        }
    }
}

TYPED_TEST(Frames, VersionTextsOfOtherLengths) {
    struct Case {
        int strLen;
        std::size_t bytes;
        char const* prints;
        bool isRead;
    };
    for (Case const& c : {
             Case{0, 3, "magic = 1993\nstrLen = 0\n", true},
             Case{20, 23, "magic = 1993\nstrLen = 20\n", true},
             Case{21, 24, "magic = 1993\nstrLen = 21\nreturning because strLen..\n", false},
             Case{-1, 2, "magic = 1993\nstrLen = -1\nreturning because strLen..\n", false},
             Case{INT_MIN, 0, "magic = 1993\nstrLen = -2147483648\nreturning because strLen..\n", false},
             Case{INT_MAX, 5, "magic = 1993\nstrLen = 2147483647\nreturning because strLen..\n", false},
         }) {
        typename TestFixture::AFrame const frame{.strLen = c.strLen, .version = std::string(c.bytes, 'v')};
        this->open(frame.bytes());
        ASSERT_EQ(this->trajectory->getNumTimeSteps(), 1) << c.strLen;
        EXPECT_EQ(this->read(0)[0], c.isRead ? McVec3f(10.0F, 20.0F, 30.0F) : untouched) << c.strLen;
        EXPECT_EQ(this->prints, c.prints);
        if (!c.isRead) EXPECT_EQ(this->trajectory->lastHeader->strLen, 20);
        if (!c.isRead) EXPECT_EQ(this->trajectory->lastHeader->natoms, 0);
    }
}

TYPED_TEST(Frames, PositionsBehindTwoGigabytesComeFromA32BitProduct) {
    // A file with holes: frames of 90 million atoms, of which only headers and the first atoms stand there.
    typename TestFixture::AFrame frame{.numAtoms = 1, .claimedAtoms = 90000000};
    this->open(frame.bytes());
    std::string const path = scratchPath("in.trr");
    long const size = this->headerSize + static_cast<long>(sizeof(typename TypeParam::Real)) * (9 + 3 * 90000000L);
    {
        std::fstream file(path, std::ios::binary | std::ios::in | std::ios::out);
        for (long i = 1; i < 4; ++i) {
            frame.position = static_cast<typename TypeParam::Real>(i + 1);
            file.seekp(i * size) << frame.bytes();
        }
    }
    std::filesystem::resize_file(path, static_cast<std::uintmax_t>(4 * size));
    EXPECT_EQ(this->trajectory->setStreamPos(), 1);
    ASSERT_EQ(this->trajectory->getNumTimeSteps(), 4);
    EXPECT_EQ(this->read(0)[0].x, 10.0F);
    for (int i = 1; i < 4; ++i) {
        long const position = this->trajectory->streamPositions[i];
        EXPECT_EQ(position, static_cast<int>(static_cast<std::uint32_t>(i * size)));
        McVec3f const place = this->read(i)[0];
        if (position < 0) EXPECT_EQ(place, untouched);
        if (position < 0) EXPECT_EQ(this->prints, "");
        if (position == i * size) EXPECT_EQ(place.x, 10.0F * static_cast<float>(i + 1));
    }
    std::filesystem::remove(path);
}

TYPED_TEST(Frames, FilesThatAreMissingOrGoAway) {
    this->trajectory = new typename TypeParam::Trajectory(this->structure.get(), "no.trr");
    EXPECT_EQ(this->trajectory->getNumTimeSteps(), 0);
    this->trajectory = new typename TypeParam::Trajectory(this->structure.get(), scratchPath("").c_str());
    EXPECT_EQ(this->trajectory->getNumTimeSteps(), 0);
    this->open(typename TestFixture::AFrame{}.bytes());
    std::filesystem::remove(scratchPath("in.trr"));
    EXPECT_EQ(this->read(0)[0], untouched);
    EXPECT_EQ(this->prints, "");
    EXPECT_EQ(this->trajectory->lastHeader->natoms, 0);
}

constexpr char const* twoAtoms = "t\n2\n    1HOH     OW    1   0.000   0.000   0.000\n"
                                 "    1HOH    HW1    2   0.090   0.000   0.000\n";

TEST(GromacsTrajectory, BondsComeFromTheTopologyOrFromLengthsInDoublePrecisionOnly) {
    std::string const gro = writeFile("in.gro", twoAtoms);
    std::string const trr = writeFile("in.trr", Frame<double>{}.bytes());
    std::string const top = writeFile("in.top", "[ bonds ]\n    2     1     4\n");
    GROMACSread reader(nullptr, nullptr);
    GROMACSread_SINGLE single(nullptr, nullptr);
    auto const bonds = [](MolTrajectory* trajectory) {
        McHandle<MolTrajectory> const held(trajectory);
        return held->getTopology()->getLevel(1)->groups.size;
    };
    EXPECT_EQ(bonds(reader.readGROMACSMolTrajectory(trr.c_str(), gro.c_str(), nullptr)), 1);
    EXPECT_EQ(bonds(reader.readGROMACSMolTrajectory(trr.c_str(), gro.c_str(), top.c_str())), 1);
    EXPECT_EQ(bonds(reader.readGROMACSMolTrajectory(nullptr, gro.c_str(), "no.top")), 0);
    EXPECT_EQ(bonds(single.readGROMACS_SINGLEMolTrajectory(trr.c_str(), gro.c_str(), nullptr)), 0);
    EXPECT_EQ(bonds(single.readGROMACS_SINGLEMolTrajectory(trr.c_str(), gro.c_str(), top.c_str())), 1);
    EXPECT_EQ(reader.readGROMACSMolTrajectory(trr.c_str(), "no.gro", nullptr), nullptr);
    EXPECT_EQ(single.readGROMACS_SINGLEMolTrajectory(trr.c_str(), nullptr, top.c_str()), nullptr);
}

TEST(CheckFormat, LooksForTheSecondFrame) {
    std::string const inDouble = Frame<double>{.hasVelocities = true}.bytes();
    std::string const inSingle = Frame<float>{.hasVelocities = true}.bytes();
    // Four bytes more than a frame in single precision are what passes as such.
    std::string const padded = inSingle + std::string(4, '\0');
    struct {
        std::string bytes;
        int result;
    } const cases[] = {{inDouble + inDouble, 2},
                       {inDouble, -1},
                       {inDouble + inDouble.substr(0, 4), 2},
                       {inDouble + inDouble.substr(0, 3), -1},
                       {inSingle + inSingle, -1},
                       {padded + inSingle, 1},
                       {"", -1},
                       {"abc", -1},
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
