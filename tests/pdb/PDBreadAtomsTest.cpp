#include "PDBreadSamples.h"

#include <utility>

namespace {

using namespace tarnex::test;

TEST(PDBreadAtoms, FieldsGoToTheirAttributes) {
    auto const trajectory = readPDB(AtomText{.serial = 123,
                                             .name = "1HG2",
                                             .type = "VAL",
                                             .number = -7,
                                             .insertion = "C",
                                             .element = " H",
                                             .charge = "2+",
                                             .x = -999.125} +
                                    AtomText{.record = "HETATM",
                                             .serial = 99999,
                                             .name = " H 1",
                                             .type = " U",
                                             .chain = " ",
                                             .number = 301,
                                             .element = "FE",
                                             .charge = "1-",
                                             .x = 10,
                                             .occupancy = 1,
                                             .temperature = -5.5} +
                                    AtomText{});
    ASSERT_TRUE(trajectory);
    MtGroupingLevel* atoms = trajectory->getTopology()->getLevel(0);
    EXPECT_EQ(textOf(atoms, "name", 0), "A123");
    EXPECT_EQ(textOf(atoms, "type", 0), "1HG2");
    EXPECT_EQ(integerOf(atoms, "atomic_number", 0), 1);
    EXPECT_FLOAT_EQ(realOf(atoms, "radius", 0), 1.2F);
    EXPECT_EQ(realOf(atoms, "charge", 0), 2.0F);
    EXPECT_EQ(realOf(atoms, "temperature", 0), 12.25F);
    EXPECT_EQ(realOf(atoms, "occupancy", 0), 0.5F);
    EXPECT_EQ(textOf(atoms, "name", 1), "99999");
    EXPECT_EQ(textOf(atoms, "type", 1), "H1");
    EXPECT_EQ(integerOf(atoms, "atomic_number", 1), 26);
    EXPECT_EQ(realOf(atoms, "charge", 1), -1.0F);
    EXPECT_EQ(realOf(atoms, "temperature", 1), -5.5F);
    EXPECT_EQ(realOf(atoms, "occupancy", 1), 1.0F);
    EXPECT_EQ(realOf(atoms, "temperature", 2), 12.25F);
    EXPECT_EQ(realOf(atoms, "occupancy", 2), 0.5F);

    MtGroupingLevel* residues = levelOf(trajectory, "residues");
    EXPECT_EQ(ranges(trajectory, "residues"), "A-7C 0-0; HET301 1-1; A1 2-2; ");
    EXPECT_EQ(textOf(residues, "type", 0), "VAL");
    EXPECT_EQ(textOf(residues, "type", 1), "U");
    EXPECT_EQ(integerOf(residues, "pdb_index", 0), -7);
    EXPECT_EQ(ranges(trajectory, "chains"), "A 0-0; A 2-2; ");
    EXPECT_EQ(coordinates(trajectory, 0)[0], McVec3f(-999.125F, -1.5F, 0.25F));
    EXPECT_STREQ(trajectory->getTopology()->getName(), "");
}

TEST(PDBreadAtoms, LevelsAndTheirFlags) {
    auto const trajectory = readPDB(AtomText{});
    std::string text;
    for (MtGroupingLevel const* level : trajectory->getTopology()->levels) {
        text +=
            level->getName() + ("/" + std::to_string(level->getLowerLevelIx())) + '/' + std::to_string(level->flags);
        for (MtGroupAttribute const* attribute : level->attributes) text += std::string(" ") + attribute->getName();
        text += "; ";
    }
    EXPECT_EQ(text, "/-1/3 name type atomic_number radius charge temperature occupancy; /0/2 type; "
                    "residues/0/19 name type pdb_index; chains/2/19 name; ");
}

TEST(PDBreadAtoms, Chains) {
    AtomText const a{.chain = "A"};
    AtomText const a2{.chain = "A", .number = 2};
    AtomText const b{.chain = "B"};
    AtomText const none{.chain = " "};
    AtomText const hetA{.record = "HETATM", .chain = "A"};
    AtomText const hetNone{.record = "HETATM", .chain = " "};
    std::string const ter = "TER\n";
    auto const chains = [](std::string const& text) { return ranges(readPDB(text), "chains"); };
    EXPECT_EQ(chains(none), "NIL 0-0; ");
    EXPECT_EQ(chains(hetNone), "");
    EXPECT_EQ(chains(a + b + a), "A 0-0; B 1-1; A 2-2; ");
    EXPECT_EQ(chains(a + ter + a2), "A 0-0; A 1-1; ");
    EXPECT_EQ(chains(a + ter + hetA), "A 0-1; ");
    EXPECT_EQ(chains(a + ter + hetA + a2), "A 0-1; A 2-2; "); // the HETATM leaves the TER to the next ATOM
    EXPECT_EQ(chains(ter + a + a2), "A 0-1; ");
    EXPECT_EQ(chains(a + hetNone + a2), "A 0-0; A 2-2; ");
    // The new chain joins the residue at hand and has none of its own.
    EXPECT_EQ(chains(a + ter + a), "A 0-0; A 0-0; ");
    EXPECT_EQ(chains(a + ter + a + a2), "A 0-0; A 1-1; ");
    EXPECT_FALSE(levelOf(readPDB(a + ter + a), "chains")->hasFlag(MtGroupingLevel::segmentation));
}

TEST(PDBreadAtoms, Elements) {
    struct Case {
        char const* name;
        char const* element;
        int atomicNumber;
    };
    for (Case const& c : std::initializer_list<Case>{
             {" C  ", "FE", 26}, {"FE  ", "  ", 26}, {" X  ", " A", 6},  {" CA ", "  ", 6},  {"CA  ", "  ", 20},
             {"1HB2", "  ", 1},  {"HG  ", "  ", 80}, {"CS  ", "  ", 16}, {"AU  ", "  ", 79}, {"PB  ", "  ", 5},
             {"X   ", "CL", 17}, {" C  ", "QN", 7},  {" C  ", "c ", 6},  {" C  ", "1 ", 6},  {"12O1", "  ", 8},
             {"99  ", "  ", 0},  {"  S ", "  ", 16}, {"Q N ", "  ", 7},  {" A  ", "  ", 6},  {" C  ", "QQ", 0},
             {"  QN", "QQ", 0},  {"XU  ", "  ", 92}, {"    ", "  ", 0},
         }) {
        auto const trajectory = readPDB(AtomText{.name = c.name, .element = c.element});
        EXPECT_EQ(integerOf(trajectory->getTopology()->getLevel(0), "atomic_number", 0), c.atomicNumber)
            << c.name << '|' << c.element;
    }
}

TEST(PDBreadAtoms, Charges) {
    for (auto const& [text, charge] :
         {std::pair{"2+", 2.0F}, {"9-", -9.0F}, {"+2", 0.0F}, {"2 ", 0.0F}, {"x+", 0.0F}}) {
        auto const trajectory = readPDB(AtomText{.charge = text});
        EXPECT_EQ(realOf(trajectory->getTopology()->getLevel(0), "charge", 0), charge) << text;
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
