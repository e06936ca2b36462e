#include "gromacs/GROMACSread.h"
#include "gromacs/GROMACSread_SINGLE.h"
#include "model/MtListGroups.h"
#include "support/RecordingProgress.h"
#include "support/files.h"
#include "textio/Parse_Error.h"

#include <clocale>
#include <gtest/gtest.h>
#include <memory>
#include <sstream>

namespace {

using namespace tarnex::test;
using Read = std::unique_ptr<Molecule>;

Read readGro(std::string const& text) {
    return Read(GROMACSread(nullptr, nullptr).readGRO(writeFile("in.gro", text).c_str()));
}

/// Each residue as its atoms and its name: "0-1 ALA, 2-2 HOH".
std::string residues(Molecule& molecule) {
    MolTopology* topology = molecule.getTopology();
    MtGroupingLevel* level = topology->getLevel(topology->getLevelIx("residues"));
    auto* types = level->stringAttribute("type", MtGroupingLevel::FIND, true);
    std::ostringstream text;
    for (int i = 0; i < level->groups.size; ++i) {
        auto const& range = dynamic_cast<MtIntraLevelRange const&>(*level->groups[i]);
        text << (i ? ", " : "") << range.first << "-" << range.last << " " << types->getValue(i);
    }
    return text.str();
}

std::string elements(Molecule& molecule) {
    auto* numbers = molecule.getTopology()->getLevel(0)->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    std::ostringstream text;
    for (int i = 0; i < molecule.getNumAtoms(); ++i) text << (i ? " " : "") << numbers->getValue(i);
    return text.str();
}

constexpr char const* small = "title, t= 0.0\n"
                              "    5 and more\n"
                              "    1ALA      N    1   1.000   2.000   3.000  0.1000  0.2000  0.3000\n"
                              "    1ALA    HB1    2  -0.100   0.000 123.456\n"
                              "    2GLY     CA    3   x.000   1e-2       7\n"
                              "    2SER   Mg99    4\n"
                              "    1HOH    123    5   0.001   0.002   0.003\n"
                              "   1.00000   1.00000   1.00000\n";

TEST(GroReader, AtomsResiduesAndCoordinates) {
    auto const molecule = readGro(small);
    MolTopology* topology = molecule->getTopology();
    ASSERT_EQ(molecule->getNumAtoms(), 5);
    EXPECT_EQ(residues(*molecule), "0-1 ALA, 2-3 SER, 4-4 HOH"); // named by the last atom
    EXPECT_EQ(elements(*molecule), "7 1 20 12 0");
    EXPECT_EQ(molecule->coords[0], McVec3f(10.0F, 20.0F, 30.0F));
    EXPECT_EQ(molecule->coords[1], McVec3f(-1.0F, 0.0F, 123.456F * 10.0F));
    EXPECT_EQ(molecule->coords[2], McVec3f(0.0F, 0.01F * 10.0F, 70.0F));
    EXPECT_EQ(molecule->coords[3], McVec3f(0.0F, 0.0F, 0.0F));
    MtGroupingLevel* atoms = topology->getLevel(0);
    EXPECT_STREQ(atoms->stringAttribute("type", MtGroupingLevel::FIND, true)->getValue(3), "Mg99");
    EXPECT_EQ(atoms->floatAttribute("radius", MtGroupingLevel::FIND, true)->getValue(1), 1.2F);

    std::ostringstream order;
    for (MtGroupAttribute const* attribute : atoms->attributes) order << attribute->getName() << " ";
    EXPECT_EQ(order.str(), "type radius atomic_number ");
    MtGroupingLevel* level = topology->getLevel(topology->getLevelIx("residues"));
    EXPECT_FALSE(atoms->hasFlag(MtGroupingLevel::flagBit5));
    EXPECT_FALSE(level->hasFlag(MtGroupingLevel::flagBit5));
    EXPECT_TRUE(level->hasFlag(MtGroupingLevel::segmentation));
    EXPECT_TRUE(level->stringAttribute("name", MtGroupingLevel::FIND, true));
    EXPECT_TRUE(topology->getLevel(1)->integerAttribute("type", MtGroupingLevel::FIND, true));
    EXPECT_EQ(topology->getLevel(1)->groups.size, 0);
}

std::string groOfResidueNumbers(std::initializer_list<int> numbers) {
    std::ostringstream text;
    text << "\n" << numbers.size() << "\n";
    char line[16];
    for (int const number : numbers) {
        std::snprintf(line, sizeof line, "%5dRES\n", number);
        text << line;
    }
    return text.str();
}

TEST(GroReader, ResiduesBeginWhereTheNumberChanges) {
    EXPECT_EQ(residues(*readGro(groOfResidueNumbers({7}))), "0-0 RES");
    EXPECT_EQ(residues(*readGro(groOfResidueNumbers({1, 1, 2, 2, 1}))), "0-1 RES, 2-3 RES, 4-4 RES");
    EXPECT_EQ(residues(*readGro(groOfResidueNumbers({-1, -1, 3, -1, 3, 4}))), "0-1 RES, 2-3 RES, 4-4 RES, 5-5 RES");
    EXPECT_EQ(residues(*readGro(groOfResidueNumbers({99999, 0, 0}))), "0-0 RES, 1-2 RES");
}

TEST(GroReader, CountsDecideWhatEverTheFileHolds) {
    struct Case {
        char const* text;
        int atoms;
        char const* residues;
    };
    for (Case const& c : {Case{"", 0, ""}, Case{"t\n0\n", 0, ""}, Case{"t\n-4\n", 0, ""}, Case{"t\n      3\n", 0, ""},
                          Case{"t\n3\n    1ALA     CA    1   0.1", 3, "0-0 ALA, 1-2 "},
                          Case{"t\r\n 1\r\n    1ALA\r\n", 1, "0-0 ALA"}, Case{"t\n1\n    1A\tB", 1, "0-0 A\tB"}}) {
        auto const molecule = readGro(c.text);
        ASSERT_TRUE(molecule) << c.text;
        EXPECT_EQ(molecule->getNumAtoms(), c.atoms) << c.text;
        EXPECT_EQ(molecule->coords.size, c.atoms) << c.text;
        EXPECT_EQ(residues(*molecule), c.residues) << c.text;
    }
    EXPECT_EQ(readGro("t\n123456\n")->getNumAtoms(), 12345);
}

TEST(GroReader, MessagesProgressAndLocale) {
    std::ostringstream messages;
    RecordingProgress progress;
    EXPECT_EQ(GROMACSread(&messages, &progress).readGRO("no.gro"), nullptr);
    EXPECT_EQ(GROMACSread_SINGLE(&messages, &progress).readGRO(nullptr), nullptr);
    EXPECT_TRUE(progress.calls.empty());
    std::string const file = writeFile("in.gro", small);
    GROMACSread_SINGLE single(&messages, &progress);
    if (std::setlocale(LC_ALL, "de_DE.UTF-8")) EXPECT_EQ(std::localeconv()->decimal_point[0], ',');
    Read const molecule(single.readGROMACS_SINGLEMolecule(file.c_str(), nullptr));
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(molecule->coords[1].z, 123.456F * 10.0F);
    EXPECT_EQ(single.fileName, file.c_str());
    EXPECT_EQ(progress.calls, (std::vector<std::string>{"start ", "stop"}));
    EXPECT_EQ(Read(single.readGROMACS_SINGLEMolecule(file.c_str(), "no.top")), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"no.gro\"\nCould not load \"\"\nCould not load \"no.top\"\n");
}

/// What a .top file adds to four atoms.
struct Added {
    Read molecule = readGro(groOfResidueNumbers({1, 1, 1, 1}));
    MolTopology* topology = molecule->getTopology();
    int result;

    explicit Added(std::string const& top)
        : result(GROMACSread(nullptr, nullptr).readTOP(writeFile("in.top", top).c_str(), molecule.get())) {}

    /// Each group as its atoms, counted from 0, and its value: "0-1:1 1-2:3".
    std::string groups(int levelIx, char const* attribute) const {
        MtGroupingLevel* level = topology->getLevel(levelIx);
        auto* values = level->integerAttribute(attribute, MtGroupingLevel::FIND, true);
        std::ostringstream text;
        for (int i = 0; i < level->groups.size; ++i) {
            MtGroup const& group = *level->groups[i];
            for (int m = 0; m < group.size(); ++m) text << (m ? "-" : i ? " " : "") << group[m].groupIx;
            text << ":" << values->getValue(i);
        }
        return text.str();
    }
    std::string groups(char const* level) const { return groups(topology->getLevelIx(level), level); }
    std::string bonds() const { return groups(1, "type"); }
    float atomValue(char const* attribute, int atom) const {
        return topology->getLevel(0)->floatAttribute(attribute, MtGroupingLevel::FIND, true)->getValue(atom);
    }
    bool flagBit5(int levelIx) const { return topology->getLevel(levelIx)->hasFlag(MtGroupingLevel::flagBit5); }
};

TEST(TopReader, SectionsOfAllKinds) {
    Added const top("; comment\n#include \"x.itp\"\n[ moleculetype ]\nName 3\n\n"
                    "[ atoms ]\n;   nr       type\n"
                    "     1         N3      1    ALA      N      1     0.1414      14.01   ; qtot\n"
                    "     4          H      1    ALA      H      2    -1.5e-1      1.008\n"
                    "     9          H      1    ALA      H      2        1.0        1.0\n\r\n"
                    "[ bonds ]\n    1     2     1 0.15 1000\r\n    2     3     5\n\n"
                    "[ pairs ]\n    1     4     1\n\n"
                    "[ angles ]\n    1     2     3     4\nx\n"
                    "[ dihedrals ] again\n    1     2     3     4     9\n\n"
                    "[ dihedraX\n    4     3     2     1     8\n\n"
                    "[ system ]\n    1     2     3     4     9\n\n"
                    "[ angles ]\n    2     3     4     6");
    EXPECT_EQ(top.result, 1);
    EXPECT_EQ(top.bonds(), "0-1:1 1-2:5");
    EXPECT_EQ(top.groups("pairs"), "0-3:1");
    EXPECT_EQ(top.groups("angles"), "0-1-2:4 1-2-3:6");
    EXPECT_EQ(top.groups("dihedrals"), "0-1-2-3:9 3-2-1-0:8");
    EXPECT_EQ(top.atomValue("charge", 0), 0.1414F);
    EXPECT_EQ(top.atomValue("atom_mass", 0), 14.01F);
    EXPECT_EQ(top.atomValue("charge", 3), -0.15F);
    EXPECT_EQ(top.atomValue("charge", 1), 0.0F);
    for (int const level : {1, top.topology->getLevelIx("pairs"), top.topology->getLevelIx("dihedrals")}) {
        EXPECT_FALSE(top.flagBit5(level));
    }
}

TEST(TopReader, WhatBeginsAndEndsASection) {
    struct Case {
        char const* text;
        char const* bonds;
    };
    for (Case const& c : {
             Case{"", ""},
             Case{" [ bonds ]\n    1     2     1\n", ""},
             Case{"[bonds]\n    1     2     1\n", ""},
             Case{"[ bonds ]\n;    1     2     1\n    1     3     1\n", "0-2:1"},
             Case{"[ bonds ]\n    1     2     1\nab\n    1     3     1\n", "0-1:1"},
             Case{"[ molecules ]\n[ bonds ]\n    1     2     1\n", ""},
             Case{"[ pairs ]\n\n[ bonds ]\n    1     2     1", "0-1:1"},
             // A comment behind a blank and the header of another section are rows; both name no atoms.
             Case{"[ bonds ]\n ;   1     2     1\n[ pairs ]\n    1     4     2\n", "0-3:2"},
         }) {
        EXPECT_EQ(Added(c.text).bonds(), c.bonds) << c.text;
    }
    EXPECT_THROW(Added("[ bonds ]\n" + std::string(1001, 'x') + "\n"), Parse_Error);
    EXPECT_EQ(Added("[ bonds ]\n" + std::string(1000, ' ') + "\n").bonds(), "");
}

TEST(TopReader, RowsThatNameNoAtoms) {
    Added const top("[ bonds ]\n    1     5     7\n    0     1     7\n12345678901234567\n    1     2     3\nabc\n\n"
                    "[ pairs ]\n    1     9     7\n    1     2     3\n\n[ atoms ]\n-99999\n  x\n\n");
    EXPECT_EQ(top.result, 1);
    EXPECT_EQ(top.bonds(), "0-1:3");
    EXPECT_EQ(top.groups("pairs"), "0-1:0"); // values go by the number of the row
    EXPECT_EQ(top.groups("angles"), "");
    EXPECT_TRUE(top.flagBit5(top.topology->getLevelIx("angles")));
}

TEST(TopReader, MissingFileChangesNothing) {
    std::ostringstream messages;
    auto const molecule = readGro(small);
    EXPECT_EQ(GROMACSread(&messages, nullptr).readTOP("no.top", molecule.get()), 0);
    EXPECT_EQ(molecule->getTopology()->getLevelIx("pairs"), -1);
    std::string const gro = writeFile("a.gro", small);
    EXPECT_EQ(GROMACSread(&messages, nullptr).readGROMACSMolecule(gro.c_str(), "no.top"), nullptr);
    EXPECT_EQ(messages.str(), "Could not load \"no.top\"\nCould not load \"no.top\"\n");
}

} // namespace
