#pragma once

#include "foundation/McDArray.h"

#include <cstdint>

namespace tarnex::pdb {

/// What is left of a range that overlaps with another one; nothing if `first` is above `last`.
struct Remainder {
    bool overlaps;
    std::int64_t first;
    std::int64_t last;
};

/// Cuts the residues `s` to `e` to what lies outside of `a` to `b`. If both sides stick out the longer one stays, or
/// else the one behind.
Remainder cut(std::int64_t s, std::int64_t e, std::int64_t a, std::int64_t b);

/// The ranges of residues that structures cover, with a binary tree over the residues that finds overlaps. A range
/// overlaps with another one if it covers the first residue of that or begins within it.
class StructureRanges {
public:
    struct Range {
        int first;
        int last;
        int structure;
    };

    /// The ends are not negative and in order.
    void add(Range const& range);
    /// The first range that was added and overlaps with residues `first` to `last`, or null.
    Range const* firstOverlap(int first, int last) const;
    /// The same among those behind `range`, one after the other.
    Range const* nextOverlap(Range const* range, int first, int last) const;

private:
    struct Node {
        int covering;  ///< the first range that this node is one of the few parts of
        int beginning; ///< the first range that begins below this node
    };

    void grow(int numResidues);
    void enter(int range);

    McDArray<Range> ranges;
    /// The root is node 1, the children of node n are 2n and 2n + 1, and the second half are the residues.
    McDArray<Node> nodes;
};

} // namespace tarnex::pdb
