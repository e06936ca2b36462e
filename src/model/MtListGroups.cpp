#include "model/MtListGroups.h"

#include <algorithm>
#include <climits>
#include <cstdint>

MtDynamicGroup::~MtDynamicGroup() = default;

MtDynamicGroup* MtDynamicGroup::clone() const {
    return new MtDynamicGroup(*this);
}

int MtDynamicGroup::size() const {
    return static_cast<int>(members.size);
}

MtGroupRef MtDynamicGroup::operator[](int i) const {
    return members[i];
}

void MtDynamicGroup::setElement(int i, MtGroupRef ref) {
    members[i] = ref;
}

MtIntraLevelRange::~MtIntraLevelRange() = default;

MtIntraLevelRange* MtIntraLevelRange::clone() const {
    return new MtIntraLevelRange(*this);
}

bool MtIntraLevelRange::translate(MtGroupRefTranslator* translator, bool) {
    if (size() <= 0) return true;
    MtGroupRef const firstImage = translator->translate(MtGroupRef(levelIx, first));
    MtGroupRef const lastImage = translator->translate(MtGroupRef(levelIx, last));
    if (firstImage.groupIx < 0 || lastImage.groupIx < 0) return false;
    levelIx = firstImage.levelIx;
    first = firstImage.groupIx;
    last = lastImage.groupIx;
    return true;
}

int MtIntraLevelRange::size() const {
    std::int64_t const count = std::int64_t{last} - first + 1;
    return static_cast<int>(std::clamp<std::int64_t>(count, INT_MIN, INT_MAX));
}

MtGroupRef MtIntraLevelRange::operator[](int i) const {
    return {levelIx, static_cast<int>(std::int64_t{first} + i)};
}

void MtIntraLevelRange::setElement(int i, MtGroupRef ref) {
    int const lastMember = size() - 1;
    levelIx = ref.levelIx;
    if (i == lastMember) last = ref.groupIx;
    if (i == 0) first = ref.groupIx;
}
