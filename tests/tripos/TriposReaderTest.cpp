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
        std::string const text = describe(firstOf(readAll(molecule(counts, type + "\nNO_CHARGES", lines))));
        return text.substr(text.find("flags 3: ", text.find("residues")) + 9);
    };
    EXPECT_EQ(residuesOf({1, 1, 3, 3, 2}), "0-1|2-4 name=R1|R2");
    EXPECT_EQ(residuesOf({0, -1, 5, 0, 4, 6}), "2-4|5-5 name=R4|R6");
    EXPECT_EQ(residuesOf({0, 0}), " name=");
    EXPECT_EQ(residuesOf({1, 2147483647}, "PROTEIN"), "0-0|1-1 type=R1|R2147483647");
    EXPECT_EQ(residuesOf({1}, ""), "0-0 type=R1"); // an empty line for the type
}

TEST(TriposReader, ColumnsBehindTheType) {
    std::string const line = "@<TRIPOS>ATOM\n1 A 0 0 0 C 1 LIG 0.75\n";
    std::pair<std::string, char const*> const cases[] = {
        {molecule("1 0 0", "SMALL\nGASTEIGER", line), "A charge=0.75 residues=none"},
        {molecule("1 0 1", "SMALL\n", line), "A charge=0.75 residues=0-0"},
        {molecule("1 0 1", "SMALL\nNO_CHARGES", line), "A charge=none residues=0-0"},
        // The atoms are looked for from the counts line on.
        {"@<TRIPOS>MOLECULE\nx\n1 0 0\n" + line, "A charge=0.75 residues=none"},
        // What a short line lacks is a line end, and so is a name of blanks.
        {"@<TRIPOS>MOLECULE\n  \n1 0 1\nSMALL\nX\n@<TRIPOS>ATOM\n1\n", "\n charge=0 residues="}};
    for (auto const& [text, columns] : cases) {
        Result const read = readAll(text);
        MtGroupingLevel const* residues = levelOf(firstOf(read), "residues");
        EXPECT_EQ(valuesOf(firstOf(read), 0, "type") + " charge=" + valuesOf(firstOf(read), 0, "charge") +
                      " residues=" + (residues ? groupsOf(residues) : "none"),
                  columns);
    }
    EXPECT_STREQ(firstOf(readAll(cases[4].first))->getName(), "\n");
}

TEST(TriposReader, BondTypesAndUnknownAtoms) {
    std::string lines = "@<TRIPOS>ATOM\n5 A 0 0 0 C\n0 B 0 0 0 C\n5 C 0 0 0 C\n@<TRIPOS>BOND\n";
    for (std::string const type : {"1", "2", "3", "4", "5", "0", "-2", "2x", "ar", "am", "du", ""})
        lines += "9 0 5 " + type + "\n";
    lines += "1 5 0 1\n1 5 6 1\n1 8 5 1\n1\n"; // 0 as second atom is none
    // Of the atoms with id 5 the last one counts.
    EXPECT_EQ(bondsOf(firstOf(readAll(molecule("3 16 0", "SMALL\nNO_CHARGES", lines)))),
              joined(12, "|", [](int) { return "1,2"; }) + " type 1|2|3|4|1|1|1|2|4|1|1|1");
    EXPECT_TRUE(readAll(molecule("0 2 0", "SMALL\nX", "@<TRIPOS>BOND\n1 1 1 1\n")).isWhole);
}

TEST(TriposReader, SeveralMoleculesAndTheFirstOne) {
    std::string const lonely = molecule("0 0 0", "SMALL\nNO_CHARGES", "");
    EXPECT_EQ(readAll(pyridinium + lonely + pyridinium).bundle.size, 3);
    auto const readFirst = [](std::string const& text) {
        return std::unique_ptr<Molecule>(
            TriposIO(nullptr, nullptr).readTriposMolecule(writeFile("in.mol2", text).c_str()));
    };
    auto const first = readFirst(pyridinium + lonely);
    EXPECT_EQ(first->refCount, 0);
    EXPECT_EQ(placesOf(first->coords), "1.5,-2.25,0|100,0,3|0,0,0");
    EXPECT_FALSE(readFirst(pyridinium + molecule("1 0 0", "SMALL\nNO_CHARGES", "")));
    // What was in the array counts and stays.
    Bundle bundle = readAll(pyridinium).bundle;
    EXPECT_TRUE(TriposIO(nullptr, nullptr).readTriposBundle(writeFile("none.mol2", "nothing").c_str(), bundle));
    EXPECT_EQ(bundle.size, 1);
}

TEST(TriposReader, MalformedFilesAndCountsThatLie) {
    std::string const noMolecule = "End of file reached without @<TRIPOS>MOLECULE record";
    std::string const noAtoms = "Could not find @<TRIPOS>ATOM record", noBonds = "Could not find @<TRIPOS>BOND record";
    std::string const atoms = "@<TRIPOS>ATOM\n1 A 1 0 0 C\n";
    struct {
        std::string text;
        std::string reason;
        int line;
    } const cases[] = {
        {"", noMolecule, 1},
        {"a\n@<TRIPOS>MOLECULEX\n x @<TRIPOS>MOLECULE\n", noMolecule, 4},
        {molecule("1 0 0", "SMALL\nX", "@<TRIPOS>BOND\n"), noAtoms, 8},
        {molecule("0 1 0", "SMALL\nX", "@<TRIPOS>ATOM\n"), noBonds, 8},
        // The lines behind the first atom are taken for atoms.
        {molecule("3 2000000000 0", "SMALL\nX", atoms + "@<TRIPOS>BOND\n"), noBonds, 10},
        {molecule("2000000000 0 0", "SMALL\nX", "@<TRIPOS>ATOM\n"), "More atoms than the file can hold", 7},
        {molecule("2000000000 0 0", "SMALL\nX", ""), noAtoms, 7},
        {molecule("1 0 0", "SMALL\nX", "@<TRIPOS>ATOM\n1 A 0 0 0 " + std::string(1000, 'C')),
         "Read in string in exceeds buffer", 8},
    };
    for (auto const& test : cases) {
        Result const read = readAll(test.text);
        EXPECT_FALSE(read.isWhole);
        EXPECT_EQ(read.messages, "The file " + scratchPath("in.mol2") + " is not a valid mol2 file. " + test.reason +
                                     " in line " + std::to_string(test.line) + ".\n");
        Result const behindGood = readAll(pyridinium + test.text);
        EXPECT_EQ(behindGood.bundle.size, 1);
        EXPECT_EQ(behindGood.isWhole, test.reason == noMolecule);
    }
    auto const sizes = [](std::string const& text) {
        Result const read = readAll(text);
        return std::pair(firstOf(read)->levels[0]->groups.size, firstOf(read)->levels[1]->groups.size);
    };
    EXPECT_EQ(sizes(molecule("200000 0 0", "SMALL\nX", atoms)), std::pair(200000L, 0L));
    EXPECT_EQ(sizes(molecule("1 2000000000 2000000000", "SMALL\nX", atoms + "@<TRIPOS>BOND\n1 1 1 2")),
              std::pair(1L, 1L));
    EXPECT_EQ(sizes(molecule("-1 -1 -1", "SMALL\nX", "")), std::pair(0L, 0L));
    std::ostringstream messages;
    EXPECT_EQ(TriposIO(&messages, nullptr).readTriposMolecule("/no/such.mol2"), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"/no/such.mol2\"\n");
}

TEST(TriposReader, ProgressAndInterruption) {
    std::string lines = "@<TRIPOS>ATOM\n";
    for (int i = 1; i <= 60; ++i) lines += std::to_string(i) + " A 0 0 0 C\n";
    std::string const text = molecule("60 20 0", "SMALL\nNO_CHARGES", lines + "@<TRIPOS>BOND\n1 1 2 1\n");
    RecordingProgress quiet;
    EXPECT_TRUE(readAll(text, &quiet).isWhole);
    EXPECT_THAT(quiet.calls, ElementsAre("start ", "info Parsing ATOM block", "info Parsing BOND block", "stop"));
    EXPECT_THAT(quiet.fractions, ElementsAre(FloatEq(0.0F), FloatEq(0.625F), FloatEq(0.75F)));
    for (int const question : {2, 3}) {
        RecordingProgress stopping(question);
        EXPECT_FALSE(readAll(text, &stopping).isWhole);
        EXPECT_EQ(std::count(stopping.calls.begin(), stopping.calls.end(), "stop"), 1);
    }
    RecordingProgress none;
    EXPECT_FALSE(readAll("nothing", &none).isWhole);
    EXPECT_THAT(none.calls, ElementsAre("start ", "stop", "stop"));
}

TEST(TriposReader, EveryCutAndEveryByteIsSurvived) {
    for (std::size_t i = 0; i < pyridinium.size(); ++i) {
        EXPECT_LE(readAll(pyridinium.substr(0, i)).bundle.size, 1);
        for (char const byte : {'\0', '\r', '9', '-', '\xff'}) {
            std::string broken = pyridinium;
            broken[i] = byte;
            Result const read = readAll(broken);
            EXPECT_EQ(read.isWhole, read.bundle.size == 1);
        }
    }
}

} // namespace
