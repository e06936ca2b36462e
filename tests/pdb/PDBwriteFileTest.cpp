#include "PDBwriteSamples.h"

namespace {

using namespace tarnex::test;

/// Chain A with water, a chain without name, and a ligand, a water and an atom on their own.
PdbSample makeProtein() {
    PdbSample p;
    p.addResidues({"GLY 5 N:7 CA:6 C:6", "CYS 6 SG:16", "ALA 9 CA:6 1HB:1", "SER 10 CA:6", "CYS 10 SG:16",
                   "HOH 201 O:8", "VAL 3 C:6", "LEU 4 N:7 C:6", "THR -7 N:7", "HOH 1 O:8", "LIGX 301 CA:20 CL1:17",
                   "HOH 302 O:8"});
    p.addAtom("", 0);
    p.addChain("A", 0, 5);
    p.addChain("NIL", 6, 9);
    return p;
}

void addStructure(PdbSample& p) {
    p.addElement("helix", "1", {0, 1});
    p.addElement("sheet", "S", {6, 7, 8});
    p.addElement("helix", "H2", {1, 2, 3});
    p.addElement("turn", "7", {3, 4});
    p.addSite("AC1", {1, 4, 10, 11, 5});
    p.addBond(3, 7);  // disulfide
    p.addBond(9, 10); // peptide of VAL and LEU; none of LEU and THR
    p.addBond(14, 15);
    p.addBond(16, 17);
}

void addData(PdbSample& p) {
    p.topology->setData(new MolDataString("PDB_HEADER", "    HYDROLASE\n"));
    p.topology->setData(new MolDataString("PDB_TITLE", "    FIRST LINE\n   2 SECOND\r\nnot written"));
    p.topology->setData(new MolDataString("PDB_SOURCE", ("    " + std::string(80, 's') + "\n").c_str()));
    p.topology->setData(new MolDataInt("PDB_AUTHOR", 7));
    p.topology->setData(new MolDataString("PDB_JNRL", "    read, not written\n"));
    p.topology->setData(new MolDataString("PDB_REMARK", " 350   BIOMT1   1\n"));
    setReal(p.topology, "charge", 3, -1.9F);
    setReal(p.topology, "occupancy", 4, 0.5F);
    setReal(p.topology, "temperature", 4, 23.456F);
}

TEST(PDBwriteFile, Protein) {
    PdbSample p = makeProtein();
    addStructure(p);
    addData(p);
    std::string const source = "SOURCE    " + std::string(70, 's');
    EXPECT_EQ(
        written(*p.molecule),
        cards({
            "HEADER    HYDROLASE",
            "TITLE     FIRST LINE",
            "TITLE    2 SECOND",
            "TITLE",
            "COMPND",
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

TEST(PDBwriteFile, NoLevels) {
    PdbSample p;
    p.addAtom("C1", 6);
    p.addAtom("LONGNAME", 8);
    p.addBond(0, 1);
    p.molecule->coords.resize(1);
    EXPECT_EQ(written(*p.molecule),
              cards({"HEADER", "TITLE", "COMPND", "REMARK Exported by velorMol",
                     "HETATM    1  C1  UNK     1       0.500   0.000 100.000  0.00  0.00           C  ",
                     "HETATM    2  OLO UNK     1       0.000   0.000   0.000  0.00  0.00           O  ", "ENDMDL",
                     "CONECT    1    2", "CONECT    2    1",
                     "MASTER        0    0    0    0    0    0    0    0    2    0    2    0", "END"}));

    Molecule empty(new MolTopology, true);
    EXPECT_EQ(written(empty), cards({"HEADER", "TITLE", "COMPND", "REMARK Exported by velorMol", "ENDMDL",
                                     "MASTER        0    0    0    0    0    0    0    0    0    0    0    0", "END"}));
}

TEST(PDBwriteFile, BareAtomsAndResidues) {
    auto* topology = new MolTopology;
    Molecule molecule(topology, true);
    topology->addGroup(0, new MtAtom);
    int const residues = topology->addLevel("residues", 0, 12, -1);
    topology->addGroup(residues, new MtIntraLevelRange(0, 0, 7));
    topology->addGroup(residues, nullptr);
    int const chains = topology->addLevel("chains", residues, 12, -1);
    topology->addGroup(chains, new MtIntraLevelRange(residues, -5, 1000));
    std::string const file = written(molecule);
    // No element is written as hydrogen, no type of residue as UNK, no name of atom or charge as blanks.
    EXPECT_NE(file.find("HETATM    1      UNK     1       0.000   0.000   0.000  0.00  0.00           H  \n"),
              std::string::npos)
        << file;
}

TEST(PDBwriteFile, TrajectoryOfTwoSteps) {
    PdbSample p;
    p.addAtom("O", 8);
    p.addAtom("H1", 1);
    p.addBond(0, 1);
    p.addResidue("HOH", 4, 1);
    p.addChain("W", 0, 0); // the hydrogen: the oxygen is in no residue
    MolTrajectoryMem trajectory(p.molecule.get(), 2);
    std::string const path = scratchPath("steps.pdb");
    PDBwrite pdb(residueDatabase(), nullptr, nullptr);
    ASSERT_TRUE(pdb.writePDBMolTrajectory(&trajectory, path.c_str(), false));
    EXPECT_EQ(readFile(path),
              cards({"HEADER", "TITLE", "COMPND", "REMARK Exported by velorMol", "SEQRES   1 W    1  HOH", "MODEL 0",
                     "ATOM      1  H1  HOH W   4       1.500  -1.000 100.000  0.00  0.00           H  ",
                     "TER       2      HOH W   4",
                     "HETATM    3  O   UNK     1       0.500   0.000 100.000  0.00  0.00           O  ", "ENDMDL",
                     "MODEL 1", "ATOM      4  H1  HOH W   4       1.500  -1.000 100.000  0.00  0.00           H  ",
                     "TER       5      HOH W   4",
                     "HETATM    6  O   UNK     1       0.500   0.000 100.000  0.00  0.00           O  ", "ENDMDL",
                     "CONECT    6    4", "CONECT    4    6",
                     "MASTER        0    0    0    0    0    0    0    0    4    2    2    1", "END"}));
    molInfo const info(p.topology); // the first step is still there to ask
    EXPECT_FALSE(pdb.areResiduesBonded(info, 0, 0));
}

TEST(PDBwriteFile, StepThatCannotBeRead) {
    PdbSample p;
    p.addAtom("C", 6);
    MadeTrajectory trajectory(p.topology, 1, [](int, McDArray<McVec3f>& coords) {
        coords.clear();
        return false;
    });
    std::string const path = scratchPath("unread.pdb");
    ASSERT_TRUE(PDBwrite(residueDatabase(), nullptr, nullptr).writePDBMolTrajectory(&trajectory, path.c_str(), false));
    EXPECT_NE(readFile(path).find("UNK     1       0.000   0.000   0.000  0.00"), std::string::npos);
}

TEST(PDBwriteFile, Failures) {
    std::ostringstream messages;
    PDBwrite pdb("/no/such/residues.qlt", &messages, nullptr);
    PdbSample p;
    p.addResidue("HOH", 1);
    MolTrajectoryMem none(p.molecule.get(), 0);
    MolTrajectoryMem one(p.molecule.get(), 1);
    std::string const path = scratchPath("none.pdb");
    std::filesystem::remove(path);
    EXPECT_FALSE(pdb.writePDBMolecule(nullptr, path.c_str(), false));
    EXPECT_FALSE(pdb.writePDBMolTrajectory(nullptr, path.c_str(), false));
    EXPECT_FALSE(pdb.writePDBMolTrajectory(&none, path.c_str(), false));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_FALSE(pdb.writePDBMolecule(p.molecule.get(), "/no/such/folder/x.pdb", false));
    EXPECT_FALSE(pdb.writePDBMolTrajectory(&one, "/no/such/folder/x.pdb", false));
    EXPECT_EQ(messages.str(),
              "Empty molecule!\nEmpty trajectory !\nCould not create file !\nCould not create file !\n");

    messages.str("");
    EXPECT_TRUE(pdb.writePDBMolecule(p.molecule.get(), path.c_str(), false));
    EXPECT_EQ(messages.str(), "Could not load residue database. Can't distinguish ATOM from HETATM groups on chain.\n");
}

TEST(PDBwriteFile, ProgressAndInterruption) {
    PdbSample p;
    for (int i = 0; i < 100; ++i) p.addAtom("C", 6);
    for (int i = 0; i < 100; ++i) p.addBond(i, i);
    std::string const path = scratchPath("stopped.pdb");
    RecordingProgress whole;
    EXPECT_TRUE(PDBwrite(residueDatabase(), nullptr, &whole).writePDBMolecule(p.molecule.get(), path.c_str(), false));
    EXPECT_EQ(whole.calls,
              (std::vector<std::string>{"start ", "info Writing SEQRES records", "info Writing HELIX and SHEET records",
                                        "info Writing ATOM records", "info Writing CONECT records", "stop"}));
    auto const conectAt = [](double part) { return static_cast<float>(part * (1.0 - 0.7) + 0.7); };
    EXPECT_EQ(whole.fractions, (std::vector<float>{0.0F, 0.4F, 0.7F, conectAt(0.0), conectAt(0.2F), conectAt(0.4F),
                                                   conectAt(0.6F), conectAt(0.8F)}));

    RecordingProgress stopsTwice(1); // at atom 50, which is counted
    EXPECT_TRUE(
        PDBwrite(residueDatabase(), nullptr, &stopsTwice).writePDBMolecule(p.molecule.get(), path.c_str(), false));
    std::string const file = readFile(path);
    EXPECT_NE(file.find("HETATM   49  C"), std::string::npos);
    EXPECT_EQ(file.find("HETATM   50"), std::string::npos);
    EXPECT_NE(file.find("CONECT   49   49   49"), std::string::npos);
    EXPECT_NE(file.find("    0   50    0  100    0          \nEND"), std::string::npos);
    EXPECT_EQ(std::count(stopsTwice.calls.begin(), stopsTwice.calls.end(), "stop"), 2);

    RecordingProgress stopsAtBonds(4);
    EXPECT_TRUE(
        PDBwrite(residueDatabase(), nullptr, &stopsAtBonds).writePDBMolecule(p.molecule.get(), path.c_str(), false));
    EXPECT_NE(readFile(path).find("    0  100    0   20    0          \nEND"), std::string::npos);
}

} // namespace
