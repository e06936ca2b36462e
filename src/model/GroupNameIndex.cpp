#include "model/GroupNameIndex.h"

#include "model/MtGroupAttribute.h"
#include "model/textHash.h"

#include <algorithm>
#include <cstring>

namespace tarnex {

namespace {

constexpr int emptySlot = -1;
constexpr int deletedSlot = -2;
constexpr std::int64_t firstTableSize = 16;

std::uint32_t hashOf(char const* name) {
    return static_cast<std::uint32_t>(textHash(name, std::strlen(name)) >> 16U);
}

} // namespace

int GroupNameIndex::findLast(char const* name) {
    if (nodes.size > groups.size) forgetAll();
    expectNodes(groups.size);
    while (nodes.size < groups.size) {
        auto const group = static_cast<int>(nodes.size);
        nodes.append({});
        groupOfNode.append(group);
        nodeOfGroup.append(group);
        enter(group);
    }
    std::int64_t const slot = slotOf(name, hashOf(name));
    return slot < 0 ? -1 : groupOfNode[slots[slot].root];
}

/// Makes room for this number of groups.
void GroupNameIndex::expectNodes(std::int64_t number) {
    if (number <= nodes.capacity) return;
    nodes.reserve(number);
    groupOfNode.reserve(number);
    nodeOfGroup.reserve(number);
}

void GroupNameIndex::leave(int group) {
    if (!covers(group)) return;
    int const node = nodeOfGroup[group];
    char const* name = nameOf(node);
    Slot& slot = slots[slotOf(name, hashOf(name))];
    if (slot.root == node) {
        int const rest = mergeSiblings(nodes[node].child);
        slot.root = rest >= 0 ? rest : deletedSlot;
    } else {
        unlink(node);
        slot.root = merge(slot.root, mergeSiblings(nodes[node].child));
    }
    nodes[node] = {};
}

void GroupNameIndex::enter(int group) {
    if (!covers(group)) return;
    int const node = nodeOfGroup[group];
    char const* name = nameOf(node);
    std::uint32_t const hash = hashOf(name);
    std::int64_t const slot = slotOf(name, hash);
    if (slot < 0)
        addSlot(hash, node);
    else
        slots[slot].root = merge(slots[slot].root, node);
}

void GroupNameIndex::inserted(int position) {
    if (!covers(position)) return;
    nodeOfGroup.insert(position, static_cast<int>(nodes.size));
    nodes.append({});
    groupOfNode.append(position);
    for (std::int64_t group = position + 1; group < nodeOfGroup.size; ++group) ++groupOfNode[nodeOfGroup[group]];
    enter(position);
}

/// Whether a group is in the index. A level that has lost groups makes the index start anew.
bool GroupNameIndex::covers(int group) {
    if (nodes.size > groups.size) forgetAll();
    return group < nodes.size;
}

void GroupNameIndex::forgetAll() {
    slots.clear();
    usedSlots = 0;
    nodes.resize(0);
    groupOfNode.resize(0);
    nodeOfGroup.resize(0);
}

/// Makes one heap of two, of which either may be empty (-1): the root that stands earlier in the level becomes the
/// first child of the other.
int GroupNameIndex::merge(int a, int b) {
    if (a < 0 || b < 0) return std::max(a, b);
    bool const aIsLast = groupOfNode[a] > groupOfNode[b];
    int const root = aIsLast ? a : b;
    int const child = aIsLast ? b : a;
    int const sibling = nodes[root].child;
    if (sibling >= 0) nodes[sibling].previous = child;
    nodes[child].previous = root;
    nodes[child].next = sibling;
    nodes[root].child = child;
    return root;
}

/// Makes one heap of a list of siblings: in pairs from the front, then pair by pair from the back.
int GroupNameIndex::mergeSiblings(int first) {
    int lastPair = -1;
    while (first >= 0) {
        int const a = first;
        int const b = nodes[a].next;
        first = b >= 0 ? nodes[b].next : -1;
        int const pair = merge(a, b);
        nodes[pair].next = lastPair;
        lastPair = pair;
    }
    int root = -1;
    while (lastPair >= 0) {
        int const pair = lastPair;
        lastPair = nodes[pair].next;
        nodes[pair].next = -1;
        nodes[pair].previous = -1;
        root = merge(root, pair);
    }
    return root;
}

/// Takes a node that is no root, with all below it, out of the list of its siblings.
void GroupNameIndex::unlink(int node) {
    Node const& place = nodes[node];
    if (place.next >= 0) nodes[place.next].previous = place.previous;
    Node& before = nodes[place.previous];
    (before.child == node ? before.child : before.next) = place.next;
}

char const* GroupNameIndex::nameOf(int node) const {
    return names->getValue(groupOfNode[node]);
}

/// The slot of a name that is in the table, or -1.
std::int64_t GroupNameIndex::slotOf(char const* name, std::uint32_t hash) const {
    if (slots.size == 0) return -1;
    std::int64_t const mask = slots.size - 1;
    for (std::int64_t i = hash & mask; slots[i].root != emptySlot; i = (i + 1) & mask) {
        Slot const& slot = slots[i];
        if (slot.root >= 0 && slot.hash == hash && std::strcmp(nameOf(slot.root), name) == 0) return i;
    }
    return -1;
}

void GroupNameIndex::addSlot(std::uint32_t hash, int root) {
    if (2 * (usedSlots + 1) > slots.size) enlargeTable();
    std::int64_t const mask = slots.size - 1;
    std::int64_t i = hash & mask;
    while (slots[i].root >= 0) i = (i + 1) & mask;
    if (slots[i].root == emptySlot) ++usedSlots;
    slots[i] = {hash, root};
}

/// Makes a table for twice the names that are in it, without the deleted ones.
void GroupNameIndex::enlargeTable() {
    McDArray<Slot> old;
    old.swap(slots);
    auto const numNames = std::count_if(old.begin(), old.end(), [](Slot const& slot) { return slot.root >= 0; });
    std::int64_t size = firstTableSize;
    while (size < 4 * numNames) size *= 2;
    slots.resize(size);
    std::fill(slots.begin(), slots.end(), Slot{0, emptySlot});
    usedSlots = 0;
    for (Slot const& slot : old) {
        if (slot.root >= 0) addSlot(slot.hash, slot.root);
    }
}

} // namespace tarnex
