#include "amber/AMBERread.h"

#include "amberSamples.h"
#include "support/model.h"
#include "support/testing.h"

namespace {

using namespace tarnex::test;

McHandle<Molecule> read(std::string const& text, std::ostream* messages = nullptr,
                        McProgressInterface* progress = nullptr) {
    return AMBERread(messages, progress).read(writeFile("in.top", text).c_str(), 0, {}, {});
}

std::string elementsOf(AmberText const& text) {
    return valuesOf(read(text.text())->getTopology(), 0, "atomic_number");
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
constexpr char const* sampleElements = "6|6|7|1|0|0|17|8|1|6|7|8";

TEST(AMBERread, WalksThroughAllBlocks) {
    writeFile("in.crd", restartText(12));
    RecordingProgress progress;
    auto const molecule = read(sample().text(), nullptr, &progress);
    // Bonds of atoms that do not exist are left out; offsets between those of two atoms count for the first of them.
    EXPECT_EQ(describe(molecule->getTopology()),
              ";\natoms(-1) flags 35: 12 atomic_number=" + std::string(sampleElements) +
                  " charge=1|2|3|4|5|6|7|8|9|10|11|12 type=A1|A2|A3|A4|A5|A6|A7|A8|A9|A10|A11|A12 "
                  "atom_mass=1.5|2.5|3.5|4.5|5.5|6.5|7.5|8.5|9.5|10.5|11.5|12.5\n"
                  "bonds(0) flags 2: 0,1|1,1|2,3|3,4|4,5|11,10 type=1|1|1|1|1|1\n"
                  "residues(0) flags 19: 0-4|5-8|9-11 type=R1|R2|R3 name=||");
    EXPECT_EQ(molecule->coords[11], McVec3f(12.0F, 12.1F, 12.2F));
    EXPECT_THAT(progress.calls, ElementsAre("start ", "stop"));
}

TEST(AMBERread, LengthsOfBlocks) {
    // Every block ends on a full line, just behind one, or is not there.
    for (int const natom : {1, 5, 12, 20, 60, 61}) {
        for (int const count : {0, 1, 5, 12}) {
            std::vector<std::string> const symbols(static_cast<std::size_t>(natom), "N");
            EXPECT_EQ(elementsOf({.symbols = symbols, .pointers = {}, .ntypes = count, .passed = count}),
                      joined(natom, "|", [](int) { return "7"; }));
        }
    }
}

TEST(AMBERread, ResiduesAndTheLineBehindThem) {
    AmberText text = sample();
    auto const residues = [&text] { return groupsOf(levelOf(read(text.text())->getTopology(), "residues")); };
    text.pointers = {1};
    EXPECT_EQ(residues(), "1-11");
    // Behind a full line of pointers a line more is passed.
    text.pointers = {1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11, 12};
    EXPECT_NE(elementsOf(text), sampleElements);
    text.behindPointers = "a line\n";
    EXPECT_EQ(elementsOf(text), sampleElements);
    EXPECT_THAT(residues(), EndsWith("|12-11"));
    text.pointers.push_back(13);
    text.behindPointers = "";
    EXPECT_EQ(elementsOf(text), sampleElements);
    EXPECT_THAT(residues(), HasSubstr("|12-12"));
}

TEST(AMBERread, CountersAndLinesAheadOfTheSymbols) {
    AmberText text = sample();
    text.nphb = 1;
    // The symbols are looked for three lines behind their place.
    EXPECT_EQ(elementsOf(text), "0|0|0|0|0|0|0|0|0|0|0|0");
    // Without atoms the walk goes on behind the last counter, on its line.
    std::vector<int> counters(30, 0);
    counters[11] = 1;
    std::string line = integers(counters);
    line.insert(line.size() - 1, "LBL ");
    EXPECT_EQ(describe(read("title\n" + line + "     5\n")->getTopology()),
              ";\natoms(-1) flags 35: 0 atomic_number=\nbonds(0) flags 2:  type=\n"
              "residues(0) flags 19: 5--1 type=LBL name=");
    // On the first line a number takes the six columns from the second on.
    EXPECT_EQ(read("title\n123456\n")->getNumAtoms(), 23456);
    EXPECT_EQ(read("title\n    123\n")->getNumAtoms(), 123);
    EXPECT_EQ(read("title\n    -5\n")->getNumAtoms(), 0);
    EXPECT_EQ(read("title\n     1")->getNumAtoms(), 1);
    EXPECT_EQ(read(text.text().substr(0, 400))->getNumAtoms(), 12);
}

TEST(AMBERread, Messages) {
    std::ostringstream messages;
    std::filesystem::remove(scratchPath("in.crd"));
    EXPECT_EQ(read(sample().text(), &messages)->coords[3], McVec3f(0.0F, 0.0F, 0.0F));
    writeFile("in.crd", "restart\n   11  1.0\n");
    EXPECT_EQ(read(sample().text(), &messages)->coords[3], McVec3f(0.0F, 0.0F, 0.0F));
    RecordingProgress progress;
    EXPECT_FALSE(AMBERread(&messages, &progress).read("/no/a", 0, {}, {}));
    EXPECT_EQ(AMBERread(&messages, &progress).readAmberMolTrajectory(nullptr, nullptr, nullptr), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"" + scratchPath("in.crd") +
                                  "\"\nNumber of Atoms not corresponding expected value\n"
                                  "Could not load \"/no/a\"\nCould not load \"\"\n");
    EXPECT_TRUE(progress.calls.empty());
}

TEST(AMBERread, CoordinatesOfOtherFiles) {
    std::string const topology = writeFile("a.prmtop", AmberText{.symbols = {"C", "N", "O"}, .pointers = {}}.text());
    writeFile("a.prmcrd", restartText(3));
    std::unique_ptr<Molecule> const molecule(AMBERread(nullptr, nullptr).readAmberMolecule(topology.c_str()));
    EXPECT_EQ(molecule->refCount, 0);
    EXPECT_EQ(placesOf(molecule->coords), "1,1.1,1.2|2,2.1,2.2|3,3.1,3.2"); // a line that is half full

    writeFile("a.prmmd.crd", "title\n   1.000   2.000   3.000   4.000   5.000   6.000   7.000   8.000   9.000\n");
    McDArray<long> positions(1);
    positions[0] = 6;
    auto const frame = [&](int step) {
        return placesOf(AMBERread(nullptr, nullptr).read(topology.c_str(), step, positions, {})->coords);
    };
    EXPECT_EQ(frame(2), "1,2,3|4,5,6|7,8,9");
    EXPECT_EQ(frame(1), "0,0,0|0,0,0|0,0,0");
}

/// The walk ends with the file however much the counters promise; atoms and bonds are as many as they say.
TEST(AMBERread, EnormousCounters) {
    EXPECT_EQ(read("title\n      1999999" + std::string(60, ' ') + "\n\n\n")->getNumAtoms(), 1);
    auto const molecule = read("title\n" + block(36, 12, [](int) { return "999999"; }));
    EXPECT_EQ(molecule->getNumAtoms(), 999999);
    EXPECT_EQ(molecule->getTopology()->getLevel(1)->groups.size, 2 * 999999);
    EXPECT_EQ(read("\n" + integers(std::vector<int>(30, -9999)))->getTopology()->getLevel(1)->groups.size, 0);
}

} // namespace
