#pragma once

#include "foundation/McDArray.h"

#include <cstdint>

namespace tarnex::tripos {

/// The atom ids of one molecule, which are any integers in any order, and the index of the atom that each belongs to.
class AtomIds {
public:
    void clear();
    /// The id of the next atom. It takes the place of the same id of an atom ahead.
    void append(int id);
    /// The index of the atom, or -1 for an unknown id.
    int find(int id);

private:
    /// The id in the upper half and the index in the lower one, so that sorting brings equal ids together, the last
    /// atom's at their end.
    McDArray<std::int64_t> entries;
    /// Ids that follow each other, as nearly all files have them, need no search.
    bool areConsecutive = true;
    bool areSorted = false;
};

} // namespace tarnex::tripos
