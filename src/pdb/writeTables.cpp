#include "pdb/writeTables.h"

#include "foundation/report.h"
#include "model/members.h"
#include "pdb/PDBwrite.h"
#include "qlt/MolTrajectoryVRK.h"

#include <climits>
#include <cstring>

namespace {

using tarnex::pdb::isHet;
using tarnex::pdb::LevelMembers;
using tarnex::pdb::valueAt;

constexpr int unassigned = -1;
constexpr char const* waterName = "HOH";

int numberOf(McDArray<MtGroup*> const& groups) {
    return static_cast<int>(groups.size);
}

void fillWith(McDArray<int>& table, std::int64_t size, int value) {
    table.resize(size);
    std::fill(table.begin(), table.end(), value);
}

/// Each water entry of the residue database takes one sign off the type, as of a terminal residue, and compares.
bool isWater(char const* type, int waterEntries) {
    for (int i = 0; i < waterEntries; ++i) {
        if (*type == '+' || *type == '-') ++type;
        if (std::strcmp(type, waterName) == 0) return true;
    }
    return false;
}

/// The first atom of a residue that has the given type, for residues whose own type has three or more letters.
int findBackboneAtom(molInfo const& info, LevelMembers& atoms, int residue, char const* type) {
    if (!info.hasResidues || !info.atomType || residue < 0 || residue >= info.residues->groups.size) return -1;
    constexpr std::size_t shortestType = 3;
    if (info.residueType && std::strlen(info.residueType->getValue(residue)) < shortestType) return -1;
    return atoms.find(info.residues->groups[residue],
                      [&](int atom) { return std::strcmp(info.atomType->getValue(atom), type) == 0; });
}

bool haveBond(Molecule* molecule, int atomA, int atomB) {
    if (atomA < 0 || atomB < 0 || !molecule) return false;
    MolTopology const* topology = molecule->getTopology();
    return topology && topology->findBond(atomA, atomB) >= 0;
}

/// Gives residues their place in the order and numbers that rise. The "pdb_index" of a residue lifts its number, where
/// that is ahead of the count.
class ResidueNumbering {
public:
    ResidueNumbering(molInfo const& info, McDArray<int>& residueOrder, McDArray<int>& pdbIndexOfResidue)
        : pdbIndex(info.residues->integerAttribute("pdb_index", MtGroupingLevel::FIND, true)), order(residueOrder),
          numbers(pdbIndexOfResidue) {}

    void restart() { next = 1; }
    void append(int residue) {
        order.append(residue);
        if (pdbIndex) next = std::max(next, pdbIndex->getValue(residue));
        numbers[residue] = next;
        if (next < INT_MAX) ++next;
    }
    bool isNumbered(int residue) const { return numbers[residue] != unassigned; }
    bool follows(int residue, int previous) const { return numbers[previous] == numbers[residue] - 1; }

private:
    MtIntegerAttribute const* pdbIndex;
    McDArray<int>& order;
    McDArray<int>& numbers;
    int next = 1;
};

/// Lists the parts of the elements of the secondary structure with their residues.
class PartBuilder {
public:
    PartBuilder(molInfo const& topologyInfo, MolTopology const& partsTopology, Molecule* bondedMolecule)
        : info(topologyInfo), topology(partsTopology), molecule(bondedMolecule), strands(info.strands, info.strandsIx),
          residues(info.residues, info.residuesIx), atoms(info.atoms, info.atomsIx) {}

    void addParts(int element, McDArray<PDBwrite::secInfo>& parts) {
        MtGroup const* group = info.secondaryStructure->groups[element];
        if (info.secStructType && std::strcmp(info.secStructType->getValue(element), "sheet") != 0) {
            addPart(group, MtGroupRef(info.secondaryStructureIx, element), parts);
        } else if (group && info.hasStrands && group->size() > 0 && (*group)[0].levelIx == info.strandsIx) {
            addStrands(group, parts);
        } else {
            addFlatSheet(group, element, parts);
        }
    }

private:
    static PDBwrite::secInfo& newPart(McDArray<PDBwrite::secInfo>& parts, MtGroupRef ref) {
        parts.resize(parts.size + 1);
        parts[parts.size - 1].group = ref;
        return parts[parts.size - 1];
    }

    void addPart(MtGroup const* group, MtGroupRef ref, McDArray<PDBwrite::secInfo>& parts) {
        McDArray<int>& members = newPart(parts, ref).residues;
        residues.forEach(group, [&](int residue) { members.append(residue); });
    }

    void addStrands(MtGroup const* sheet, McDArray<PDBwrite::secInfo>& parts) {
        strands.forEach(sheet, [&](int strand) {
            addPart(topology.levels[info.strandsIx]->groups[strand], MtGroupRef(info.strandsIx, strand), parts);
        });
    }

    /// The sheet lists the residues of all its strands. A strand ends where the peptide chain does.
    void addFlatSheet(MtGroup const* sheet, int element, McDArray<PDBwrite::secInfo>& parts) {
        newPart(parts, MtGroupRef());
        int previous = -1;
        residues.forEach(sheet, [&](int residue) {
            if (previous >= 0 && !areBonded(previous, residue)) {
                newPart(parts, MtGroupRef(info.secondaryStructureIx, element));
            }
            parts[parts.size - 1].residues.append(residue);
            previous = residue;
        });
    }

    /// As `areResiduesBonded`, with one measure for all walks.
    bool areBonded(int residueA, int residueB) {
        return haveBond(molecule, findBackboneAtom(info, atoms, residueA, "C"),
                        findBackboneAtom(info, atoms, residueB, "N"));
    }

    molInfo const& info;
    MolTopology const& topology;
    Molecule* molecule;
    LevelMembers strands;
    LevelMembers residues;
    LevelMembers atoms;
};

/// Finds the segments of parts: runs of residues with consecutive numbers.
class SegmentScan {
public:
    explicit SegmentScan(ResidueNumbering& residueNumbering) : numbering(residueNumbering) {}

    /// A part is scanned once for each of its residues, and each scan goes on in the last segment of the one before.
    void scan(PDBwrite::secInfo& part) {
        scanAndNumber(part);
        repeat(part);
    }

private:
    bool isGap(McDArray<int> const& residues, std::int64_t k) const {
        return !numbering.follows(residues[k], residues[k - 1]);
    }

    /// The first scan numbers the residues outside the chains; until then they make no gap.
    void scanAndNumber(PDBwrite::secInfo& part) {
        for (std::int64_t k = 0; k < part.residues.size; ++k) {
            int const residue = part.residues[k];
            bool const isNumbered = numbering.isNumbered(residue);
            if (k == 0 || (isNumbered && isGap(part.residues, k))) {
                part.start.append(residue);
                part.end.append(residue);
            }
            part.end[part.end.size - 1] = residue;
            if (!isNumbered) numbering.append(residue);
        }
    }

    /// The numbers are settled now, so that all further scans do the same: the residues ahead of the first gap move the
    /// end of the last segment, and each gap begins a new one.
    void repeat(PDBwrite::secInfo& part) {
        McDArray<int> const& residues = part.residues;
        McDArray<std::int64_t> gaps;
        for (std::int64_t k = 1; k < residues.size; ++k) {
            if (isGap(residues, k)) gaps.append(k);
        }
        if (gaps.size == 0) return;
        std::int64_t const scans = std::min(residues.size - 1, segmentsLeft / gaps.size);
        segmentsLeft -= scans * gaps.size;
        part.start.reserve(part.start.size + scans * gaps.size);
        part.end.reserve(part.end.size + scans * gaps.size);
        for (std::int64_t scan = 0; scan < scans; ++scan) {
            for (std::int64_t const gap : gaps) {
                part.end[part.end.size - 1] = residues[gap - 1];
                part.start.append(residues[gap]);
                part.end.append(residues[residues.size - 1]);
            }
        }
    }

    ResidueNumbering& numbering;
    std::int64_t segmentsLeft = tarnex::pdb::mostSegments;
};

/// The parts in the order in which a walk over all residues meets them.
class PartsByResidue {
public:
    PartsByResidue(McDArray<McDArray<PDBwrite::secInfo>>& secondaryStructure, int numResidues)
        : members(static_cast<unsigned long>(numResidues), McBitfield::CLEARED) {
        for (McDArray<PDBwrite::secInfo>& element : secondaryStructure) {
            for (PDBwrite::secInfo& part : element) add(part);
        }
        std::stable_sort(parts.begin(), parts.end(), [](Part const& a, Part const& b) { return a.first < b.first; });
    }

    bool haveMember(int residue) const { return members[static_cast<unsigned long>(residue)]; }

    /// Calls `visit(secInfo&)` for each part whose lowest residue this is.
    template <class Visitor>
    void visitAt(int residue, Visitor&& visit) {
        for (; next < parts.size && parts[next].first == residue; ++next) visit(*parts[next].part);
    }

private:
    struct Part {
        int first;
        PDBwrite::secInfo* part;
    };

    void add(PDBwrite::secInfo& part) {
        if (part.residues.size == 0) return;
        for (int const residue : part.residues) members.set(static_cast<unsigned long>(residue));
        parts.append({*std::min_element(part.residues.begin(), part.residues.end()), &part});
    }

    McBitfield members;
    McDArray<Part> parts;
    std::int64_t next = 0;
};

bool isSulfur(molInfo const& info, int atom) {
    return info.atomType && *info.atomType->getValue(atom) == 'S';
}

/// The bonds that are written, found twice: to count them for each atom, so that its list is made in one piece, and to
/// list them.
class WrittenBonds {
public:
    WrittenBonds(molInfo const& topologyInfo, McDArray<int> const& residuesOfAtoms, McBitfield const& hetResidues)
        : info(topologyInfo), residueOfAtom(residuesOfAtoms), hetResidue(hetResidues) {}

    /// Calls `visit(bond, atomA, atomB, isSulfurBridge)`.
    template <class Visitor>
    void forEach(Visitor&& visit) const {
        McDArray<MtGroup*> const& bonds = info.bonds->groups;
        int const numAtoms = numberOf(info.atoms->groups);
        for (int bond = 0; bond < bonds.size; ++bond) {
            int a = -1;
            int b = -1;
            if (!tarnex::getBondAtoms(bonds[bond], a, b)) continue;
            if (a < 0 || b < 0 || a >= numAtoms || b >= numAtoms) continue;
            bool const hasHet = !info.hasResidues || isHetAtom(a) || isHetAtom(b);
            // Other bonds between ATOM residues are implied by the residues.
            if (hasHet || (isSulfur(info, a) && isSulfur(info, b))) visit(bond, a, b, !hasHet);
        }
    }

private:
    bool isHetAtom(int atom) const { return isHet(hetResidue, valueAt(residueOfAtom, atom, -1)); }

    molInfo const& info;
    McDArray<int> const& residueOfAtom;
    McBitfield const& hetResidue;
};

} // namespace

void PDBwrite::generateResidueData1(molInfo const& info, McBitfield& hetResidue) {
    if (!info.hasResidues) return;
    int const numResidues = numberOf(info.residues->groups);
    hetResidue.resize(static_cast<unsigned long>(numResidues), McBitfield::CLEARED);
    hetResidue.setAll();
    if (!info.residueType) return;

    McDArray<McHandle<MolTrajectory>> bundle;
    MolTrajectoryVRK::readBundle(residueDatabase, bundle);
    if (bundle.size == 0) {
        tarnex::report(messages, "Could not load residue database.",
                       " Can't distinguish ATOM from HETATM groups on chain.\n");
        return;
    }
    // Of the entries only water counts: all other residues are written as HETATM.
    auto const waterEntries = std::count_if(bundle.begin(), bundle.end(), [](McHandle<MolTrajectory> const& entry) {
        return std::strncmp(entry->getTopology()->getName(), waterName, std::strlen(waterName)) == 0;
    });
    for (int i = 0; i < numResidues; ++i) {
        if (isWater(info.residueType->getValue(i), static_cast<int>(waterEntries))) {
            hetResidue.unset(static_cast<unsigned long>(i));
        }
    }
}

void PDBwrite::generateResidueData2(molInfo const& info, MolTopology const* topology, McDArray<int>& residueOrder,
                                    McDArray<int>& pdbIndexOfResidue, McDArray<int>& chainOfResidue,
                                    McDArray<McDArray<secInfo>>& secondaryStructure) {
    if (!info.hasResidues) return;
    int const numResidues = numberOf(info.residues->groups);
    fillWith(pdbIndexOfResidue, numResidues, unassigned);
    fillWith(chainOfResidue, numResidues, unassigned);
    if (info.secondaryStructureIx >= 0) {
        secondaryStructure.clear();
        secondaryStructure.resize(info.secondaryStructure->groups.size);
        PartBuilder builder(info, *topology, molecule);
        for (int i = 0; i < secondaryStructure.size; ++i) builder.addParts(i, secondaryStructure[i]);
    }

    ResidueNumbering numbering(info, residueOrder, pdbIndexOfResidue);
    LevelMembers residues(info.residues, info.residuesIx);
    for (int chain = 0; info.hasChains && chain < info.chains->groups.size; ++chain) {
        numbering.restart();
        residues.forEach(info.chains->groups[chain], [&](int residue) {
            chainOfResidue[residue] = chain;
            numbering.append(residue);
        });
    }

    numbering.restart();
    PartsByResidue parts(secondaryStructure, numResidues);
    SegmentScan segments(numbering);
    for (int i = 0; i < numResidues; ++i) {
        if (parts.haveMember(i)) {
            parts.visitAt(i, [&](secInfo& part) { segments.scan(part); });
        } else if (!numbering.isNumbered(i)) {
            numbering.append(i);
        }
    }
}

void PDBwrite::generateAtomData1(molInfo const& info, McDArray<int> const& residueOrder, McDArray<int>& atomOrder,
                                 McDArray<int>& serialOfAtom, McDArray<int>& residueOfAtom) {
    int const numAtoms = numberOf(info.atoms->groups);
    fillWith(serialOfAtom, numAtoms, unassigned);
    fillWith(residueOfAtom, numAtoms, unassigned);
    atomOrder.resize(numAtoms);
    int placed = 0;
    auto const place = [&](int atom, int residue) {
        if (serialOfAtom[atom] != unassigned) return;
        atomOrder[placed] = atom;
        serialOfAtom[atom] = ++placed;
        residueOfAtom[atom] = residue;
    };
    if (info.hasResidues) {
        LevelMembers atoms(info.atoms, info.atomsIx);
        for (int const residue : residueOrder) {
            atoms.forEach(info.residues->groups[residue], [&](int atom) { place(atom, residue); });
        }
    }
    for (int atom = 0; atom < numAtoms; ++atom) place(atom, -1);
}

void PDBwrite::generateAtomData2(molInfo const& info, McBitfield& atomInChain) {
    atomInChain.resize(static_cast<unsigned long>(info.atoms->groups.size), McBitfield::CLEARED);
    if (!info.hasChains || !info.hasResidues) return;
    LevelMembers residues(info.residues, info.residuesIx);
    LevelMembers atoms(info.atoms, info.atomsIx);
    for (MtGroup const* chain : info.chains->groups) {
        residues.forEach(chain, [&](int residue) {
            atoms.forEach(info.residues->groups[residue],
                          [&](int atom) { atomInChain.set(static_cast<unsigned long>(atom)); });
        });
    }
}

void PDBwrite::generateBondData(molInfo const& info, McDArray<int> const& residueOfAtom, McBitfield const& hetResidue,
                                McDArray<McDArray<int>>& bondedAtoms, McDArray<int>& ssBonds) {
    WrittenBonds const bonds(info, residueOfAtom, hetResidue);
    McDArray<int> counts;
    fillWith(counts, bondedAtoms.size, 0);
    bonds.forEach([&](int, int a, int b, bool) {
        ++counts[a];
        ++counts[b];
    });
    for (int atom = 0; atom < counts.size; ++atom) bondedAtoms[atom].reserve(counts[atom]);
    bonds.forEach([&](int bond, int a, int b, bool isSulfurBridge) {
        bondedAtoms[a].append(b);
        bondedAtoms[b].append(a);
        if (isSulfurBridge) ssBonds.append(bond);
    });
}

int PDBwrite::getCAtomOfResidue(molInfo const& info, int residue) const {
    LevelMembers atoms(info.atoms, info.atomsIx);
    return findBackboneAtom(info, atoms, residue, "C");
}

int PDBwrite::getNAtomOfResidue(molInfo const& info, int residue) const {
    LevelMembers atoms(info.atoms, info.atomsIx);
    return findBackboneAtom(info, atoms, residue, "N");
}

bool PDBwrite::areResiduesBonded(molInfo const& info, int residueA, int residueB) const {
    return haveBond(molecule, getCAtomOfResidue(info, residueA), getNAtomOfResidue(info, residueB));
}
