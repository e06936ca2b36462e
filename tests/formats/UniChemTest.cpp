#include "formats/UniChemIO.h"
#include "support/model.h"
#include "support/testing.h"
#include "textio/numberText.h"

namespace {

using namespace tarnex::test;

std::string const atoms = "COORDINATES 1\n8 0.0 0.1 -0.2 0\n1 0.757 0.586 1 0 more\n200 -1e1 x\n";
std::string const bonds = "BONDS\nMOLECULE 2 unnamed\n1 2 2\n3 1\n";

std::unique_ptr<Molecule> read(std::string const& text, std::ostream* messages = nullptr,
                               McProgressInterface* progress = nullptr) {
    return std::unique_ptr<Molecule>(
        UniChemIO(messages, progress).readUniChemMolecule(writeFile("in.uni", text).c_str()));
}

TEST(UniChemReader, FillsTheModel) {
    auto const molecule =
        read("VERSION UNICHEM^TYPE 1\nSTRUCTURE 3 x y\n\nGEOMETRY\n" + atoms + bonds + bonds + "\nEND\n");
    ASSERT_TRUE(molecule);
    EXPECT_EQ(molecule->refCount, 0);
    // 200 is no element, blocks add up, and a bond without a type has 1.
    EXPECT_EQ(describe(molecule->getTopology()), ";\natoms(-1) flags 35: 3 atomic_number=8|1|0 radius=1.52|1.2|2\n"
                                                 "bonds(0) flags 34: 0,1|2,0|0,1|2,0 type=2|1|2|1");
    EXPECT_EQ(placesOf(molecule->coords), "0,0.1,-0.2|0.757,0.586,1|-10,0,0");
}

TEST(UniChemReader, PassesOverWhatItDoesNotKeepAndToleratesCounts) {
    std::string const head = "comment\n a STRUCTURE 9\nSTRUCTURE 3 x\n\n";
    std::string const job = "JOB a\nb\n  END c\n", geometry = head + "GEOMETRY\n";
    std::pair<std::string, char const*> const cases[] = {
        {head + "SERIES_ELEMENT 1\nATTRIBUTES a\nb\nc GEOMETRY\nGEOMETRY\n" + atoms + "INTERNALS 2 x\na\nBONDS\n" +
             bonds + job,
         "3: 0,1|2,0 type 2|1"},
        {geometry + atoms + "\n\n" + bonds + "END", "3: 0,1|2,0 type 2|1"},
        {head + "ATTRIBUTES\n\n\nGEOMETRY x\n\n" + atoms + bonds + job, "3: 0,1|2,0 type 2|1"},
        {head + "ATTRIBUTES\nx\n" + job, "0:  type "},
        {geometry + bonds + "END\n", "0:  type "},
        {"STRUCTURE -3 x\n\nEND", "0:  type "},
        {geometry + atoms + "BONDS\nMOLECULE 4 x\n0 1 1\n1 4 1\n-2147483648 2 1\n2 2 3\nEND", "3: 1,1 type 3"}};
    for (auto const& [text, content] : cases) {
        auto const molecule = read(text);
        ASSERT_TRUE(molecule) << text;
        EXPECT_EQ(std::to_string(molecule->getNumAtoms()) + ": " + bondsOf(molecule->getTopology()), content) << text;
    }
    EXPECT_EQ(placesOf(read(head + "END\n")->coords), "0,0,0|0,0,0|0,0,0");
}

TEST(UniChemReader, MalformedFiles) {
    std::string const head = "STRUCTURE 3 x\n\n", geometry = head + "GEOMETRY\n", noEnd = "Keyword END expected";
    std::string const million = "STRUCTURE 2000000000 x\n\n";
    for (auto const& [text, reason, line] : {
             std::tuple{std::string(), std::string("End of file reached without STRUCTURE expression"), 1},
             {"a\nb\n", "End of file reached without STRUCTURE expression", 3},
             {head, noEnd, 3},
             {head + "ATTRIBUTES\na\n", noEnd, 5},
             {geometry + atoms, noEnd, 8},
             {geometry + "COORDINATES\n1 0 0 0\n", noEnd, 6},
             {geometry + "INTERNALS 2000000000 x\n", noEnd, 5},
             {geometry + atoms + "BONDS\nMOLECULE 2000000000 x\n1 2 1\n", noEnd, 11},
             {geometry + atoms + "BONDS\nEND\n", "Keyword MOLECULE expected", 9},
             {head + "JOB\na\n", "End of file before JOB statement was ended", 5},
             {million + "GEOMETRY\n" + atoms + bonds + "END\n", noEnd, 13},
             {million + "END\n", "More atoms than the file can hold", 3},
             {"STRUCTURE 3 " + std::string(1000, 'x'), "Read in string in exceeds buffer", 1},
         }) {
        std::ostringstream messages;
        EXPECT_FALSE(read(text, &messages));
        EXPECT_EQ(messages.str(), "The file " + scratchPath("in.uni") + " is not a valid unichem file. " + reason +
                                      " in line " + std::to_string(line) + ".\n");
    }
}

TEST(UniChem, ProgressAndInterruption) {
    auto const lines = [](char const* line) { return joined(60, "", [line](int) { return line; }); };
    std::string const sixty = "STRUCTURE 60 x\n\nGEOMETRY\nCOORDINATES 1\n" + lines("8 0 0 0 0\n") +
                              "BONDS\nMOLECULE 60 x\n" + lines("1 2 1\n") + "END\n";
    RecordingProgress reading, writing;
    auto const molecule = read(sixty, nullptr, &reading);
    EXPECT_THAT(reading.calls,
                ElementsAre("start ", "info Parsing coordinates block.", "info Parsing bonds block.", "stop"));
    EXPECT_THAT(reading.fractions, ElementsAre(0.0F, FloatEq(25.0F / 60), FloatEq(25.0F / 60 + 0.5F)));
    auto const write = [&](RecordingProgress& progress) {
        return UniChemIO(nullptr, &progress).writeUniChemMolecule(molecule.get(), scratchPath("out.uni").c_str());
    };
    EXPECT_TRUE(write(writing));
    EXPECT_THAT(writing.calls,
                ElementsAre("start ", "info Writing coordinates block.", "info Writing bonds block.", "stop"));
    EXPECT_THAT(writing.fractions, ElementsAre(0.0F, FloatEq(50.0F / 120), 0.5F, FloatEq(110.0F / 120)));
    for (int const question : {1, 3}) {
        RecordingProgress stoppedReading(question), stoppedWriting(question);
        EXPECT_FALSE(read(sixty, nullptr, &stoppedReading) || write(stoppedWriting));
        EXPECT_EQ(stoppedReading.calls.back() + stoppedWriting.calls.back(), "stopstop");
    }
}

TEST(UniChem, WritesWhatItReadsAndTellsFailures) {
    MolTopology* topology = newTopology(2);
    topology->addBond(new MtBond(1, 0));
    Molecule molecule(topology, true);
    molecule.coords[0] = McVec3f(-1.5F, 9.99996F, 1234.5678F);
    std::string const path = scratchPath("out.uni");
    std::ostringstream messages;
    UniChemIO io(&messages, nullptr);
    auto const expectWritten = [&](std::string const& first, std::string const& second, std::string const& type) {
        ASSERT_TRUE(io.writeUniChemMolecule(&molecule, path.c_str()));
        EXPECT_EQ(readFile(path), "VERSION UNICHEM^TYPE 1\nSTRUCTURE 2 " + path + " \n\nGEOMETRY\nCOORDINATES 1\n" +
                                      first + " -1.5000000 9.99995995 1234.56775 0\n" + second +
                                      " 0.00000000 0.00000000 0.00000000 0\nBONDS\nMOLECULE 1 unnamed\n2 1 " + type +
                                      "\n\nEND\n");
    };
    expectWritten("1", "1", "");
    setInteger(topology, 0, "atomic_number", 1, 17);
    setInteger(topology, 1, "type", 0, -3);
    expectWritten("0", "17", "-3");

    molecule.coords[0].x = 1e10F;
    EXPECT_THROW(io.writeUniChemMolecule(&molecule, path.c_str()), FloatConversion_Error);
    EXPECT_FALSE(io.writeUniChemMolecule(nullptr, path.c_str()));
    EXPECT_FALSE(io.writeUniChemMolecule(&molecule, "/no/such/folder/x.uni"));
    EXPECT_EQ(io.readUniChemMolecule("/no/such.uni"), nullptr);
    EXPECT_EQ(messages.str(), "Empty molecule !\nCould not create file !\nCould not load \"/no/such.uni\"\n");
}

} // namespace
