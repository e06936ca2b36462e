#include "model/MtListGroups.h"
#include "support/RecordingProgress.h"
#include "support/bonds.h"
#include "support/files.h"
#include "tripos/TriposIO.h"

#include <gmock/gmock.h>
#include <memory>
#include <sstream>

namespace {

using namespace tarnex::test;
using testing::ElementsAre;
using testing::FloatEq;

using Bundle = McDArray<McHandle<MolTrajectory>>;

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

/// The texts of an attribute of a level, or "none".
std::string texts(MolTopology* topology, int levelIx, char const* name) {
    MtGroupingLevel* level = topology->getLevel(levelIx);
    auto const* attribute = level ? level->stringAttribute(name, MtGroupingLevel::FIND, true) : nullptr;
    if (!attribute) return "none";
    std::string all;
    for (int i = 0; i < level->groups.size; ++i) all += std::string(attribute->getValue(i)) + "|";
    return all;
}

/// The ranges of the residues.
std::string residues(MolTopology* topology) {
    MtGroupingLevel* level = topology->getLevel(topology->getLevelIx("residues"));
    if (!level) return "none";
    std::string all;
    for (MtGroup const* group : level->groups) {
        auto const* range = dynamic_cast<MtIntraLevelRange const*>(group);
        all += std::to_string(range->first) + "-" + std::to_string(range->last) + " ";
    }
    return all;
}

TEST(TriposReader, FillsTheModel) {
    Result const read = readAll("# comment\n\n  " + pyridinium);
    EXPECT_TRUE(read.isWhole);
    EXPECT_EQ(read.messages, "Molecule thing successfully imported.\n");
    ASSERT_EQ(read.bundle.size, 1);
    MolTopology* topology = read.bundle[0]->getTopology();
    EXPECT_STREQ(topology->getName(), "thing");
    McString name;
    topology->getData("name")->getValueAsString(name);
    EXPECT_STREQ(name, "thing");
    EXPECT_EQ(texts(topology, 0, "name"), "10|7|-4|"); // ids
    EXPECT_EQ(texts(topology, 0, "type"), "N1|C2|DU|");
    EXPECT_EQ(texts(topology, 2, "name"), "LIH|"); // of its last atom
    EXPECT_EQ(residues(topology), "0-1 ");
    EXPECT_EQ(bondsOf(topology), "0-1:4 1-0:1 2-0:3 ");

    MtGroupingLevel* atoms = topology->getLevel(0);
    ASSERT_EQ(atoms->attributes.size, 5);
    auto const* numbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    auto const* charges = atoms->floatAttribute("charge", MtGroupingLevel::FIND, true);
    EXPECT_EQ(numbers->getValue(0), 7);
    EXPECT_EQ(numbers->getValue(1), 6);
    EXPECT_EQ(numbers->getValue(2), 0);
    EXPECT_EQ(charges->getValue(1), 0.5F);
    EXPECT_EQ(atoms->floatAttribute("radius", MtGroupingLevel::FIND, true)->getValue(1), 1.70F);
    EXPECT_EQ(atoms->flags, MtGroupingLevel::flagBit0 | MtGroupingLevel::flagBit1);
    EXPECT_EQ(topology->getLevel(1)->flags, MtGroupingLevel::flagBit1);
    EXPECT_EQ(topology->getLevel(2)->flags, MtGroupingLevel::flagBit0 | MtGroupingLevel::flagBit1);

    Molecule molecule(topology, false);
    ASSERT_TRUE(read.bundle[0]->getTimeStep(0, &molecule));
    EXPECT_EQ(molecule.coords[0], McVec3f(1.5F, -2.25F, 0.0F));
    EXPECT_EQ(molecule.coords[1], McVec3f(100.0F, 0.0F, 3.0F));
    EXPECT_EQ(molecule.coords[2], McVec3f(0.0F, 0.0F, 0.0F));
}

TEST(TriposReader, SubstructuresGrowWithTheirIds) {
    auto const residuesOf = [](std::vector<int> const& ids, std::string const& type = "SMALL") {
        std::string lines = "@<TRIPOS>ATOM\n";
        for (int const id : ids) lines += "1 A 0 0 0 C " + std::to_string(id) + " R" + std::to_string(id) + "\n";
        std::string const counts = std::to_string(ids.size()) + " 0 9";
        Result const read = readAll(molecule(counts, type + "\nNO_CHARGES", lines));
        MolTopology* topology = read.bundle[0]->getTopology();
        return residues(topology) + texts(topology, 2, type == "SMALL" ? "name" : "type") +
               texts(topology, 2, type == "SMALL" ? "type" : "name");
    };
    EXPECT_EQ(residuesOf({1, 1, 3, 3, 2}), "0-1 2-4 R1|R2|none");
    EXPECT_EQ(residuesOf({2, 2}), "0-1 R2|none");
    EXPECT_EQ(residuesOf({0, -1, 5, 0, 4, 6}), "2-4 5-5 R4|R6|none");
    EXPECT_EQ(residuesOf({0, 0}), "none");
    EXPECT_EQ(residuesOf({1, 2147483647}, "PROTEIN"), "0-0 1-1 R1|R2147483647|none");
    EXPECT_EQ(residuesOf({1}, ""), "0-0 R1|none"); // an empty line for the type
}

TEST(TriposReader, ColumnsBehindTheType) {
    std::string const line = "@<TRIPOS>ATOM\n1 A 0 0 0 C 1 LIG 0.75\n";
    auto const chargeOf = [&](std::string const& counts, std::string const& types) {
        Result const read = readAll(molecule(counts, types, line));
        MtGroupingLevel* atoms = read.bundle[0]->getTopology()->getLevel(0);
        auto const* charges = atoms->floatAttribute("charge", MtGroupingLevel::FIND, true);
        return charges ? charges->getValue(0) : -1.0F;
    };
    EXPECT_EQ(chargeOf("1 0 0", "SMALL\nGASTEIGER"), 0.75F);
    EXPECT_EQ(chargeOf("1 0 1", "SMALL\n"), 0.75F);
    EXPECT_EQ(chargeOf("1 0 1", "SMALL\nNO_CHARGES"), -1.0F);
    EXPECT_EQ(residues(readAll(molecule("1 0 0", "SMALL\nGASTEIGER", line)).bundle[0]->getTopology()), "none");
    // The atoms are looked for from the counts line on.
    EXPECT_EQ(readAll("@<TRIPOS>MOLECULE\nx\n1 0 0\n" + line).bundle.size, 1);
    EXPECT_EQ(texts(readAll("@<TRIPOS>MOLECULE\nx\n1 0 0\n" + line).bundle[0]->getTopology(), 0, "type"), "A|");
    // A name of blanks is a line end; what a short line lacks is one as well.
    Result const blank = readAll("@<TRIPOS>MOLECULE\n  \n1 0 1\nSMALL\nX\n@<TRIPOS>ATOM\n1\n");
    EXPECT_STREQ(blank.bundle[0]->getTopology()->getName(), "\n");
    EXPECT_EQ(texts(blank.bundle[0]->getTopology(), 0, "type"), "\n|");
}

TEST(TriposReader, BondTypesAndUnknownAtoms) {
    std::string lines = "@<TRIPOS>ATOM\n5 A 0 0 0 C\n0 B 0 0 0 C\n5 C 0 0 0 C\n@<TRIPOS>BOND\n";
    char const* const tokens[] = {"1", "2", "3", "4", "5", "0", "-2", "2x", "ar", "am", "du", "un", "nc", ""};
    for (char const* const token : tokens) lines += std::string("9 0 5 ") + token + "\n";
    lines += "1 5 0 1\n1 5 6 1\n1 8 5 1\n1\n"; // 0 as second atom is none
    Result const read = readAll(molecule("3 18 0", "SMALL\nNO_CHARGES", lines));
    std::string expected;
    for (char const* type : {"1", "2", "3", "4", "1", "1", "1", "2", "4", "1", "1", "1", "1", "1"}) {
        expected += std::string("1-2:") + type + " "; // of the atoms with id 5 the last one counts
    }
    EXPECT_EQ(bondsOf(read.bundle[0]->getTopology()), expected);
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
