#pragma once

#include "foundation/McHandle.h"
#include "model/MolTopology.h"
#include "qlt/section.h"

#include <cstdint>

namespace tarnex {

/// An atom takes no bytes of its own in a file. All topologies of a file together hold at most as many atoms as this
/// number and the bytes of the file add up to, so that a small file cannot ask for a large model.
constexpr std::uint64_t atomsWithoutBytes = 1'000'000;

/// Appends a topology to an empty section. `atomsLeft` is what the topologies ahead of it left of `atomsWithoutBytes`;
/// once it is used up, sections are filled up with zeros to one byte per atom.
///
/// False, with an incomplete section, for a topology that cannot be stored: groups, attributes or data of an unknown
/// class, a fixed-size group that names a missing group, or a bond level that holds anything but pairs of existing
/// atoms.
bool encodeTopology(MolTopology const& topology, std::uint64_t& atomsLeft, SectionWriter& out);

/// The topology of a section, empty if the section does not hold one. Takes its atoms off `atomsLeft`. No count in the
/// section is trusted: what is allocated is in proportion to the bytes of the section and to `atomsLeft`.
McHandle<MolTopology> decodeTopology(SectionReader in, std::uint64_t& atomsLeft);

} // namespace tarnex
