#include "PDBreadSamples.h"

#include <utility>

namespace {

using namespace tarnex::test;

TEST(PDBreadAtoms, FieldsGoToTheirAttributes) {
    AtomText const hydrogen{.serial = 123,
                            .name = "1HG2",
                            .type = "VAL",
                            .number = -7,
                            .insertion = "C",
                            .element = " H",
                            .charge = "2+",
                            .x = -999.125};
    AtomText const iron{.record = "HETATM",
                        .serial = 99999,
                        .name = " H 1",
                        .type = " U",
                        .chain = " ",
                        .number = 301,
                        .element = "FE",
                        .charge = "1-",
                        .x = 10,
                        .occupancy = 1,
                        .temperature = -5.5};
    auto const trajectory = readPDB(hydrogen + iron + AtomText{});
    ASSERT_TRUE(trajectory);
    EXPECT_EQ(describe(trajectory->getTopology()),
              ";\natoms(-1) flags 3: 3 name=A123|99999|A1 type=1HG2|H1|C atomic_number=1|26|6 radius=1.2|2.44|1.7 "
              "charge=2|-1|0 temperature=12.25|-5.5|12.25 occupancy=0.5|1|0.5\nbonds(0) flags 2:  type=\n"
              "residues(0) flags 19: 0-0|1-1|2-2 name=A-7C|HET301|A1 type=VAL|U|ALA pdb_index=-7|301|1\n"
              "chains(2) flags 19: 0-0|2-2 name=A|A");
    EXPECT_EQ(placesOf(trajectory, 0), "-999.125,-1.5,0.25|10,-1.5,0.25|10,-1.5,0.25");
}

TEST(PDBreadAtoms, Chains) {
    AtomText const a{.chain = "A"}, a2{.chain = "A", .number = 2}, b{.chain = "B"}, none{.chain = " "};
    AtomText const hetA{.record = "HETATM", .chain = "A"}, hetNone{.record = "HETATM", .chain = " "};
    std::string const ter = "TER\n";
    std::pair<std::string, char const*> const cases[] = {
        {none, "NIL 0-0; "},
        {hetNone, ""},
        {a + b + a, "A 0-0; B 1-1; A 2-2; "},
        {a + ter + hetA + a2, "A 0-1; A 2-2; "}, // the HETATM leaves the TER to the next ATOM
        {a + ter + a, "A 0-0; A 0-0; "},         // the new chain joins the residue at hand and has none of its own
    };
    for (auto const& [text, chains] : cases) {
        EXPECT_EQ(namedGroups(readPDB(text)->getTopology(), "chains"), chains) << text;
    }
    EXPECT_FALSE(levelOf(readPDB(a + ter + a)->getTopology(), "chains")->hasFlag(MtGroupingLevel::segmentation));
}

TEST(PDBreadAtoms, Elements) {
    // The name, the element columns, and what is made of them.
    std::istringstream cases(" C  |FE|26\nFE  |  |26\n X  | A|6\n CA |  |6\nCA  |  |20\n1HB2|  |1\nHG  |  |80\n"
                             "CS  |  |16\nAU  |  |79\nPB  |  |5\nX   |CL|17\n C  |QN|7\n C  |c |6\n C  |1 |6\n"
                             "12O1|  |8\n99  |  |0\n  S |  |16\nQ N |  |7\n A  |  |6\n C  |QQ|0\n  QN|QQ|0\n"
                             "XU  |  |92\n    |  |0\n");
    for (std::string line; std::getline(cases, line);) {
        std::string const name = line.substr(0, 4), element = line.substr(5, 2);
        auto const trajectory = readPDB(AtomText{.name = name.c_str(), .element = element.c_str()});
        EXPECT_EQ(valuesOf(trajectory->getTopology(), 0, "atomic_number"), line.substr(8)) << line;
    }
}

TEST(PDBreadAtoms, Charges) {
    for (auto const& [text, charge] : {std::pair{"2+", "2"}, {"9-", "-9"}, {"+2", "0"}, {"2 ", "0"}, {"x+", "0"}}) {
        EXPECT_EQ(valuesOf(readPDB(AtomText{.charge = text})->getTopology(), 0, "charge"), charge) << text;
    }
}

TEST(PDBreadAtoms, IdConversions) {
    PDBread const pdb(nullptr, nullptr);
    char text[32];
    auto const residueId = [&](char const* chain, int number, char const* insertion, bool isHet) {
        pdb.resIDConversion(chain, number, insertion, text, isHet);
        return std::string(text);
    };
    EXPECT_EQ(residueId("A", 12, "B", false), "A12B");
    EXPECT_EQ(residueId("", -2147483647 - 1, "", true), "HET-2147483648");
    auto const chainName = [&](char const* chain, bool isHet) {
        pdb.chainIDConversion(chain, text, isHet);
        return std::string(text);
    };
    EXPECT_EQ(chainName("", false), "NIL");
    EXPECT_EQ(chainName("", true), "");
    EXPECT_EQ(chainName("long", false), "long");
    char chain[4] = "";
    EXPECT_STREQ(pdb.chainIDConversion(chain, true), "");
    EXPECT_STREQ(pdb.chainIDConversion(chain, false), "NIL");
    EXPECT_STREQ(chain, "NIL");
}

} // namespace
