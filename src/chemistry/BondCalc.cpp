#include "chemistry/BondCalc.h"

#include "chemistry/DistanceBonds.h"
#include "chemistry/ElementTable.h"
#include "chemistry/PerceivedBonds.h"
#include "chemistry/ResidueKnowledge.h"
#include "model/members.h"

#include <algorithm>
#include <cmath>
#include <cstdint>
#include <tuple>

using namespace tarnex;

namespace {

bool isFinite(McVec3f const& p) {
    return std::isfinite(p.x) && std::isfinite(p.y) && std::isfinite(p.z);
}

BondableAtoms collectAtoms(MolObject const& object, MolTopology const& topology, McBitfield const& selected) {
    BondableAtoms atoms;
    object.getCoordinates(0, atoms.coords);
    atoms.elements.resize(topology.levels[0]->groups.size);
    std::fill(atoms.elements.begin(), atoms.elements.end(), static_cast<unsigned char>(0));
    auto const* numbers = topology.levels[0]->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    if (!numbers) return atoms;
    std::int64_t const end =
        std::min({atoms.elements.size, atoms.coords.size, static_cast<std::int64_t>(selected.size())});
    for (int i = 0; i < end; ++i) {
        if (!selected[static_cast<unsigned long>(i)] || !isFinite(atoms.coords[i])) continue;
        atoms.elements[i] =
            static_cast<unsigned char>(elementTable().getElement(numbers->getValue(i))->getAtomicNumber());
    }
    return atoms;
}

void releaseHydrogen(int atom, BondableAtoms& atoms) {
    if (atom >= 0 && atom < atoms.elements.size && atoms.elements[atom] == hydrogen) atoms.elements[atom] = 0;
}

/// A hydrogen that has a bond gets no other.
void finishBondedHydrogens(MolTopology const& topology, McDArray<PerceivedBond> const& bonds, BondableAtoms& atoms) {
    for (MtGroup const* group : topology.levels[1]->groups) {
        int a = 0;
        int b = 0;
        if (!getBondAtoms(group, a, b) || a == b) continue;
        releaseHydrogen(a, atoms);
        releaseHydrogen(b, atoms);
    }
    for (PerceivedBond const& bond : bonds) {
        releaseHydrogen(bond.atomA, atoms);
        releaseHydrogen(bond.atomB, atoms);
    }
}

void addBonds(MolTopology& topology, McDArray<PerceivedBond>& bonds) {
    std::sort(bonds.begin(), bonds.end(), [](PerceivedBond const& a, PerceivedBond const& b) {
        return std::tie(a.atomA, a.atomB) < std::tie(b.atomA, b.atomB);
    });
    MtGroupingLevel& level = *topology.levels[1];
    MtIntegerAttribute* types = level.integerAttribute("type", MtGroupingLevel::CREATE, true);
    bool const hadBonds = level.groups.size > 0;
    level.groups.reserve(level.groups.size + bonds.size);
    for (PerceivedBond const& bond : bonds) {
        if (hadBonds && topology.findBond(bond.atomA, bond.atomB) >= 0) continue;
        types->setValue(topology.addBond(new MtBond(bond.atomA, bond.atomB)).groupIx, bond.order);
    }
}

bool connect(MolObject* object, McBitfield const& selected, bool byResidues) {
    MolTopology* topology = object ? object->getTopology() : nullptr;
    if (!topology) return false;
    BondableAtoms atoms = collectAtoms(*object, *topology, selected);
    ResidueKnowledge residues;
    McDArray<PerceivedBond> bonds;
    if (byResidues) residues.findTemplateBonds(*topology, atoms, bonds);
    finishBondedHydrogens(*topology, bonds, atoms);
    findDistanceBonds(atoms, residues, bonds);
    addBonds(*topology, bonds);
    return true;
}

} // namespace

bool BondCalc::bondLengthConnectSelection(MolObject* object, McBitfield const& atoms) {
    return connect(object, atoms, false);
}

bool BondCalc::standardConnectSelection(MolObject* object, McBitfield const& atoms) {
    return connect(object, atoms, true);
}
