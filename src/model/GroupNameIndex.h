#pragma once

#include "foundation/McDArray.h"
#include "model/MtGroup.h"

#include <cstdint>

class MtStringAttribute;

namespace tarnex {

/// Finds the last group of a name without a walk over the level. It follows the name attribute through changes and
/// inserted groups, and takes in groups that were appended since the last lookup.
///
/// Each group has a node, which stays the same when the group moves. The nodes of one name form a pairing heap
/// (Fredman, Sedgewick, Sleator and Tarjan 1986) with the last group at its root; a table of names leads to the roots.
class GroupNameIndex {
public:
    GroupNameIndex(MtStringAttribute const* nameAttribute, McDArray<MtGroup*> const& groupsOfLevel)
        : names(nameAttribute), groups(groupsOfLevel) {}

    /// The last group that has this name, or -1.
    int findLast(char const* name);

    /// To be called ahead of and behind a change of the name of `group`.
    void leave(int group);
    void enter(int group);

    /// To be called when a group was inserted at `position`, and its unset name as well.
    void inserted(int position);

private:
    struct Slot {
        std::uint32_t hash;
        int root;
    };

    /// The neighbours of a node in its heap, or -1. `previous` is the parent for a first child.
    struct Node {
        int child = -1;
        int previous = -1;
        int next = -1;
    };

    bool covers(int group);
    void forgetAll();
    void expectNodes(std::int64_t number);

    int merge(int a, int b);
    int mergeSiblings(int first);
    void unlink(int node);
    char const* nameOf(int node) const;

    std::int64_t slotOf(char const* name, std::uint32_t hash) const;
    void addSlot(std::uint32_t hash, int root);
    void enlargeTable();

    MtStringAttribute const* names;
    McDArray<MtGroup*> const& groups;
    McDArray<Slot> slots;
    std::int64_t usedSlots = 0;
    McDArray<Node> nodes;
    McDArray<int> groupOfNode;
    McDArray<int> nodeOfGroup;
};

} // namespace tarnex
