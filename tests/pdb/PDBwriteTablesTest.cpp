#include "PDBwriteSamples.h"
#include "qlt/MolTrajectoryVRK.h"

namespace {

using namespace tarnex::test;
using SecInfo = PDBwrite::secInfo;

std::string textOf(McDArray<int> const& table) {
    return joined(table.size, " ", [&](int i) { return std::to_string(table[i]); });
}

/// The tables of the residues and the secondary structure.
struct ResidueTables {
    explicit ResidueTables(PdbSample const& sample) {
        pdb.writePDBMolecule(sample.molecule.get(), scratchPath("tables.pdb").c_str(), false); // tells it the molecule
        pdb.generateResidueData2(molInfo(sample.topology), sample.topology, order, numbers, chains, structure);
    }
    /// "start-end" of each segment; "/" divides the parts of a structure, ";" the structures.
    std::string segments() const {
        return joined(structure.size, "; ", [&](int element) {
            return joined(structure[element].size, " / ", [&](int i) {
                SecInfo const& part = structure[element][i];
                auto const textOf = [&](int k) {
                    return std::to_string(part.start[k]) + "-" + std::to_string(part.end[k]);
                };
                return joined(part.start.size, " ", textOf);
            });
        });
    }

    PDBwrite pdb = pdbWriter();
    McDArray<int> order, numbers, chains;
    McDArray<McDArray<SecInfo>> structure;
};

TEST(PDBwriteTables, OnlyWaterIsNoHet) {
    PdbSample p({"HOH 1", "+HOH 1", "-HOH 1", "++HOH 1", "ALA 1", "WAT 1", "hoh 1", "HOHX 1"});
    auto const hetOf = [&](PDBwrite writer) {
        McBitfield het;
        writer.generateResidueData1(molInfo(p.topology), het);
        return joined(8, "", [&](int i) { return het[static_cast<unsigned long>(i)] ? "1" : "0"; });
    };
    EXPECT_EQ(hetOf(pdbWriter()), "00011111");
    // Each water of the database takes off a sign; other names and short ones count for nothing.
    Bundle bundle;
    for (char const* name : {"", "HO", "R.HOH", "HOH", "ALA", "HOH2"}) {
        Molecule empty(new MolTopology, true);
        empty.getTopology()->setName(name);
        bundle.append(new MolTrajectoryMem(&empty, 1));
    }
    std::string const database = scratchPath("two waters.qlt");
    ASSERT_TRUE(tarnex::writeQltBundle(bundle, database.c_str()));
    EXPECT_EQ(hetOf(PDBwrite(database.c_str(), nullptr, nullptr)), "00001111");
}

TEST(PDBwriteTables, NumbersRiseInEachChain) {
    PdbSample p({"ALA 5", "ALA 6", "ALA 9", "ALA 5", "ALA 5", "ALA 5", "ALA 9", "ALA 2", "ALA 7", "ALA 2147483647",
                 "ALA 1", "ALA 4", "ALA 4"});
    p.addChain("A", 0, 2);
    p.addChain("B", 3, 5);
    p.addChain("C", 6, 7);
    p.addChain("D", 9, 10); // the highest number stays
    ResidueTables const tables(p);
    EXPECT_EQ(textOf(tables.numbers), "5 6 9 5 6 7 9 10 7 2147483647 2147483647 8 9");
    EXPECT_EQ(textOf(tables.chains), "0 0 0 1 1 1 2 2 -1 3 3 -1 -1");
    EXPECT_EQ(textOf(tables.order), "0 1 2 3 4 5 6 7 9 10 8 11 12");
}

/// Each part is scanned as often as it has residues, and each scan goes on in the last segment.
TEST(PDBwriteTables, SegmentsOfPartsWithGaps) {
    PdbSample p({"ALA 5", "ALA 6", "ALA 9", "ALA 20", "ALA 20", "ALA 20"});
    p.addChain("A", 0, 2);
    p.addElement("helix", "1", {0, 1, 2});
    p.addElement("helix", "2", {});
    p.addElement("turn", "3", {5, 4, 3});
    p.addElement("other", "4", {4, 99, -1, 3});
    p.addElement("helix", "5", {1, 2, 4, 3}); // numbers what is outside the chains, without gaps till then
    p.addElement("helix", "6", {2, 0, 1, 1});
    ResidueTables const tables(p);
    EXPECT_EQ(tables.segments(), "0-1 2-1 2-1 2-2; ; 5-5 4-5 4-5 4-3; 4-3; "
                                 "1-1 2-1 2-2 4-1 2-2 4-1 2-2 4-3; "
                                 "2-2 0-1 1-2 0-1 1-2 0-1 1-2 0-1 1-1");
    EXPECT_EQ(textOf(tables.numbers), "5 6 9 21 20 22");
    EXPECT_EQ(textOf(tables.order), "0 1 2 4 3 5");
}

TEST(PDBwriteTables, SheetsAreCutWhereThePeptideEnds) {
    for (char const* type : {"sheet", static_cast<char const*>(nullptr)}) { // all are sheets without types
        PdbSample p;
        for (int i = 0; i < 8; ++i) p.addResidue("ALA " + std::to_string(i + 1) + " N:6 CA:6 C:6");
        for (int i : {1, 2, 4, 5, 6, 7}) p.addBond(3 * i, 3 * i - 1); // peptide bonds but for 2-3
        setText(p.topology, p.residuesIx(), "type", 7, "DA");         // a nucleotide has no backbone of this kind
        p.addElement(type, "A", {0, 1, 2, 3, 4, 6, 7});
        p.addElement(type, "B", {6, 5});
        p.addElement(type, "C", {});
        p.addElement(type, "D", {p.addStrand(1, 2), p.addStrand(4, 5), 9}, p.strandsIx());
        ResidueTables const tables(p);
        // The bond counts in one direction.
        EXPECT_EQ(tables.segments(), "0-2 / 3-4 / 6-6 / 7-7; 6-6 / 5-5; ; 1-2 / 4-5");
        int const structureIx = p.topology->getLevelIx("secondary_structure");
        EXPECT_EQ(tables.structure[0][0].group, MtGroupRef());
        EXPECT_EQ(tables.structure[0][1].group, MtGroupRef(structureIx, 0));
        EXPECT_EQ(tables.structure[3][1].group, MtGroupRef(p.strandsIx(), 1));
        molInfo const info(p.topology);
        EXPECT_EQ(tables.pdb.getCAtomOfResidue(info, 1), 5);
        EXPECT_EQ(tables.pdb.getNAtomOfResidue(info, 1), 3);
        EXPECT_EQ(tables.pdb.getNAtomOfResidue(info, 8), -1);
    }
}

TEST(PDBwriteTables, GroupsThatOverlapWithoutMeasure) {
    constexpr int many = 100000;
    PdbSample p;
    int const residuesIx = p.residuesIx();
    int const chainsIx = p.topology->addLevel("chains", residuesIx, 12, -1);
    int const structureIx = p.topology->addLevel("secondary_structure", residuesIx, 12, -1);
    setText(p.topology, structureIx, "type", 0, "helix");
    for (int i = 0; i < many; ++i) {
        p.topology->addGroup(0, new MtAtom);
        p.topology->addGroup(residuesIx, new MtIntraLevelRange(0, 0, many));
        p.topology->addGroup(chainsIx, new MtIntraLevelRange(residuesIx, 0, many));
        p.topology->addGroup(structureIx, new MtIntraLevelRange(residuesIx, 0, many));
        setInteger(p.topology, residuesIx, "pdb_index", i, 2 * i); // a gap behind each residue
    }
    molInfo const info(p.topology);
    PDBwrite pdb = pdbWriter();
    McDArray<int> order, numbers, chains, atoms(many), serials(many), residues(many);
    McDArray<McDArray<SecInfo>> structure;
    McBitfield inChain;
    pdb.generateResidueData2(info, p.topology, order, numbers, chains, structure);
    pdb.generateAtomData1(info, order, atoms, serials, residues);
    pdb.generateAtomData2(info, inChain);
    std::int64_t numSegments = 0;
    for (auto const& element : structure) numSegments += element[0].start.size;
    EXPECT_EQ(structure[0][0].residues.size, many);
    EXPECT_GT(numSegments, many);
    EXPECT_LT(numSegments, 12000000);
    EXPECT_EQ(numbers[many - 1], 2 * (many - 1));
    EXPECT_EQ(serials[many - 1], many);
    EXPECT_TRUE(inChain[many - 1]);
}

} // namespace
