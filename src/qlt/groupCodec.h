#pragma once

#include "model/MolTopology.h"
#include "qlt/section.h"

#include <cstdint>

namespace tarnex {

/// Appends the groups of a level to a section, in runs of one class, and adds its atoms to `numAtoms`. False for a
/// missing group and for one of an unknown class.
bool putGroups(McDArray<MtGroup*> const& groups, std::uint64_t& numAtoms, SectionWriter& out);

/// Reads the groups of a level; they are made in `pool`. False if there are none, and for more than `atomsLeft` atoms,
/// of which those read are taken off.
bool getGroups(SectionReader& in, std::uint64_t& atomsLeft, GroupPool& pool, McDArray<MtGroup*>& groups);

/// Whether groups name what they must: bonds join existing atoms, and the members of groups of fixed size exist. Ranges
/// and lists may name anything.
bool isSound(MolTopology const& topology);

} // namespace tarnex
