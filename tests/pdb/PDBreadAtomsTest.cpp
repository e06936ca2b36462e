#include "PDBreadSamples.h"

#include <cmath>

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
                                             .x = 10});
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

    MtGroupingLevel* residues = levelOf(trajectory, "residues");
    EXPECT_EQ(ranges(trajectory, "residues"), "A-7C 0-0; HET301 1-1; ");
    EXPECT_EQ(textOf(residues, "type", 0), "VAL");
    EXPECT_EQ(textOf(residues, "type", 1), "U");
    EXPECT_EQ(integerOf(residues, "pdb_index", 0), -7);
    EXPECT_EQ(ranges(trajectory, "chains"), "A 0-0; ");
    EXPECT_EQ(coordinates(trajectory, 0)[0], McVec3f(-999.125F, -1.5F, 0.25F));
    EXPECT_STREQ(trajectory->getTopology()->getName(), "");
}

TEST(PDBreadAtoms, LevelsAndTheirFlags) {
    auto const trajectory = readPDB(AtomText{});
    MolTopology* topology = trajectory->getTopology();
    ASSERT_EQ(topology->levels.size, 4);
    auto const attributes = [](MtGroupingLevel* level) {
        std::string names;
        for (MtGroupAttribute const* attribute : level->attributes) names += std::string(attribute->getName()) + ' ';
        return names;
    };
    constexpr int bit0 = MtGroupingLevel::flagBit0;
    constexpr int bit1 = MtGroupingLevel::flagBit1;
    constexpr int segmentation = MtGroupingLevel::segmentation;
    EXPECT_EQ(attributes(topology->getLevel(0)), "name type atomic_number radius charge temperature occupancy ");
    EXPECT_EQ(topology->getLevel(0)->flags, bit0 | bit1);
    EXPECT_EQ(attributes(topology->getLevel(1)), "type ");
    EXPECT_EQ(topology->getLevel(1)->flags, bit1);
    EXPECT_STREQ(topology->getLevel(2)->getName(), "residues");
    EXPECT_EQ(attributes(topology->getLevel(2)), "name type pdb_index ");
    EXPECT_EQ(topology->getLevel(2)->flags, bit0 | bit1 | segmentation);
    EXPECT_STREQ(topology->getLevel(3)->getName(), "chains");
    EXPECT_EQ(topology->getLevel(3)->getLowerLevelIx(), 2);
    EXPECT_EQ(attributes(topology->getLevel(3)), "name ");
    EXPECT_EQ(topology->getLevel(3)->flags, bit0 | bit1 | segmentation);
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

TEST(PDBreadAtoms, Residues) {
    AtomText const a{};
    auto const residues = [](std::string const& text) { return ranges(readPDB(text), "residues"); };
    EXPECT_EQ(residues(a + a), "A1 0-1; ");
    EXPECT_EQ(residues(a + AtomText{.type = "GLY"}), "A1 0-1; ");
    EXPECT_EQ(residues(a + AtomText{.insertion = "B"} + a), "A1 0-0; A1B 1-1; A1 2-2; ");
    EXPECT_EQ(residues(a + AtomText{.record = "HETATM"}), "A1 0-0; HETA1 1-1; ");
    EXPECT_EQ(residues(AtomText{.chain = " ", .number = 9999} + AtomText{.chain = " ", .number = 0}),
              "NIL9999 0-0; NIL0 1-1; ");
    // Ids can be equal by chance.
    AtomText const het31{.record = "HETATM", .chain = " ", .number = 31};
    auto const merged = readPDB(het31 + AtomText{.record = "HETATM", .chain = "3", .number = 1});
    EXPECT_EQ(ranges(merged, "residues"), "HET31 0-1; ");
    EXPECT_EQ(ranges(merged, "chains"), "3 0-0; ");
}

TEST(PDBreadAtoms, AlternateLocations) {
    auto const numAtoms = [](std::initializer_list<char const*> locations) {
        std::string text = "MODEL\n";
        for (char const* location : locations) text += AtomText{.location = location};
        return readPDB(text)->getTopology()->getLevel(0)->groups.size;
    };
    EXPECT_EQ(numAtoms({"A", "B"}), 1);
    EXPECT_EQ(numAtoms({"B"}), 0);
    EXPECT_EQ(numAtoms({"a", "z", "Z"}), 0);
    EXPECT_EQ(numAtoms({"1", "2", "~", " "}), 4);
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
    auto const charge = [](char const* text) {
        return realOf(readPDB(AtomText{.charge = text})->getTopology()->getLevel(0), "charge", 0);
    };
    EXPECT_EQ(charge("2+"), 2.0F);
    EXPECT_EQ(charge("9-"), -9.0F);
    EXPECT_EQ(charge("+2"), 0.0F);
    EXPECT_EQ(charge("2 "), 0.0F);
    EXPECT_EQ(charge(" -"), 0.0F);
    EXPECT_EQ(charge("x+"), 0.0F);
    EXPECT_TRUE(std::signbit(charge("0-")));
}

TEST(PDBreadAtoms, LinesOfAnyLength) {
    std::string const whole = AtomText{.name = " CA ", .element = " N"};
    auto const cut = readPDB(whole.substr(0, 54) + "\n");
    MtGroupingLevel* atoms = cut->getTopology()->getLevel(0);
    EXPECT_EQ(realOf(atoms, "occupancy", 0), 0.0F);
    EXPECT_EQ(realOf(atoms, "temperature", 0), 0.0F);
    EXPECT_EQ(integerOf(atoms, "atomic_number", 0), 6);
    EXPECT_EQ(coordinates(cut, 0)[0], McVec3f(10.0F, -1.5F, 0.25F));
    EXPECT_EQ(ranges(readPDB("ATOM"), "residues"), "NIL0 0-0; ");

    auto const longer = readPDB(whole.substr(0, 80) + std::string(2000, 'x') + "\r\n" + whole);
    EXPECT_EQ(ranges(longer, "residues"), "A1 0-1; ");
    EXPECT_EQ(integerOf(longer->getTopology()->getLevel(0), "atomic_number", 0), 7);
}

TEST(PDBreadAtoms, Keywords) {
    std::string const columns = std::string(AtomText{}).substr(6);
    EXPECT_EQ(ranges(readPDB("ATOM  " + columns + "  ATOM" + columns + "atom  " + columns + "ATOMS " + columns +
                             "HETATM" + columns),
                     "residues"),
              "A1 0-1; HETA1 2-2; ");
    EXPECT_EQ(
        ranges(readPDB(std::string(AtomText{}) + "END\n" + AtomText{.record = "HETATM", .number = 2}), "residues"),
        "A1 0-0; HETA2 1-1; "); // END ends nothing
}

TEST(PDBreadAtoms, IdConversions) {
    PDBread const pdb(nullptr, nullptr);
    char text[32];
    auto const residueId = [&](char const* chain, int number, char const* insertion, bool isHet) {
        pdb.resIDConversion(chain, number, insertion, text, isHet);
        return std::string(text);
    };
    EXPECT_EQ(residueId("A", 12, "", false), "A12");
    EXPECT_EQ(residueId("A", 12, "B", false), "A12B");
    EXPECT_EQ(residueId("NIL", 7, "", false), "NIL7");
    EXPECT_EQ(residueId("A", 201, "", true), "HETA201");
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
