#include "mdl/MDLIO.h"
#include "mdl/MoleculeBundleMDL.h"
#include "support/model.h"
#include "support/testing.h"

namespace {

using namespace tarnex::test;

std::string const counts3 = "  3  2  0  0  0  0  0  0  0  0999 V2000\n";
std::string const water = "    0.0000    0.1000   -0.2000 O   0  3  0  2  0  0\n"
                          "    0.7570    0.5860    1.0000 H   0  0  0  0  0  0\n"
                          "   -0.7570    0.5860    1.0000 XX  0  4  0  0  0  0\n"
                          "  1  2  1  0\n"
                          "  3  1  2  0\n"
                          "M  END\n";

Bundle readAll(std::string const& text, std::ostream* messages = nullptr, McProgressInterface* progress = nullptr) {
    return MDLIO(messages, progress).readMDLMolTrajectoryBundle(writeFile("in.sdf", text).c_str());
}

TEST(MDLReader, ReadsAtomsBondsChargesAndHydrogens) {
    Bundle const bundle = readAll("name\n program\n\n" + counts3 + water);
    ASSERT_EQ(bundle.size, 1);
    // XX is no element, and the code 4 no charge.
    EXPECT_EQ(describe(bundle[0]->getTopology()),
              "in.sdf-1;\natoms(-1) flags 3: 3 atomic_number=8|1|0 radius=1.52|1.2|2 formal_charge=1|0|0 "
              "implicit_hnum=1|0|0\nbonds(0) flags 2: 0,1|2,0 type=1|2");
    EXPECT_EQ(placesOf(bundle[0], 0), "0,0.1,-0.2|0.757,0.586,1|-0.757,0.586,1");
}

TEST(MDLReader, FindsTheCountsLineAnywhereAndReadsV3000ByTheSameColumns) {
    EXPECT_EQ(readAll(counts3 + water).size, 1);
    std::string ten;
    for (int i = 0; i < 9; ++i) ten += "a line\n";
    EXPECT_EQ(readAll(ten + counts3 + water).size, 1);
    Bundle const empty = readAll("n\n\n\n  0  0  0     0  0            999 V3000\nM  V30 BEGIN CTAB\nM  END");
    ASSERT_EQ(empty.size, 1);
    EXPECT_EQ(empty[0]->getTopology()->getLevel(0)->groups.size, 0);
}

TEST(MDLReader, DataItems) {
    Bundle const bundle =
        readAll(counts3 + water +
                "> <digit>\n7\n\n> <number>\n17\n\n> 25 <both> (1)\n1.5  \n\n>  <twice> <x>\nv\n"
                "> <empty>\n\n><>\nnone\n>\nnone\n> <lines>\nfirst\nsecond\n\n> <name>\n It \n$$$$\n" +
                counts3 + water + "> <name>\n5\n$$$$");
    ASSERT_EQ(bundle.size, 2);
    EXPECT_THAT(
        describe(bundle[0]->getTopology()),
        StartsWith(" It; digit=7 number=\"17\" both=\"1.5\" twice> <x=\"v\" lines=\"first\" name=\" It\"\natoms"));
    EXPECT_STREQ(bundle[1]->getTopology()->getName(), "in.sdf-2"); // its name is a number
}

TEST(MDLReader, MalformedRecords) {
    std::string const good = counts3 + water + "$$$$\n";
    std::ostringstream messages;
    EXPECT_EQ(readAll(good + "  1  1" + std::string(28, ' ') + "V2000\n" + water, &messages).size, 1);
    EXPECT_EQ(messages.str(), ""); // the records ahead are kept in silence

    auto const message = [](std::string const& text) {
        std::ostringstream stream;
        EXPECT_EQ(readAll(text, &stream).size, 0);
        return stream.str();
    };
    std::string const file = "Parse error in file " + scratchPath("in.sdf") + ".\n";
    EXPECT_EQ(message("one\ntwo"), file + "Could not find counts line by V2000 or V3000 token in line 2.\n");
    EXPECT_EQ(message(""), file + "Could not find counts line by V2000 or V3000 token in line 1.\n");
    EXPECT_EQ(message("\n  1  1" + std::string(28, ' ') + "V2000\n\n  1  2  1\n"),
              file + "Atomnumber is out of range in line 4.\n");
    EXPECT_EQ(message(counts3 + water + "> <" + std::string(10000, 'x') + ">\n"),
              file + "Read in string in exceeds buffer in line 8.\n");
    // Three atoms are promised, the file ends: they are empty, and the bond is not there.
    EXPECT_EQ(message(counts3), file + "Atomnumber is out of range in line 2.\n");

    std::ostringstream stream;
    EXPECT_EQ(MDLIO(&stream, nullptr).readMDLMolTrajectoryBundle("/no/such.sdf").size, 0);
    EXPECT_EQ(MDLIO(&stream, nullptr).readMDLMolTrajectory("/no/such.sdf"), nullptr);
    EXPECT_EQ(stream.str(), "Could not open \"/no/such.sdf\"\nCould not load \"/no/such.sdf\"\n");
}

TEST(MDLReader, EveryCutAndEveryByteIsSurvived) {
    std::string const text = counts3 + water + "> <name>\nvalue\n$$$$\n";
    for (std::size_t length = 0; length < text.size(); ++length) {
        Bundle const bundle = readAll(text.substr(0, length));
        // Behind the type of the last bond the record is whole.
        EXPECT_EQ(bundle.size, length >= text.find("  3  1  2") + 6 ? 1 : 0) << length;
    }
    for (char const byte : {'\0', '\r', '\n', '9', '-', '\xff'}) {
        for (std::size_t i = 0; i < text.size(); ++i) {
            std::string broken = text;
            broken[i] = byte;
            EXPECT_LE(readAll(broken).size, 1);
        }
    }
}

TEST(MDLReader, SingleTrajectory) {
    std::unique_ptr<MolTrajectory> const trajectory(
        MDLIO(nullptr, nullptr)
            .readMDLMolTrajectory(writeFile("one.sdf", counts3 + water + "> <name>\nIt\n$$$$\n").c_str()));
    EXPECT_EQ(trajectory->refCount, 0);
    EXPECT_EQ(trajectory->getNumTimeSteps(), 1);
    EXPECT_STREQ(trajectory->getTopology()->getName(), "one.sdf-1");
    EXPECT_THROW(MDLIO(nullptr, nullptr).readMDLMolTrajectory(writeFile("none.sdf", "nothing").c_str()), Parse_Error);
}

TEST(MDLReader, ProgressAndInterruption) {
    std::string const record = counts3 + water + "$$$$\n";
    RecordingProgress quiet;
    EXPECT_EQ(readAll(record, nullptr, &quiet).size, 1);
    EXPECT_THAT(quiet.calls,
                ElementsAre("start Reading SDF-Molecule", "info Searching counts line.", "info Parsing atom block",
                            "info Parsing bond block", "info Searching counts line.", "stop", "stop"));
    EXPECT_THAT(quiet.fractions,
                ElementsAre(FloatEq(0.1F), FloatEq(0.1F), FloatEq(0.64F))); // counts, first atom, first bond

    RecordingProgress stopping(2); // at the first bond
    EXPECT_EQ(readAll(record + record, nullptr, &stopping).size, 0);
    EXPECT_EQ(stopping.calls.back(), "stop");
    EXPECT_EQ(std::count(stopping.calls.begin(), stopping.calls.end(), "stop"), 1);

    RecordingProgress single(1);
    EXPECT_EQ(MDLIO(nullptr, &single).readMDLMolTrajectory(writeFile("s.sdf", record).c_str()), nullptr);
    EXPECT_EQ(std::count(single.calls.begin(), single.calls.end(), "stop"), 2);
}

TEST(MoleculeBundleMDL, HasNoMoleculesInAnyFile) {
    for (char const* const name : {TARNEX_EXAMPLES "/ligands.sdf", "/absent.sdf"}) {
        McHandle<MoleculeBundle> const bundle(new MoleculeBundleMDL(name));
        EXPECT_EQ(bundle->getNumMolecules(), 0U);
        EXPECT_EQ(bundle->getMolecule(0), nullptr);
        EXPECT_EQ(bundle->getTopology(0), nullptr);
    }
}

} // namespace
