#include "formats/MolTrajectoryXYZ.h"

#include "support/model.h"
#include "support/testing.h"

#include <locale>
#include <random>
#include <string_view>

namespace {

using namespace tarnex::test;

/// Reads XYZ frames by nothing but a standard stream, step by step as the format is told.
class SlowXyz {
public:
    std::vector<std::string> words;
    std::vector<std::streampos> positions;

    explicit SlowXyz(std::string const& file) : in(file) {
        in.imbue(std::locale::classic());
        int count = 0;
        for (int previous = 0; in >> count; previous = count) {
            if (!positions.empty() && count != previous) return;
            passLine();
            passLine();
            if (!in) return;
            std::streampos const position = in.tellg();
            for (int i = 0; i < count && in.good(); ++i) {
                std::string word;
                if (positions.empty()) {
                    in >> word;
                    words.push_back(word.c_str());
                }
                passLine();
            }
            if (!in) return;
            positions.push_back(position);
        }
    }

    void readStep(std::size_t step, std::vector<McVec3f>& places) {
        in.clear();
        in.seekg(positions[step]);
        std::string word;
        for (McVec3f& place : places) {
            if (!in.good()) return;
            in >> word >> place.x >> place.y >> place.z;
            passLine();
        }
    }

private:
    void passLine() {
        do in.ignore(300, '\n');
        while (in.gcount() == 300);
    }

    std::ifstream in;
};

AtomDataBase elements() {
    AtomDataBase table;
    table.appendAtom(6, 1.7F, "C");
    table.appendAtom(1, 1.2F, "H");
    table.appendAtom(99, 9.0F, "C");
    return table;
}

/// An opened file, and what was written to standard error meanwhile.
struct Opened {
    AtomDataBase table = elements();
    McHandle<MolTrajectoryXYZ> trajectory;
    std::string dots;

    explicit Opened(std::string const& text) {
        trajectory = new MolTrajectoryXYZ(nullptr, &table);
        testing::internal::CaptureStderr();
        EXPECT_EQ(trajectory->readXYZMolTrajectory(writeFile("in.xyz", text).c_str()), trajectory);
        dots = testing::internal::GetCapturedStderr();
    }
    int steps() const { return trajectory->getNumTimeSteps(); }
};

/// The coordinates bit by bit, so that numbers that are none compare as well.
std::string_view bits(McVec3f const* places, std::size_t count) {
    return {reinterpret_cast<char const*>(places), count * sizeof(McVec3f)};
}

void expectSameAsByStream(std::string const& text) {
    SCOPED_TRACE(text.size() < 500 ? text : text.substr(0, 500));
    Opened const opened(text);
    SlowXyz slow(scratchPath("in.xyz"));
    ASSERT_EQ(opened.steps(), static_cast<int>(slow.positions.size()));
    Molecule molecule(opened.trajectory->getTopology(), false);
    ASSERT_EQ(molecule.getNumAtoms(), static_cast<int>(slow.words.size()));
    MtStringAttribute* names =
        opened.trajectory->getTopology()->levels[0]->stringAttribute("atom_type_name", MtGroupingLevel::CREATE, true);
    for (int i = 0; i < molecule.getNumAtoms(); ++i)
        ASSERT_EQ(names->getValue(i), slow.words[static_cast<std::size_t>(i)]);
    std::vector<McVec3f> places(slow.words.size(), McVec3f(0.0F, 0.0F, 0.0F));
    for (int step = opened.steps() - 1; step >= 0; --step) {
        slow.readStep(static_cast<std::size_t>(step), places);
        EXPECT_TRUE(opened.trajectory->getTimeStep(step, &molecule));
        ASSERT_EQ(bits(molecule.coords.data, places.size()), bits(places.data(), places.size())) << "step " << step;
    }
}

TEST(MolTrajectoryXYZ, FirstFrameMakesTheAtoms) {
    Opened const opened(" 4 atoms\n\nC 1 2 3\nc 4 5 6\n  H\t7 8 9 more\n6 1 1 1\n");
    EXPECT_EQ(opened.dots, ".\n");
    EXPECT_EQ(describe(opened.trajectory->getTopology()),
              ";\natoms(-1) flags 3: 4 atom_type_name=C|c|H|6 atomic_number=6|0|1|0 radius=1.7|0|1.2|0\n"
              "bonds(0) flags 35: ");
    Molecule molecule(new MolTopology, true);
    EXPECT_TRUE(opened.trajectory->getTimeStep(0, &molecule));
    EXPECT_EQ(molecule.getTopology(), opened.trajectory->getTopology());
    EXPECT_EQ(molecule.coords[2], McVec3f(7.0F, 8.0F, 9.0F));
    EXPECT_FALSE(opened.trajectory->getTimeStep(0, nullptr));
    for (int const absent : {-1, 1}) EXPECT_TRUE(opened.trajectory->getTimeStep(absent, &molecule));
    EXPECT_EQ(molecule.coords[2], McVec3f(7.0F, 8.0F, 9.0F));
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
    };
    for (auto const& c : cases) {
        Opened const opened(c.text);
        EXPECT_EQ(opened.steps(), c.steps) << c.text;
        EXPECT_EQ(opened.dots, c.dots) << c.text;
        EXPECT_EQ(opened.trajectory->isWhole(), c.isWhole) << c.text;
        expectSameAsByStream(c.text);
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

/// Words, numbers and ends that make trouble, in any order, around a sound frame.
TEST(MolTrajectoryXYZ, OddTextsAreReadAsByAStream) {
    std::istringstream words("2|3| |C|H |1.5 |-2e3 |1e|1e999 |-1e99 |1e-50 |.|-.5 |+7. |nan |inf |0x1p3 |1,5 |1d3 |"
                             "123456789.123456789 |0.1234567 |16777217 |--1 |\t|\v|\n|\n|\n|\r\n|C 1 2 3\n|C 1 2 3\n|"
                             "C 4.25 5.5 -6.125\n|2\ncomment\nC 1 2 3\nH 4 5 6\n");
    std::vector<std::string> pieces = {std::string(1, '\0'), std::string(298, 'x'), std::string(299, ' ') + "\n",
                                       std::string(599, 'y') + "\n", std::string(1000, 'w')};
    for (std::string word; std::getline(words, word, '|');) pieces.push_back(word);
    std::mt19937 random(9);
    for (int i = 0; i < 1000; ++i) {
        std::string text = i % 2 == 0 ? "2\n\nC 0.5 1.5 2.5\nH 3 4 5\n" : "";
        for (auto k = random() % 30; k > 0; --k) text += pieces[random() % pieces.size()];
        expectSameAsByStream(text);
        if (HasFatalFailure()) return;
    }
}

TEST(MolTrajectoryXYZ, LinesAndBlocksOfAnyLength) {
    std::mt19937 random(10);
    std::string text;
    for (std::size_t frame = 0; frame < 3; ++frame) {
        text += "1000\n" + std::string(frame * 150, 'c') + "\n";
        for (int i = 0; i < 1000; ++i) {
            text += "C " + std::to_string(i * 0.37) + " " + std::to_string(random()) + " -1.25";
            text += std::string(random() % 320, random() % 2 == 0 ? ' ' : 'z') + "\n";
        }
    }
    expectSameAsByStream(text);
    expectSameAsByStream("1\n\n" + std::string(200000, 'C') + " 1 2 3\n");
}

/// Numbers such as 1.000,5.
struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(MolTrajectoryXYZ, TheHostsLocalePlaysNoPart) {
    std::locale const before = std::locale::global(std::locale(std::locale(), new DecimalComma));
    Opened const one("1\n\nC 1.5 2,5 3\n");
    Molecule molecule(one.trajectory->getTopology(), false);
    EXPECT_TRUE(one.trajectory->getTimeStep(0, &molecule));
    EXPECT_EQ(molecule.coords[0], McVec3f(1.5F, 2.0F, 0.0F));
    std::locale::global(before);
}

} // namespace
