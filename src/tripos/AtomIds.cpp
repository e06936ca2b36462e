#include "tripos/AtomIds.h"

#include <algorithm>

namespace tarnex::tripos {

namespace {

constexpr std::int64_t entryOf(int id, std::uint32_t index) {
    return std::int64_t{id} * (std::int64_t{1} << 32U) + index;
}

constexpr std::int64_t idOf(std::int64_t entry) {
    return entry >> 32U;
}

constexpr int indexOf(std::int64_t entry) {
    return static_cast<int>(entry & 0xffffffff);
}

} // namespace

void AtomIds::clear() {
    entries.resize(0);
    areConsecutive = true;
    areSorted = false;
}

void AtomIds::append(int id) {
    if (entries.size > 0) areConsecutive = areConsecutive && id == idOf(entries[0]) + entries.size;
    entries.append(entryOf(id, static_cast<std::uint32_t>(entries.size)));
}

int AtomIds::find(int id) {
    if (entries.size == 0) return -1;
    if (areConsecutive) {
        std::int64_t const index = id - idOf(entries[0]);
        return index >= 0 && index < entries.size ? static_cast<int>(index) : -1;
    }
    if (!areSorted) std::sort(entries.begin(), entries.end());
    areSorted = true;
    std::int64_t const* const behind = std::upper_bound(entries.begin(), entries.end(), entryOf(id, UINT32_MAX));
    bool const isKnown = behind != entries.begin() && idOf(behind[-1]) == id;
    return isKnown ? indexOf(behind[-1]) : -1;
}

} // namespace tarnex::tripos
