#include "chemistry/BondCalc.h"

#include "chemistry/DistanceBonds.h"
#include "chemistry/ElementTable.h"
#include "chemistry/PerceivedBonds.h"
#include "chemistry/ResidueKnowledge.h"
#include "chemistry/radixSort.h"
#include "model/Molecule.h"
#include "model/members.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

using namespace tarnex;

namespace {

bool isFinite(McVec3f const& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

BondableAtoms collectAtoms(McDArray<McVec3f> const& coords, MolTopology const& topology, McBitfield const& selected) {
    BondableAtoms atoms;
    atoms.coords = coords.data;
    atoms.elements.resize(topology.levels[0]->groups.size);
    std::fill(atoms.elements.begin(), atoms.elements.end(), static_cast<unsigned char>(0));
    auto const* numbers = topology.levels[0]->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    if (!numbers) return atoms;
    std::int64_t const end = std::min({atoms.elements.size, coords.size, static_cast<std::int64_t>(selected.size())});
    for (int i = 0; i < end; ++i) {
        if (!selected[static_cast<unsigned long>(i)] || !isFinite(atoms.coords[i])) continue;
        atoms.elements[i] =
            static_cast<unsigned char>(elementTable().getElement(numbers->getValue(i))->getAtomicNumber());
    }
    return atoms;
}

void finishHydrogensWithBonds(MolTopology const& topology, BondableAtoms& atoms) {
    for (MtGroup const* group : topology.levels[1]->groups) {
        int a = 0;
        int b = 0;
        if (getBondAtoms(group, a, b) && a != b) atoms.finishHydrogensOf(a, b);
    }
}

void sortByAtoms(McDArray<PerceivedBond>& bonds, std::int64_t numAtoms) {
    if (std::is_sorted(bonds.begin(), bonds.end())) return;
    radixSort(
        bonds, [](PerceivedBond const& bond) { return static_cast<std::uint64_t>(bond.atomA()); },
        static_cast<std::uint64_t>(numAtoms));
    for (PerceivedBond *begin = bonds.begin(), *end = begin; begin != bonds.end(); begin = end) {
        while (end != bonds.end() && end->atomA() == begin->atomA()) ++end;
        std::sort(begin, end);
    }
}

/// The bonds that a topology has, sorted; their order is 0.
McDArray<PerceivedBond> existingBonds(MolTopology const& topology) {
    McDArray<PerceivedBond> bonds;
    for (MtGroup const* group : topology.levels[1]->groups) {
        int a = 0;
        int b = 0;
        if (getExistingBondAtoms(topology, group, a, b)) bonds.append(PerceivedBond(a, b, 0));
    }
    sortByAtoms(bonds, topology.levels[0]->groups.size);
    return bonds;
}

/// Adds the bonds of two sorted lists in one order, but for those that the topology has already.
void addBonds(MolTopology& topology, McDArray<PerceivedBond> const& some, McDArray<PerceivedBond> const& others) {
    MtGroupingLevel& level = *topology.levels[1];
    MtIntegerAttribute* types = level.integerAttribute("type", MtGroupingLevel::CREATE, true);
    McDArray<PerceivedBond> const existing = existingBonds(topology);
    PerceivedBond const* known = existing.begin();
    topology.prepLevelSize(1, static_cast<int>(level.groups.size + some.size + others.size));
    PerceivedBond const* next = some.begin();
    PerceivedBond const* nextOther = others.begin();
    while (next != some.end() || nextOther != others.end()) {
        bool const takesOther = next == some.end() || (nextOther != others.end() && *nextOther < *next);
        PerceivedBond const& bond = takesOther ? *nextOther++ : *next++;
        while (known != existing.end() && *known < bond && !known->joinsAtomsOf(bond)) ++known;
        if (known != existing.end() && known->joinsAtomsOf(bond)) continue;
        auto* group = new (topology.groupPool) MtBond(bond.atomA(), bond.atomB());
        types->setValue(topology.addBond(group).groupIx, bond.order());
    }
}

/// The coordinates of step 0, copied only if the object does not show its own.
McDArray<McVec3f> const& coordinatesOf(MolObject const& object, McDArray<McVec3f>& copy) {
    if (auto const* molecule = dynamic_cast<Molecule const*>(&object)) return molecule->coords;
    object.getCoordinates(0, copy);
    return copy;
}

/// The bonds that the names of atoms tell, and those that distances tell, each list sorted.
struct PerceivedBonds {
    McDArray<PerceivedBond> byName, byDistance;
};

PerceivedBonds perceive(MolObject const& object, MolTopology& topology, McBitfield const& selected, bool byResidues) {
    PerceivedBonds bonds;
    McDArray<McVec3f> copy;
    BondableAtoms atoms = collectAtoms(coordinatesOf(object, copy), topology, selected);
    ResidueKnowledge residues;
    if (byResidues) residues.findTemplateBonds(topology, atoms, bonds.byName);
    finishHydrogensWithBonds(topology, atoms);
    findDistanceBonds(atoms, residues, bonds.byDistance);
    sortByAtoms(bonds.byName, atoms.elements.size);
    sortByAtoms(bonds.byDistance, atoms.elements.size);
    return bonds;
}

bool connect(MolObject* object, McBitfield const& selected, bool byResidues) {
    MolTopology* topology = object ? object->getTopology() : nullptr;
    if (!topology) return false;
    PerceivedBonds const bonds = perceive(*object, *topology, selected, byResidues);
    addBonds(*topology, bonds.byName, bonds.byDistance);
    return true;
}

} // namespace

bool BondCalc::bondLengthConnectSelection(MolObject* object, McBitfield const& atoms) {
    return connect(object, atoms, false);
}

bool BondCalc::standardConnectSelection(MolObject* object, McBitfield const& atoms) {
    return connect(object, atoms, true);
}
