#pragma once

namespace tarnex::pdb {

/// The columns of a field, counted from 1, with both its ends.
struct Columns {
    int first;
    int last;

    constexpr int width() const { return last - first + 1; }
    constexpr Columns movedBy(int columns) const { return {first + columns, last + columns}; }
};

/// Each line begins with the keyword of its record.
inline constexpr Columns keywordColumns{1, 6};

} // namespace tarnex::pdb
