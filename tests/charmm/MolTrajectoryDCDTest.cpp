#include "charmmSamples.h"

#include <cstring>

namespace {

using namespace tarnex::test;

std::string wrongNumber(int found, int expected) {
    return "Found number of atoms ( : " + std::to_string(found) +
           ") is inconsistent with expected number ( : " + std::to_string(expected) + ")";
}

TEST(MolTrajectoryDCD, TellsTheFilesApartByTheEndsOfTheirNames) {
    std::string const psf = writeFile("a.psf", PsfText()), dcd = writeFile("b.dcd", DcdBytes());
    for (auto const& names : {std::vector{psf, dcd}, std::vector{dcd, psf}}) {
        OpenedTrajectory const opened(names);
        EXPECT_EQ(opened.messages, "");
        EXPECT_EQ(opened.errors, "This is MolTrajectoryDCD::read('" + psf + "', '" + dcd + "')\n");
        EXPECT_EQ(opened.frame(0), "right");
    }
    std::filesystem::create_directories(scratchPath("folder.psf"));
    std::string const needDcd = "Need a dcd-file !\n", needPsf = "Need a psf-file !\n";
    std::pair<std::vector<std::string>, std::string> const cases[] = {
        {{"a.dcd"}, ""},
        {{"a.dcd", "a.psf", "b.psf"}, ""},
        {{"a.psf", "longer.dcd"}, needDcd},
        {{"longer.psf", "a.dcd"}, needDcd},
        {{"a", ".dcd"}, needDcd},
        {{"a.DCD", "a.psf"}, needDcd},
        {{"a.dcd", "psf"}, needPsf},
        {{".psf", ".dcd"}, "Could not load \".psf\"\n"},
        {{"not.dcd", psf}, "Could not load \"not.dcd\"\n"},
        {{dcd, scratchPath("folder.psf")},
         "CHARMM PSF/DCD  data exception >Expected token PSF not found in psf-file<\n\n"},
    };
    for (auto const& [names, messages] : cases) {
        OpenedTrajectory const opened(names);
        EXPECT_FALSE(opened.isOpen);
        EXPECT_EQ(opened.messages, messages);
    }
}

TEST(MolTrajectoryDCD, GivesEveryFrameInEveryLayoutAndOrder) {
    for (int variant = 0; variant < 8; ++variant) {
        OpenedTrajectory const opened(PsfText(), DcdBytes{.numFrames = 6,
                                                          .unitCell = variant & 1,
                                                          .fourthDimension = variant >> 1 & 1,
                                                          .swapped = variant >= 4,
                                                          .numTitleLines = variant});
        ASSERT_TRUE(opened.isOpen) << opened.messages;
        EXPECT_EQ(opened.trajectory->getNumTimeSteps(), 6);
        for (int step : {5, 2, 6, 0, 5, 3, -1, 1}) {
            EXPECT_EQ(opened.frame(step), step >= 0 && step < 6 ? "right" : wrongNumber(0, 6)) << variant << step;
        }
        EXPECT_FALSE(opened.trajectory->getTimeStep(0, nullptr));
    }
    // Coordinates are swapped in pieces of 2048.
    EXPECT_EQ(OpenedTrajectory(PsfText::ofAtoms(3001), DcdBytes{.numAtoms = 3001, .swapped = true}).frame(1), "right");
}

TEST(MolTrajectoryDCD, FramesAreCutAtNoByteWithoutNotice) {
    std::string const whole = DcdBytes{.numFrames = 2};
    std::size_t const secondFrame = whole.size() - 12 * 6 - 24;
    for (std::size_t size = secondFrame; size < whole.size(); ++size) {
        OpenedTrajectory const opened(PsfText(), whole.substr(0, size));
        auto const left = static_cast<int>((size - secondFrame) % 32);
        bool const isWhole = size >= whole.size() - 4; // the last record length is not needed
        EXPECT_EQ(opened.frame(1), isWhole ? "right" : wrongNumber(left < 4 || left >= 28 ? 0 : (left - 4) / 4, 6));
        EXPECT_EQ(opened.frame(0), "right");
    }
}

TEST(MolTrajectoryDCD, HeaderFlagsAndCountsAreTakenAsTheyStand) {
    EXPECT_EQ(OpenedTrajectory(PsfText(), DcdBytes{.unitCell = 2, .fourthDimension = -1}).frame(3), "right");
    OpenedTrajectory const none(PsfText(), std::string(DcdBytes()).replace(8, 4, 4, '\0'));
    EXPECT_EQ(none.trajectory->getNumTimeSteps(), 0);
    EXPECT_EQ(none.frame(3), "right");
    OpenedTrajectory const empty(PsfText::ofAtoms(0), DcdBytes{.numAtoms = 0});
    EXPECT_EQ(empty.frame(3), "right");
    EXPECT_EQ(empty.frame(4), wrongNumber(0, 0));
}

TEST(MolTrajectoryDCD, RefusesWhatDoesNotFit) {
    std::string const whole = DcdBytes();
    std::string const noEndian = "Cannot determine endian type", wide = "Can't handle 64 bit data !";
    std::vector<std::pair<std::string, std::string>> cases = {
        {DcdBytes{.numAtoms = 7}, wrongNumber(7, 6)},
        {"", noEndian},
        {"CORD and more", noEndian},
        {Bytes().u64(21).put(0, 50).bytes, wide},
        {Bytes{.isBig = true}.u64(21).put(0, 50).bytes, wide},
        // The count of title lines leads behind the end, or in front of the start.
        {std::string(whole).replace(96, 4, "\xff\xff\xff\x7f"), wrongNumber(0, 6)},
        {std::string(whole).replace(96, 4, std::string("\0\0\0\x80", 4)), wrongNumber(0, 6)}};
    for (std::size_t size : {4U, 91U, 98U, 103U, 271U}) cases.emplace_back(whole.substr(0, size), wrongNumber(0, 6));
    for (auto const& [dcd, reason] : cases) {
        OpenedTrajectory const opened(PsfText(), dcd);
        EXPECT_FALSE(opened.isOpen || opened.trajectory->dcdStream);
        EXPECT_EQ(opened.messages, "CHARMM PSF/DCD  data exception >" + reason + "<\n\n");
    }
}

TEST(MolTrajectoryDCD, RecordLengthsThatLieEndInAnException) {
    std::string const whole = DcdBytes{.unitCell = 1};
    for (auto const& [offset, length, step, result] : {
             // The unit cell leads to a place in front of it, behind the end, or back to the start of its frame.
             std::tuple{0, INT32_MIN, 2000000000, wrongNumber(0, 6)},
             {0, INT32_MAX, 2000000000, wrongNumber(0, 6)},
             {0, -8, 0, wrongNumber(-2, 6)},
             {0, -8 - 96, 2000000000, wrongNumber(0, 6)},
             // The records of x and z, and a closing length.
             {56, 20, 0, wrongNumber(5, 6)},
             {56, -7, 0, wrongNumber(-1, 6)},
             {56 + 64, 28, 0, wrongNumber(7, 6)},
             {56 + 64, 28, 1, "right"},
             {56 + 28, 28, 0, "right"},
         }) {
        std::string bytes = whole;
        std::memcpy(bytes.data() + 92 + 172 + 12 + offset, &length, sizeof length);
        EXPECT_EQ(OpenedTrajectory(PsfText(), bytes).frame(step), result) << offset << ' ' << length;
    }
}

TEST(MolTrajectoryDCD, SkipsFramesBehindTwoGigabytes) {
    constexpr int numAtoms = 100000, step = 3000;
    std::string const whole = DcdBytes{.numAtoms = numAtoms, .numFrames = 1};
    constexpr std::size_t frameSize = 3 * (4 * numAtoms + 8);
    OpenedTrajectory const opened(PsfText::ofAtoms(numAtoms), whole.substr(0, whole.size() - frameSize));
    std::string const name = scratchPath("in.dcd");
    std::filesystem::resize_file(name, whole.size() + (step - 1) * frameSize);
    std::ofstream(name, std::ios::binary | std::ios::app) << whole.substr(whole.size() - frameSize);
    EXPECT_EQ(opened.frame(step - 1), wrongNumber(0, numAtoms));
    EXPECT_EQ(opened.frame(step), "other coordinates"); // those of frame 0, read as a whole
    std::filesystem::remove(name);
}

TEST(MolTrajectoryDCD, SwapsTheBytesOfItems) {
    for (auto const& [width, count, swapped] : {std::tuple{2, 5, "badcfehgjiklmnopqrstuvwxyz"},
                                                {4, 5, "dcbahgfelkjiponmtsrquvwxyz"},
                                                {8, 3, "hgfedcbaponmlkjixwvutsrqyz"},
                                                {4, -1, "abcdefghijklmnopqrstuvwxyz"},
                                                {3, 1, "abcdefghijklmnopqrstuvwxyz"}}) {
        std::string text = "abcdefghijklmnopqrstuvwxyz";
        MolTrajectoryDCD(nullptr).swapBytes(text.data(), width, count);
        EXPECT_EQ(text, swapped);
    }
}

} // namespace
