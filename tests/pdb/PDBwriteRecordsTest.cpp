#include "PDBwriteSamples.h"

#include <limits>

namespace {

using namespace tarnex::test;

/// The text that `write(PDBwrite&, writer&)` writes.
template <class Write>
std::string recordsOf(Write&& write, std::ostream* messages = nullptr) {
    std::string const path = scratchPath("records.pdb");
    {
        writer out(path.c_str());
        PDBwrite pdb(residueDatabase(), messages, nullptr);
        write(pdb, out);
    }
    return readFile(path);
}

/// Tables as a caller may hand them over: all residues of the ATOM class.
struct Tables {
    explicit Tables(PdbSample& sample) : info(sample.topology) {
        PDBwrite pdb(residueDatabase(), nullptr, nullptr);
        pdb.generateResidueData2(info, sample.topology, residueOrder, numbers, chains, structure);
        for (auto* table : {&atomOrder, &serials, &residues}) table->resize(info.atoms->groups.size);
        pdb.generateAtomData1(info, residueOrder, atomOrder, serials, residues);
        pdb.generateAtomData2(info, inChain);
        het.resize(static_cast<unsigned long>(numbers.size), McBitfield::CLEARED);
    }
    std::string atoms(Molecule const& molecule, bool chargeColumn = false, std::ostream* messages = nullptr) {
        auto const write = [&](PDBwrite& pdb, writer& out) {
            pdb.writeAtomRecords(out, info, molecule.coords.data, inChain, het, atomOrder, residues, serials, numbers,
                                 chains, numAtom, numTer, chargeColumn);
        };
        return recordsOf(write, messages);
    }
    std::string secondaryStructure() {
        return recordsOf([&](PDBwrite& pdb, writer& out) {
            pdb.writeSecStructRecords(out, info, structure, numbers, chains, numHelix, numSheet, numTurn);
        });
    }

    molInfo info;
    McBitfield het, inChain;
    McDArray<int> residueOrder, numbers, chains, atomOrder, serials, residues;
    McDArray<McDArray<PDBwrite::secInfo>> structure;
    int numAtom = 0, numTer = 0, numHelix = 0, numSheet = 0, numTurn = 0;
};

TEST(PDBwriteRecords, HeaderLines) {
    auto const header = [](char const* text) {
        return recordsOf([&](PDBwrite&, writer& out) { writeHeaderRecord(out, "TITLE", text); });
    };
    EXPECT_EQ(header("no line end"), "");
    EXPECT_EQ(header(""), "");
    EXPECT_EQ(header("    A\n    B\r\n"), cards({"TITLE     A", "TITLE     B", "TITLE"}));
    EXPECT_EQ(header((std::string(74, 'x') + "y\n").c_str()), "TITLE " + std::string(74, 'x') + "\n");
}

TEST(PDBwriteRecords, ChainTexts) {
    PdbSample p;
    p.addResidue("ALA", 1);
    auto const textOf = [&](int chain, bool isNone) {
        char text[4];
        EXPECT_EQ(PDBwrite(residueDatabase(), nullptr, nullptr).chainIdConversion(molInfo(p.topology), chain, text),
                  isNone);
        return std::string(text);
    };
    EXPECT_EQ(textOf(12345, false), "123"); // without chains it is the index
    for (char const* name : {"A", "LONG", "NIL", "HET", "HETX", ""}) p.addChain(name, 0, 0);
    EXPECT_EQ(textOf(0, false), "A");
    EXPECT_EQ(textOf(1, false), "LON");
    EXPECT_EQ(textOf(2, false), "");
    EXPECT_EQ(textOf(3, true), "");
    EXPECT_EQ(textOf(4, true), ""); // cut ahead of the comparison
    EXPECT_EQ(textOf(5, false), "");
}

TEST(PDBwriteRecords, SequenceLines) {
    PdbSample p;
    for (int i = 0; i < 13 * 100; ++i) p.addResidue(i == 1 ? "LONG" : "ALA", 1);
    p.addChain("A", 0, 12);
    p.addChain("BC", 13, 26); // two letters leave nothing in one column
    p.addChain("C", 0, 1299);
    Tables tables(p);
    for (unsigned long i = 27; i < 30; ++i) tables.het.set(i);
    int numSeqRes = 0;
    std::string const records =
        recordsOf([&](PDBwrite& pdb, writer& out) { pdb.writeSeqResRecords(out, tables.info, tables.het, numSeqRes); });
    std::string const sevenTypes = " ALA ALA ALA ALA ALA ALA ALA";
    std::string const line = "SEQRES   1 A   13  ALA LO ALA ALA ALA ALA" + sevenTypes;
    EXPECT_EQ(records.substr(0, 80 + 80 + 80),
              cards({(line + "          |").c_str(),
                     ("SEQRES   1    14  ALA ALA ALA ALA ALA ALA" + sevenTypes + "          |").c_str(),
                     ("SEQRES   2    14  ALA" + std::string(58, ' ') + "|").c_str()}));
    EXPECT_EQ(numSeqRes, 1 + 2 + 100);
    EXPECT_NE(records.find("SEQRES  99 C 1297"), std::string::npos);
    std::string const last = "SEQRES  1 C 1297  ALA ALA ALA" + sevenTypes + std::string(22, ' ') + "\n"; // serial 100
    EXPECT_EQ(records.substr(records.size() - last.size()), last);
}

TEST(PDBwriteRecords, StructureLimitsAndMissingEnds) {
    PdbSample p;
    for (int i = 0; i < 6; ++i) p.addResidue("ALA", i < 3 ? 3 * i : 9998 + i);
    p.addChain("A", 0, 5);
    p.addElement("helix", "LONG", {4, 5});
    p.addElement("turn", "T", {0, 1});
    p.addElementOf("sheet", "S", p.strandsIx(), {p.addStrand(0, 1), p.addStrand(3, 3)});
    p.addElement("unknown", "U", {0});
    Tables tables(p);
    tables.numHelix = 999;
    EXPECT_EQ(tables.secondaryStructure(),
              cards({"HELIX  10 LO ALA A 100  ALA A 100  1                                   1    |",
                     "TURN     1   T ALA A   1  ALA A   1", "TURN     2   T ALA A   1  ALA A   1",
                     "TURN     3   T ALA A   1  ALA A   1", "SHEET    1   S 0 ALA A   1  ALA A   1",
                     "SHEET    2   S 0 ALA A   3  ALA A   1", "SHEET    3   S 0 ALA A   3  ALA A   3",
                     "SHEET    4   S 0 ALA A100  ALA A100                                           |",
                     "SHEET    5   S 0 UNK     0  UNK        0                                           |",
                     "SHEET    6   S 0 UNK     0  UNK        0                                           |"}));
    EXPECT_EQ(tables.numSheet, 6);

    for (auto& element : tables.structure) {
        for (auto& part : element) part.end[0] = -1;
    }
    tables.numHelix = tables.numTurn = 0;
    EXPECT_EQ(tables.secondaryStructure().substr(0, 161),
              cards({"HELIX    1 LO UNK      0  UNK      0  1                                  -5    |",
                     "TURN     1   T UNK     0  UNK 0"}));
}

TEST(PDBwriteRecords, SitesPassOverOtherMembers) {
    PdbSample p;
    p.addResidue("ALA", 12345);
    p.addResidue("G", 7);
    p.addChain("A", 1, 1);
    p.addSite("S1", {1, 99, -1, 0});
    auto* site = dynamic_cast<MtDynamicGroup*>(p.topology->getLevel(p.topology->getLevelIx("sites"))->groups[0]);
    site->members.append(MtGroupRef(0, 0));
    Tables tables(p);
    int numSite = 0;
    EXPECT_EQ(recordsOf([&](PDBwrite& pdb, writer& out) {
                  pdb.writeSiteRecords(out, tables.info, tables.numbers, tables.chains, numSite);
              }),
              cards({"SITE     1  S1  2   G A   7  ALA  123                                          |"}));
    EXPECT_EQ(numSite, 1);
}

TEST(PDBwriteRecords, SulfurBonds) {
    PdbSample p;
    for (int i = 0; i < 3; ++i) p.addAtom("SG", 16);
    p.topology->addGroup(p.residuesIx(), new MtIntraLevelRange(0, 0, 0));
    p.topology->addGroup(p.residuesIx(), new MtIntraLevelRange(0, 1, 1));
    p.text(p.residuesIx(), "type", 0, "CYSX");
    p.text(p.residuesIx(), "type", 1, "CYS");
    p.addChain("A", 0, 0);
    p.addBond(0, 1);
    p.addBond(2, 1);
    Tables tables(p);
    McDArray<int> bonds(2);
    bonds[0] = 0;
    bonds[1] = 1;
    int numSsBond = 0;
    tables.numbers[0] = 77;
    EXPECT_EQ(recordsOf([&](PDBwrite& pdb, writer& out) {
                  pdb.writeSSBondRecords(out, tables.info, bonds, tables.residues, tables.chains, tables.numbers,
                                         numSsBond);
              }),
              cards({"SSBOND   1 CYS A   77    CYS      1", "SSBOND   2 UNK     77    CYS      1"}));
    EXPECT_EQ(numSsBond, 2);
}

TEST(PDBwriteRecords, ConectAndMasterCutTheirNumbers) {
    McDArray<int> serials(16);
    for (int i = 0; i < 16; ++i) serials[i] = i + 1;
    serials[1] = 100000;
    McDArray<McDArray<int>> bonded(16);
    bonded[0].append(1);
    for (int i = 0; i < 14; ++i) bonded[15].append(i == 1 ? 2 : i);
    int numConect = 0;
    EXPECT_EQ(recordsOf([&](PDBwrite& pdb, writer& out) {
                  pdb.writeConectRecords(out, serials, bonded, numConect);
                  pdb.writeMasterRecord(out, 1, 2, 3, 4, 100000, 6, numConect, 8);
              }),
              cards({"CONECT    11000                                                                |",
                     "CONECT   16    1    3    3    4    5    6    7    8    9   10   11   12   13   14|",
                     "MASTER        0    0    0    1    2    3    4    01000    6    2    8          |", "END"}));
}

TEST(PDBwriteRecords, AtomNames) {
    struct {
        char const* type;
        int atomicNumber;
        char const* name;
    } const cases[] = {
        {"CA", 6, " CA "},      {"CA", 20, "CaA "},   {"Ca", 20, "Ca  "}, {"1HG2", 1, "1HG2"},
        {"9Clxyz", 17, "9Clx"}, {"12", 6, "1C2 "},    {"1", 6, "1C  "},   {"", 6, " C  "},
        {"C", 6, " C  "},       {"CCCCC", 6, " CCC"}, {"OXT", 7, " NOX"}, // another element than that of the type
    };
    for (auto const& c : cases) {
        PdbSample p;
        p.addAtom(c.type, c.atomicNumber);
        EXPECT_EQ(Tables(p).atoms(*p.molecule).substr(12, 4), c.name);
    }
}

TEST(PDBwriteRecords, Charges) {
    constexpr char const* told = "Error: Charge of atom 0 is outside of [-9,+9] interval which can be written into a "
                                 "PDB file.";
    for (auto const& [charge, text] : {std::pair{0.0F, "0+"},
                                       {-0.5F, "0+"},
                                       {9.9F, "9+"},
                                       {-9.0F, "9-"},
                                       {12.0F, "2+"},
                                       {-12.0F, "2-"},
                                       {-20.0F, "0+"},
                                       {-2147483648.0F, "8-"},
                                       {1e20F, "0+"},
                                       {-3e9F, "0+"},
                                       {std::numeric_limits<float>::quiet_NaN(), "0+"}}) {
        PdbSample p;
        p.addAtom("C", 6);
        setReal(p.topology, "charge", 0, charge);
        std::ostringstream messages;
        EXPECT_EQ(Tables(p).atoms(*p.molecule, false, &messages).substr(78), text + std::string("\n")) << charge;
        EXPECT_EQ(messages.str(), charge > -10.0F && charge < 10.0F ? "" : told) << charge;
    }
    PdbSample p;
    p.addAtom("C", 6);
    setReal(p.topology, "charge", 0, -0.1234F);
    EXPECT_EQ(Tables(p).atoms(*p.molecule, true),
              cards({"HETATM    1  C   UNK     1       0.500   0.000 100.000  0.00  0.00    -0.123"}));
}

TEST(PDBwriteRecords, TerBehindChains) {
    PdbSample p;
    for (char const* type : {"LONG", "G", "ALA", "ALA", "ALA", "ALA"}) p.addResidue(type, 1);
    p.addChain("A", 0, 1);
    p.addChain("HET", 2, 3); // is no chain, so that each of its atoms ends one
    p.addChain("BCDE", 4, 4);
    p.addChain("B", 5, 5);
    p.molecule->coords[5] = McVec3f(1234567.0F, -99999.5F, 0.0005F);
    setReal(p.topology, "temperature", 5, 12345.0F);
    Tables tables(p);
    tables.het.set(5);
    tables.numAtom = 99998;
    EXPECT_EQ(tables.atoms(*p.molecule),
              cards({"ATOM  99999  C   LON A   1       0.500   0.000 100.000  0.00  0.00           C  ",
                     "ATOM  100000  C   G   A   2       1.500  -1.000 100.000  0.00  0.00           C  |",
                     "TER   100001        G A   2                                                      |",
                     "ATOM  100002  C   ALA     1       2.500  -2.000 100.000  0.00  0.00           C  |",
                     "TER   100003      ALA     1                                                      |",
                     "ATOM  100004  C   ALA     2       3.500  -3.000 100.000  0.00  0.00           C  |",
                     "TER   100005      ALA     2                                                      |",
                     "ATOM  100006  C   ALA BCD   1       4.500  -4.000 100.000  0.00  0.00           C  |",
                     "TER   100007      ALA BCD   1                                                      |",
                     "HETATM100008  C   ALA B   1    1234567.000-99999.500   0.001  0.0012345.00           C  |"}));
    EXPECT_EQ(tables.serials[5], 100008);
}

} // namespace
