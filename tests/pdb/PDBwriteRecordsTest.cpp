#include "PDBwriteSamples.h"

#include <cmath>

namespace {

using namespace tarnex::test;

TEST(PDBwriteRecords, ChainTexts) {
    PdbSample p({"ALA 1"});
    char text[4];
    EXPECT_FALSE(pdbWriter().chainIdConversion(molInfo(p.topology), 12345, text));
    EXPECT_STREQ(text, "123"); // without chains it is the index
    p.addChain("HETX", 0, 0);
    EXPECT_TRUE(pdbWriter().chainIdConversion(molInfo(p.topology), 0, text));
    EXPECT_STREQ(text, ""); // cut ahead of the comparison
}

TEST(PDBwriteRecords, SequenceLines) {
    PdbSample p({"HOH 1", "+HOH 1"});
    for (int i = 2; i < 13 * 100; ++i) p.addResidue(i < 27 || i > 29 ? "HOH 1" : "ALA 1");
    p.addChain("A", 0, 12);
    p.addChain("BC", 13, 26); // two letters leave nothing in one column
    p.addChain("C", 0, 1299);
    std::string const records = writtenRecords(p, "SEQRES");
    std::string const seven = " HOH HOH HOH HOH HOH HOH HOH          |";
    EXPECT_EQ(records.substr(0, 80 + 80 + 80), cards({("SEQRES   1 A   13  HOH +H HOH HOH HOH HOH" + seven).c_str(),
                                                      ("SEQRES   1    14  HOH HOH HOH HOH HOH HOH" + seven).c_str(),
                                                      ("SEQRES   2    14  HOH" + std::string(58, ' ') + "|").c_str()}));
    EXPECT_EQ(std::count(records.begin(), records.end(), '\n'), 1 + 2 + 100);
    EXPECT_THAT(records, HasSubstr("SEQRES  99 C 1297"));
    EXPECT_THAT(records, EndsWith("SEQRES  1 C 1297  HOH HOH HOH HOH HOH HOH HOH HOH HOH HOH                      \n"));
}

TEST(PDBwriteRecords, StructureLimits) {
    PdbSample p({"ALA 0", "ALA 3", "ALA 6", "ALA 10001", "ALA 10002", "ALA 10003"});
    p.addChain("A", 0, 5);
    for (int i = 1; i < 1000; ++i) p.addElement("helix", "H", {0});
    p.addElement("helix", "LONG", {4, 5});
    p.addElement("turn", "T", {0, 1});
    p.addElement("sheet", "S", {p.addStrand(0, 1), p.addStrand(3, 3)}, p.strandsIx());
    p.addElement("unknown", "U", {0});
    EXPECT_THAT(writtenRecords(p, "HELIX"),
                EndsWith(cards({"HELIX  10 LO ALA A 100  ALA A 100  1                                   1    |"})));
    // Every segment of a turn has the ends of the first; every strand has as many segments as the first.
    EXPECT_EQ(writtenRecords(p, "TURN"),
              cards({"TURN     1   T ALA A   1  ALA A   1", "TURN     2   T ALA A   1  ALA A   1",
                     "TURN     3   T ALA A   1  ALA A   1"}));
    EXPECT_EQ(writtenRecords(p, "SHEET"),
              cards({"SHEET    1   S 0 ALA A   1  ALA A   1", "SHEET    2   S 0 ALA A   3  ALA A   1",
                     "SHEET    3   S 0 ALA A   3  ALA A   3",
                     "SHEET    4   S 0 ALA A100  ALA A100                                           |",
                     "SHEET    5   S 0 UNK     0  UNK        0                                           |",
                     "SHEET    6   S 0 UNK     0  UNK        0                                           |"}));
    EXPECT_EQ(writtenRecords(p, "MASTER"),
              cards({"MASTER        0    0    0 1000    6    3    0    0    6    0    0    0          |"}));
}

/// Tables that the writer does not derive itself: segments without end, sulfur bonds that end in no residue.
TEST(PDBwriteRecords, TablesOfAHost) {
    PdbSample p({"CYSX 1 SG:16", "CYS 1 SG:16"});
    p.addAtom("SG", 16);
    p.addChain("A", 0, 0);
    p.addElement("helix", "LO", {0});
    p.addElement("turn", "T", {0});
    p.addBond(0, 1);
    p.addBond(2, 1);
    molInfo const info(p.topology);
    auto const table = [](std::initializer_list<int> values) {
        McDArray<int> result;
        for (int const value : values) result.append(value);
        return result;
    };
    McDArray<int> const numbers = table({77, 1}), chains = table({0, -1}), residues = table({0, 1, -1});
    McDArray<McDArray<PDBwrite::secInfo>> structure(2);
    for (auto& element : structure) element.append({{}, table({4}), table({-1}), {}});
    int numHelix = 0, numSheet = 0, numTurn = 0, numSsBond = 0;
    std::string const path = scratchPath("records.pdb");
    {
        writer out(path.c_str());
        pdbWriter().writeSecStructRecords(out, info, structure, numbers, chains, numHelix, numSheet, numTurn);
        pdbWriter().writeSSBondRecords(out, info, table({0, 1}), residues, chains, numbers, numSsBond);
    }
    EXPECT_EQ(readFile(path), cards({"HELIX    1  LO UNK      0  UNK      0  1                                  -5",
                                     "TURN     1   T UNK     0  UNK 0", "SSBOND   1 CYS A   77    CYS      1",
                                     "SSBOND   2 UNK     77    CYS      1"}));
    EXPECT_EQ(numSsBond, 2);
}

TEST(PDBwriteRecords, SitesPassOverOtherMembers) {
    PdbSample p({"ALA 12345", "G 7"});
    p.addChain("A", 1, 1);
    p.addSite("S1", {1, 99, -1, 0});
    MtGroup* site = p.topology->getLevel(p.topology->getLevelIx("sites"))->groups[0];
    dynamic_cast<MtDynamicGroup&>(*site).members.append(MtGroupRef(0, 0));
    EXPECT_EQ(writtenRecords(p, "SITE"),
              cards({"SITE     1  S1  2   G A   7  ALA  123                                          |"}));
}

TEST(PDBwriteRecords, AtomNames) {
    std::pair<char const*, int> const atoms[] = {{"CA", 6}, {"CA", 20}, {"Ca", 20},   {"1HG2", 1}, {"9Clxyz", 17},
                                                 {"12", 6}, {"1", 6},   {"CCCCC", 6}, {"", 6},     {"OXT", 7}};
    PdbSample p;
    for (auto const& [type, atomicNumber] : atoms) p.addAtom(type, atomicNumber);
    std::string const records = writtenRecords(p, "HETATM");
    EXPECT_EQ(joined(10, "|", [&](int i) { return records.substr(static_cast<std::size_t>(81 * i + 12), 4); }),
              " CA |CaA |Ca  |1HG2|9Clx|1C2 |1C  | CCC| C  | NOX"); // the last is of another element than its type
}

TEST(PDBwriteRecords, Charges) {
    double const charges[] = {0.0, -0.5, 9.9, -9.0, -0.1234, 12.0, -12.0, -20.0, -2147483648.0, 1e20, -3e9, NAN};
    PdbSample p;
    for (int i = 0; i < 12; ++i) {
        p.addAtom("C", 6);
        setReal(p.topology, "charge", i, static_cast<float>(charges[i]));
    }
    auto const toldOf = [](int i) {
        return "Error: Charge of atom " + std::to_string(i + 5) +
               " is outside of [-9,+9] interval which can be written into a PDB file.";
    };
    std::ostringstream messages;
    std::string const file = written(*p.molecule, &messages);
    auto const chargeOf = [&](int i) {
        return file.substr(file.find("HETATM") + static_cast<std::size_t>(81 * i + 78), 3);
    };
    EXPECT_EQ(joined(12, "", chargeOf), "0+\n0+\n9+\n9-\n0+\n2+\n2-\n0+\n8-\n0+\n0+\n0+\n");
    EXPECT_EQ(messages.str(), joined(7, "", toldOf));
    EXPECT_THAT(written(*p.molecule, nullptr, nullptr, true),
                HasSubstr(cards({"HETATM    5  C   UNK     1       4.500  -4.000 100.000  0.00  0.00    -0.123"})));
}

TEST(PDBwriteRecords, NumbersBeyondTheirColumns) {
    constexpr int many = 99998;
    PdbSample p;
    for (int i = 0; i < many; ++i) p.addAtom("C", 6);
    p.addResidue("HOH", 1, many);
    for (char const* residue : {"+HOH 1", "+HOH 1", "HOH 1", "HOH 1", "HOH 1", "ALA 1"}) p.addResidue(residue);
    for (int i = many; i < many + 6; ++i) p.molecule->coords[i] = McVec3f(1.0F, 2.0F, 3.0F);
    p.addChain("A", 0, 2);
    p.addChain("HET", 3, 4); // is no chain, so that each of its atoms ends one
    p.addChain("BCDE", 5, 5);
    p.addChain("B", 6, 6);
    p.molecule->coords[many + 5] = McVec3f(1234567.0F, -99999.5F, 0.0005F);
    setReal(p.topology, "temperature", many + 5, 12345.0F);
    for (int i = 0; i < 14; ++i) p.addBond(many + 5, i == 1 ? many + 3 : i);
    std::string const file = written(*p.molecule), end = file.substr(file.find("ATOM  99999"));
    EXPECT_THAT(end,
                StartsWith(cards(
                    {"ATOM  99999  C   +HO A   2       1.000   2.000   3.000  0.00  0.00           C  ",
                     "ATOM  100000  C   +HO A   3       1.000   2.000   3.000  0.00  0.00           C  |",
                     "TER   100001      +HOH A   3                                                      |",
                     "ATOM  100002  C   HOH     1       1.000   2.000   3.000  0.00  0.00           C  |",
                     "TER   100003      HOH     1                                                      |",
                     "ATOM  100004  C   HOH     2       1.000   2.000   3.000  0.00  0.00           C  |",
                     "TER   100005      HOH     2                                                      |",
                     "ATOM  100006  C   HOH BCD   1       1.000   2.000   3.000  0.00  0.00           C  |",
                     "TER   100007      HOH BCD   1                                                      |",
                     "HETATM100008  C   ALA B   1    1234567.000-99999.500   0.001  0.0012345.00           C  |",
                     "ENDMDL", "CONECT    11000                                                                |"})));
    EXPECT_THAT(end, EndsWith(cards({"CONECT1000    11000    3    4    5    6    7    8    9   10   11   12   13   14|",
                                     "MASTER        0    0    0    0    0    0    0    01000    4   15    3          |",
                                     "END"})));
}

} // namespace
