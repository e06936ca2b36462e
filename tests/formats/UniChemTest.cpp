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

TEST(UniChemReader, PassesOverWhatItDoesNotKeep) {
    std::string const head = "comment\n a STRUCTURE 9\nSTRUCTURE 3 x\n\n";
    std::string const job = "JOB a\nb\n  END c\n";
    std::string const whole[] = {
        head + "SERIES_ELEMENT 1\nATTRIBUTES a\nb\nc GEOMETRY\nGEOMETRY\n" + atoms + "INTERNALS 2 x\na\nBONDS\n" +
            bonds + job,
        head + "GEOMETRY\n" + atoms + "\n\n" + bonds + "END",
        head + "ATTRIBUTES\n\n\nGEOMETRY x\n\n" + atoms + bonds + job,
    };
    for (std::string const& text : whole) {
        auto const molecule = read(text);
        ASSERT_TRUE(molecule) << text;
        EXPECT_EQ(molecule->getNumAtoms(), 3) << text;
        EXPECT_EQ(bondsOf(molecule->getTopology()), "0,1|2,0 type 2|1") << text;
    }
    auto const empty = read(head + "END\n");
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->getNumAtoms(), 0);
    ASSERT_EQ(empty->coords.size, 3);
    EXPECT_EQ(empty->coords[2], McVec3f(0.0F, 0.0F, 0.0F));
    EXPECT_EQ(read(head + "GEOMETRY\n" + bonds + "END\n")->getTopology()->getLevel(1)->groups.size, 0);
}

TEST(UniChemReader, MalformedFiles) {
    std::string const head = "STRUCTURE 3 x\n\n";
    std::string const million = "STRUCTURE 2000000000 x\n\n";
    struct {
        std::string text;
        std::string reason;
        int line;
    } const cases[] = {
        {"", "End of file reached without STRUCTURE expression", 1},
        {"a\nb\n", "End of file reached without STRUCTURE expression", 3},
        {head, "Keyword END expected", 3},
        {head + "ATTRIBUTES\na\n", "Keyword END expected", 5},
        {head + "GEOMETRY\n" + atoms, "Keyword END expected", 8},
        {head + "GEOMETRY\nCOORDINATES\n1 0 0 0\n", "Keyword END expected", 6},
        {head + "GEOMETRY\nINTERNALS 2000000000 x\n", "Keyword END expected", 5},
        {head + "GEOMETRY\n" + atoms + "BONDS\nMOLECULE 2000000000 x\n1 2 1\n", "Keyword END expected", 11},
        {head + "GEOMETRY\n" + atoms + "BONDS\nEND\n", "Keyword MOLECULE expected", 9},
        {head + "JOB\na\n", "End of file before JOB statement was ended", 5},
        {million + "GEOMETRY\n" + atoms + bonds + "END\n", "Keyword END expected", 13},
        {million + "END\n", "More atoms than the file can hold", 3},
        {"STRUCTURE 3 " + std::string(1000, 'x'), "Read in string in exceeds buffer", 1},
    };
    for (auto const& test : cases) {
        std::ostringstream messages;
        EXPECT_FALSE(read(test.text, &messages));
        EXPECT_EQ(messages.str(), "The file " + scratchPath("in.uni") + " is not a valid unichem file. " + test.reason +
                                      " in line " + std::to_string(test.line) + ".\n");
    }
    std::ostringstream messages;
    EXPECT_EQ(UniChemIO(&messages, nullptr).readUniChemMolecule("/no/such.uni"), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"/no/such.uni\"\n");
    // A negative count is none, and bonds between atoms that do not exist are left out.
    EXPECT_EQ(read("STRUCTURE -3 x\n\nEND")->coords.size, 0);
    auto const molecule =
        read(head + "GEOMETRY\n" + atoms + "BONDS\nMOLECULE 4 x\n0 1 1\n1 4 1\n-2147483648 2 1\n2 2 3\nEND");
    EXPECT_EQ(bondsOf(molecule->getTopology()), "1,1 type 3");
}

/// Sixty oxygen atoms and as many bonds.
std::string large() {
    std::string text = "STRUCTURE 60 x\n\nGEOMETRY\nCOORDINATES 1\n";
    for (int i = 0; i < 60; ++i) text += "8 0 0 0 0\n";
    text += "BONDS\nMOLECULE 60 x\n";
    for (int i = 0; i < 60; ++i) text += "1 2 1\n";
    return text + "END\n";
}

TEST(UniChem, ProgressAndInterruption) {
    RecordingProgress reading;
    auto const molecule = read(large(), nullptr, &reading);
    EXPECT_THAT(reading.calls,
                ElementsAre("start ", "info Parsing coordinates block.", "info Parsing bonds block.", "stop"));
    EXPECT_THAT(reading.fractions, ElementsAre(0.0F, FloatEq(25.0F / 60), FloatEq(25.0F / 60 + 0.5F)));
    RecordingProgress writing;
    std::string const path = scratchPath("out.uni");
    EXPECT_TRUE(UniChemIO(nullptr, &writing).writeUniChemMolecule(molecule.get(), path.c_str()));
    EXPECT_THAT(writing.calls,
                ElementsAre("start ", "info Writing coordinates block.", "info Writing bonds block.", "stop"));
    EXPECT_THAT(writing.fractions, ElementsAre(0.0F, FloatEq(50.0F / 120), 0.5F, FloatEq(110.0F / 120)));
    for (int const question : {1, 3}) {
        RecordingProgress stopped(question);
        EXPECT_FALSE(read(large(), nullptr, &stopped));
        EXPECT_EQ(stopped.calls.back(), "stop");
        RecordingProgress alsoStopped(question);
        EXPECT_FALSE(UniChemIO(nullptr, &alsoStopped).writeUniChemMolecule(molecule.get(), path.c_str()));
        EXPECT_EQ(alsoStopped.calls.back(), "stop");
    }
}

TEST(UniChemWriter, WritesWhatItReads) {
    MolTopology* topology = newTopology(2);
    topology->addBond(new MtBond(1, 0));
    Molecule molecule(topology, true);
    molecule.coords[0] = McVec3f(-1.5F, 9.99996F, 1234.5678F);
    std::string const path = scratchPath("out.uni");
    UniChemIO io(nullptr, nullptr);
    ASSERT_TRUE(io.writeUniChemMolecule(&molecule, path.c_str()));
    std::string const start = "VERSION UNICHEM^TYPE 1\nSTRUCTURE 2 " + path + " \n\nGEOMETRY\nCOORDINATES 1\n";
    EXPECT_EQ(readFile(path), start + "1 -1.5000000 9.99995995 1234.56775 0\n"
                                      "1 0.00000000 0.00000000 0.00000000 0\n"
                                      "BONDS\nMOLECULE 1 unnamed\n2 1 \n\nEND\n");
    setInteger(topology, 0, "atomic_number", 1, 17);
    setInteger(topology, 1, "type", 0, -3);
    ASSERT_TRUE(io.writeUniChemMolecule(&molecule, path.c_str()));
    EXPECT_EQ(readFile(path), start + "0 -1.5000000 9.99995995 1234.56775 0\n"
                                      "17 0.00000000 0.00000000 0.00000000 0\n"
                                      "BONDS\nMOLECULE 1 unnamed\n2 1 -3\n\nEND\n");

    molecule.coords[0].x = 1e10F;
    EXPECT_THROW(io.writeUniChemMolecule(&molecule, path.c_str()), FloatConversion_Error);
    std::ostringstream messages;
    EXPECT_FALSE(UniChemIO(&messages, nullptr).writeUniChemMolecule(nullptr, path.c_str()));
    EXPECT_FALSE(UniChemIO(&messages, nullptr).writeUniChemMolecule(&molecule, "/no/such/folder/x.uni"));
    EXPECT_EQ(messages.str(), "Empty molecule !\nCould not create file !\n");
}

} // namespace
