#include "support/model.h"
#include "support/testing.h"
#include "tripos/TriposIO.h"

namespace {

using namespace tarnex::test;

struct Result {
    bool isWhole;
    Bundle bundle;
    std::string messages;
};

Result readAll(std::string const& text, McProgressInterface* progress = nullptr) {
    Result result;
    std::ostringstream messages;
    result.isWhole = TriposIO(&messages, progress).readTriposBundle(writeFile("in.mol2", text).c_str(), result.bundle);
    result.messages = messages.str();
    return result;
}

std::string frame(std::string const& reason, int line) {
    return "The file " + scratchPath("in.mol2") + " is not a valid mol2 file. " + reason + " in line " +
           std::to_string(line) + ".\n";
}

/// A molecule from its counts, its two type lines and what follows.
std::string molecule(std::string const& counts, std::string const& types, std::string const& records) {
    return "@<TRIPOS>MOLECULE\nthing\n" + counts + "\n" + types + "\n\n" + records;
}

std::string const pyridinium = molecule(" 3 3 1 0 0", "SMALL\nUSER_CHARGES",
                                        "@<TRIPOS>ATOM\n"
                                        "     10 N1   1.5000  -2.2500   0.0000 N.ar  1 LIG  -0.2500\n"
                                        "      7 C2   1.0e2   bad      +3      C.ar  1 LIH   0.5000 BACKBONE\n"
                                        "     -4 DU\n"
                                        "@<TRIPOS>BOND\n"
                                        " 1 10 7 ar\n"
                                        " 2 7 10 am\n"
                                        " 3 -4 10 3\n");

MolTopology* firstOf(Result const& read) {
    return read.bundle[0]->getTopology();
}

/// The residues, and their names and types.
std::string residues(Result const& read) {
    MtGroupingLevel* level = levelOf(firstOf(read), "residues");
    return level ? groupsOf(level) + " " + valuesOf(level, "name") + " " + valuesOf(level, "type") : "none";
}

TEST(TriposReader, FillsTheModel) {
    Result const read = readAll("# comment\n\n  " + pyridinium);
    EXPECT_TRUE(read.isWhole);
    EXPECT_EQ(read.messages, "Molecule thing successfully imported.\n");
    ASSERT_EQ(read.bundle.size, 1);
    EXPECT_EQ(
        describe(firstOf(read)),
        "thing; name=\"thing\"\n"
        "atoms(-1) flags 3: 3 atomic_number=7|6|0 type=N1|C2|DU radius=1.55|1.7|2 name=10|7|-4 charge=-0.25|0.5|0\n"
        "bonds(0) flags 2: 0,1|1,0|2,0 type=4|1|3\nresidues(0) flags 3: 0-1 name=LIH");
    EXPECT_EQ(placesOf(read.bundle[0], 0), "1.5,-2.25,0|100,0,3|0,0,0");
}

TEST(TriposReader, SubstructuresGrowWithTheirIds) {
    auto const residuesOf = [](std::vector<int> const& ids, std::string const& type = "SMALL") {
        std::string lines = "@<TRIPOS>ATOM\n";
        for (int const id : ids) lines += "1 A 0 0 0 C " + std::to_string(id) + " R" + std::to_string(id) + "\n";
        std::string const counts = std::to_string(ids.size()) + " 0 9";
        return residues(readAll(molecule(counts, type + "\nNO_CHARGES", lines)));
    };
    EXPECT_EQ(residuesOf({1, 1, 3, 3, 2}), "0-1|2-4 R1|R2 none");
    EXPECT_EQ(residuesOf({2, 2}), "0-1 R2 none");
    EXPECT_EQ(residuesOf({0, -1, 5, 0, 4, 6}), "2-4|5-5 R4|R6 none");
    EXPECT_EQ(residuesOf({0, 0}), "  none");
    EXPECT_EQ(residuesOf({1, 2147483647}, "PROTEIN"), "0-0|1-1 none R1|R2147483647");
    EXPECT_EQ(residuesOf({1}, ""), "0-0 none R1"); // an empty line for the type
}

TEST(TriposReader, ColumnsBehindTheType) {
    std::string const line = "@<TRIPOS>ATOM\n1 A 0 0 0 C 1 LIG 0.75\n";
    auto const chargeOf = [&](std::string const& counts, std::string const& types) {
        return valuesOf(firstOf(readAll(molecule(counts, types, line))), 0, "charge");
    };
    EXPECT_EQ(chargeOf("1 0 0", "SMALL\nGASTEIGER"), "0.75");
    EXPECT_EQ(chargeOf("1 0 1", "SMALL\n"), "0.75");
    EXPECT_EQ(chargeOf("1 0 1", "SMALL\nNO_CHARGES"), "none");
    EXPECT_EQ(residues(readAll(molecule("1 0 0", "SMALL\nGASTEIGER", line))), "none");
    // The atoms are looked for from the counts line on.
    EXPECT_EQ(valuesOf(firstOf(readAll("@<TRIPOS>MOLECULE\nx\n1 0 0\n" + line)), 0, "type"), "A");
    // A name of blanks is a line end; what a short line lacks is one as well.
    Result const blank = readAll("@<TRIPOS>MOLECULE\n  \n1 0 1\nSMALL\nX\n@<TRIPOS>ATOM\n1\n");
    EXPECT_STREQ(firstOf(blank)->getName(), "\n");
    EXPECT_EQ(valuesOf(firstOf(blank), 0, "type"), "\n");
}

TEST(TriposReader, BondTypesAndUnknownAtoms) {
    std::string lines = "@<TRIPOS>ATOM\n5 A 0 0 0 C\n0 B 0 0 0 C\n5 C 0 0 0 C\n@<TRIPOS>BOND\n";
    char const* const tokens[] = {"1", "2", "3", "4", "5", "0", "-2", "2x", "ar", "am", "du", "un", "nc", ""};
    for (char const* const token : tokens) lines += std::string("9 0 5 ") + token + "\n";
    lines += "1 5 0 1\n1 5 6 1\n1 8 5 1\n1\n"; // 0 as second atom is none
    Result const read = readAll(molecule("3 18 0", "SMALL\nNO_CHARGES", lines));
    // Of the atoms with id 5 the last one counts.
    EXPECT_EQ(bondsOf(firstOf(read)), joined(14, "|", [](int) { return "1,2"; }) + " type 1|2|3|4|1|1|1|2|4|1|1|1|1|1");
    EXPECT_TRUE(readAll(molecule("0 2 0", "SMALL\nX", "@<TRIPOS>BOND\n1 1 1 1\n")).isWhole);
}

TEST(TriposReader, SeveralMoleculesAndTheFirstOne) {
    std::string const lonely = molecule("0 0 0", "SMALL\nNO_CHARGES", "");
    EXPECT_EQ(readAll(pyridinium + lonely + pyridinium).bundle.size, 3);
    std::string const file = writeFile("two.mol2", pyridinium + lonely);
    std::unique_ptr<Molecule> const first(TriposIO(nullptr, nullptr).readTriposMolecule(file.c_str()));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->refCount, 0);
    EXPECT_EQ(first->getNumAtoms(), 3);
    EXPECT_EQ(first->coords[0].x, 1.5F);

    std::string const noAtoms = molecule("1 0 0", "SMALL\nNO_CHARGES", "");
    EXPECT_EQ(TriposIO(nullptr, nullptr).readTriposMolecule(writeFile("b.mol2", pyridinium + noAtoms).c_str()),
              nullptr);
    // What was in the array counts and stays.
    Bundle bundle;
    bundle.append(readAll(pyridinium).bundle[0]);
    EXPECT_TRUE(TriposIO(nullptr, nullptr).readTriposBundle(writeFile("none.mol2", "nothing").c_str(), bundle));
    EXPECT_EQ(bundle.size, 1);
}

TEST(TriposReader, MalformedFiles) {
    struct {
        std::string text;
        std::string reason;
        int line;
    } const cases[] = {
        {"", "End of file reached without @<TRIPOS>MOLECULE record", 1},
        {"a\n@<TRIPOS>MOLECULEX\n x @<TRIPOS>MOLECULE\n", "End of file reached without @<TRIPOS>MOLECULE record", 4},
        {molecule("1 0 0", "SMALL\nX", "@<TRIPOS>BOND\n"), "Could not find @<TRIPOS>ATOM record", 8},
        {molecule("0 1 0", "SMALL\nX", "@<TRIPOS>ATOM\n"), "Could not find @<TRIPOS>BOND record", 8},
        {molecule("2000000000 0 0", "SMALL\nX", "@<TRIPOS>ATOM\n"), "More atoms than the file can hold", 7},
        {molecule("2000000000 0 0", "SMALL\nX", ""), "Could not find @<TRIPOS>ATOM record", 7},
        {molecule("1 0 0", "SMALL\nX", "@<TRIPOS>ATOM\n1 A 0 0 0 " + std::string(1000, 'C')),
         "Read in string in exceeds buffer", 8},
    };
    for (auto const& test : cases) {
        Result const read = readAll(test.text);
        EXPECT_FALSE(read.isWhole);
        EXPECT_EQ(read.messages, frame(test.reason, test.line));
        Result const behindGood = readAll(pyridinium + test.text);
        EXPECT_EQ(behindGood.bundle.size, 1);
        EXPECT_EQ(behindGood.isWhole, test.reason.starts_with("End of file"));
    }
    std::ostringstream messages;
    EXPECT_EQ(TriposIO(&messages, nullptr).readTriposMolecule("/no/such.mol2"), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"/no/such.mol2\"\n");
}

TEST(TriposReader, CountsThatLie) {
    std::string const atoms = "@<TRIPOS>ATOM\n1 A 1 0 0 C\n";
    Result const many = readAll(molecule("3 2000000000 0", "SMALL\nX", atoms + "@<TRIPOS>BOND\n"));
    ASSERT_EQ(many.bundle.size, 0); // the lines behind the first atom are taken for atoms
    EXPECT_EQ(many.messages, frame("Could not find @<TRIPOS>BOND record", 10));
    Result const filled = readAll(molecule("200000 0 0", "SMALL\nX", atoms));
    ASSERT_EQ(filled.bundle.size, 1);
    EXPECT_EQ(filled.bundle[0]->getTopology()->getLevel(0)->groups.size, 200000);
    Result const bonds = readAll(molecule("1 2000000000 2000000000", "SMALL\nX", atoms + "@<TRIPOS>BOND\n1 1 1 2"));
    ASSERT_EQ(bonds.bundle.size, 1);
    EXPECT_EQ(bonds.bundle[0]->getTopology()->getLevel(1)->groups.size, 1);
    EXPECT_EQ(readAll(molecule("-1 -1 -1", "SMALL\nX", "")).bundle.size, 1);
}

TEST(TriposReader, ProgressAndInterruption) {
    std::string lines = "@<TRIPOS>ATOM\n";
    for (int i = 1; i <= 60; ++i) lines += std::to_string(i) + " A 0 0 0 C\n";
    lines += "@<TRIPOS>BOND\n1 1 2 1\n";
    for (int i = 0; i < 19; ++i) lines += "1 99 1 1\n"; // unknown atoms
    std::string const text = molecule("60 20 0", "SMALL\nNO_CHARGES", lines);
    RecordingProgress quiet;
    EXPECT_TRUE(readAll(text, &quiet).isWhole);
    EXPECT_THAT(quiet.calls, ElementsAre("start ", "info Parsing ATOM block", "info Parsing BOND block", "stop"));
    EXPECT_THAT(quiet.fractions, ElementsAre(FloatEq(0.0F), FloatEq(0.625F), FloatEq(0.75F)));

    for (int const question : {2, 3}) {
        RecordingProgress stopping(question);
        Result const read = readAll(text, &stopping);
        EXPECT_FALSE(read.isWhole);
        EXPECT_EQ(stopping.calls.back(), "stop");
        EXPECT_EQ(std::count(stopping.calls.begin(), stopping.calls.end(), "stop"), 1);
    }
    RecordingProgress none;
    EXPECT_FALSE(readAll("nothing", &none).isWhole);
    EXPECT_THAT(none.calls, ElementsAre("start ", "stop", "stop"));
}

TEST(TriposReader, EveryCutAndEveryByteIsSurvived) {
    for (std::size_t length = 0; length < pyridinium.size(); ++length) {
        EXPECT_LE(readAll(pyridinium.substr(0, length)).bundle.size, 1);
    }
    for (char const byte : {'\0', '\r', '9', '-', '\xff'}) {
        for (std::size_t i = 0; i < pyridinium.size(); ++i) {
            std::string broken = pyridinium;
            broken[i] = byte;
            Result const read = readAll(broken);
            EXPECT_LE(read.bundle.size, 1);
            EXPECT_EQ(read.isWhole, read.bundle.size == 1);
        }
    }
}

} // namespace
