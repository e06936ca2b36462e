#include "PDBreadSamples.h"

namespace {

using namespace tarnex::test;

/// Atoms of one chain and as many residues.
std::string atoms(int number) {
    return joined(number, "", [](int i) { return atom({.serial = i + 1, .number = i + 1}); });
}

TEST(PDBreadFile, RecordsOfAllKinds) {
    auto const trajectory =
        readPDB("SOURCE    somewhere\nHEADER    PROTEIN   \nTITLE     one\nJRNL  \nTITLE    2 two  \n"
                "REMARK 350   BIOMT1   1  0.5\nREMARK 350 none\nREMARK  BIOMT\n"
                "HELIX    1  H1 ALA A    2  ALA A    3  1\n" +
                atom({.serial = 1, .type = "LIG", .x = 0}) + atom({.serial = 2, .number = 2, .x = 1.5}) +
                atom({.serial = 3, .number = 3, .x = 3}) + atom({.serial = 0, .number = 3, .x = 50}) +
                "SITE     1 AC1  1 ALA A   3\nCONECT    3    1    0\nCONECT    1    3\n" +
                "CONECT    3    2\nEND\nAUTHOR\tA.B\nEXPDTA    NMR\n");
    std::string const text = describe(trajectory->getTopology());
    EXPECT_THAT(text, StartsWith("; PDB_AUTHOR=\"\tA.B\n\" PDB_HEADER=\"    PROTEIN\n\" PDB_JNRL=\"\n\" "
                                 "PDB_TITLE=\"    one\n   2 two\n\" PDB_REMARK=\" 350   BIOMT1   1  0.5\n  BIOMT\n\" "
                                 "PDB_SOURCE=\"    somewhere\n\"\natoms"));
    EXPECT_THAT(text, HasSubstr("\nbonds(0) flags 2: 2,0|2,1|0,1 type=1|1|1\n")); // perceived ones follow
    EXPECT_THAT(text, EndsWith("\nchains(2) flags 19: 0-2 name=A\nstrands(2) flags 17:  name=\nsecondary_structure(2) "
                               "flags 3: 1-2 type=helix name=H1\n"
                               "sites(2) flags 19: 2 name=AC1"));
}

TEST(PDBreadFile, Messages) {
    std::ostringstream messages;
    PDBread pdb(&messages, nullptr);
    std::string const good = writeFile("good.pdb", atom()), empty = writeFile("empty.pdb", "REMARK\n");
    Bundle bundle;
    EXPECT_EQ(pdb.readPDBMolTrajectoryBundle(good.c_str(), bundle), 1);
    EXPECT_EQ(pdb.readPDBMolTrajectoryBundle(good.c_str(), bundle), 1);
    EXPECT_EQ(bundle.size, 2);
    for (std::string const& bad : {empty, std::string("no/such.pdb")}) {
        EXPECT_EQ(pdb.readPDBMolTrajectoryBundle(bad.c_str(), bundle), 0);
        EXPECT_EQ(bundle.size, 0);
        bundle.append(nullptr);
    }
    Molecule molecule(new MolTopology, true);
    EXPECT_FALSE(pdb.readMolecule(&molecule, "no/such.pdb", {}, 0));
    EXPECT_FALSE(pdb.readCoordinates(&molecule, "no/such.pdb", {}, 0));
    std::string const notLoaded = "Could not load \"no/such.pdb\"\n";
    EXPECT_EQ(messages.str(), "Successfully imported.\nSuccessfully imported.\nThe file " + empty +
                                  " contained no ATOM or HETATM records.\n" + notLoaded + notLoaded + notLoaded);
}

TEST(PDBreadFile, HeaderTextOfOverAThousandCharactersIsRefused) {
    std::string const title = "TITLE " + std::string(1000, 'x');
    EXPECT_TRUE(readPDB(atom() + title + "\n"));
    EXPECT_THROW(readPDB(atom() + title + "x\n"), Parse_Error);
    EXPECT_THROW(readPDB("REMARK" + std::string(1001, ' ')), Parse_Error); // though it would be dropped
}

TEST(PDBreadFile, ProgressAndInterruption) {
    auto const repeated = [](int n, char const* line) { return joined(n, "", [=](int) { return line; }); };
    std::string const file = "REMARK\n" + atoms(199) + repeated(60, "CONECT  900\n") + repeated(20, "TURN\n");
    RecordingProgress whole;
    ASSERT_TRUE(readPDB(file, &whole));
    EXPECT_THAT(whole.calls,
                ElementsAre("start ", "info Parsing ATOM and HETATM Records", "info Parsing CONECT Records",
                            "info Parsing HELIX/SHEET/TURN and SITE Records", "stop"));
    // The lines count on from block to block: 100; 210 and 240; 260 and 270.
    auto const part = [](int line, int lines) { return static_cast<float>(line) / static_cast<float>(lines); };
    EXPECT_THAT(whole.fractions,
                ElementsAre(part(100, 198), 0.0F, part(11, 59), part(41, 59), 0.0F, part(0, 19), part(10, 19)));
    EXPECT_EQ(whole.questions, 5);
    for (int question = 1; question <= 5; ++question) {
        RecordingProgress stopping(question);
        EXPECT_FALSE(readPDB(file, &stopping));
        EXPECT_EQ(stopping.calls.back(), "stop");
        EXPECT_EQ(stopping.questions, question);
    }
    RecordingProgress early; // lines that pass by while the count stands on a multiple report as well
    ASSERT_TRUE(readPDB("MODEL\nREMARK\n" + atom(), &early));
    EXPECT_EQ(early.fractions.size(), 2U);
}

TEST(PDBreadFile, DamagedFiles) {
    std::string text = "HEADER\nMODEL\n" + atoms(12) + "TER\r\nHELIX    1 AAA ALA A    2  ALA A    5  1\n" +
                       "CONECT    1    2    3\nCONECT    4    5\nENDMDL\nMODEL\n" + atoms(12);
    for (std::size_t length = 0; length <= text.size(); length += 1 + length / 100) {
        auto const cut = readPDB(text.substr(0, length));
        EXPECT_EQ(static_cast<bool>(cut), length >= 12) << length; // from "MODEL" on
    }
    std::string noise = atom() + atom();
    for (std::size_t i = 6; i < 80; ++i) noise[i] = static_cast<char>(i * 37);
    EXPECT_TRUE(readPDB(noise));
    EXPECT_FALSE(readPDB(std::string(5000, '\0')));
}

TEST(PDBreadFile, RangesThatAreNoneOfTheFile) {
    std::string const path = writeFile("atoms.pdb", atoms(12));
    for (auto const& [first, last, numAtoms] :
         {std::tuple{-1L, -1L, 0}, {5L, 4L, 0}, {0L, 1L << 60U, 12}, {1L << 40U, 1L << 60U, 0}}) {
        Molecule molecule(new MolTopology, true);
        PDBread::streamPositions positions;
        positions.atomFirst = positions.conectFirst = positions.secStructFirst = first;
        positions.atomLast = positions.conectLast = positions.secStructLast = last;
        EXPECT_TRUE(PDBread(nullptr, nullptr).readMolecule(&molecule, path.c_str(), positions, 0));
        EXPECT_EQ(molecule.getNumAtoms(), numAtoms);
    }
}

} // namespace
