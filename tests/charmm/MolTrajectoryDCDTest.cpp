#include "charmmSamples.h"

#include <bit>
#include <cstring>
#include <unistd.h>

namespace {

using namespace tarnex::test;

std::string wrongNumber(int found, int expected) {
    return "Found number of atoms ( : " + std::to_string(found) +
           ") is inconsistent with expected number ( : " + std::to_string(expected) + ")";
}

std::string dataException(std::string const& text) {
    return "CHARMM PSF/DCD  data exception >" + text + "<\n\n";
}

TEST(MolTrajectoryDCD, TellsTheFilesApartByTheEndsOfTheirNames) {
    auto const messagesOf = [](std::vector<std::string> const& names) {
        OpenedTrajectory opened(names);
        EXPECT_FALSE(opened.isOpen);
        EXPECT_EQ(opened.errors.empty(), opened.messages.find("Could not") != 0);
        return opened.messages;
    };
    std::string const needDcd = "Need a dcd-file !\n", needPsf = "Need a psf-file !\n";
    std::pair<std::vector<std::string>, std::string> const cases[] = {
        {{"a.dcd"}, ""},
        {{"a.dcd", "a.psf", "b.psf"}, ""},
        {{"a.psf", "longer.dcd"}, needDcd},
        {{"longer.psf", "a.dcd"}, needDcd},
        {{"", ""}, needDcd},
        {{"a", ".dcd"}, needDcd},
        {{"a.psf", "b.psf"}, needDcd},
        {{"a.dcd", "b.dcd"}, needPsf},
        {{"a.DCD", "a.psf"}, needDcd},
        {{"a.dcd", "psf"}, needPsf},
        {{".psf", ".dcd"}, "Could not load \".psf\"\n"},
    };
    for (auto const& [names, messages] : cases) EXPECT_EQ(messagesOf(names), messages);
    std::string const psf = writeFile("there.psf", PsfText());
    EXPECT_EQ(messagesOf({"not.dcd", psf}), "Could not load \"not.dcd\"\n");
    std::filesystem::create_directories(scratchPath("folder.psf"));
    EXPECT_EQ(OpenedTrajectory(std::vector{writeFile("in.dcd", DcdBytes()), scratchPath("folder.psf")}).messages,
              dataException("Expected token PSF not found in psf-file"));
}

TEST(MolTrajectoryDCD, TakesBothOrdersOfNamesOfTheSameLength) {
    std::string const psf = writeFile("a.psf", PsfText());
    std::string const dcd = writeFile("b.dcd", DcdBytes());
    for (auto const& names : {std::vector{psf, dcd}, std::vector{dcd, psf}}) {
        OpenedTrajectory const opened(names);
        EXPECT_TRUE(opened.isOpen);
        EXPECT_EQ(opened.messages, "");
        EXPECT_EQ(opened.errors, "This is MolTrajectoryDCD::read('" + psf + "', '" + dcd + "')\n");
        EXPECT_STREQ(opened.trajectory->getTopology()->getName(), "DCD");
        EXPECT_EQ(opened.frame(0), "right");
    }
}

TEST(MolTrajectoryDCD, GivesEveryFrameInEveryLayoutAndOrder) {
    for (int variant = 0; variant < 8; ++variant) {
        int const unitCell = variant & 1;
        int const fourthDimension = variant >> 1 & 1;
        OpenedTrajectory const opened(PsfText(), DcdBytes{.numFrames = 6,
                                                          .unitCell = unitCell,
                                                          .fourthDimension = fourthDimension,
                                                          .swapped = variant >= 4,
                                                          .numTitleLines = variant});
        ASSERT_TRUE(opened.isOpen) << opened.messages;
        EXPECT_EQ(opened.trajectory->getNumTimeSteps(), 6);
        EXPECT_EQ(opened.trajectory->hasUnitCell, unitCell == 1);
        for (int step : {5, 2, 6, 0, 5, 3, -1, 1}) {
            EXPECT_EQ(opened.frame(step), step >= 0 && step < 6 ? "right" : wrongNumber(0, 6)) << variant << step;
        }
        EXPECT_FALSE(opened.trajectory->getTimeStep(0, nullptr));
    }
}

TEST(MolTrajectoryDCD, FramesAreCutAtNoByteWithoutNotice) {
    DcdBytes dcd{.numFrames = 2};
    std::string const whole = dcd;
    std::size_t const frameSize = 12 * 6 + 24;
    for (std::size_t size = whole.size() - frameSize; size < whole.size(); ++size) {
        OpenedTrajectory const opened(PsfText(), whole.substr(0, size));
        ASSERT_TRUE(opened.isOpen);
        EXPECT_EQ(opened.frame(0), "right");
        auto const left = static_cast<int>((size - (whole.size() - frameSize)) % 32);
        bool const isWhole = size >= whole.size() - 4; // the last record length is not needed
        EXPECT_EQ(opened.frame(1), isWhole ? "right" : wrongNumber(left < 4 || left >= 28 ? 0 : (left - 4) / 4, 6));
        EXPECT_EQ(opened.frame(0), "right");
    }
}

TEST(MolTrajectoryDCD, HeaderFlagsAndCountsAreTakenAsTheyStand) {
    EXPECT_EQ(OpenedTrajectory(PsfText(), DcdBytes{.unitCell = 2, .fourthDimension = -1}).frame(3), "right");

    OpenedTrajectory const none(PsfText(), DcdBytes{.statedFrames = 0});
    EXPECT_EQ(none.trajectory->getNumTimeSteps(), 0);
    EXPECT_EQ(none.frame(3), "right");

    OpenedTrajectory const empty(PsfText::ofAtoms(0), DcdBytes{.numAtoms = 0});
    ASSERT_TRUE(empty.isOpen);
    Molecule molecule(empty.trajectory->getTopology(), false);
    EXPECT_TRUE(empty.trajectory->getTimeStep(3, &molecule));
    EXPECT_THROW(empty.trajectory->getTimeStep(4, &molecule), WrongNumberOfAtoms);
}

TEST(MolTrajectoryDCD, RefusesWhatDoesNotFit) {
    auto const messagesOf = [](std::string const& dcd) {
        OpenedTrajectory const opened(PsfText(), dcd);
        EXPECT_FALSE(opened.isOpen);
        EXPECT_EQ(opened.trajectory->dcdStream, nullptr);
        return opened.messages;
    };
    EXPECT_EQ(messagesOf(DcdBytes{.numAtoms = 7}), dataException(wrongNumber(7, 6)));
    EXPECT_EQ(messagesOf(""), dataException("Cannot determine endian type"));
    EXPECT_EQ(messagesOf("CORD and more"), dataException("Cannot determine endian type"));
    for (bool swapped : {false, true}) {
        std::uint64_t const first = swapped ? __builtin_bswap64(21) : 21;
        std::string wide(200, '\0');
        std::memcpy(wide.data(), &first, sizeof first);
        EXPECT_EQ(messagesOf(wide), dataException("Can't handle 64 bit data !"));
    }
    // The count of title lines leads behind the end, or in front of the start.
    EXPECT_EQ(messagesOf(std::string(DcdBytes()).replace(96, 4, "\xff\xff\xff\x7f")), dataException(wrongNumber(0, 6)));
    EXPECT_EQ(messagesOf(std::string(DcdBytes()).replace(96, 4, std::string("\0\0\0\x80", 4))),
              dataException(wrongNumber(0, 6)));
    std::string const whole = DcdBytes();
    for (std::size_t size : {4U, 91U, 92U, 98U, 103U, 270U, 271U}) {
        EXPECT_EQ(messagesOf(whole.substr(0, size)), dataException(wrongNumber(0, 6))) << size;
    }
}

TEST(MolTrajectoryDCD, RecordLengthsThatLieEndInAnException) {
    DcdBytes dcd{.unitCell = 1};
    std::string const whole = dcd;
    std::size_t const start = dcd.header().size();
    auto const with = [&](std::size_t offset, std::int32_t length) {
        std::string bytes = whole;
        std::memcpy(bytes.data() + start + offset, &length, sizeof length);
        return OpenedTrajectory(PsfText(), bytes);
    };
    // The unit cell leads to a place in front of it, behind the end, or back to the start of its frame.
    for (std::int32_t length : {-1000000, -2147483647 - 1, 2147483647, 1000000}) {
        EXPECT_EQ(with(0, length).frame(0), wrongNumber(0, 6)) << length;
        EXPECT_EQ(with(0, length).frame(2000000000), wrongNumber(0, 6)) << length;
    }
    EXPECT_EQ(with(0, -8).frame(0), wrongNumber(-2, 6));
    EXPECT_EQ(with(0, -8 - 96).frame(2000000000), wrongNumber(0, 6));
    // The records of x and z.
    EXPECT_EQ(with(56, 20).frame(0), wrongNumber(5, 6));
    EXPECT_EQ(with(56, -7).frame(0), wrongNumber(-1, 6));
    EXPECT_EQ(with(56 + 64, 28).frame(0), wrongNumber(7, 6));
    EXPECT_EQ(with(56 + 64, 28).frame(1), "right");
    EXPECT_EQ(with(56 + 28, 28).frame(0), "right"); // a closing length
}

TEST(MolTrajectoryDCD, SkipsFramesBehindTwoGigabytes) {
    DcdBytes dcd{.numAtoms = 100000, .numFrames = 1};
    std::string const frame = std::string(dcd).substr(dcd.header().size());
    OpenedTrajectory const opened(PsfText::ofAtoms(100000), dcd.header());
    ASSERT_TRUE(opened.isOpen) << opened.messages;
    constexpr int step = 3000;
    std::string const name = scratchPath("in.dcd");
    auto const place = static_cast<std::streamoff>(dcd.bytes.size()) + std::streamoff{step} * 1200024;
    ASSERT_EQ(truncate(name.c_str(), place), 0);
    std::ofstream(name, std::ios::binary | std::ios::app) << frame;
    Molecule molecule(opened.trajectory->getTopology(), false);
    EXPECT_TRUE(opened.trajectory->getTimeStep(step, &molecule));
    EXPECT_EQ(molecule.coords[99999].z, DcdBytes::coordinate(0, 99999, 2));
    EXPECT_EQ(opened.frame(step - 1), wrongNumber(0, 100000));
    EXPECT_EQ(opened.trajectory->framePositions.size, step + 1);
    std::filesystem::remove(name);
}

TEST(MolTrajectoryDCD, SwapsTheBytesOfItems) {
    MolTrajectoryDCD trajectory(nullptr);
    auto const swapped = [&](int width, int count) {
        std::string text = "abcdefghijklmnopqrstuvwxyz";
        trajectory.swapBytes(text.data(), width, count);
        return text;
    };
    EXPECT_EQ(swapped(2, 5), "badcfehgjiklmnopqrstuvwxyz");
    EXPECT_EQ(swapped(4, 5), "dcbahgfelkjiponmtsrquvwxyz");
    EXPECT_EQ(swapped(8, 3), "hgfedcbaponmlkjixwvutsrqyz");
    for (int count : {0, -1}) EXPECT_EQ(swapped(4, count), "abcdefghijklmnopqrstuvwxyz");
    for (int width : {0, 1, 3, 16}) EXPECT_EQ(swapped(width, 1), "abcdefghijklmnopqrstuvwxyz");
    trajectory.swapBytes(nullptr, 4, 0);
}

} // namespace
