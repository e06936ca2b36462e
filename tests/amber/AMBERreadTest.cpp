#include "amber/AMBERread.h"

#include "amberSamples.h"
#include "model/MtListGroups.h"
#include "support/RecordingProgress.h"
#include "support/files.h"

#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>

namespace {

using namespace tarnex::test;
using testing::ElementsAre;
using Pair = std::pair<int, int>;
constexpr auto FIND = MtGroupingLevel::FIND;

McHandle<Molecule> read(std::string const& text, std::ostream* messages = nullptr) {
    return AMBERread(messages, nullptr).read(writeFile("in.top", text).c_str(), 0, {}, {});
}

std::vector<Pair> residuesOf(Molecule& molecule) {
    std::vector<Pair> ranges;
    MolTopology* topology = molecule.getTopology();
    for (MtGroup* group : topology->getLevel(topology->getLevelIx("residues"))->groups) {
        auto const& range = dynamic_cast<MtIntraLevelRange&>(*group);
        ranges.emplace_back(range.first, range.last);
    }
    return ranges;
}

std::vector<Pair> bondsOf(Molecule& molecule) {
    std::vector<Pair> bonds;
    for (MtGroup* group : molecule.getTopology()->getLevel(1)->groups) {
        bonds.emplace_back((*group)[0].groupIx, (*group)[1].groupIx);
    }
    return bonds;
}

std::vector<int> elementsOf(Molecule& molecule) {
    std::vector<int> numbers;
    MtGroupingLevel* atoms = molecule.getTopology()->getLevel(0);
    auto const* attribute = atoms->integerAttribute("atomic_number", FIND, true);
    for (int i = 0; i < atoms->groups.size; ++i) numbers.push_back(attribute->getValue(i));
    return numbers;
}

/// Twelve atoms, of which the last four tell whether the walk has kept its step to the end.
AmberText sample() {
    return {.symbols = {"CT", "C*", "N3", "HC", "X", "Q", "CL", "O2", "H", "C", "N", "O"},
            .pointers = {1, 5, 9},
            .bondsWithHydrogen = {0, 3, 1, 3, 4, 1, 6, 9, 1, 9, 12, 1, 12, 15, 1},
            .bondsWithout = {-3, 0, 1, 33, 30, 1, 33, 36, 1},
            .ntypes = 4,
            .passed = 13};
}
std::vector<int> const sampleElements = {6, 6, 7, 1, 0, 0, 17, 8, 1, 6, 7, 8};

TEST(AMBERread, WalksThroughAllBlocks) {
    writeFile("in.crd", restartText(12));
    auto const molecule = read(sample().text());
    MolTopology* topology = molecule->getTopology();
    MtGroupingLevel* atoms = topology->getLevel(0);
    ASSERT_EQ(atoms->groups.size, 12);
    std::string attributes;
    for (MtGroupAttribute* attribute : atoms->attributes) attributes += std::string(attribute->getName()) + " ";
    EXPECT_EQ(attributes, "atomic_number charge type atom_mass ");
    EXPECT_STREQ(atoms->stringAttribute("type", FIND, true)->getValue(11), "A12");
    EXPECT_EQ(atoms->floatAttribute("charge", FIND, true)->getValue(0), 1.0F);
    EXPECT_EQ(atoms->floatAttribute("charge", FIND, true)->getValue(11), 12.0F);
    EXPECT_EQ(atoms->floatAttribute("atom_mass", FIND, true)->getValue(11), 12.5F);
    EXPECT_EQ(elementsOf(*molecule), sampleElements);
    EXPECT_EQ(molecule->coords[11], McVec3f(12.0F, 12.1F, 12.2F));

    EXPECT_THAT(residuesOf(*molecule), ElementsAre(Pair(0, 4), Pair(5, 8), Pair(9, 11)));
    MtGroupingLevel* residues = topology->getLevel(2);
    EXPECT_STREQ(residues->stringAttribute("type", FIND, true)->getValue(2), "R3");
    EXPECT_STREQ(residues->stringAttribute("name", FIND, true)->getValue(2), "");
    // Bonds of atoms that do not exist are left out; offsets between those of two atoms count for the first of them.
    EXPECT_THAT(bondsOf(*molecule),
                ElementsAre(Pair(0, 1), Pair(1, 1), Pair(2, 3), Pair(3, 4), Pair(4, 5), Pair(11, 10)));
    EXPECT_EQ(topology->getLevel(1)->integerAttribute("type", FIND, true)->getValue(5), 1);
    EXPECT_EQ(atoms->flags, MtGroupingLevel(nullptr, 0, 0, 0).flags);
    EXPECT_EQ(topology->getLevel(1)->flags, MtGroupingLevel::flagBit1);
    EXPECT_EQ(residues->flags, MtGroupingLevel::flagBit0 | MtGroupingLevel::flagBit1 | MtGroupingLevel::segmentation);
}

TEST(AMBERread, LengthsOfBlocks) {
    // Every block ends on a full line, just behind one, or is not there.
    for (int const natom : {1, 5, 12, 20, 24, 60, 61}) {
        for (int const count : {0, 1, 5, 12}) {
            AmberText text{.symbols = std::vector<std::string>(static_cast<std::size_t>(natom), "N"), .pointers = {}};
            text.passed = text.ntypes = count;
            EXPECT_EQ(elementsOf(*read(text.text())), std::vector<int>(static_cast<std::size_t>(natom), 7));
        }
    }
}

TEST(AMBERread, Residues) {
    AmberText text = sample();
    text.pointers = {1};
    EXPECT_THAT(residuesOf(*read(text.text())), ElementsAre(Pair(1, 11)));
    // Behind a full line of pointers a line more is passed.
    text.pointers = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    EXPECT_NE(elementsOf(*read(text.text())), sampleElements);
    text.behindPointers = "a line\n";
    EXPECT_EQ(elementsOf(*read(text.text())), sampleElements);
    EXPECT_EQ(residuesOf(*read(text.text())).back(), Pair(12, 11));
    text.pointers.push_back(13);
    text.behindPointers = "";
    EXPECT_EQ(elementsOf(*read(text.text())), sampleElements);
    EXPECT_EQ(residuesOf(*read(text.text()))[11], Pair(12, 12));
}

TEST(AMBERread, CountersAndLinesAheadOfTheSymbols) {
    AmberText text = sample();
    text.nphb = 1;
    // The symbols are looked for three lines behind their place.
    EXPECT_EQ(elementsOf(*read(text.text())), std::vector<int>(12, 0));

    std::string const noAtoms = AmberText{.symbols = {}, .pointers = {}}.text();
    auto const empty = read(noAtoms);
    EXPECT_EQ(empty->getNumAtoms(), 0);
    EXPECT_EQ(empty->getTopology()->getLevel(0)->attributes.size, 1);
    EXPECT_GE(empty->getTopology()->getLevelIx("residues"), 0);
    // The walk goes on behind the last counter, on its line.
    std::string counters =
        integers({0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 1, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0, 0});
    counters.insert(counters.size() - 1, "LBL ");
    auto const residueOnly = read("title\n" + counters + "     5\n");
    MtGroupingLevel* residues = residueOnly->getTopology()->getLevel(2);
    EXPECT_STREQ(residues->stringAttribute("type", FIND, true)->getValue(0), "LBL");
    // On the first line a number takes the six columns from the second on.
    EXPECT_EQ(read("title\n123456\n")->getNumAtoms(), 23456);
    EXPECT_EQ(read("title\n    123\n")->getNumAtoms(), 123);
    EXPECT_EQ(read("title\n    -5\n")->getNumAtoms(), 0);
}

TEST(AMBERread, Messages) {
    auto const text = [](char const* restart) {
        std::filesystem::remove(scratchPath("in.crd"));
        if (restart) writeFile("in.crd", restart);
        std::ostringstream messages;
        auto const molecule = read(sample().text(), &messages);
        EXPECT_EQ(molecule->coords[3], McVec3f(0.0F, 0.0F, 0.0F));
        return messages.str();
    };
    EXPECT_EQ(text(nullptr), "Could not load \"" + scratchPath("in.crd") + "\"\n");
    EXPECT_EQ(text("restart\n   11  1.0\n"), "Number of Atoms not corresponding expected value\n");
    std::ostringstream messages;
    RecordingProgress progress;
    EXPECT_FALSE(AMBERread(&messages, &progress).read("/no/a", 0, {}, {}));
    EXPECT_EQ(AMBERread(&messages, &progress).readAmberMolTrajectory(nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"/no/a\"\nCould not load \"\"\n");
    EXPECT_THAT(progress.calls, ElementsAre());
    EXPECT_TRUE(AMBERread(nullptr, &progress).read(writeFile("in.top", sample().text()).c_str(), 0, {}, {}));
    EXPECT_THAT(progress.calls, ElementsAre("start ", "stop"));
}

TEST(AMBERread, CoordinatesOfOtherFiles) {
    std::string const topology = writeFile("a.prmtop", AmberText{.symbols = {"C", "N", "O"}, .pointers = {}}.text());
    writeFile("a.prmcrd", restartText(3));
    std::unique_ptr<Molecule> const molecule(AMBERread(nullptr, nullptr).readAmberMolecule(topology.c_str()));
    EXPECT_EQ(molecule->refCount, 0);
    ASSERT_EQ(molecule->coords.size, 3);
    EXPECT_EQ(molecule->coords[2], McVec3f(3.0F, 3.1F, 3.2F)); // a line that is half full

    writeFile("a.prmmd.crd", "title\n   1.000   2.000   3.000   4.000   5.000   6.000   7.000   8.000   9.000\n");
    McDArray<long> positions(1);
    positions[0] = 6;
    auto const frame = AMBERread(nullptr, nullptr).read(topology.c_str(), 2, positions, {});
    EXPECT_EQ(frame->coords[1], McVec3f(4.0F, 5.0F, 6.0F));
    EXPECT_EQ(AMBERread(nullptr, nullptr).read(topology.c_str(), 1, positions, {})->coords[1],
              McVec3f(0.0F, 0.0F, 0.0F));
    EXPECT_FALSE(AMBERread(nullptr, nullptr).read(writeFile("b", "").c_str(), 0, {}, {})->getNumAtoms());
}

TEST(AMBERread, EveryCutIsSurvived) {
    AmberText text = sample();
    text.ntypes = text.passed = 2;
    std::string const whole = text.text();
    for (std::size_t length = 0; length < whole.size(); length += 3) {
        auto const molecule = read(whole.substr(0, length));
        EXPECT_EQ(molecule->getNumAtoms(), length < 11 ? 0 : length < 12 ? 1 : 12) << length;
        for (Pair const& bond : bondsOf(*molecule)) EXPECT_LT(bond.first, 12);
    }
}

/// The walk ends with the file however much the counters promise; atoms and bonds are as many as they say.
TEST(AMBERread, EnormousCounters) {
    std::string const largest = block(36, 12, [](int) { return "999999"; });
    auto const onlyTypes = "title\n      1999999" + std::string(60, ' ') + "\n\n\n";
    EXPECT_EQ(read(onlyTypes)->getNumAtoms(), 1);
    auto const molecule = read("title\n" + largest);
    EXPECT_EQ(molecule->getNumAtoms(), 999999);
    EXPECT_EQ(molecule->getTopology()->getLevel(1)->groups.size, 2 * 999999);
    EXPECT_EQ(read("\n" + integers(std::vector<int>(30, -9999)))->getTopology()->getLevel(1)->groups.size, 0);
}

} // namespace
