#pragma once

#include "foundation/McDArray.h"
#include "foundation/McVec3f.h"
#include "foundation/export.h"

namespace tarnex {

/// Finds the nearest of many atoms by a k-d tree: the one that a walk over all atoms finds by their distances in single
/// precision, and of several at the same distance the first one.
///
/// Every operation of a distance is rounded in a way that never changes an order: an atom behind a plane is, as
/// calculated, at least as far away as the plane itself, as calculated. So nothing is left out that could be as near.
class TARNEX_API NearestAtom {
public:
    explicit NearestAtom(McDArray<McVec3f> const& coordinates);

    /// The index of the atom, or -1 if all distances are beyond the range of single precision or no numbers.
    int find(McVec3f const& place) const;

private:
    struct Node {
        float place[3];
        int atom;
        /// The atoms ahead of this one in its part of the array are not behind it along this axis, and so on.
        int axis;
    };
    struct Search;

    void build(Node* begin, Node* end);
    static void search(Node const* begin, Node const* end, Search& search);

    McDArray<Node> nodes;
};

} // namespace tarnex
