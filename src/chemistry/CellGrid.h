#pragma once

#include "chemistry/radixSort.h"
#include "foundation/McDArray.h"

#include <algorithm>
#include <cmath>
#include <cstdint>

namespace tarnex {

/// Finds close pairs among points in space. Points are sorted by the cubic cell that they lie in: time and memory
/// depend on their number alone, never on their extent. `Point` is plain and has finite coordinates `x`, `y` and `z`.
template <class Point>
class CellGrid {
public:
    /// Cells of more than `mostInCell` points are left out, which bounds the number of pairs.
    CellGrid(McDArray<Point> const& allPoints, double cellEdge, std::int64_t mostInCell) : edge(cellEdge) {
        McDArray<Place> places;
        places.reserve(allPoints.size);
        for (std::int64_t i = 0; i < allPoints.size; ++i) places.append({cellOf(allPoints[i]), i});
        radixSort(places, [](Place const& place) { return place.cell; });

        points.reserve(places.size);
        cells.reserve(places.size);
        for (std::int64_t begin = 0, end = 0; begin < places.size; begin = end) {
            while (end < places.size && places[end].cell == places[begin].cell) ++end;
            if (end - begin > mostInCell) continue;
            for (std::int64_t i = begin; i < end; ++i) {
                points.append(allPoints[places[i].point]);
                cells.append(places[i].cell);
            }
        }
    }

    std::int64_t size() const { return points.size; }
    Point const& operator[](std::int64_t i) const { return points[i]; }
    Point* begin() { return points.begin(); }
    Point* end() { return points.end(); }

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
    struct Place {
        std::uint64_t cell;
        std::int64_t point;
    };

    // A cell is three indices of 21 bits each. What lies further out shares the outermost index, and one index is free
    // at either end, so that a neighbour's never runs over into the next one.
    static constexpr int indexBits = 21;
    // The origin stands in the middle of a byte, so that cells around it differ in few bytes, which the sorting counts.
    static constexpr double origin = (1 << (indexBits - 1)) + 128;
    static constexpr double lastIndex = (1 << indexBits) - 2;
    static constexpr std::uint64_t stepY = std::uint64_t{1} << indexBits;
    static constexpr std::uint64_t stepX = stepY << indexBits;
    static constexpr int numColumns = 4;
    static constexpr std::uint64_t columnOffset[numColumns] = {stepY, stepX - stepY, stepX, stepX + stepY};

    std::uint64_t indexOf(float coordinate) const {
        double const index = std::floor(static_cast<double>(coordinate) / edge) + origin;
        return static_cast<std::uint64_t>(std::clamp(index, 1.0, lastIndex));
    }

    std::uint64_t cellOf(Point const& p) const { return indexOf(p.x) * stepX + indexOf(p.y) * stepY + indexOf(p.z); }

    /// The first point from `begin` on that lies behind `cell`.
    std::int64_t endOfCells(std::int64_t begin, std::uint64_t cell) const {
        while (begin < cells.size && cells[begin] <= cell) ++begin;
        return begin;
    }

    double edge;
    McDArray<Point> points;
    McDArray<std::uint64_t> cells; // of each point, ascending
};

} // namespace tarnex
