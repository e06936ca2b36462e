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
    count = 0;
    areSorted = false;
}

void AtomIds::appendOther(int id) {
    if (count == 0) {
        first = id;
        count = 1;
        return;
    }
    if (areConsecutive) {
        for (int i = 0; i < count; ++i) entries.append(entryOf(first + i, static_cast<std::uint32_t>(i)));
        areConsecutive = false;
    }
    entries.append(entryOf(id, static_cast<std::uint32_t>(entries.size)));
}

int AtomIds::search(int id) {
    if (!areSorted) std::sort(entries.begin(), entries.end());
    areSorted = true;
    std::int64_t const* const behind = std::upper_bound(entries.begin(), entries.end(), entryOf(id, UINT32_MAX));
    bool const isKnown = behind != entries.begin() && idOf(behind[-1]) == id;
    return isKnown ? indexOf(behind[-1]) : -1;
}

} // namespace tarnex::tripos
