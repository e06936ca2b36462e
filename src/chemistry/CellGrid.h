#pragma once

#include "chemistry/PerceivedBonds.h"
#include "foundation/McDArray.h"

#include <cstdint>

namespace tarnex {

/// Finds close pairs among atoms. Atoms are sorted by the cubic cell that they lie in: time and memory depend on their
/// number alone, never on their extent.
class CellGrid {
public:
    /// Takes the atoms that take part; their coordinates are finite. Cells of more than `mostInCell` atoms are left
    /// out, which bounds the number of pairs.
    CellGrid(BondableAtoms const& atoms, double cellEdge, std::int64_t mostInCell);

    struct Point {
        McVec3f position;
        int atom;
        unsigned char element;
    };
    /// What is close in space is mostly close in this order.
    std::int64_t size() const { return points.size; }
    Point const& operator[](std::int64_t i) const { return points[i]; }

    /// Calls `visit(i, j)` once for each pair of points in one cell or in two cells that touch: for every pair closer
    /// than the edge of a cell, and for some others.
    template <class Visitor>
    void forEachClosePair(Visitor&& visit) const {
        // Of the cells around one, those behind it in the order are the next one of its own column and three each of
        // four other columns. As the walk goes on they move on too, each on a walk of its own.
        std::int64_t columnBegin[numColumns] = {};
        for (std::int64_t begin = 0, end = 0; begin < points.size; begin = end) {
            std::uint64_t const cell = cells[begin];
            end = endOfCells(begin, cell);
            std::int64_t const nextEnd = endOfCells(end, cell + 1);
            for (std::int64_t i = begin; i < end; ++i) {
                for (std::int64_t j = i + 1; j < nextEnd; ++j) visit(i, j);
            }
            for (int column = 0; column < numColumns; ++column) {
                std::uint64_t const middle = cell + columnOffset[column];
                std::int64_t& first = columnBegin[column];
                first = endOfCells(first, middle - 2);
                std::int64_t const last = endOfCells(first, middle + 1);
                for (std::int64_t i = begin; i < end; ++i) {
                    for (std::int64_t j = first; j < last; ++j) visit(i, j);
                }
            }
        }
    }

private:
    /// The cells along one axis that hold atoms.
    struct Range {
        std::uint64_t first = 1;
        std::uint64_t last = 0;
    };

    static constexpr int numColumns = 4;

    void layOutCells(BondableAtoms const& atoms);
    McDArray<std::int64_t> splitIntoBlocks(BondableAtoms const& atoms);
    void sortBlocks(McDArray<std::int64_t> const& blockEnds, std::int64_t mostInCell);
    std::uint64_t indexOf(float coordinate) const;
    std::uint64_t cellOf(McVec3f const& p) const;

    /// The first point from `begin` on that lies behind `cell`.
    std::int64_t endOfCells(std::int64_t begin, std::uint64_t cell) const {
        while (begin < cells.size && cells[begin] <= cell) ++begin;
        return begin;
    }

    double cellsPerLength;
    Range x, y, z;
    // From a cell to the next one along an axis; along z it is 1.
    std::uint64_t stepX = 0;
    std::uint64_t stepY = 0;
    std::uint64_t columnOffset[numColumns] = {};
    // Cells whose numbers have the same bits from this one on make a block.
    int blockShift = 0;
    int numBlocks = 1;
    McDArray<Point> points;
    McDArray<std::uint64_t> cells; // of each point, ascending
};

} // namespace tarnex
