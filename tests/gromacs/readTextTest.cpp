#include "gromacs/GROMACSread.h"
#include "gromacs/GROMACSread_SINGLE.h"
#include "support/model.h"
#include "support/testing.h"
#include "textio/Parse_Error.h"

#include <clocale>

namespace {

using namespace tarnex::test;
using Read = std::unique_ptr<Molecule>;

Read readGro(std::string const& text) {
    return Read(GROMACSread(nullptr, nullptr).readGRO(writeFile("in.gro", text).c_str()));
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
    // Residues are named by their last atoms.
    EXPECT_EQ(describe(molecule->getTopology()),
              ";\natoms(-1) flags 3: 5 type=N|HB1|CA|Mg99|123 radius=1.55|1.2|2.62|1.73|0 atomic_number=7|1|20|12|0\n"
              "bonds(0) flags 35:  type=\nresidues(0) flags 19: 0-1|2-3|4-4 type=ALA|SER|HOH name=||");
    EXPECT_EQ(placesOf(molecule->coords), "10,20,30|-1,0,1234.56|0,0.09999999,70|0,0,0|0.01,0.02,0.03");
}

TEST(GroReader, ResiduesBeginWhereTheNumberChangesAndCountsDecide) {
    for (auto const& [text, atoms, residues] :
         {std::tuple{"\n6\n   -1R\n   -1R\n    3R\n   -1R\n    3R\n    4R\n", 6, "0-1|2-3|4-4|5-5 R|R|R|R"},
          {"\n3\n99999R\n    0R\n    0R\n", 3, "0-0|1-2 R|R"},
          {"", 0, " "},
          {"t\n-4\n", 0, " "},
          {"t\n      3\n", 0, " "}, // five columns
          {"t\n123456\n", 12345, "0-12344 "},
          {"t\n3\n    1ALA     CA    1   0.1", 3, "0-0|1-2 ALA|"},
          {"t\r\n 1\r\n    1ALA\r\n", 1, "0-0 ALA"},
          {"t\n1\n    1A\tB", 1, "0-0 A\tB"}}) {
        auto const molecule = readGro(text);
        EXPECT_EQ(molecule->coords.size, atoms) << text;
        MtGroupingLevel const* level = levelOf(molecule->getTopology(), "residues");
        EXPECT_EQ(groupsOf(level) + " " + valuesOf(level, "type"), residues) << text;
    }
}

TEST(GromacsReader, MessagesProgressAndLocale) {
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
    EXPECT_THAT(progress.calls, ElementsAre("start ", "stop"));
    EXPECT_EQ(Read(single.readGROMACS_SINGLEMolecule(file.c_str(), "no.top")), nullptr);
    EXPECT_EQ(GROMACSread(&messages, nullptr).readTOP("no.top", molecule.get()), 0);
    EXPECT_EQ(molecule->getTopology()->getLevelIx("pairs"), -1);
    EXPECT_EQ(messages.str(), "Could not load \"no.gro\"\nCould not load \"\"\n"
                              "Could not load \"no.top\"\nCould not load \"no.top\"\n");
}

/// What a .top file adds to four atoms.
std::string topologyOf(std::string const& top) {
    Read const molecule = readGro("\n4\n    1RES\n    1RES\n    1RES\n    1RES\n");
    EXPECT_EQ(GROMACSread(nullptr, nullptr).readTOP(writeFile("in.top", top).c_str(), molecule.get()), 1);
    return describe(molecule->getTopology());
}

TEST(TopReader, SectionsOfAllKinds) {
    EXPECT_THAT(topologyOf("; comment\n#include \"x.itp\"\n[ moleculetype ]\nName 3\n\n"
                           "[ atoms ]\n;   nr       type\n"
                           "     1         N3      1    ALA      N      1     0.1414      14.01   ; qtot\n"
                           "     4          H      1    ALA      H      2-0.12345678123.4567890\n"
                           "     9          H      1    ALA      H      2        1.0        1.0\n\r\n"
                           "[ bonds ]\n    1     2     1 0.15 1000\r\n    2     3     5\n\n"
                           "[ pairs ]\n    1     4     1\n    1     9     7\n    1     2     3\n\n"
                           "[ angles ]\n    1     2     3     4\nx\n"
                           "[ dihedrals ] again\n    1     2     3     4     9\n\n"
                           "[ dihedraX\n    4     3     2     1     8\n\n"
                           "[ system ]\n    1     2     3     4     9\n\n"
                           "[ angles ]\n    2     3     4     6"),
                EndsWith(" charge=0.1414|0|0|-0.1234568 atom_mass=14.01|0|0|123.4568\n"
                         "bonds(0) flags 3: 0,1|1,2 type=1|5\n"
                         "residues(0) flags 19: 0-3 type=RES name=\n"
                         "pairs(0) flags 3: 0,3|0,1 pairs=1|0\n" // values go by the number of the row
                         "angles(0) flags 3: 0,1,2|1,2,3 angles=4|6\n"
                         "dihedrals(0) flags 3: 0,1,2,3|3,2,1,0 dihedrals=9|8"));
}

TEST(TopReader, WhatBeginsAndEndsASection) {
    for (auto const& [text, bonds] : {
             std::pair{"", "35:  type="},
             {" [ bonds ]\n    1     2     1\n", "35:  type="},
             {"[bonds]\n    1     2     1\n", "35:  type="},
             {"[ bonds ]\n;    1     2     1\n    1     3     1\n", "3: 0,2 type=1"},
             {"[ bonds ]\n    1     2     1\nab\n    1     3     1\n", "3: 0,1 type=1"},
             {"[ molecules ]\n[ bonds ]\n    1     2     1\n", "35:  type="},
             {"[ pairs ]\n\n[ bonds ]\n    1     2     1", "3: 0,1 type=1"},
             // A comment behind a blank and the header of another section are rows; both name no atoms.
             {"[ bonds ]\n ;   1     2     1\n[ pairs ]\n    1     4     2\n", "3: 0,3 type=2"},
             {"[ bonds ]\n    1     5     7\n    0     1     7\n12345678901234567\nabc\n    1     2     3\n\n"
              "[ atoms ]\n-99999\n  x\n\n",
              "3: 0,1 type=3"},
         }) {
        EXPECT_THAT(topologyOf(text), HasSubstr(std::string("\nbonds(0) flags ") + bonds + "\nresidues")) << text;
    }
    EXPECT_THAT(topologyOf("[ bonds ]\n" + std::string(1000, ' ') + "\n"), HasSubstr("\nbonds(0) flags 3:  type=\n"));
    EXPECT_THROW(topologyOf("[ bonds ]\n" + std::string(1001, 'x') + "\n"), Parse_Error);
}

} // namespace
