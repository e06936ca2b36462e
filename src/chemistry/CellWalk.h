#pragma once

#include "chemistry/CellGrid.h"
#include "foundation/McDArray.h"

#include <algorithm>
#include <cstdint>

namespace tarnex {

/// A walk over the cells of a grid that meets each pair of close atoms once. `Point` is an aggregate that begins with a
/// position and an atom, and may keep what the walk finds out about that atom.
template <class Point>
class CellWalk {
public:
    CellWalk(CellGrid const& cellGrid, McVec3f const* coordinates) : grid(cellGrid), coords(coordinates) {}

    /// Calls `visit(Point&, Point&)` once for each pair of points in one cell or in two cells that touch: for every
    /// pair closer than the edge of a cell, and for some others. Calls `finish(Point&)` for each point behind its last
    /// pair.
    template <class Visitor, class Finisher>
    void run(Visitor&& visit, Finisher&& finish) {
        for (std::int64_t begin = 0, end = 0; moveTo(begin); begin = end) {
            std::uint64_t const cell = cells[begin];
            end = endOfCells(begin, cell);
            std::int64_t const nextEnd = endOfCells(end, cell + 1);
            for (std::int64_t i = begin; i < end; ++i) {
                for (std::int64_t j = i + 1; j < nextEnd; ++j) visit(points[i], points[j]);
            }
            for (int column = 0; column < CellGrid::numColumns; ++column) {
                std::uint64_t const middle = cell + grid.columnOffset(column);
                // As the walk goes on the columns move on too, each on a walk of its own.
                std::int64_t& first = columnBegin[column];
                first = endOfCells(first, middle - 2);
                std::int64_t const last = endOfCells(first, middle + 1);
                for (std::int64_t i = begin; i < end; ++i) {
                    for (std::int64_t j = first; j < last; ++j) visit(points[i], points[j]);
                }
            }
            for (std::int64_t i = begin; i < end; ++i) finish(points[i]);
        }
    }

private:
    /// Sees to it that the cells around the point at `begin` are there. False at the end of the grid. What is behind
    /// the walk may be dropped, and `begin` moves with its point.
    bool moveTo(std::int64_t& begin) {
        while (numLoaded < grid.numBlocks() && (begin == points.size || lacksNeighbours(cells[begin]))) {
            dropAhead(begin);
            load(numLoaded++);
        }
        return begin < points.size;
    }

    bool lacksNeighbours(std::uint64_t cell) const {
        return cell + grid.columnOffset(CellGrid::numColumns - 1) + 1 >= grid.endOfBlocks(numLoaded);
    }

    /// Only if it is more than what is left, so that each point is moved about once.
    void dropAhead(std::int64_t& begin) {
        if (begin <= points.size - begin) return;
        std::copy(points.begin() + begin, points.end(), points.begin());
        std::copy(cells.begin() + begin, cells.end(), cells.begin());
        points.resize(points.size - begin);
        cells.resize(points.size);
        for (std::int64_t& column : columnBegin) column = std::max<std::int64_t>(column - begin, 0);
        begin = 0;
    }

    void load(int block) {
        grid.sortBlock(block, places);
        points.reserve(points.size + places.size);
        cells.reserve(points.size + places.size);
        for (CellGrid::Place const& place : places) {
            points.append({coords[place.atom], place.atom});
            cells.append(place.cell);
        }
    }

    /// The first point from `begin` on that lies behind `cell`.
    std::int64_t endOfCells(std::int64_t begin, std::uint64_t cell) const {
        while (begin < cells.size && cells[begin] <= cell) ++begin;
        return begin;
    }

    CellGrid const& grid;
    McVec3f const* coords;
    int numLoaded = 0;                // blocks
    McDArray<CellGrid::Place> places; // of the block that is loaded
    McDArray<Point> points;
    McDArray<std::uint64_t> cells; // of each point, ascending
    std::int64_t columnBegin[CellGrid::numColumns] = {};
};

} // namespace tarnex
