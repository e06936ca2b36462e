#pragma once

namespace tarnex {

/// The columns of a field, counted from 1, with both its ends.
struct Columns {
    int first;
    int last;

    constexpr int width() const { return last - first + 1; }
    constexpr Columns movedBy(int columns) const { return {first + columns, last + columns}; }
};

} // namespace tarnex
