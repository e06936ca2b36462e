#pragma once

#include "foundation/McDArray.h"

#include <cstdint>

class MtStringAttribute;

namespace tarnex {

/// Finds the last group of a name without a walk over the level. It follows the name attribute through changes and
/// inserted groups, and takes in groups that were appended since the last lookup.
///
/// Groups of one name form a chain from the last to the first; a table of names leads to the head of each chain.
class NameIndex {
public:
    explicit NameIndex(MtStringAttribute const* nameAttribute) : names(nameAttribute) {}

    /// The last of the level's `numGroups` groups that has this name, or -1.
    int findLast(char const* name, std::int64_t numGroups);

    /// To be called ahead of and behind a change of the name of `group`.
    void leave(int group);
    void enter(int group);

    /// To be called when a group was inserted at `position`, and its unset name as well.
    void inserted(int position);

private:
    struct Slot {
        std::uint32_t hash;
        /// The last group of the name.
        int head;
    };

    std::int64_t slotOf(char const* name, std::uint32_t hash) const;
    void addSlot(std::uint32_t hash, int head);
    void enlargeTable();
    void rebuild();
    bool covers(int group) const { return upToDate && group < older.size; }

    MtStringAttribute const* names;
    McDArray<Slot> slots;
    std::int64_t usedSlots = 0;
    /// For each group in the index, its neighbours in the chain of its name, or -1.
    McDArray<int> older;
    McDArray<int> newer;
    bool upToDate = true;
};

} // namespace tarnex
