#include "mdl/MDLIO.h"
#include "support/RecordingProgress.h"
#include "support/files.h"

#include <gmock/gmock.h>
#include <memory>
#include <sstream>

namespace {

using namespace tarnex::test;
using testing::ElementsAre;
using testing::FloatEq;

std::string const counts3 = "  3  2  0  0  0  0  0  0  0  0999 V2000\n";
std::string const water = "    0.0000    0.1000   -0.2000 O   0  3  0  2  0  0\n"
                          "    0.7570    0.5860    1.0000 H   0  0  0  0  0  0\n"
                          "   -0.7570    0.5860    1.0000 XX  0  4  0  0  0  0\n"
                          "  1  2  1  0\n"
                          "  3  1  2  0\n"
                          "M  END\n";

using Bundle = McDArray<McHandle<MolTrajectory>>;

Bundle readAll(std::string const& text, std::ostream* messages = nullptr, McProgressInterface* progress = nullptr) {
    return MDLIO(messages, progress).readMDLMolTrajectoryBundle(writeFile("in.sdf", text).c_str());
}

std::string datum(MolTrajectory* trajectory, char const* name) {
    MolData const* found = trajectory->getTopology()->getData(name);
    if (!found) return "none";
    McString text;
    found->getValueAsString(text);
    return (dynamic_cast<MolDataInt const*>(found) ? "int " : "text ") + std::string(text);
}

TEST(MDLReader, ReadsAtomsBondsChargesAndHydrogens) {
    Bundle const bundle = readAll("name\n program\n\n" + counts3 + water);
    ASSERT_EQ(bundle.size, 1);
    MolTopology* topology = bundle[0]->getTopology();
    EXPECT_STREQ(topology->getName(), "in.sdf-1");
    MtGroupingLevel* atoms = topology->getLevel(0);
    auto* numbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    auto* radii = atoms->floatAttribute("radius", MtGroupingLevel::FIND, true);
    auto* charges = topology->getAtomFormalChargeAttribute(MolTopology::FIND);
    auto* hydrogens = atoms->integerAttribute("implicit_hnum", MtGroupingLevel::FIND, true);
    ASSERT_TRUE(numbers && radii && charges && hydrogens);
    ASSERT_EQ(atoms->groups.size, 3);
    EXPECT_EQ(numbers->getValue(0), 8);
    EXPECT_EQ(numbers->getValue(2), 0); // XX is no element
    EXPECT_FLOAT_EQ(radii->getValue(0), 1.52F);
    EXPECT_EQ(charges->getValue(0), 1); // code 3
    EXPECT_EQ(charges->getValue(1), 0);
    EXPECT_EQ(charges->getValue(2), 0); // code 4
    EXPECT_EQ(hydrogens->getValue(0), 1);
    EXPECT_EQ(hydrogens->getValue(1), 0);

    auto* types = topology->getLevel(1)->integerAttribute("type", MtGroupingLevel::FIND, true);
    ASSERT_EQ(topology->getLevel(1)->groups.size, 2);
    auto const* second = dynamic_cast<MtBond const*>(topology->getLevel(1)->groups[1]);
    EXPECT_EQ(second->atomA(), 2);
    EXPECT_EQ(second->atomB(), 0);
    EXPECT_EQ(types->getValue(1), 2);
    EXPECT_EQ(atoms->flags, MtGroupingLevel::flagBit0 | MtGroupingLevel::flagBit1);
    EXPECT_EQ(topology->getLevel(1)->flags, MtGroupingLevel::flagBit1);

    Molecule molecule(topology, false);
    ASSERT_TRUE(bundle[0]->getTimeStep(0, &molecule));
    EXPECT_EQ(molecule.coords[0], McVec3f(0.0F, 0.1F, -0.2F));
    EXPECT_EQ(molecule.coords[2], McVec3f(-0.757F, 0.586F, 1.0F));
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
    MolTrajectory* first = bundle[0];
    EXPECT_EQ(datum(first, "digit"), "int 7");
    EXPECT_EQ(datum(first, "number"), "text 17");
    EXPECT_EQ(datum(first, "both"), "text 1.5");
    EXPECT_EQ(datum(first, "twice> <x"), "text v");
    EXPECT_EQ(datum(first, "empty"), "none");
    EXPECT_EQ(datum(first, "lines"), "text first");
    EXPECT_EQ(first->getTopology()->getNumData(), 6);
    EXPECT_STREQ(first->getTopology()->getName(), " It");
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

} // namespace
