#include "PDBreadSamples.h"

namespace {

using namespace tarnex::test;

/// Atoms 1 to 12 of one chain.
std::string twelveAtoms() {
    std::string text;
    for (int i = 1; i <= 12; ++i) text += AtomText{.serial = i, .number = i};
    return text;
}

TEST(PDBreadFile, HeaderText) {
    auto const trajectory =
        readPDB("SOURCE    somewhere\nHEADER    PROTEIN   \nTITLE     one\nJRNL  \nTITLE    2 two  \n"
                "REMARK 350   BIOMT1   1  0.5\nREMARK 350 none\n"
                "REMARK  BIOMT\n" +
                AtomText{} + "END\nAUTHOR\tA.B\nEXPDTA    NMR\n");
    std::string const text = describe(trajectory->getTopology());
    EXPECT_EQ(text.substr(0, text.find("\natoms")),
              "; PDB_AUTHOR=\"\tA.B\n\" PDB_HEADER=\"    PROTEIN\n\" PDB_JNRL=\"\n\" PDB_TITLE=\"    one\n   2 two\n\" "
              "PDB_REMARK=\" 350   BIOMT1   1  0.5\n  BIOMT\n\" PDB_SOURCE=\"    somewhere\n\"");
}

TEST(PDBreadFile, PerceivedBondsFollowThoseOfTheFile) {
    auto const trajectory = readPDB(AtomText{.serial = 1, .type = "LIG", .x = 0} + AtomText{.serial = 2, .x = 1.5} +
                                    AtomText{.serial = 3, .x = 3} + "CONECT    3    1\nCONECT    3    2\n");
    EXPECT_EQ(bondsOf(trajectory->getTopology()), "2,0|2,1|0,1 type 1|1|1");
}

TEST(PDBreadFile, SecondaryStructureBecomesLevels) {
    auto const trajectory =
        readPDB("HELIX    1  H1 ALA A    2  ALA A    5  1\n" + twelveAtoms() + "SITE     1 AC1  1 ALA A   9\n");
    EXPECT_THAT(describe(trajectory->getTopology()),
                EndsWith("\nsecondary_structure(2) flags 3: 1-4 type=helix name=H1\nsites(2) flags 19: 8 name=AC1"));
}

TEST(PDBreadFile, Messages) {
    std::ostringstream messages;
    PDBread pdb(&messages, nullptr);
    std::string const good = writeFile("good.pdb", AtomText{});
    std::string const empty = writeFile("empty.pdb", "REMARK\n");
    Bundle bundle;
    EXPECT_EQ(pdb.readPDBMolTrajectoryBundle(good.c_str(), bundle), 1);
    EXPECT_EQ(pdb.readPDBMolTrajectoryBundle(good.c_str(), bundle), 1);
    EXPECT_EQ(bundle.size, 2);
    EXPECT_EQ(pdb.readPDBMolTrajectoryBundle(empty.c_str(), bundle), 0);
    EXPECT_EQ(bundle.size, 0);
    bundle.append(nullptr);
    EXPECT_EQ(pdb.readPDBMolTrajectoryBundle("no/such.pdb", bundle), 0);
    EXPECT_EQ(bundle.size, 0);
    Molecule molecule(new MolTopology, true);
    EXPECT_FALSE(pdb.readMolecule(&molecule, "no/such.pdb", {}, 0));
    EXPECT_FALSE(pdb.readCoordinates(&molecule, "no/such.pdb", {}, 0));
    std::string const notLoaded = "Could not load \"no/such.pdb\"\n";
    EXPECT_EQ(messages.str(), "Successfully imported.\nSuccessfully imported.\nThe file " + empty +
                                  " contained no ATOM or HETATM records.\n" + notLoaded + notLoaded + notLoaded);
}

TEST(PDBreadFile, HeaderTextOfOverAThousandCharactersIsRefused) {
    std::string const title = "TITLE " + std::string(1000, 'x');
    EXPECT_TRUE(readPDB(AtomText{} + title + "\n"));
    Bundle bundle;
    bundle.append(nullptr);
    std::string const path = writeFile("long.pdb", AtomText{} + title + "x\n");
    EXPECT_THROW(PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(path.c_str(), bundle), Parse_Error);
    EXPECT_EQ(bundle.size, 1);
    EXPECT_THROW(readPDB("REMARK" + std::string(1001, ' ')), Parse_Error); // though it would be dropped
}

/// 199 atom lines, 60 CONECT lines and 20 TURN lines.
std::string longFile() {
    std::string text = "REMARK\n";
    for (int i = 1; i <= 199; ++i) text += AtomText{.serial = i, .number = i};
    for (int i = 1; i <= 60; ++i) text += "CONECT  900\n";
    for (int i = 1; i <= 20; ++i) text += "TURN\n";
    return text;
}

TEST(PDBreadFile, ReportsProgress) {
    RecordingProgress progress;
    ASSERT_TRUE(readPDB(longFile(), &progress));
    EXPECT_THAT(progress.calls,
                ElementsAre("start ", "info Parsing ATOM and HETATM Records", "info Parsing CONECT Records",
                            "info Parsing HELIX/SHEET/TURN and SITE Records", "stop"));
    // The lines count on from block to block: 100; 210 and 240; 260 and 270.
    auto const part = [](int line, int lines) { return static_cast<float>(line) / static_cast<float>(lines); };
    EXPECT_THAT(progress.fractions,
                ElementsAre(part(100, 198), 0.0F, part(11, 59), part(41, 59), 0.0F, part(0, 19), part(10, 19)));
    EXPECT_EQ(progress.questions, 5);
}

TEST(PDBreadFile, StopsAtEveryQuestion) {
    std::string const path = writeFile("long.pdb", longFile());
    for (int question = 1; question <= 5; ++question) {
        RecordingProgress progress(question);
        Bundle bundle;
        bundle.append(nullptr);
        EXPECT_EQ(PDBread(nullptr, &progress).readPDBMolTrajectoryBundle(path.c_str(), bundle), 0);
        EXPECT_EQ(bundle.size, 0);
        EXPECT_EQ(progress.calls.back(), "stop");
        EXPECT_EQ(progress.questions, question);
    }
}

/// Lines that pass by while the count stands on a multiple report as well.
TEST(PDBreadFile, ReportsAtLinesThatCountNothing) {
    RecordingProgress progress;
    ASSERT_TRUE(readPDB("MODEL\nREMARK\n" + AtomText{}, &progress));
    EXPECT_EQ(progress.fractions.size(), 2U);
}

TEST(PDBreadFile, DamagedFiles) {
    std::string text = "HEADER\nMODEL\n" + twelveAtoms() + "TER\r\nHELIX    1 AAA ALA A    2  ALA A    5  1\n" +
                       "CONECT    1    2    3\nCONECT    4    5\nENDMDL\nMODEL\n" + twelveAtoms();
    for (std::size_t length = 0; length <= text.size(); length += 1 + length / 100) {
        auto const cut = readPDB(text.substr(0, length));
        EXPECT_EQ(static_cast<bool>(cut), length >= 12) << length; // from "MODEL" on
    }
    std::string noise = std::string(AtomText{}) + std::string(AtomText{});
    for (std::size_t i = 6; i < 80; ++i) noise[i] = static_cast<char>(i * 37);
    EXPECT_TRUE(readPDB(noise));
    EXPECT_FALSE(readPDB(std::string(5000, '\0')));
}

TEST(PDBreadFile, RangesThatAreNoneOfTheFile) {
    std::string const path = writeFile("atoms.pdb", twelveAtoms());
    auto const numAtoms = [&](long first, long last) {
        Molecule molecule(new MolTopology, true);
        PDBread::streamPositions positions;
        positions.atomFirst = positions.conectFirst = positions.secStructFirst = first;
        positions.atomLast = positions.conectLast = positions.secStructLast = last;
        EXPECT_TRUE(PDBread(nullptr, nullptr).readMolecule(&molecule, path.c_str(), positions, 0));
        return molecule.getNumAtoms();
    };
    EXPECT_EQ(numAtoms(-1, -1), 0);
    EXPECT_EQ(numAtoms(5, 4), 0);
    EXPECT_EQ(numAtoms(0, 1L << 60U), 12);
    EXPECT_EQ(numAtoms(1L << 40U, 1L << 60U), 0);
}

} // namespace
