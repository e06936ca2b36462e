#pragma once

#include "chemistry/PerceivedBonds.h"
#include "foundation/McDArray.h"

#include <cstdint>

namespace tarnex {

/// Sorts atoms by the cubic cell that they lie in. Time and memory depend on their number alone, never on their extent.
/// Blocks of cells that follow each other are sorted one at a time, so that a walk needs only those around it, which
/// stay in the cache.
class CellGrid {
public:
    /// Takes the atoms that take part; their coordinates are finite. Cells of more than `mostAtomsInCell` atoms are
    /// left out, which bounds the number of pairs.
    CellGrid(BondableAtoms const& bondableAtoms, double cellEdge, std::int64_t mostAtomsInCell);

    struct Place {
        std::uint64_t cell;
        int atom;
    };

    std::int64_t numAtoms() const { return atomsByBlock.size; }
    int numBlocks() const { return static_cast<int>(blockEnds.size); }
    /// The atoms of a block, sorted by their cells.
    void sortBlock(int block, McDArray<Place>& places) const;
    /// All cells ahead of this one lie in the first `numFirst` blocks.
    std::uint64_t endOfBlocks(int numFirst) const { return static_cast<std::uint64_t>(numFirst) << blockShift; }

    /// Of the cells around one, those behind it in the order are the next one of its own column and three each of four
    /// other columns; this is how far the middle ones of the three are ahead.
    static constexpr int numColumns = 4;
    std::uint64_t columnOffset(int column) const { return columnOffsets[column]; }

private:
    static constexpr int numAxes = 3;
    struct Axis {
        float McVec3f::*coordinate = nullptr;
        // The cells that hold atoms.
        std::uint64_t first = 1;
        std::uint64_t last = 0;
        // From a cell to the next one.
        std::uint64_t step = 0;
    };

    void layOutCells();
    void setSteps();
    void splitIntoBlocks();
    std::uint64_t indexOf(float coordinate) const;
    std::uint64_t cellOf(McVec3f const& p) const;

    BondableAtoms const& atoms;
    double cellsPerLength;
    std::int64_t mostInCell;
    Axis axes[numAxes]; // the outer one first
    std::uint64_t columnOffsets[numColumns] = {};
    // Cells whose numbers have the same bits from this one on make a block.
    int blockShift = 0;
    McDArray<std::int64_t> blockEnds; // in `atomsByBlock`
    McDArray<int> atomsByBlock;
};

} // namespace tarnex
