#include "chemistry/CellGrid.h"

#include "chemistry/radixSort.h"

#include <algorithm>
#include <bit>
#include <limits>
#include <utility>

namespace tarnex {

namespace {

// Along an axis there are cells of 21 bits, so that the three fit in a number. What lies further out shares the
// outermost cell.
constexpr double origin = 1 << 20;
constexpr double lastIndex = (1 << 21) - 2;

// Atoms are first split into blocks of cells, each of which is then sorted in the cache.
constexpr std::uint64_t atomsInBlock = 1024;
constexpr int mostBlockBits = 10;

template <class Visitor>
void forEachAtom(BondableAtoms const& atoms, Visitor&& visit) {
    for (int i = 0; i < atoms.elements.size; ++i) {
        if (atoms.elements[i] != 0) visit(i, atoms.coords[i]);
    }
}

} // namespace

CellGrid::CellGrid(BondableAtoms const& atoms, double cellEdge, std::int64_t mostInCell)
    : cellsPerLength(1.0 / cellEdge) {
    layOutCells(atoms);
    sortBlocks(splitIntoBlocks(atoms), mostInCell);
}

/// One index of each axis stays free, so that a neighbour's never runs over into the next row or layer.
void CellGrid::layOutCells(BondableAtoms const& atoms) {
    constexpr float infinity = std::numeric_limits<float>::infinity();
    McVec3f low(infinity, infinity, infinity);
    McVec3f high(-infinity, -infinity, -infinity);
    std::uint64_t numAtoms = 0;
    forEachAtom(atoms, [&](int, McVec3f const& p) {
        low = {std::min(low.x, p.x), std::min(low.y, p.y), std::min(low.z, p.z)};
        high = {std::max(high.x, p.x), std::max(high.y, p.y), std::max(high.z, p.z)};
        ++numAtoms;
    });
    if (numAtoms == 0) return;
    x = {indexOf(low.x), indexOf(high.x)};
    y = {indexOf(low.y), indexOf(high.y)};
    z = {indexOf(low.z), indexOf(high.z)};
    stepY = z.last - z.first + 2;
    stepX = (y.last - y.first + 2) * stepY;
    columnOffset[0] = stepY;
    columnOffset[1] = stepX - stepY;
    columnOffset[2] = stepX;
    columnOffset[3] = stepX + stepY;

    std::uint64_t const lastCell = (x.last - x.first + 2) * stepX - 1;
    auto const blockBits = std::min(static_cast<int>(std::bit_width(numAtoms / atomsInBlock)), mostBlockBits);
    blockShift = std::max(static_cast<int>(std::bit_width(lastCell)) - blockBits, 0);
    numBlocks = static_cast<int>(lastCell >> blockShift) + 1;
}

std::uint64_t CellGrid::indexOf(float coordinate) const {
    double const index = std::clamp(static_cast<double>(coordinate) * cellsPerLength, 1.0 - origin, lastIndex - origin);
    auto const towardsZero = static_cast<std::int64_t>(index);
    std::int64_t const below = towardsZero - (index < static_cast<double>(towardsZero) ? 1 : 0);
    return static_cast<std::uint64_t>(below + static_cast<std::int64_t>(origin));
}

std::uint64_t CellGrid::cellOf(McVec3f const& p) const {
    return (indexOf(p.x) - x.first + 1) * stepX + (indexOf(p.y) - y.first + 1) * stepY + (indexOf(p.z) - z.first + 1);
}

/// Puts the atoms into `points`, block by block, and returns where each block ends.
McDArray<std::int64_t> CellGrid::splitIntoBlocks(BondableAtoms const& atoms) {
    McDArray<std::int64_t> ends(numBlocks);
    std::fill(ends.begin(), ends.end(), 0);
    forEachAtom(atoms, [&](int, McVec3f const& p) { ++ends[static_cast<std::int64_t>(cellOf(p) >> blockShift)]; });
    std::int64_t total = 0;
    for (std::int64_t& end : ends) total += std::exchange(end, total);
    points.resize(total);
    // What was the beginning of each block becomes its end.
    forEachAtom(atoms, [&](int atom, McVec3f const& p) {
        points[ends[static_cast<std::int64_t>(cellOf(p) >> blockShift)]++] = {p, atom, atoms.elements[atom]};
    });
    return ends;
}

void CellGrid::sortBlocks(McDArray<std::int64_t> const& blockEnds, std::int64_t mostInCell) {
    struct Place {
        std::uint64_t cell;
        std::int64_t point;
    };
    std::uint64_t const bitsInBlock = (std::uint64_t{1} << blockShift) - 1;
    McDArray<Point> block;
    McDArray<Place> places;
    cells.resize(points.size);
    std::int64_t kept = 0;
    std::int64_t blockBegin = 0;
    for (std::int64_t const blockEnd : blockEnds) {
        block.resize(blockEnd - blockBegin);
        places.resize(block.size);
        std::copy(points.begin() + blockBegin, points.begin() + blockEnd, block.begin());
        for (std::int64_t i = 0; i < block.size; ++i) places[i] = {cellOf(block[i].position), i};
        blockBegin = blockEnd;
        radixSort(
            places, [=](Place const& place) { return place.cell & bitsInBlock; }, bitsInBlock);
        for (std::int64_t begin = 0, end = 0; begin < places.size; begin = end) {
            while (end < places.size && places[end].cell == places[begin].cell) ++end;
            if (end - begin > mostInCell) continue;
            for (std::int64_t i = begin; i < end; ++i, ++kept) {
                points[kept] = block[places[i].point];
                cells[kept] = places[i].cell;
            }
        }
    }
    points.resize(kept);
    cells.resize(kept);
}

} // namespace tarnex
