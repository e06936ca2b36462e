#include "PDBreadSamples.h"
#include "support/compareTopologies.h"

#include <array>
#include <climits>
#include <random>

namespace {

using namespace tarnex::test;

/// Reads records one by one; returns the messages.
std::string readRecords(std::string const& records, MolTopology& topology, molInfo& info) {
    std::ostringstream messages;
    PDBread pdb(&messages, nullptr);
    for (lengthizer in(writeFile("records.pdb", records).c_str()); !in.eof; in.nextLine()) {
        in.getString(6);
        if (in.equals("HELIX")) pdb.parseHelixRecord(in, &topology, info);
        if (in.equals("SHEET")) pdb.parseSheetRecord(in, &topology, info);
        if (in.equals("TURN")) pdb.parseTurnRecord(in, &topology, info);
        if (in.equals("SITE")) pdb.parseSiteRecord(in, &topology, info);
    }
    return messages.str();
}

/// Residues of chain A, numbered from 1, and ten of chain B.
std::string atomsOf(int lengthOfA) {
    return joined(lengthOfA, "", [](int i) { return atom({.number = i + 1}); }) +
           joined(10, "", [](int i) { return atom({.chain = "B", .number = i + 1}); });
}

/// Residues A1 to A30 (indices 0 to 29) in chain A, B1 to B10 (30 to 39) in chain B; A12C (40), HETA31 (41) and others.
class SmallProtein {
public:
    explicit SmallProtein(std::string const& otherAtoms = "")
        : trajectory(readPDB(atomsOf(30) + atom({.number = 12, .insertion = "C"}) +
                             atom({.record = "HETATM", .number = 31}) + otherAtoms)) {
        // Ahead of chain A, which has these residues as well.
        topology.insertGroup(info.chainsIx, new MtIntraLevelRange(info.residuesIx, 24, 25), 0);
    }

    /// Returns the messages.
    std::string read(std::string const& records) { return readRecords(records, topology, info); }
    /// Structures, strands and sites.
    std::string groups() const {
        return namedGroups(&topology, "secondary_structure") + namedGroups(&topology, "strands") +
               namedGroups(&topology, "sites");
    }

    McHandle<MolTrajectory> trajectory;
    MolTopology& topology = *trajectory->getTopology();
    molInfo info{&topology};
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
    SmallProtein protein(atom({.number = -5}) + atom({.chain = " ", .number = 1000, .insertion = "D"}));
    // The columns between the fields hold an x.
    EXPECT_EQ(protein.read("HELIX x 12x H1xGLYxAx  12CxPROxAx  -5 99\n"
                           "HELIX x  3xHHHxGLYx x1000DxPROx x1000D99\n"
                           "SHEET x  1x  BxxxGLYxA   5 xPROxA   6 99\n"
                           "TURN  x-12xT1 xGLYxA   8 xPROxA   9 x\n"
                           "SITE  x  1xAC1xxxxGLYxA   1 xPROx 1000DxALAxB   3 xALAxA  12Cx\n"),
              "");
    EXPECT_EQ(protein.groups(), "helix H1 40-42; helix HHH 43-43; sheet B 4,5; turn -12 7-8; 0 4-5; AC1 0,43,32,40; ");
}

std::string const missing = " skipped due to references to nonexisting residues.\n";
std::string const adjusted = " overlaps with the secStruct 1. Length adjusted.\n";
std::string const skipped = " skipped due to non adjustable overlaps with the secStruct ";

TEST(PDBSecondaryStructure, LevelsAreMadeByTheFirstRecordWithResidues) {
    SmallProtein protein;
    auto const levels = protein.topology.levels.size;
    EXPECT_EQ(protein.read(helix(1, 10, 31) + helix(2, 31, 31) + strand(123, "A", 99, 3) + turn(3, 1, 31)),
              "Helix number 1" + missing + "Helix number 2" + missing + "Sheet A strand number 123" + missing +
                  "Turn 3" + missing);
    EXPECT_EQ(protein.topology.levels.size, levels);
    std::string const inverse = " references residues in inverse order. The ";
    EXPECT_EQ(protein.read(helix(1, 20, 10) + strand(2, "A", 4, 3) + "SITE     1 AC1  0\n"),
              "Helix number 1" + inverse + "helix has been skipped.\n" + "Sheet A strand number 2" + inverse +
                  "strand has been skipped.\nSite AC1references only non existing residues. Site skipped.\n");
    EXPECT_THAT(describe(&protein.topology), EndsWith("\nstrands(2) flags 17:  name=\n"
                                                      "secondary_structure(2) flags 3:  type= name=\n"
                                                      "sites(2) flags 3:  name="));
}

TEST(PDBSecondaryStructure, NewHelixIsCutByTheHelixAheadOfIt) {
    // Residues of the new one, counted from 1, and what is left of them, counted from 0.
    std::istringstream cases("15 30 20-29 20 21 20-20 5 15 4-8 9 10 8-8 5 30 20-29 8 22 20-21 7 22 6-8 9 20 8-8 "
                             "10 20 - 12 13 - 10 13 - 21 30 20-29 1 9 0-8");
    std::string left;
    for (int first = 0, last = 0; cases >> first >> last >> left;) {
        std::string const message = left == "-" ? skipped + "1.\n" : adjusted;
        bool const isWhole = left == format("%d-%d", first - 1, last - 1);
        SmallProtein protein;
        EXPECT_EQ(protein.read(helix(1, 10, 20) + helix(2, first, last)), isWhole ? "" : "Helix number 2" + message);
        EXPECT_EQ(protein.groups(), "helix 1 9-19; " + (left == "-" ? "" : "helix 2 " + left + "; ")) << first;
    }
}

TEST(PDBSecondaryStructure, RecordsOneAfterTheOther) {
    std::string const some = "Site AC1references non existing residues. Respective references have been skipped.\n";
    std::array<std::string, 3> const cases[] = {
        // Turns overlap with nothing; a helix is cut by one after the other.
        {turn(1, 5, 6) + turn(2, 10, 11) + turn(3, 5, 6) + helix(4, 5, 30) + helix(5, 9, 30) + turn(6, 12, 13) +
             helix(7, 12, 14),
         "Helix number 4 overlaps with the secStruct 2. Length adjusted.\nHelix number 5" + skipped +
             "4.\nHelix number 7" + skipped + "4.\n",
         "turn 1 4-5; turn 2 9-10; turn 3 4-5; helix 4 11-29; turn 6 11-12; "},
        // A range that is cut keeps the chains of its ends.
        {turn(1, 20, 20) + turn(2, 21, 30) + helix(3, 20, 4, 'B'), "Helix number 3" + skipped + "2.\n",
         "turn 1 19-19; turn 2 20-29; "},
        {turn(1, 5, 5) + turn(2, 29, 2, 'B') + helix(3, 5, 4, 'B'), "Helix number 3" + skipped + "2.\n",
         "turn 1 4-4; turn 2 28-31; "},
        {turn(1, 4, 8) + helix(3, 5, 4, 'B'), "Helix number 3" + adjusted, "turn 1 3-7; helix 3 8-33; "},
        {turn(1, 5, 5) + turn(2, 6, 24) + helix(3, 5, 30), "Helix number 3" + skipped + "2.\n",
         "turn 1 4-4; turn 2 5-23; "},
        // A turn in inverse order is swapped.
        {turn(7, 9, 4), "Turn 7 references residues in inverse order. The references have been swapped.\n",
         "turn 7 3-8; "},
        // Strands of one name make one sheet; they are cut as well, but not by each other.
        {strand(1, "5", 1, 3) + strand(2, "5", 2, 4) + strand(1, "B", 7, 7) + helix(5, 2, 3) + strand(3, "5", 9, 10) +
             strand(4, "5", 3, 5) + strand(5, "5", 2, 3),
         "Sheet 5 strand number 4 overlaps with the secStruct 5. Length adjusted.\nSheet 5 strand number 5" + skipped +
             "5.\n",
         "sheet 5 0,1,2,1,2,3; sheet B 6; helix 5 1-2; sheet 5 8,9,3,4; 0 0-2; 1 1-3; 2 6-6; 3 8-9; 4 3-4; "},
        // Sites go on and leave out what is missing.
        {"SITE     1 AC1  6 UNK A   9  UNK A   0  UNK A  -1  UNK A   2 \nSITE     2 AC1  6 UNK B   1  UNK A   9 \n"
         "SITE     3 AC1  6 UNK A  31  UNK B  11 \nSITE     4 AC1  6 UNK A  31  UNK B   2 \nSITE     4 AC1  6 \n"
         "SITE     1 AC2  1 UNK A  31 \nSITE     1      1 UNK A   1 \n",
         some + some + "Site AC2references only non existing residues. Site skipped.\n", "AC1 8,1,30,8,31;  0; "},
    };
    for (auto const& [records, messages, groups] : cases) {
        SmallProtein protein;
        EXPECT_EQ(protein.read(records), messages);
        EXPECT_EQ(protein.groups(), groups);
    }
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
    std::string const expected = readRecords(records, topology, info);
    info.strands->updateSegmentationFlag(&topology, info.strandsIx);
    EXPECT_EQ(messages.str(), expected + "Successfully imported.\n");
    EXPECT_EQ(compareTopologies(topology, *whole[0]->getTopology()), "");
    return expected;
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
    std::string grid; // cuts the last helix in many places
    for (int i = 1; i < length; i += 2) grid += helix(i, i, i);
    EXPECT_EQ(readBothWays(atoms, grid + turn(0, 300, 300) + helix(2, 2, 300)), "Helix number 2" + skipped + "0.\n");
    // Sheets do not grow out of proportion.
    auto const strandOf = [](int i) { return strand(i % 10, i % 2 ? "A" : "B", 1, 1000); };
    EXPECT_EQ(readBothWays(atomsOf(1000), joined(1001, "", strandOf)),
              "Sheet B strand number 0 skipped since the sheets have too many residues.\n");
}

TEST(PDBSecondaryStructure, PoorLinesAndTopologiesAreNoHarm) {
    std::string const records = "HELIX\nSHEET\r\nTURN\nSITE\nHELIX      HHHHHHHHHHHHHHH" + std::string(5000, '9') +
                                "\nTURN   -99\nSITE  " + std::string(60, '\0');
    std::string const noSite = "Site references only non existing residues. Site skipped.\n";
    std::string const messages = "Helix number 0" + missing + "Sheet  strand number 0" + missing + "Turn 0" + missing +
                                 noSite + "Helix number 0" + missing + "Turn -99" + missing + noSite;
    EXPECT_EQ(SmallProtein().read(records), messages);
    MolTopology noResidues;
    molInfo info(&noResidues);
    EXPECT_EQ(readRecords(records, noResidues, info), messages);
    EXPECT_EQ(noResidues.levels.size, 3);
}

TEST(PDBSecondaryStructure, LevelsOfAHostAreUsedAsTheyAre) {
    SmallProtein protein;
    MolTopology& topology = protein.topology;
    auto const range = [&](int first, int last) { return new MtIntraLevelRange(protein.info.residuesIx, first, last); };
    auto const add = [&](char const* level) { return topology.addLevel(level, protein.info.residuesIx, 12, -1); };
    int const strands = add("strands"), structures = add("secondary_structure"), sites = add("sites");
    protein.info = molInfo(&topology);
    topology.addGroup(strands, range(4, 4));
    topology.addGroup(strands, new MtDynamicGroup);
    topology.addGroup(strands, range(9, 10));
    // A sheet that is a range of strands, of which the last one does not exist.
    auto* sheet = new MtIntraLevelRange(strands, 1, INT_MAX);
    topology.addGroup(structures, sheet);
    topology.addGroup(sites, range(9, 10));
    setText(&topology, structures, "name", 0, "S");
    setText(&topology, structures, "type", 0, "sheet");
    // Groups that only have the name of a sheet or a site.
    topology.addGroup(structures, new MtDynamicGroup);
    setText(&topology, structures, "type", 1, "strange");
    setText(&topology, structures, "name", 1, "L");
    EXPECT_EQ(protein.read(strand(1, "L", 2, 2) + "SITE     1        UNK A   1 \n" + turn(1, 29, 30)), "");
    topology.levels[structures]->groups.append(nullptr);

    EXPECT_EQ(protein.read(helix(2, 8, 30)), "Helix number 2" + adjusted);
    EXPECT_EQ(protein.read(helix(3, 3, 10)), "Helix number 3 overlaps with the secStruct S. Length adjusted.\n");
    sheet->first = -7;
    EXPECT_EQ(protein.read(helix(4, 5, 5)), "Helix number 4" + skipped + "S.\n");
    EXPECT_EQ(protein.groups(), "sheet S 4:-7-2147483647; strange L ; sheet L 1; turn 1 28-29;   ; helix 2 11-27; "
                                "helix 3 2-8;  4-4;  ;  9-10; 3 1-1;  9-10;  0; ");
}

TEST(PDBSecondaryStructure, OverlapWithOddRangesChangesNothingItCannotKeep) {
    SmallProtein const protein;
    // The new range, the other one, and what is left; nothing changes if the overlap cannot be mended.
    for (auto const& [s, e, a, b, first, last] : {std::array{5, 9, INT_MIN, INT_MAX, 5, 9},
                                                  {5, INT_MAX, 5, INT_MAX, 5, INT_MAX},
                                                  {5, INT_MAX, 7, INT_MAX, 5, INT_MAX},
                                                  {INT_MIN, 9, INT_MIN, 9, INT_MIN, 9},
                                                  {INT_MIN, 9, 5, 9, INT_MIN, 9},
                                                  {5, 9, 6, 5, 6, 9}}) { // without residues, it divides what it is in
        int newFirst = s, newLast = e;
        bool adjustable = true;
        MtIntraLevelRange const other(protein.info.residuesIx, a, b);
        EXPECT_TRUE(
            PDBread(nullptr, nullptr).checkSecStructOverlap(protein.info, &other, newFirst, newLast, adjustable));
        EXPECT_EQ(adjustable, s != first) << s << ' ' << a;
        EXPECT_TRUE(newFirst == first && newLast == last) << s << ' ' << a;
    }
}

TEST(PDBSecondaryStructure, OwnerIsTheFirstGroupThatHoldsAMember) {
    std::unique_ptr<MolTopology> const topology(newTopology(12));
    EXPECT_EQ(PDBread::getResIxOfAtom(molInfo(topology.get()), 3), -1);
    EXPECT_EQ(PDBread::getChainIxOfRes(molInfo(topology.get()), 3), -1);
    int const residuesIx = topology->addLevel("residues", 0, 12, -1);
    int const chainsIx = topology->addLevel("chains", residuesIx, 12, -1);
    auto* changed = new MtIntraLevelRange(0, 0, 0);
    for (MtGroup* residue : std::initializer_list<MtGroup*>{new MtIntraLevelRange(0, 6, 8), new MtIntraLevelRange,
                                                            listOf({{residuesIx, 4}, {0, 7}, {0, 2}}), changed,
                                                            new MtIntraLevelRange(0, 0, 5)}) {
        topology->addGroup(residuesIx, residue);
    }
    topology->addGroup(chainsIx, listOf({{0, 1}, {residuesIx, 4}}));
    topology->addGroup(chainsIx, new MtIntraLevelRange(residuesIx, 1, 4));
    topology->levels[residuesIx]->setFlag(MtGroupingLevel::segmentation); // not true any more
    molInfo const info(topology.get());
    changed->last = 3;
    auto const ownerOf = [&](int atom) { return std::to_string(PDBread::getResIxOfAtom(info, atom)); };
    EXPECT_EQ(joined(12, " ", ownerOf), "3 3 2 3 4 4 0 0 0 -1 -1 -1");
    auto const chainOf = [&](int residue) { return std::to_string(PDBread::getChainIxOfRes(info, residue)); };
    EXPECT_EQ(joined(5, " ", chainOf), "-1 1 1 1 0");
}

} // namespace
