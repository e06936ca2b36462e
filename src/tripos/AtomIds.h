#pragma once

#include "foundation/McDArray.h"

#include <cstdint>

namespace tarnex::tripos {

/// The atom ids of one molecule, which are any integers in any order, and the index of the atom that each belongs to.
class AtomIds {
public:
    void clear();
    /// The id of the next atom. It takes the place of the same id of an atom ahead.
    void append(int id) {
        if (areConsecutive && id == std::int64_t{first} + count)
            ++count;
        else
            appendOther(id);
    }
    /// The index of the atom, or -1 for an unknown id.
    int find(int id) {
        if (!areConsecutive) return search(id);
        std::int64_t const index = std::int64_t{id} - first;
        return index >= 0 && index < count ? static_cast<int>(index) : -1;
    }

private:
    void appendOther(int id);
    int search(int id);

    /// Ids that follow each other, as nearly all files have them, need no search.
    bool areConsecutive = true;
    int first = 0;
    int count = 0;
    /// All others: the id in the upper half and the index in the lower one, so that sorting brings equal ids together,
    /// the last atom's at their end.
    McDArray<std::int64_t> entries;
    bool areSorted = false;
};

} // namespace tarnex::tripos
