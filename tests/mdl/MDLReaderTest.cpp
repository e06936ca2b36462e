#include "mdl/MDLIO.h"
#include "mdl/MoleculeBundleMDL.h"
#include "support/model.h"
#include "support/testing.h"

namespace {

using namespace tarnex::test;

std::string const counts3 = "  3  2  0  0  0  0  0  0  0  0999 V2000\n";
std::string const water = counts3 + "    0.0000    0.1000   -0.2000 O   0  3  0  2  0  0\n"
                                    "    0.7570    0.5860    1.0000 H   0  0  0  0  0  0\n"
                                    "   -0.7570    0.5860    1.0000 XX  0  4  0  0  0  0\n"
                                    "  1  2  1  0\n"
                                    "  3  1  2  0\n"
                                    "M  END\n";

Bundle readAll(std::string const& text, std::ostream* messages = nullptr, McProgressInterface* progress = nullptr) {
    return MDLIO(messages, progress).readMDLMolTrajectoryBundle(writeFile("in.sdf", text).c_str());
}

TEST(MDLReader, RecordsOfAtomsBondsAndData) {
    std::string nineLines; // the counts line may stand anywhere
    for (int i = 0; i < 9; ++i) nineLines += "a line\n";
    Bundle const bundle = readAll(
        water +
        "> <digit>\n7\n\n> <number>\n17\n\n> 25 <both> (1)\n1.5  \n\n>  <twice> <x>\nv\n> <empty>\n\n><>\nnone\n" +
        ">\nnone\n> <lines>\nfirst\nsecond\n\n> <name>\n It \n$$$$\n" + nineLines + water + "> <name>\n5\n$$$$\n" +
        "n\n\n\n -1 -1  0     0  0            999 V3000\nM  V30 BEGIN CTAB\nM  END");
    ASSERT_EQ(bundle.size, 3);
    // XX is no element, and the code 4 no charge.
    std::string const groups = "\natoms(-1) flags 3: 3 atomic_number=8|1|0 radius=1.52|1.2|2 formal_charge=1|0|0 "
                               "implicit_hnum=1|0|0\nbonds(0) flags 2: 0,1|2,0 type=1|2";
    EXPECT_EQ(describe(bundle[0]->getTopology()),
              " It; digit=7 number=\"17\" both=\"1.5\" twice> <x=\"v\" lines=\"first\" name=\" It\"" + groups);
    EXPECT_EQ(describe(bundle[1]->getTopology()), "in.sdf-2; name=5" + groups); // its name is a number
    EXPECT_EQ(placesOf(bundle[1], 0), "0,0.1,-0.2|0.757,0.586,1|-0.757,0.586,1");
    EXPECT_THAT(describe(bundle[2]->getTopology()), StartsWith("in.sdf-3;\natoms(-1) flags 3: 0 "));
}

TEST(MDLReader, MalformedRecords) {
    std::ostringstream messages;
    std::string const atomMissing = "\n  1  1" + std::string(28, ' ') + "V2000\n\n  1  2  1\n";
    EXPECT_EQ(readAll(water + "$$$$\n" + atomMissing, &messages).size, 1);
    EXPECT_EQ(messages.str(), ""); // the records ahead are kept in silence
    for (auto const& [text, message] :
         {std::pair{std::string("one\ntwo"), "Could not find counts line by V2000 or V3000 token in line 2.\n"},
          {"", "Could not find counts line by V2000 or V3000 token in line 1.\n"},
          {atomMissing, "Atomnumber is out of range in line 4.\n"},
          {water + "> <" + std::string(10000, 'x') + ">\n", "Read in string in exceeds buffer in line 8.\n"},
          // Three atoms are promised, the file ends: they are empty, and the bond is not there.
          {counts3, "Atomnumber is out of range in line 2.\n"}}) {
        std::ostringstream stream;
        EXPECT_EQ(readAll(text, &stream).size, 0);
        EXPECT_EQ(stream.str(), "Parse error in file " + scratchPath("in.sdf") + ".\n" + message);
    }
    EXPECT_EQ(MDLIO(&messages, nullptr).readMDLMolTrajectoryBundle("/no/such.sdf").size, 0);
    EXPECT_EQ(MDLIO(&messages, nullptr).readMDLMolTrajectory("/no/such.sdf"), nullptr);
    EXPECT_EQ(messages.str(), "Could not open \"/no/such.sdf\"\nCould not load \"/no/such.sdf\"\n");
}

TEST(MDLReader, EveryCutAndEveryByteIsSurvived) {
    std::string const text = water + "> <name>\nvalue\n$$$$\n";
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
    std::string const path = writeFile("one.sdf", water + "> <name>\nIt\n$$$$\n");
    RecordingProgress progress, stopping(1);
    std::unique_ptr<MolTrajectory> const trajectory(MDLIO(nullptr, &progress).readMDLMolTrajectory(path.c_str()));
    EXPECT_EQ(trajectory->refCount, 0);
    EXPECT_STREQ(trajectory->getTopology()->getName(), "one.sdf-1");
    EXPECT_EQ(progress.calls.back(), "start Reading SDF-Molecule"); // and stays open
    EXPECT_EQ(std::count(progress.calls.begin(), progress.calls.end(), "stop"), 1);
    EXPECT_EQ(MDLIO(nullptr, &stopping).readMDLMolTrajectory(path.c_str()), nullptr);
    EXPECT_EQ(std::count(stopping.calls.begin(), stopping.calls.end(), "stop"), 2);
    EXPECT_THROW(MDLIO(nullptr, nullptr).readMDLMolTrajectory(writeFile("none.sdf", "nothing").c_str()), Parse_Error);
}

TEST(MDLReader, ProgressAndInterruption) {
    std::string const record = water + "$$$$\n";
    RecordingProgress quiet;
    EXPECT_EQ(readAll(record, nullptr, &quiet).size, 1);
    EXPECT_THAT(quiet.calls,
                ElementsAre("start Reading SDF-Molecule", "info Searching counts line.", "info Parsing atom block",
                            "info Parsing bond block", "info Searching counts line.", "stop", "stop"));
    EXPECT_THAT(quiet.fractions,
                ElementsAre(FloatEq(0.1F), FloatEq(0.1F), FloatEq(0.64F))); // counts, first atom, first bond
    RecordingProgress stopping(4);                                          // at the first bond of the second record
    EXPECT_EQ(readAll(record + record, nullptr, &stopping).size, 0);
    EXPECT_EQ(stopping.calls.back(), "stop");
    EXPECT_EQ(std::count(stopping.calls.begin(), stopping.calls.end(), "stop"), 1);
}

TEST(MoleculeBundleMDL, HasNoMoleculesInAnyFile) {
    MoleculeBundleMDL bundle(TARNEX_EXAMPLES "/ligands.sdf");
    EXPECT_EQ(bundle.getNumMolecules(), 0U);
    EXPECT_EQ(bundle.getMolecule(0), nullptr);
}

} // namespace
