#include "PDBwriteSamples.h"
#include "qlt/MolTrajectoryVRK.h"

#include <algorithm>
#include <climits>
#include <random>

namespace {

using namespace tarnex::test;
using Numbers = std::vector<int>;
using SecInfo = PDBwrite::secInfo;

Numbers numbersOf(McDArray<int> const& table) {
    return {table.begin(), table.end()};
}

/// The tables of the residues and the secondary structure.
struct ResidueTables {
    explicit ResidueTables(PdbSample& sample) {
        molInfo const info(sample.topology);
        std::string const path = scratchPath("tables.pdb");
        EXPECT_TRUE(pdb.writePDBMolecule(sample.molecule.get(), path.c_str(), false)); // tells it the molecule
        pdb.generateResidueData1(info, het);
        pdb.generateResidueData2(info, sample.topology, order, numbers, chains, structure);
    }
    /// "start-end" of each segment, the parts divided by "/".
    std::string segments(int element) const {
        std::string text;
        for (SecInfo const& part : structure[element]) {
            if (!text.empty()) text += " /";
            for (int i = 0; i < part.start.size; ++i) {
                text += (text.empty() ? "" : " ") + std::to_string(part.start[i]) + "-" + std::to_string(part.end[i]);
            }
        }
        return text;
    }

    PDBwrite pdb{residueDatabase(), nullptr, nullptr};
    McBitfield het;
    McDArray<int> order, numbers, chains;
    McDArray<McDArray<SecInfo>> structure;
};

TEST(PDBwriteTables, OnlyWaterIsNoHet) {
    PdbSample p;
    for (char const* type : {"HOH", "+HOH", "-HOH", "++HOH", "ALA", "WAT", "hoh", "HOHX", ""}) p.addResidue(type, 1);
    ResidueTables const tables(p);
    std::string het;
    for (unsigned long i = 0; i < tables.het.size(); ++i) het += tables.het[i] ? '1' : '0';
    EXPECT_EQ(het, "000111111");

    // Each water of the database takes off a sign; other names and short ones count for nothing.
    McDArray<McHandle<MolTrajectory>> bundle;
    for (char const* name : {"", "HO", "R.HOH", "HOH", "ALA", "HOH2"}) {
        Molecule empty(new MolTopology, true);
        empty.getTopology()->setName(name);
        bundle.append(new MolTrajectoryMem(&empty, 1));
    }
    std::string const database = scratchPath("two waters.qlt");
    ASSERT_TRUE(tarnex::writeQltBundle(bundle, database.c_str()));
    McBitfield bits;
    PDBwrite(database.c_str(), nullptr, nullptr).generateResidueData1(molInfo(p.topology), bits);
    EXPECT_FALSE(bits[3]); // "++HOH"
    EXPECT_TRUE(bits[4]);
}

TEST(PDBwriteTables, NumbersRiseInEachChain) {
    PdbSample p;
    for (int const number : {5, 6, 9, 5, 5, 5, 9, 2, 7, INT_MAX, 1, 4, 4}) p.addResidue("ALA", number);
    p.addChain("A", 0, 2);
    p.addChain("B", 3, 5);
    p.addChain("C", 6, 7);
    p.addChain("D", 9, 10); // the highest number stays
    ResidueTables const tables(p);
    EXPECT_EQ(numbersOf(tables.numbers), (Numbers{5, 6, 9, 5, 6, 7, 9, 10, 7, INT_MAX, INT_MAX, 8, 9}));
    EXPECT_EQ(numbersOf(tables.chains), (Numbers{0, 0, 0, 1, 1, 1, 2, 2, -1, 3, 3, -1, -1}));
    EXPECT_EQ(numbersOf(tables.order), (Numbers{0, 1, 2, 3, 4, 5, 6, 7, 9, 10, 8, 11, 12}));
}

TEST(PDBwriteTables, SegmentsOfPartsWithGaps) {
    PdbSample p;
    for (int const number : {5, 6, 9, 20, 20, 20}) p.addResidue("ALA", number);
    p.addChain("A", 0, 2);
    p.addElement("helix", "1", {0, 1, 2});
    p.addElement("helix", "2", {});
    p.addElement("turn", "3", {5, 4, 3}); // outside the chains: numbered in the order of the part
    p.addElement("other", "4", {4, 99, -1, 3});
    ResidueTables const tables(p);
    EXPECT_EQ(tables.segments(0), "0-1 2-1 2-1 2-2");
    EXPECT_EQ(tables.segments(1), "");
    EXPECT_EQ(tables.segments(2), "5-3");
    EXPECT_EQ(tables.segments(3), "4-3");
    EXPECT_EQ(numbersOf(tables.numbers), (Numbers{5, 6, 9, 22, 21, 20}));
    EXPECT_EQ(numbersOf(tables.order), (Numbers{0, 1, 2, 5, 4, 3}));
    EXPECT_EQ(tables.structure[0][0].group, MtGroupRef(p.topology->getLevelIx("secondary_structure"), 0));
}

/// Peptides of N, CA and C, bonded where a residue follows another.
PdbSample makePeptides(int numResidues, std::initializer_list<int> unbonded) {
    PdbSample p;
    for (int i = 0; i < numResidues; ++i) {
        for (char const* type : {"N", "CA", "C"}) p.addAtom(type, 6);
        p.addResidue("ALA", i + 1, 3);
        if (i > 0 && std::count(unbonded.begin(), unbonded.end(), i) == 0) p.addBond(3 * i, 3 * i - 1);
    }
    return p;
}

TEST(PDBwriteTables, SheetsAreCutWhereThePeptideEnds) {
    PdbSample p = makePeptides(8, {3});
    p.addElement("sheet", "A", {0, 1, 2, 3, 4, 6, 7});
    p.addElement("sheet", "B", {7, 6});
    p.addElement("sheet", "C", {5});
    p.addElement("sheet", "D", {});
    p.addElementOf("sheet", "E", p.strandsIx(), {p.addStrand(1, 2), p.addStrand(4, 5), 9});
    ResidueTables const tables(p);
    EXPECT_EQ(tables.segments(0), "0-2 / 3-4 / 6-7");
    EXPECT_EQ(tables.segments(1), "7-7 / 6-6"); // the bond counts in one direction
    EXPECT_EQ(tables.segments(2), "5-5");
    EXPECT_EQ(tables.segments(3), "");
    EXPECT_EQ(tables.segments(4), "1-2 / 4-5");
    int const structureIx = p.topology->getLevelIx("secondary_structure");
    EXPECT_EQ(tables.structure[0][0].group, MtGroupRef());
    EXPECT_EQ(tables.structure[0][1].group, MtGroupRef(structureIx, 0));
    EXPECT_EQ(tables.structure[4][1].group, MtGroupRef(p.strandsIx(), 1));
}

TEST(PDBwriteTables, StructureWithoutTypesIsSheets) {
    PdbSample p = makePeptides(4, {2});
    p.addElementOf(nullptr, "A", p.residuesIx(), {0, 1, 2, 3});
    ResidueTables const tables(p);
    EXPECT_EQ(tables.segments(0), "0-1 / 2-3");
    molInfo const info(p.topology);
    EXPECT_EQ(tables.pdb.getCAtomOfResidue(info, 1), 5);
    EXPECT_EQ(tables.pdb.getNAtomOfResidue(info, 1), 3);
    EXPECT_EQ(tables.pdb.getNAtomOfResidue(info, 4), -1);
    p.text(p.residuesIx(), "type", 1, "DA"); // a nucleotide has no backbone of this kind
    EXPECT_EQ(tables.pdb.getNAtomOfResidue(info, 1), -1);
}

/// The segment scan step by step: once for each membership, in the order of the residues.
class SlowTables {
public:
    SlowTables(PdbSample& p, ResidueTables const& tables) : structure(tables.structure) {
        auto* index = p.topology->getLevel(p.residuesIx())->integerAttribute("pdb_index", MtGroupingLevel::FIND, true);
        auto const numResidues = static_cast<int>(tables.numbers.size);
        numbers.assign(static_cast<std::size_t>(numResidues), -1);
        for (int const residue : tables.order) {
            if (tables.chains[residue] >= 0) at(residue) = tables.numbers[residue];
        }
        std::vector<std::vector<SecInfo*>> memberships(static_cast<std::size_t>(numResidues));
        for (auto& element : structure) {
            for (SecInfo& part : element) {
                part.start.resize(0);
                part.end.resize(0);
                for (int const residue : part.residues) {
                    memberships[static_cast<std::size_t>(residue)].push_back(&part);
                }
            }
        }
        int running = 1;
        auto const number = [&](int residue) {
            running = std::max(running, index->getValue(residue));
            at(residue) = running++;
        };
        for (int i = 0; i < numResidues; ++i) {
            for (SecInfo* part : memberships[static_cast<std::size_t>(i)]) scan(*part, number);
            if (memberships[static_cast<std::size_t>(i)].empty() && at(i) < 0) number(i);
        }
    }

    McDArray<McDArray<SecInfo>> structure;
    std::vector<int> numbers;

private:
    int& at(int residue) { return numbers[static_cast<std::size_t>(residue)]; }

    template <class Number>
    void scan(SecInfo& part, Number const& number) {
        auto segment = part.start.size - 1;
        for (int k = 0; k < part.residues.size; ++k) {
            int const r = part.residues[k];
            if (segment == -1 || (at(r) != -1 && k > 0 && at(part.residues[k - 1]) != at(r) - 1)) {
                ++segment;
                part.start.append(-1);
                part.end.append(-1);
            }
            if (part.start[segment] < 0) part.start[segment] = r;
            part.end[segment] = r;
            if (at(r) == -1) number(r);
        }
    }
};

TEST(PDBwriteTables, SegmentsAreThoseOfTheRepeatedScan) {
    std::mt19937 random(7);
    auto const below = [&](int n) { return static_cast<int>(random() % static_cast<unsigned>(n)); };
    char const* const types[] = {"helix", "turn", "sheet"};
    std::int64_t numSegments = 0;
    for (int round = 0; round < 80; ++round) {
        PdbSample p = makePeptides(20, {below(20), below(20)});
        for (int i = 0; i < 20; ++i) p.integer(p.residuesIx(), "pdb_index", i, below(3) == 0 ? below(30) : i);
        p.addChain("A", below(5), 5 + below(3));
        p.addChain("B", 9, 9 + below(5));
        for (int i = 0; i < 6; ++i) {
            int const first = below(20);
            p.addElement(types[below(3)], "x", {first, first + 1, first + 2, below(20), below(20), first + 3});
        }
        ResidueTables const tables(p);
        SlowTables const slow(p, tables);
        ASSERT_EQ(numbersOf(tables.numbers), slow.numbers);
        for (int i = 0; i < 6; ++i) {
            ASSERT_EQ(tables.structure[i].size, slow.structure[i].size);
            for (int part = 0; part < slow.structure[i].size; ++part) {
                ASSERT_EQ(numbersOf(tables.structure[i][part].start), numbersOf(slow.structure[i][part].start));
                ASSERT_EQ(numbersOf(tables.structure[i][part].end), numbersOf(slow.structure[i][part].end));
                numSegments += slow.structure[i][part].start.size;
            }
        }
    }
    EXPECT_GT(numSegments, 80 * 6 * 4); // most parts have gaps
}

TEST(PDBwriteTables, GroupsThatOverlapWithoutMeasure) {
    constexpr int many = 100000;
    PdbSample p;
    int const residuesIx = p.residuesIx();
    int const chainsIx = p.topology->addLevel("chains", residuesIx, 12, -1);
    int const structureIx = p.topology->addLevel("secondary_structure", residuesIx, 12, -1);
    p.text(structureIx, "type", 0, "helix");
    for (int i = 0; i < many; ++i) {
        p.topology->addGroup(0, new MtAtom);
        p.topology->addGroup(residuesIx, new MtIntraLevelRange(0, 0, many));
        p.topology->addGroup(chainsIx, new MtIntraLevelRange(residuesIx, 0, many));
        p.topology->addGroup(structureIx, new MtIntraLevelRange(residuesIx, 0, many));
        p.integer(residuesIx, "pdb_index", i, 2 * i); // a gap behind each residue
    }
    molInfo const info(p.topology);
    PDBwrite pdb(residueDatabase(), nullptr, nullptr);
    McDArray<int> order, numbers, chains, atoms(many), serials(many), residues(many);
    McDArray<McDArray<SecInfo>> structure;
    McBitfield inChain;
    pdb.generateResidueData2(info, p.topology, order, numbers, chains, structure);
    pdb.generateAtomData1(info, order, atoms, serials, residues);
    pdb.generateAtomData2(info, inChain);
    std::int64_t numSegments = 0;
    for (auto const& element : structure) {
        for (SecInfo const& part : element) numSegments += part.start.size;
    }
    EXPECT_EQ(structure[0][0].residues.size, many);
    EXPECT_GT(numSegments, many);
    EXPECT_LT(numSegments, 12000000);
    EXPECT_EQ(numbers[many - 1], 2 * (many - 1));
    EXPECT_EQ(serials[many - 1], many);
    EXPECT_TRUE(inChain[many - 1]);
}

TEST(PDBwriteTables, AtomsAndBonds) {
    PdbSample p;
    for (char const* type : {"C", "SG", "S", "N", "C", "SD", "C"}) p.addAtom(type, 6);
    p.topology->addGroup(p.residuesIx(), new MtIntraLevelRange(0, 4, 6)); // ahead, by its index
    p.topology->addGroup(p.residuesIx(), new MtIntraLevelRange(0, 1, 4));
    p.addChain("A", 1, 1);
    for (auto const& [a, b] : {std::pair{1, 2}, {2, 3}, {5, 1}, {0, 3}, {6, 6}}) p.addBond(a, b);
    molInfo const info(p.topology);
    PDBwrite pdb(residueDatabase(), nullptr, nullptr);

    McDArray<int> order(2), atoms(7), serials(7), residues(7);
    order[0] = 1;
    order[1] = 0;
    pdb.generateAtomData1(info, order, atoms, serials, residues);
    EXPECT_EQ(numbersOf(atoms), (Numbers{1, 2, 3, 4, 5, 6, 0}));
    EXPECT_EQ(numbersOf(serials), (Numbers{7, 1, 2, 3, 4, 5, 6}));
    EXPECT_EQ(numbersOf(residues), (Numbers{-1, 1, 1, 1, 1, 0, 0}));
    McBitfield inChain;
    pdb.generateAtomData2(info, inChain);
    for (unsigned long i = 0; i < 7; ++i) EXPECT_EQ(inChain[i], i >= 1 && i <= 4);

    McBitfield het(2, McBitfield::CLEARED); // both of the ATOM class
    McDArray<McDArray<int>> bonded(7);
    McDArray<int> sulfurBonds;
    pdb.generateBondData(info, residues, het, bonded, sulfurBonds);
    EXPECT_EQ(numbersOf(sulfurBonds), (Numbers{0, 2}));
    EXPECT_EQ(numbersOf(bonded[1]), (Numbers{2, 5}));
    EXPECT_EQ(numbersOf(bonded[0]), (Numbers{3})); // in no residue
    EXPECT_EQ(numbersOf(bonded[3]), (Numbers{0})); // 2-3 is implied
    EXPECT_EQ(bonded[6].size, 0);
    het.set(0);
    McDArray<McDArray<int>> bondedHet(7);
    pdb.generateBondData(info, residues, het, bondedHet, sulfurBonds);
    EXPECT_EQ(numbersOf(bondedHet[6]), (Numbers{6, 6}));
    EXPECT_EQ(sulfurBonds.size, 3); // 5-1 is written for its HETATM end
}

} // namespace
