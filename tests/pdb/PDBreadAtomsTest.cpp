#include "PDBreadSamples.h"

namespace {

using namespace tarnex::test;

TEST(PDBreadAtoms, FieldsGoToTheirAttributes) {
    auto const trajectory = readPDB(atom({.serial = 123,
                                          .name = "1HG2",
                                          .type = "VAL",
                                          .number = -7,
                                          .insertion = "C",
                                          .element = " H",
                                          .charge = "2+",
                                          .x = -999.125}) +
                                    atom({.record = "HETATM",
                                          .serial = 99999,
                                          .name = " H 1",
                                          .type = " U",
                                          .chain = " ",
                                          .number = 301,
                                          .element = "FE",
                                          .charge = "1-",
                                          .x = 10,
                                          .occupancy = 1,
                                          .temperature = -5.5}) +
                                    atom({.charge = "x+"}) + "TER\n" + atom({.charge = "+2"}));
    ASSERT_TRUE(trajectory);
    // Behind TER the new chain joins the residue at hand, has none of its own, and overlaps with the first.
    EXPECT_EQ(describe(trajectory->getTopology()),
              ";\natoms(-1) flags 3: 4 name=A123|99999|A1|A1 type=1HG2|H1|C|C atomic_number=1|26|6|6 "
              "radius=1.2|2.44|1.7|1.7 charge=2|-1|0|0 temperature=12.25|-5.5|12.25|12.25 occupancy=0.5|1|0.5|0.5\n"
              "bonds(0) flags 2:  type=\n"
              "residues(0) flags 19: 0-0|1-1|2-3 name=A-7C|HET301|A1 type=VAL|U|ALA pdb_index=-7|301|1\n"
              "chains(2) flags 3: 0-0|2-2|0-0 name=A|A|A");
    EXPECT_EQ(placesOf(trajectory, 0), "-999.125,-1.5,0.25|10,-1.5,0.25|10,-1.5,0.25|10,-1.5,0.25");
}

TEST(PDBreadAtoms, Elements) {
    // The name, the element columns, and what is made of them.
    std::istringstream cases(" C  |FE|26\nFE  |  |26\n X  | A|6\n CA |  |6\nCA  |  |20\n1HB2|  |1\nHG  |  |80\n"
                             "CS  |  |16\nAU  |  |79\nPB  |  |5\nX   |CL|17\n C  |QN|7\n C  |c |6\n C  |1 |6\n"
                             "12O1|  |8\n99  |  |0\n  S |  |16\nQ N |  |7\n A  |  |6\n C  |QQ|0\n  QN|QQ|0\n"
                             "XU  |  |92\n    |  |0\n");
    for (std::string line; std::getline(cases, line);) {
        std::string const name = line.substr(0, 4), element = line.substr(5, 2);
        auto const trajectory = readPDB(atom({.name = name.c_str(), .element = element.c_str()}));
        EXPECT_EQ(valuesOf(trajectory->getTopology(), 0, "atomic_number"), line.substr(8)) << line;
    }
}

TEST(PDBreadAtoms, IdConversions) {
    PDBread const pdb(nullptr, nullptr);
    char text[32], chain[4] = "";
    pdb.resIDConversion("", -2147483647 - 1, "B", text, true);
    EXPECT_STREQ(text, "HET-2147483648B");
    EXPECT_STREQ(pdb.chainIDConversion(chain, true), "");
    EXPECT_STREQ(pdb.chainIDConversion(chain, false), "NIL");
    EXPECT_STREQ(chain, "NIL");
}

} // namespace
