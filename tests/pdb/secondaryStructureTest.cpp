#include "PDBreadSamples.h"
#include "model/members.h"
#include "support/compareTopologies.h"

#include <array>
#include <climits>
#include <random>

namespace {

using namespace tarnex::test;

void readRecords(PDBread& pdb, std::string const& records, MolTopology& topology, molInfo& info) {
    lengthizer in(tarnex::test::writeFile("records.pdb", records).c_str());
    for (; !in.eof; in.nextLine()) {
        in.getString(6);
        if (in.equals("HELIX")) pdb.parseHelixRecord(in, &topology, info);
        if (in.equals("SHEET")) pdb.parseSheetRecord(in, &topology, info);
        if (in.equals("TURN")) pdb.parseTurnRecord(in, &topology, info);
        if (in.equals("SITE")) pdb.parseSiteRecord(in, &topology, info);
    }
}

/// Residues A1 to A30 (indices 0 to 29) in chain A, B1 to B10 (30 to 39) in chain B; A12C (40) and HETA31 (41).
class SmallProtein {
public:
    SmallProtein() {
        residuesIx = topology.addLevel("residues", 0, 12, -1);
        for (int i = 1; i <= 30; ++i) addResidue("A" + std::to_string(i));
        for (int i = 1; i <= 10; ++i) addResidue("B" + std::to_string(i));
        addResidue("A12C");
        addResidue("HETA31");
        int const chainsIx = topology.addLevel("chains", residuesIx, 12, -1);
        topology.addGroup(chainsIx, new MtIntraLevelRange(residuesIx, 0, 29));
        topology.addGroup(chainsIx, new MtIntraLevelRange(residuesIx, 30, 39));
        info = molInfo(&topology);
    }

    void addResidue(std::string const& name) {
        int const residue = topology.addGroup(residuesIx, new MtIntraLevelRange).groupIx;
        setText(&topology, residuesIx, "name", residue, name.c_str());
    }
    /// Reads records; returns the messages.
    std::string read(std::string const& records) {
        std::ostringstream messages;
        PDBread pdb(&messages, nullptr);
        readRecords(pdb, records, topology, info);
        return messages.str();
    }

    std::string groups(char const* levelName) const { return namedGroups(&topology, levelName); }
    std::string structures() const { return groups("secondary_structure"); }

    MolTopology topology;
    molInfo info{&topology};
    int residuesIx;
};

template <class... Values>
std::string format(char const* layout, Values... values) {
    std::array<char, 128> line;
    std::snprintf(line.data(), line.size(), layout, values...);
    return line.data();
}

std::string helix(int number, int first, int last, char lastChain = 'A') {
    return format("HELIX  %3d %3d UNK A %4d  UNK %c %4d  1\n", number, number, first, lastChain, last);
}

std::string strand(int number, char const* sheet, int first, int last) {
    return format("SHEET  %3d %3s 0 UNK A%4d  UNK A%4d  0\n", number, sheet, first, last);
}

std::string turn(int number, int first, int last, char lastChain = 'A') {
    return format("TURN   %3d  T%d UNK A%4d  UNK %c%4d \n", number, number, first, lastChain, last);
}

TEST(PDBSecondaryStructure, FieldsStandInTheColumnsOfTheirRecord) {
    SmallProtein protein;
    protein.addResidue("A-5");
    protein.addResidue("NIL1000D");
    // The columns between the fields hold an x.
    EXPECT_EQ(protein.read("HELIX x 12x H1xGLYxAx  12CxPROxAx  -5 99\n"
                           "HELIX x  3xHHHxGLYx x1000DxPROx x1000D99\n"
                           "SHEET x  1x  BxxxGLYxA   5 xPROxA   6 99\n"
                           "TURN  x-12xT1 xGLYxA   8 xPROxA   9 x\n"
                           "SITE  x  1xAC1xxxxGLYxA   1 xPROx 1000DxALAxB   3 xALAxA  12Cx\n"),
              "");
    EXPECT_EQ(protein.structures(), "helix H1 40-42; helix HHH 43-43; sheet B 4,5; turn -12 7-8; ");
    EXPECT_EQ(protein.groups("strands"), "0 4-5; ");
    EXPECT_EQ(protein.groups("sites"), "AC1 0,43,32,40; ");
}

TEST(PDBSecondaryStructure, LevelsAreMadeByTheFirstRecordWithResidues) {
    SmallProtein protein;
    auto const levels = protein.topology.levels.size;
    std::string const missing = " skipped due to references to nonexisting residues.\n";
    EXPECT_EQ(protein.read(helix(1, 10, 31) + helix(2, 31, 31) + strand(123, "A", 99, 3) + turn(3, 1, 31)),
              "Helix number 1" + missing + "Helix number 2" + missing + "Sheet A strand number 123" + missing +
                  "Turn 3" + missing);
    EXPECT_EQ(protein.topology.levels.size, levels);

    std::string const inverse = " references residues in inverse order. The ";
    EXPECT_EQ(protein.read(helix(1, 20, 10) + strand(2, "A", 4, 3)),
              "Helix number 1" + inverse + "helix has been skipped.\n" + "Sheet A strand number 2" + inverse +
                  "strand has been skipped.\n");
    EXPECT_EQ(protein.read("SITE     1 AC1  0\n"), "Site AC1references only non existing residues. Site skipped.\n");
    EXPECT_EQ(protein.structures() + protein.groups("strands") + protein.groups("sites"), "");

    molInfo const& info = protein.info;
    EXPECT_THAT(describe(&protein.topology), EndsWith("\nstrands(2) flags 17:  name=\n"
                                                      "secondary_structure(2) flags 3:  type= name=\n"
                                                      "sites(2) flags 3:  name="));
    EXPECT_TRUE(info.hasStrands && info.hasSecondaryStructure && info.hasSites);
    EXPECT_TRUE(info.secStructName && info.strandName && info.siteName);
    EXPECT_EQ(info.strandsIx, levels);
    EXPECT_EQ(info.secondaryStructureIx, levels + 1);

    EXPECT_EQ(protein.read(helix(1, 1, 2) + strand(1, "A", 3, 4) + "SITE     1 AC1    UNK A   1\n"), "");
    EXPECT_EQ(protein.topology.levels.size, levels + 3);
}

struct OverlapCase {
    int first;
    int last;
    char const* ending;
    char const* added;
};

TEST(PDBSecondaryStructure, NewHelixOrStrandIsCutByTheHelixAheadOfIt) {
    constexpr char const* adjusted = " overlaps with the secStruct 1. Length adjusted.\n";
    constexpr char const* dropped = " skipped due to non adjustable overlaps with the secStruct 1.\n";
    for (OverlapCase const& c : {OverlapCase{15, 30, adjusted, " 20-29; "},
                                 {20, 21, adjusted, " 20-20; "},
                                 {5, 15, adjusted, " 4-8; "},
                                 {9, 10, adjusted, " 8-8; "},
                                 {5, 30, adjusted, " 20-29; "},
                                 {8, 22, adjusted, " 20-21; "},
                                 {7, 22, adjusted, " 6-8; "},
                                 {9, 20, adjusted, " 8-8; "},
                                 {10, 20, dropped, ""},
                                 {12, 13, dropped, ""},
                                 {10, 13, dropped, ""},
                                 {21, 30, "", " 20-29; "},
                                 {1, 9, "", " 0-8; "}}) {
        SCOPED_TRACE(format("%d-%d", c.first, c.last));
        std::string const ending = c.ending;
        std::string const added = c.added;
        SmallProtein protein;
        EXPECT_EQ(protein.read(helix(1, 10, 20) + helix(2, c.first, c.last)),
                  ending.empty() ? "" : "Helix number 2" + ending);
        EXPECT_EQ(protein.structures(), "helix 1 9-19; " + (added.empty() ? "" : "helix 2" + added));
        SmallProtein other;
        EXPECT_EQ(other.read(helix(1, 10, 20) + strand(7, "S", c.first, c.last)),
                  ending.empty() ? "" : "Sheet S strand number 7" + ending);
        EXPECT_EQ(other.groups("strands"), added.empty() ? "" : "0" + added);
    }
}

TEST(PDBSecondaryStructure, OverlapsGoThroughTheStructuresInOrder) {
    SmallProtein protein;
    // Turns overlap with nothing; a helix is cut by one after the other.
    EXPECT_EQ(protein.read(turn(1, 5, 6) + turn(2, 10, 11) + turn(3, 5, 6) + helix(4, 5, 30)),
              "Helix number 4 overlaps with the secStruct 2. Length adjusted.\n");
    EXPECT_EQ(protein.structures(), "turn 1 4-5; turn 2 9-10; turn 3 4-5; helix 4 11-29; ");
    EXPECT_EQ(protein.read(helix(5, 9, 30)),
              "Helix number 5 skipped due to non adjustable overlaps with the secStruct 4.\n");
    EXPECT_EQ(protein.read(turn(6, 12, 13) + helix(7, 12, 14)),
              "Helix number 7 skipped due to non adjustable overlaps with the secStruct 4.\n");
}

TEST(PDBSecondaryStructure, CutRangeKeepsTheChainsOfItsEnds) {
    constexpr char const* dropped = "Helix number 3 skipped due to non adjustable overlaps with the secStruct 2.\n";
    EXPECT_EQ(SmallProtein().read(turn(1, 20, 20) + turn(2, 21, 30) + helix(3, 20, 4, 'B')), dropped);
    EXPECT_EQ(SmallProtein().read(turn(1, 5, 5) + turn(2, 29, 2, 'B') + helix(3, 5, 4, 'B')), dropped);
    SmallProtein protein;
    EXPECT_EQ(protein.read(turn(1, 4, 8) + helix(3, 5, 4, 'B')),
              "Helix number 3 overlaps with the secStruct 1. Length adjusted.\n");
    EXPECT_EQ(protein.structures(), "turn 1 3-7; helix 3 8-33; ");
    // A chain of two residues ahead of the one that has them as well.
    SmallProtein overlapping;
    overlapping.topology.insertGroup(overlapping.info.chainsIx, new MtIntraLevelRange(overlapping.residuesIx, 24, 25),
                                     0);
    EXPECT_EQ(overlapping.read(turn(1, 5, 5) + turn(2, 6, 24) + helix(3, 5, 30)), dropped);
}

/// Residues of chain A, numbered from 1, and ten of chain B.
std::string atomsOf(int lengthOfA) {
    std::string text;
    for (int i = 1; i <= lengthOfA; ++i) text += AtomText{.number = i};
    for (int i = 1; i <= 10; ++i) text += AtomText{.chain = "B", .number = i};
    return text;
}

/// Reads a file, which finds structures by an index, and its records one by one, for which walks do. Returns the
/// messages of the records.
std::string readBothWays(std::string const& atoms, std::string const& records) {
    std::ostringstream messages;
    Bundle whole;
    PDBread(&messages, nullptr).readPDBMolTrajectoryBundle(writeFile("in.pdb", records + atoms).c_str(), whole);
    auto const parts = readPDB(atoms);
    MolTopology& topology = *parts->getTopology();
    molInfo info(&topology);
    std::ostringstream expected;
    PDBread pdb(&expected, nullptr);
    readRecords(pdb, records, topology, info);
    info.strands->updateSegmentationFlag(&topology, info.strandsIx);
    EXPECT_EQ(messages.str(), expected.str() + "Successfully imported.\n");
    EXPECT_EQ(compareTopologies(topology, *whole[0]->getTopology()), "");
    return expected.str();
}

TEST(PDBSecondaryStructure, FileGivesWhatItsRecordsGiveOneByOne) {
    constexpr int length = 300;
    std::string const atoms = atomsOf(length);
    std::mt19937 random(5);
    auto const upTo = [&](int largest) { return static_cast<int>(random() % static_cast<unsigned>(largest + 1)); };
    for (int round = 0; round < 20; ++round) {
        std::string records;
        for (int i = 0; i < 100; ++i) {
            int const first = upTo(length + 1);
            int const last = upTo(5) == 0 ? upTo(length) : std::min(first + upTo(round) - 1, length);
            char const lastChain = upTo(20) == 0 && last <= 10 ? 'B' : 'A';
            int const kind = upTo(4);
            records += kind == 4   ? turn(i % 10, first, last, lastChain)
                       : kind == 3 ? strand(i, i % 2 ? "A" : "B", first, last)
                                   : helix(i, first, last, lastChain);
        }
        readBothWays(atoms, records);
    }
    std::string grid; // which cuts the last helix in many places
    for (int i = 1; i < length; i += 2) grid += helix(i, i, i);
    EXPECT_EQ(readBothWays(atoms, grid + turn(0, 300, 300) + helix(2, 2, 300)),
              "Helix number 2 skipped due to non adjustable overlaps with the secStruct 0.\n");
}

TEST(PDBSecondaryStructure, StrandsOfOneNameMakeOneSheet) {
    SmallProtein protein;
    EXPECT_EQ(protein.read(strand(1, "5", 1, 3) + strand(2, "5", 2, 4) + strand(1, "B", 7, 7) + helix(5, 2, 3) +
                           strand(3, "5", 9, 10) + strand(4, "5", 11, 11)),
              "");
    EXPECT_EQ(protein.structures(), "sheet 5 0,1,2,1,2,3; sheet B 6; helix 5 1-2; sheet 5 8,9,10; ");
    EXPECT_EQ(protein.groups("strands"), "0 0-2; 1 1-3; 2 6-6; 3 8-9; 4 10-10; ");
}

TEST(PDBSecondaryStructure, SheetsDoNotGrowOutOfProportion) {
    std::string records;
    for (int i = 0; i <= 1000; ++i) records += strand(i % 10, i % 2 ? "A" : "B", 1, 1000);
    EXPECT_EQ(readBothWays(atomsOf(1000), records),
              "Sheet B strand number 0 skipped since the sheets have too many residues.\n");
}

TEST(PDBSecondaryStructure, TurnInInverseOrderIsSwapped) {
    SmallProtein protein;
    EXPECT_EQ(protein.read(turn(7, 9, 4)),
              "Turn 7 references residues in inverse order. The references have been swapped.\n");
    EXPECT_EQ(protein.structures(), "turn 7 3-8; ");
}

TEST(PDBSecondaryStructure, SitesGoOnAndLeaveOutWhatIsMissing) {
    SmallProtein protein;
    constexpr char const* some = "Site AC1references non existing residues. Respective references have been skipped.\n";
    EXPECT_EQ(protein.read("SITE     1 AC1  6 UNK A   9  UNK A   0  UNK A  -1  UNK A   2 \n"
                           "SITE     2 AC1  6 UNK B   1  UNK A   9 \n"),
              "");
    EXPECT_EQ(protein.read("SITE     3 AC1  6 UNK A  31  UNK B  11 \n"), some);
    EXPECT_EQ(protein.read("SITE     4 AC1  6 UNK A  31  UNK B   2 \n"), some);
    EXPECT_EQ(protein.read("SITE     4 AC1  6 \n"), "");
    EXPECT_EQ(protein.read("SITE     1 AC2  1 UNK A  31 \nSITE     1      1 UNK A   1 \n"),
              "Site AC2references only non existing residues. Site skipped.\n");
    EXPECT_EQ(protein.groups("sites"), "AC1 8,1,30,8,31;  0; ");
}

TEST(PDBSecondaryStructure, PoorLinesAndTopologiesAreNoHarm) {
    std::string const records = "HELIX\nSHEET\r\nTURN\nSITE\nHELIX      HHHHHHHHHHHHHHH" + std::string(5000, '9') +
                                "\nTURN   -99\nSITE  " + std::string(60, '\0');
    constexpr char const* missing = " skipped due to references to nonexisting residues.\n";
    std::string const messages = std::string("Helix number 0") + missing + "Sheet  strand number 0" + missing +
                                 "Turn 0" + missing + "Site references only non existing residues. Site skipped.\n" +
                                 "Helix number 0" + missing + "Turn -99" + missing +
                                 "Site references only non existing residues. Site skipped.\n";
    EXPECT_EQ(SmallProtein().read(records), messages);

    MolTopology noResidues;
    molInfo info(&noResidues);
    std::ostringstream stream;
    PDBread pdb(&stream, nullptr);
    readRecords(pdb, records, noResidues, info);
    EXPECT_EQ(stream.str(), messages);
    EXPECT_EQ(noResidues.levels.size, 3);
}

TEST(PDBSecondaryStructure, LevelsOfAHostAreUsedAsTheyAre) {
    SmallProtein protein;
    auto const add = [&](char const* level) { return protein.topology.addLevel(level, protein.residuesIx, 12, -1); };
    int const strands = add("strands");
    int const structures = add("secondary_structure");
    int const sites = add("sites");
    protein.info = molInfo(&protein.topology);
    protein.topology.addGroup(strands, new MtIntraLevelRange(protein.residuesIx, 4, 4));
    protein.topology.addGroup(strands, new MtDynamicGroup);
    protein.topology.addGroup(strands, new MtIntraLevelRange(protein.residuesIx, 9, 10));
    // A sheet that is a range of strands, of which the last one does not exist; the others are residues.
    auto* sheet = new MtIntraLevelRange(strands, 1, INT_MAX);
    protein.topology.addGroup(structures, sheet);
    protein.topology.addGroup(sites, new MtIntraLevelRange(protein.residuesIx, 9, 10));
    setText(&protein.topology, structures, "name", 0, "S");
    EXPECT_EQ(protein.read(turn(1, 29, 30)), "");
    setText(&protein.topology, structures, "type", 0, "sheet");
    McDArray<MtGroup*> const& groups = protein.topology.levels[structures]->groups;
    protein.topology.levels[structures]->groups.append(nullptr);

    EXPECT_EQ(protein.read(helix(2, 8, 30)), "Helix number 2 overlaps with the secStruct 1. Length adjusted.\n");
    EXPECT_EQ(protein.read(helix(3, 3, 10)), "Helix number 3 overlaps with the secStruct S. Length adjusted.\n");
    auto const* added = dynamic_cast<MtIntraLevelRange const*>(groups[4]);
    ASSERT_TRUE(added);
    EXPECT_TRUE(added->first == 2 && added->last == 8);
    sheet->first = -7;
    EXPECT_EQ(protein.read(helix(4, 5, 5)),
              "Helix number 4 skipped due to non adjustable overlaps with the secStruct S.\n");

    // Groups that only have the name of a sheet or a site.
    int const list = protein.topology.addGroup(structures, new MtDynamicGroup).groupIx;
    setText(&protein.topology, structures, "type", list, "strange");
    setText(&protein.topology, structures, "name", list, "L");
    EXPECT_EQ(protein.read(strand(1, "L", 2, 2) + "SITE     1        UNK A   1 \n"), "");
    EXPECT_EQ(groups[list]->size(), 0);
    EXPECT_EQ(protein.groups("sites"), " 9-10;  0; ");
}

TEST(PDBSecondaryStructure, OverlapWithOddRangesChangesNothingItCannotKeep) {
    SmallProtein const protein;
    PDBread const pdb(nullptr, nullptr);
    bool adjustable = true;
    for (auto const& [s, e, a, b] : {std::array{5, 9, INT_MIN, INT_MAX},
                                     {5, INT_MAX, 5, INT_MAX},
                                     {5, INT_MAX, 7, INT_MAX},
                                     {INT_MIN, 9, INT_MIN, 9},
                                     {INT_MIN, 9, 5, 9}}) {
        int first = s;
        int last = e;
        MtIntraLevelRange const other(protein.residuesIx, a, b);
        EXPECT_TRUE(pdb.checkSecStructOverlap(protein.info, &other, first, last, adjustable)) << s << ' ' << a;
        EXPECT_TRUE(!adjustable && first == s && last == e) << s << ' ' << a;
    }
    int first = 5;
    int last = 9;
    // A range without residues divides what it lies in.
    MtIntraLevelRange const empty(protein.residuesIx, 6, 5);
    EXPECT_TRUE(pdb.checkSecStructOverlap(protein.info, &empty, first, last, adjustable));
    EXPECT_TRUE(adjustable && first == 6 && last == 9);
    int conflict = 0;
    EXPECT_TRUE(pdb.checkSecStructUniqueness(protein.info, first, last, conflict, adjustable));
    EXPECT_TRUE(conflict == -1 && adjustable);
}

TEST(PDBSecondaryStructure, OwnerIsTheFirstGroupThatHoldsAMember) {
    std::unique_ptr<MolTopology> const twelve(newTopology(12));
    MolTopology& topology = *twelve;
    EXPECT_EQ(PDBread::getResIxOfAtom(molInfo(&topology), 3), -1);
    EXPECT_EQ(PDBread::getChainIxOfRes(molInfo(&topology), 3), -1);
    int const residuesIx = topology.addLevel("residues", 0, 12, -1);
    int const chainsIx = topology.addLevel("chains", residuesIx, 12, -1);
    auto* changed = new MtIntraLevelRange(0, 0, 0);
    for (MtGroup* residue : std::initializer_list<MtGroup*>{new MtIntraLevelRange(0, 6, 8), new MtIntraLevelRange,
                                                            listOf({{residuesIx, 4}, {0, 7}, {0, 2}}), changed,
                                                            new MtIntraLevelRange(0, 0, 5)}) {
        topology.addGroup(residuesIx, residue);
    }
    topology.levels[residuesIx]->setFlag(MtGroupingLevel::segmentation);
    molInfo const info(&topology);
    changed->last = 3;

    int const expected[] = {3, 3, 2, 3, 4, 4, 0, 0, 0, -1, -1, -1};
    for (int atom = 0; atom < 12; ++atom) {
        EXPECT_EQ(PDBread::getResIxOfAtom(info, atom), expected[atom]) << atom;
    }

    topology.addGroup(chainsIx, listOf({{0, 1}, {residuesIx, 4}}));
    topology.addGroup(chainsIx, new MtIntraLevelRange(residuesIx, 1, 4));
    EXPECT_EQ(PDBread::getChainIxOfRes(info, 0), -1);
    EXPECT_EQ(PDBread::getChainIxOfRes(info, 1), 1);
    EXPECT_EQ(PDBread::getChainIxOfRes(info, 4), 0);
}

} // namespace
