#include "chemistry/CellGrid.h"

#include "chemistry/radixSort.h"

#include <algorithm>
#include <bit>
#include <cmath>
#include <iterator>
#include <limits>
#include <utility>

namespace tarnex {

namespace {

// Along an axis there are cells of 21 bits, so that the three fit in a number. What lies further out shares the
// outermost cell.
constexpr double origin = 1 << 20;
constexpr double lastIndex = (1 << 21) - 2;

constexpr std::uint64_t atomsInBlock = 1024;
// Few enough to be filled side by side, and the number of a block fits a byte.
constexpr int mostBlockBits = 7;

template <class Visitor>
void forEachAtom(BondableAtoms const& atoms, Visitor&& visit) {
    for (int i = 0; i < atoms.elements.size; ++i) {
        if (atoms.elements[i] != 0) visit(i, atoms.coords[i]);
    }
}

/// What the atoms take up along an axis.
struct Extent {
    float McVec3f::*coordinate;
    float low = std::numeric_limits<float>::infinity();
    float high = -std::numeric_limits<float>::infinity();
    double way = 0.0; // from each atom to the next
    double previous = 0.0;

    void include(McVec3f const& p) {
        float const place = p.*coordinate;
        low = std::min(low, place);
        high = std::max(high, place);
        way += std::abs(static_cast<double>(place) - previous);
        previous = static_cast<double>(place);
    }
    /// How often the atoms go from one end to the other.
    double wanderings() const { return way / (static_cast<double>(high) - static_cast<double>(low) + 1.0); }
};

void dropCrowdedCells(McDArray<CellGrid::Place>& places, std::int64_t mostInCell) {
    CellGrid::Place* kept = places.begin();
    for (CellGrid::Place *begin = kept, *end = kept; begin != places.end(); begin = end) {
        while (end != places.end() && end->cell == begin->cell) ++end;
        if (end - begin <= mostInCell) kept = std::copy(begin, end, kept);
    }
    places.resize(kept - places.begin());
}

} // namespace

CellGrid::CellGrid(BondableAtoms const& bondableAtoms, double cellEdge, std::int64_t mostAtomsInCell)
    : atoms(bondableAtoms), cellsPerLength(1.0 / cellEdge), mostInCell(mostAtomsInCell) {
    layOutCells();
    splitIntoBlocks();
}

/// The slabs across the outer axis are the blocks. They lie across the direction in which the atoms advance most
/// steadily, so that the atoms of a block are close in memory.
void CellGrid::layOutCells() {
    Extent extents[] = {{&McVec3f::x}, {&McVec3f::y}, {&McVec3f::z}};
    std::int64_t number = 0;
    forEachAtom(atoms, [&](int, McVec3f const& p) {
        for (Extent& extent : extents) extent.include(p);
        ++number;
    });
    atomsByBlock.resize(number);
    if (number == 0) return;
    std::stable_sort(std::begin(extents), std::end(extents),
                     [](Extent const& a, Extent const& b) { return a.wanderings() < b.wanderings(); });
    for (int i = 0; i < numAxes; ++i)
        axes[i] = {extents[i].coordinate, indexOf(extents[i].low), indexOf(extents[i].high)};
    setSteps();

    std::uint64_t const lastCell = (axes[0].last - axes[0].first + 2) * axes[0].step - 1;
    auto const sizeBits = static_cast<int>(std::bit_width(static_cast<std::uint64_t>(number) / atomsInBlock));
    blockShift = std::max(static_cast<int>(std::bit_width(lastCell)) - std::min(sizeBits, mostBlockBits), 0);
    blockEnds.resize(static_cast<std::int64_t>(lastCell >> blockShift) + 1);
    std::fill(blockEnds.begin(), blockEnds.end(), 0);
}

/// One index of each axis stays free, so that a neighbour's never runs over into the next row or layer.
void CellGrid::setSteps() {
    axes[2].step = 1;
    axes[1].step = axes[2].last - axes[2].first + 2;
    axes[0].step = axes[1].step * (axes[1].last - axes[1].first + 2);
    columnOffsets[0] = axes[1].step;
    columnOffsets[1] = axes[0].step - axes[1].step;
    columnOffsets[2] = axes[0].step;
    columnOffsets[3] = axes[0].step + axes[1].step;
}

std::uint64_t CellGrid::indexOf(float coordinate) const {
    double const index = std::clamp(static_cast<double>(coordinate) * cellsPerLength, 1.0 - origin, lastIndex - origin);
    auto const towardsZero = static_cast<std::int64_t>(index);
    std::int64_t const below = towardsZero - (index < static_cast<double>(towardsZero) ? 1 : 0);
    return static_cast<std::uint64_t>(below + static_cast<std::int64_t>(origin));
}

std::uint64_t CellGrid::cellOf(McVec3f const& p) const {
    auto const part = [&](Axis const& axis) { return (indexOf(p.*axis.coordinate) - axis.first + 1) * axis.step; };
    return part(axes[0]) + part(axes[1]) + part(axes[2]);
}

void CellGrid::splitIntoBlocks() {
    McDArray<unsigned char> blockOfAtom(atoms.elements.size);
    forEachAtom(atoms, [&](int atom, McVec3f const& p) {
        blockOfAtom[atom] = static_cast<unsigned char>(cellOf(p) >> blockShift);
        ++blockEnds[blockOfAtom[atom]];
    });
    std::int64_t total = 0;
    for (std::int64_t& end : blockEnds) total += std::exchange(end, total);
    // What was the beginning of each block becomes its end.
    forEachAtom(atoms, [&](int atom, McVec3f const&) { atomsByBlock[blockEnds[blockOfAtom[atom]]++] = atom; });
}

void CellGrid::sortBlock(int block, McDArray<Place>& places) const {
    std::int64_t const begin = block == 0 ? 0 : blockEnds[block - 1];
    places.resize(blockEnds[block] - begin);
    for (std::int64_t i = 0; i < places.size; ++i) {
        int const atom = atomsByBlock[begin + i];
        places[i] = {cellOf(atoms.coords[atom]), atom};
    }
    std::uint64_t const bitsInBlock = (std::uint64_t{1} << blockShift) - 1;
    radixSort(
        places, [=](Place const& place) { return place.cell & bitsInBlock; }, bitsInBlock);
    dropCrowdedCells(places, mostInCell);
}

} // namespace tarnex
