#include "pdb/StructureRanges.h"

#include <algorithm>
#include <bit>
#include <climits>

namespace tarnex::pdb {

namespace {
constexpr int noRange = INT_MAX;
} // namespace

Remainder cut(std::int64_t s, std::int64_t e, std::int64_t a, std::int64_t b) {
    Remainder const ahead{true, s, a - 1};
    Remainder const behind{true, b + 1, e};
    if (s <= a && e >= b) return a - s > e - b ? ahead : behind;
    if (s >= a && e <= b) return {true, 0, -1};
    if (a <= s && s <= b) return behind;
    if (a <= e && e <= b) return ahead;
    return {false, s, e};
}

void StructureRanges::add(Range const& range) {
    ranges.append(range);
    if (range.last >= nodes.size / 2)
        grow(range.last + 1);
    else
        enter(static_cast<int>(ranges.size - 1));
}

void StructureRanges::grow(int numResidues) {
    nodes.resize(2 * static_cast<std::int64_t>(std::bit_ceil(static_cast<unsigned>(numResidues))));
    std::fill(nodes.begin(), nodes.end(), Node{noRange, noRange});
    for (int i = 0; i < ranges.size; ++i) enter(i);
}

/// Nodes that have an earlier range already stay as they are.
void StructureRanges::enter(int range) {
    std::int64_t const numLeaves = nodes.size / 2;
    std::int64_t const first = ranges[range].first + numLeaves;
    auto const cover = [&](std::int64_t node) { nodes[node].covering = std::min(nodes[node].covering, range); };
    for (std::int64_t begin = first, end = ranges[range].last + numLeaves + 1; begin < end; begin /= 2, end /= 2) {
        if (begin % 2 == 1) cover(begin++);
        if (end % 2 == 1) cover(--end);
    }
    for (std::int64_t node = first; node > 0; node /= 2) {
        nodes[node].beginning = std::min(nodes[node].beginning, range);
    }
}

StructureRanges::Range const* StructureRanges::firstOverlap(int first, int last) const {
    std::int64_t const numLeaves = nodes.size / 2;
    if (first >= numLeaves) return nullptr;
    std::int64_t const firstLeaf = first + numLeaves;
    int found = noRange;
    for (std::int64_t node = firstLeaf; node > 0; node /= 2) found = std::min(found, nodes[node].covering);
    std::int64_t end = std::min(std::int64_t{last} + 1, numLeaves) + numLeaves;
    for (std::int64_t begin = firstLeaf; begin < end; begin /= 2, end /= 2) {
        if (begin % 2 == 1) found = std::min(found, nodes[begin++].beginning);
        if (end % 2 == 1) found = std::min(found, nodes[--end].beginning);
    }
    return found == noRange ? nullptr : ranges.begin() + found;
}

StructureRanges::Range const* StructureRanges::nextOverlap(Range const* range, int first, int last) const {
    auto const overlaps = [=](Range const& other) { return other.first <= last && first <= other.last; };
    auto const* const next = std::find_if(range + 1, ranges.end(), overlaps);
    return next == ranges.end() ? nullptr : next;
}

} // namespace tarnex::pdb
