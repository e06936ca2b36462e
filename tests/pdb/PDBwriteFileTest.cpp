#include "PDBwriteSamples.h"

namespace {

using namespace tarnex::test;

/// Chain A with water, a chain without name, and a ligand, a water and an atom on their own.
TEST(PDBwriteFile, Protein) {
    PdbSample p({"GLY 5 N:7 CA:6 C:6", "CYS 6 SG:16", "ALA 9 CA:6 1HB:1", "SER 10 CA:6", "CYS 10 SG:16", "HOH 201 O:8",
                 "VAL 3 C:6", "LEU 4 N:7 C:6", "THR -7 N:7", "HOH 1 O:8", "LIGX 301 CA:20 CL1:17", "HOH 302 O:8"});
    p.addAtom("", 0);
    p.addChain("A", 0, 5);
    p.addChain("NIL", 6, 9);
    p.addElement("helix", "1", {0, 1});
    p.addElement("sheet", "S", {6, 7, 8});
    p.addElement("helix", "H2", {1, 2, 3});
    p.addElement("turn", "7", {3, 4});
    p.addSite("AC1", {1, 4, 10, 11, 5});
    for (auto const& [a, b] : {std::pair{3, 7}, {9, 10}, {14, 15}, {16, 17}}) p.addBond(a, b);
    for (auto const& [name, text] : {std::pair{"PDB_HEADER", "    HYDROLASE\n"},
                                     {"PDB_TITLE", "    FIRST LINE\n   2 SECOND\r\nnot written"},
                                     {"PDB_COMPND", "without a line end"},
                                     {"PDB_JNRL", "    read, not written\n"},
                                     {"PDB_REMARK", " 350   BIOMT1   1\n"}}) {
        p.topology->setData(new MolDataString(name, text));
    }
    p.topology->setData(new MolDataString("PDB_SOURCE", ("    " + std::string(80, 's') + "\n").c_str()));
    p.topology->setData(new MolDataInt("PDB_AUTHOR", 7));
    setReal(p.topology, "charge", 3, -1.9F);
    setReal(p.topology, "occupancy", 4, 0.5F);
    setReal(p.topology, "temperature", 4, 23.456F);
    std::string const source = "SOURCE    " + std::string(70, 's');
    EXPECT_EQ(
        written(*p.molecule),
        cards({
            "HEADER    HYDROLASE",
            "TITLE     FIRST LINE",
            "TITLE    2 SECOND",
            "TITLE",
            source.c_str(),
            "REMARK 350   BIOMT1   1",
            "REMARK Exported by velorMol",
            "SEQRES   1 A    1  HOH",
            "SEQRES   1      1  HOH",
            "HELIX    1   1 GLY A    5  CYS A    6  1                                   1",
            "SHEET    1   S 0 VAL     3  LEU     4",
            "SHEET    2   S 0 THR     5  THR     5",
            "HELIX    2  H2 CYS A    6  CYS A    6  1                                   0",
            "HELIX    3  H2 ALA A    9  CYS A    6  1                                  -1",
            "HELIX    4  H2 ALA A    9  CYS A    6  1                                  -1",
            "HELIX    5  H2 ALA A    9  SER A   10  1                                   1",
            "TURN     1   7 SER A  10  CYS A  11",
            "SITE     1 AC1  5 CYS A   6  CYS A  11  LI   301  HOH   302                    |", // a wide name is cut
            "SITE     2 AC1  5 HOH A 201 ",
            "HETATM    1  N   GLY A   5       0.500   0.000 100.000  0.00  0.00           N0+",
            "HETATM    2  CA  GLY A   5       1.500  -1.000 100.000  0.00  0.00           C0+",
            "HETATM    3  C   GLY A   5       2.500  -2.000 100.000  0.00  0.00           C0+",
            "HETATM    4  SG  CYS A   6       3.500  -3.000 100.000  0.00  0.00           S1-",
            "HETATM    5  CA  ALA A   9       4.500  -4.000 100.000  0.50 23.46           C0+",
            "HETATM    6 1HB  ALA A   9       5.500  -5.000 100.000  0.00  0.00           H0+",
            "HETATM    7  CA  SER A  10       6.500  -6.000 100.000  0.00  0.00           C0+",
            "HETATM    8  SG  CYS A  11       7.500  -7.000 100.000  0.00  0.00           S0+",
            "ATOM      9  O   HOH A 201       8.500  -8.000 100.000  0.00  0.00           O0+",
            "TER      10      HOH A 201",
            "HETATM   11  C   VAL     3       9.500  -9.000 100.000  0.00  0.00           C0+",
            "HETATM   12  N   LEU     4      10.500 -10.000 100.000  0.00  0.00           N0+",
            "HETATM   13  C   LEU     4      11.500 -11.000 100.000  0.00  0.00           C0+",
            "HETATM   14  N   THR     5      12.500 -12.000 100.000  0.00  0.00           N0+",
            "ATOM     15  O   HOH     6      13.500 -13.000 100.000  0.00  0.00           O0+",
            "TER      16      HOH     6",
            "HETATM   17 CaA  LIG   301      14.500 -14.000 100.000  0.00  0.00          Ca0+",
            "HETATM   18 ClL1 LIG   301      15.500 -15.000 100.000  0.00  0.00          Cl0+",
            "HETATM   19  O   HOH   302      16.500 -16.000 100.000  0.00  0.00           O0+",
            "HETATM   20  X   UNK     1      17.500 -17.000 100.000  0.00  0.00           X0+",
            "ENDMDL",
            "CONECT    4    8",
            "CONECT    8    4",
            "CONECT   11   12",
            "CONECT   12   11",
            "CONECT   17   18",
            "CONECT   18   17",
            "CONECT   19   20",
            "CONECT   20   19",
            "MASTER        0    0    0    5    2    1    2    0   18    2    8    2",
            "END",
        }));
}

TEST(PDBwriteFile, AtomsInTheOrderOfTheirResiduesAndBonds) {
    PdbSample p;
    for (char const* type : {"C", "SG", "S", "N", "C", "SD", "C"}) p.addAtom(type, 6);
    p.topology->addGroup(p.residuesIx(), new MtIntraLevelRange(0, 4, 6));
    p.topology->addGroup(p.residuesIx(), new MtIntraLevelRange(0, 1, 4)); // ahead, since it is in a chain
    setText(p.topology, p.residuesIx(), "type", 1, "HOH");
    p.addChain("A", 1, 1);
    for (auto const& [a, b] : {std::pair{1, 2}, {2, 3}, {5, 1}, {0, 3}, {6, 6}}) p.addBond(a, b); // 2-3 is implied
    std::string const file = written(*p.molecule);
    EXPECT_EQ(file.substr(file.find("SSBOND")),
              cards({"SSBOND   1 HOH A    1    HOH A    1",
                     "ATOM      1  CSG HOH A   1       1.500  -1.000 100.000  0.00  0.00           C  ",
                     "ATOM      2  CS  HOH A   1       2.500  -2.000 100.000  0.00  0.00           C  ",
                     "ATOM      3  CN  HOH A   1       3.500  -3.000 100.000  0.00  0.00           C  ",
                     "ATOM      4  C   HOH A   1       4.500  -4.000 100.000  0.00  0.00           C  ",
                     "TER       5      HOH A   1",
                     "HETATM    6  CSD         1       5.500  -5.000 100.000  0.00  0.00           C  ",
                     "HETATM    7  C           1       6.500  -6.000 100.000  0.00  0.00           C  ",
                     "HETATM    8  C   UNK     1       0.500   0.000 100.000  0.00  0.00           C  ", "ENDMDL",
                     "CONECT    8    3", "CONECT    1    2    6", "CONECT    2    1", "CONECT    3    8",
                     "CONECT    6    1", "CONECT    7    7    7",
                     "MASTER        0    0    0    0    0    0    0    0    7    1    6    1", "END"}));
}

/// No element is written as hydrogen, no type of residue as UNK, no name of atom or charge as blanks.
TEST(PDBwriteFile, BareAtomsAndRangesOfWhatIsNotThere) {
    PdbSample p;
    p.topology->addGroup(0, new MtAtom);
    p.topology->addGroup(p.residuesIx(), new MtIntraLevelRange(0, 0, 7));
    p.topology->addGroup(p.residuesIx(), nullptr);
    p.addChain("", -5, 1000);
    EXPECT_EQ(writtenRecords(p, "HETATM"),
              cards({"HETATM    1      UNK     1       0.000   0.000   0.000  0.00  0.00           H  "}));
}

TEST(PDBwriteFile, TrajectoryOfTwoSteps) {
    PdbSample p;
    p.addAtom("O", 8);
    p.addResidue("HOH 4 H1:1");
    p.addBond(0, 1);
    p.addChain("W", 0, 0); // the hydrogen: the oxygen is in no residue
    MadeTrajectory trajectory(p.topology, 2, [&](int step, McDArray<McVec3f>& coords) {
        coords = p.molecule->coords;
        if (step == 1) coords.resize(1); // the other atom is written at the origin
        return step == 0;                // a step that cannot be read is written as it is
    });
    std::string const path = scratchPath("steps.pdb");
    PDBwrite pdb = pdbWriter();
    ASSERT_TRUE(pdb.writePDBMolTrajectory(&trajectory, path.c_str(), false));
    EXPECT_EQ(readFile(path),
              cards({"HEADER", "TITLE", "COMPND", "REMARK Exported by velorMol", "SEQRES   1 W    1  HOH", "MODEL 0",
                     "ATOM      1  H1  HOH W   4       1.500  -1.000 100.000  0.00  0.00           H  ",
                     "TER       2      HOH W   4",
                     "HETATM    3  O   UNK     1       0.500   0.000 100.000  0.00  0.00           O  ", "ENDMDL",
                     "MODEL 1", "ATOM      4  H1  HOH W   4       0.000   0.000   0.000  0.00  0.00           H  ",
                     "TER       5      HOH W   4",
                     "HETATM    6  O   UNK     1       0.500   0.000 100.000  0.00  0.00           O  ", "ENDMDL",
                     "CONECT    6    4", "CONECT    4    6",
                     "MASTER        0    0    0    0    0    0    0    0    4    2    2    1", "END"}));
    molInfo const info(p.topology); // the first step is still there to ask
    EXPECT_FALSE(pdb.areResiduesBonded(info, 0, 0));
}

TEST(PDBwriteFile, Failures) {
    std::ostringstream messages;
    PDBwrite pdb("/no/such/residues.qlt", &messages, nullptr);
    PdbSample const p({"HOH 1"});
    MolTrajectoryMem none(p.molecule.get(), 0), one(p.molecule.get(), 1);
    std::string const path = scratchPath("none.pdb");
    std::filesystem::remove(path);
    EXPECT_FALSE(pdb.writePDBMolecule(nullptr, path.c_str(), false));
    EXPECT_FALSE(pdb.writePDBMolTrajectory(nullptr, path.c_str(), false));
    EXPECT_FALSE(pdb.writePDBMolTrajectory(&none, path.c_str(), false));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(pdb.writePDBMolecule(p.molecule.get(), "/no/x.pdb", false));
    EXPECT_FALSE(pdb.writePDBMolTrajectory(&one, "/no/x.pdb", false));
    EXPECT_TRUE(pdb.writePDBMolecule(p.molecule.get(), path.c_str(), false));
    EXPECT_EQ(messages.str(), "Empty molecule!\nEmpty trajectory !\nCould not create file !\nCould not create file !\n"
                              "Could not load residue database. Can't distinguish ATOM from HETATM groups on chain.\n");
}

TEST(PDBwriteFile, ProgressAndInterruption) {
    PdbSample p;
    for (int i = 0; i < 100; ++i) p.addAtom("C", 6);
    for (int i = 0; i < 100; ++i) p.addBond(i, i);
    RecordingProgress whole;
    written(*p.molecule, nullptr, &whole);
    EXPECT_THAT(whole.calls,
                ElementsAre("start ", "info Writing SEQRES records", "info Writing HELIX and SHEET records",
                            "info Writing ATOM records", "info Writing CONECT records", "stop"));
    EXPECT_THAT(whole.fractions,
                ElementsAre(0.0F, 0.4F, 0.7F, 0.7F, FloatEq(0.76F), FloatEq(0.82F), FloatEq(0.88F), FloatEq(0.94F)));

    RecordingProgress stopsTwice(1); // at atom 50, which is counted
    std::string const file = written(*p.molecule, nullptr, &stopsTwice);
    EXPECT_THAT(file, testing::AllOf(HasSubstr("HETATM   49  C"), testing::Not(HasSubstr("HETATM   50")),
                                     HasSubstr("CONECT   49   49   49"),
                                     EndsWith(cards({"MASTER        0    0    0    0    0    0    0    0   50    0  "
                                                     "100    0",
                                                     "END"}))));
    EXPECT_EQ(std::count(stopsTwice.calls.begin(), stopsTwice.calls.end(), "stop"), 2);
    RecordingProgress stopsAtBonds(4);
    EXPECT_THAT(written(*p.molecule, nullptr, &stopsAtBonds), HasSubstr("  100    0   20    0          \nEND"));
}

} // namespace
