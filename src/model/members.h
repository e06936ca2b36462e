#pragma once

#include "foundation/export.h"
#include "model/MolTopology.h"
#include "model/MtListGroups.h"
#include "model/MtSmallGroups.h"

#include <algorithm>
#include <typeinfo>

namespace tarnex {

/// Whether a reference names a group that the topology has.
inline bool exists(MolTopology const& topology, MtGroupRef ref) {
    return ref.levelIx >= 0 && ref.levelIx < topology.levels.size && ref.groupIx >= 0 &&
           ref.groupIx < topology.levels.data[ref.levelIx]->groups.size;
}

/// The group as a range; null if it is something else.
inline MtIntraLevelRange const* asRange(MtGroup const* group) {
    if (group && typeid(*group) == typeid(MtIntraLevelRange)) return static_cast<MtIntraLevelRange const*>(group);
    return dynamic_cast<MtIntraLevelRange const*>(group);
}

/// The groups of a range that exist in the topology: from `begin` up to `end`, which is not one of them.
struct ExistingPart {
    ExistingPart(MolTopology const& topology, MtIntraLevelRange const& range) {
        if (range.levelIx < 0 || range.levelIx >= topology.levels.size) return;
        auto const groups = static_cast<int>(topology.levels.data[range.levelIx]->groups.size);
        begin = std::max(range.first, 0);
        end = range.last < groups ? range.last + 1 : groups;
    }
    int begin = 0;
    int end = 0;
};

/// Calls `visit(MtGroupRef)` for each member of a group that exists in the topology, in order. Ranges and lists can be
/// filled after they are added and may name anything; walks over members go through here.
template <class Visitor>
void forEachMember(MolTopology const& topology, MtGroup const* group, Visitor&& visit) {
    if (!group) return;
    if (auto const* range = asRange(group)) {
        ExistingPart const part(topology, *range);
        for (int i = part.begin; i < part.end; ++i) visit(MtGroupRef(range->levelIx, i));
        return;
    }
    for (int i = 0, n = group->size(); i < n; ++i) {
        MtGroupRef const member = (*group)[i];
        if (exists(topology, member)) visit(member);
    }
}

/// The two atoms of a group of the bond level, in their order; false if it is no pair of atoms.
inline bool getBondAtoms(MtGroup const* group, int& atomA, int& atomB) {
    if (!group) return false;
    if (typeid(*group) == typeid(MtBond)) {
        auto const* bond = static_cast<MtBond const*>(group);
        atomA = bond->atoms[0];
        atomB = bond->atoms[1];
        return true;
    }
    if (group->size() != 2) return false;
    MtGroupRef const first = (*group)[0];
    MtGroupRef const second = (*group)[1];
    atomA = first.groupIx;
    atomB = second.groupIx;
    return first.levelIx == 0 && second.levelIx == 0;
}

/// The two atoms of a group of the bond level if both exist in the topology; otherwise false, and both are -1.
inline bool getExistingBondAtoms(MolTopology const& topology, MtGroup const* group, int& atomA, int& atomB) {
    if (getBondAtoms(group, atomA, atomB) && exists(topology, {0, atomA}) && exists(topology, {0, atomB})) return true;
    atomA = -1;
    atomB = -1;
    return false;
}

/// For each group of the level `memberLevelIx`, the first group of the level `levelIx` that holds it, or -1.
TARNEX_API McDArray<int> ownersOfMembers(MolTopology const& topology, int levelIx, int memberLevelIx);

} // namespace tarnex
