#include "formats/NearestAtom.h"

#include <algorithm>
#include <cmath>
#include <limits>

namespace tarnex {

/// A search under way.
struct NearestAtom::Search {
    float place[3];
    float best = std::numeric_limits<float>::max();
    int atom = -1;

    void consider(Node const& node) {
        float const x = node.place[0] - place[0];
        float const y = node.place[1] - place[1];
        float const z = node.place[2] - place[2];
        float const distance = std::sqrt(x * x + y * y + z * z);
        if (distance < best || (distance == best && node.atom < atom)) {
            best = distance;
            atom = node.atom;
        }
    }
    /// Whether the plane through a node can have something behind it that is as near as the best atom.
    bool reaches(Node const& node) const {
        float const offset = node.place[node.axis] - place[node.axis];
        return std::sqrt(offset * offset) <= best;
    }
};

/// Atoms whose place is no number, or infinite, are never near anything.
NearestAtom::NearestAtom(McDArray<McVec3f> const& coordinates) {
    nodes.reserve(coordinates.size);
    for (int atom = 0; atom < coordinates.size; ++atom) {
        McVec3f const& c = coordinates[atom];
        if (std::isfinite(c.x) && std::isfinite(c.y) && std::isfinite(c.z)) nodes.append({{c.x, c.y, c.z}, atom, 0});
    }
    build(nodes.begin(), nodes.end());
}

/// Puts the middle node along the axis of the largest extent into the middle, and does the same with both halves.
void NearestAtom::build(Node* begin, Node* end) {
    while (end - begin > 1) {
        int axis = 0;
        double largest = -1.0;
        for (int i = 0; i < 3; ++i) {
            auto const [low, high] =
                std::minmax_element(begin, end, [i](Node const& a, Node const& b) { return a.place[i] < b.place[i]; });
            double const extent = static_cast<double>(high->place[i]) - static_cast<double>(low->place[i]);
            if (extent <= largest) continue;
            largest = extent;
            axis = i;
        }
        Node* const middle = begin + (end - begin) / 2;
        std::nth_element(begin, middle, end,
                         [axis](Node const& a, Node const& b) { return a.place[axis] < b.place[axis]; });
        middle->axis = axis;
        build(begin, middle);
        begin = middle + 1;
    }
}

void NearestAtom::search(Node const* begin, Node const* end, Search& search) {
    while (begin < end) {
        Node const* const middle = begin + (end - begin) / 2;
        search.consider(*middle);
        bool const isAhead = search.place[middle->axis] < middle->place[middle->axis];
        NearestAtom::search(isAhead ? begin : middle + 1, isAhead ? middle : end, search);
        if (!search.reaches(*middle)) return;
        (isAhead ? begin : end) = isAhead ? middle + 1 : middle;
    }
}

int NearestAtom::find(McVec3f const& place) const {
    Search best{{place.x, place.y, place.z}};
    search(nodes.begin(), nodes.end(), best);
    return best.atom;
}

} // namespace tarnex
