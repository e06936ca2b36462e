#include "model/NameIndex.h"

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

int NameIndex::findLast(char const* name, std::int64_t numGroups) {
    if (!upToDate || older.size > numGroups) rebuild();
    while (older.size < numGroups) {
        older.append(-1);
        newer.append(-1);
        enter(static_cast<int>(older.size - 1));
    }
    std::int64_t const slot = slotOf(name, hashOf(name));
    return slot < 0 ? -1 : slots[slot].head;
}

void NameIndex::leave(int group) {
    if (!covers(group)) return;
    int const before = older[group];
    int const behind = newer[group];
    if (before >= 0) newer[before] = behind;
    if (behind >= 0) {
        older[behind] = before;
        return;
    }
    char const* name = names->getValue(group);
    Slot& slot = slots[slotOf(name, hashOf(name))];
    slot.head = before >= 0 ? before : deletedSlot;
}

void NameIndex::enter(int group) {
    if (!covers(group)) return;
    older[group] = -1;
    newer[group] = -1;
    char const* name = names->getValue(group);
    std::uint32_t const hash = hashOf(name);
    std::int64_t const slot = slotOf(name, hash);
    if (slot < 0) return addSlot(hash, group);
    int const head = slots[slot].head;
    if (group < head) {
        // Its place is inside the chain: a rare case that is left to the next lookup.
        upToDate = false;
        return;
    }
    older[group] = head;
    newer[head] = group;
    slots[slot].head = group;
}

void NameIndex::inserted(int position) {
    if (!covers(position)) return;
    older.insert(position, -1);
    newer.insert(position, -1);
    auto const moveUp = [position](int& group) { group += group >= position ? 1 : 0; };
    std::for_each(older.begin(), older.end(), moveUp);
    std::for_each(newer.begin(), newer.end(), moveUp);
    for (Slot& slot : slots) moveUp(slot.head);
    enter(position);
}

/// The slot of a name that is in the table, or -1.
std::int64_t NameIndex::slotOf(char const* name, std::uint32_t hash) const {
    if (slots.size == 0) return -1;
    std::int64_t const mask = slots.size - 1;
    for (std::int64_t i = hash & mask; slots[i].head != emptySlot; i = (i + 1) & mask) {
        Slot const& slot = slots[i];
        if (slot.head >= 0 && slot.hash == hash && std::strcmp(names->getValue(slot.head), name) == 0) return i;
    }
    return -1;
}

void NameIndex::addSlot(std::uint32_t hash, int head) {
    if (2 * (usedSlots + 1) > slots.size) enlargeTable();
    std::int64_t const mask = slots.size - 1;
    std::int64_t i = hash & mask;
    while (slots[i].head >= 0) i = (i + 1) & mask;
    if (slots[i].head == emptySlot) ++usedSlots;
    slots[i] = {hash, head};
}

/// Makes a table for twice the names that are in it, without the deleted ones.
void NameIndex::enlargeTable() {
    McDArray<Slot> old;
    old.swap(slots);
    auto const numNames = std::count_if(old.begin(), old.end(), [](Slot const& slot) { return slot.head >= 0; });
    std::int64_t size = firstTableSize;
    while (size < 4 * numNames) size *= 2;
    slots.resize(size);
    std::fill(slots.begin(), slots.end(), Slot{0, emptySlot});
    usedSlots = 0;
    for (Slot const& slot : old) {
        if (slot.head >= 0) addSlot(slot.hash, slot.head);
    }
}

void NameIndex::rebuild() {
    slots.clear();
    usedSlots = 0;
    older.resize(0);
    newer.resize(0);
    upToDate = true;
}

} // namespace tarnex
