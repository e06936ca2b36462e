#include "model/MtGroupAttribute.h"

#include "model/GroupNameIndex.h"

#include <cstring>

MtGroupAttribute::~MtGroupAttribute() = default;

MtIntegerAttribute::~MtIntegerAttribute() = default;

MtIntegerAttribute* MtIntegerAttribute::duplicate(McDArray<MtGroup*> const& groupsOfLevel) const {
    return new MtIntegerAttribute(*this, groupsOfLevel);
}

MtFloatAttribute::~MtFloatAttribute() = default;

MtFloatAttribute* MtFloatAttribute::duplicate(McDArray<MtGroup*> const& groupsOfLevel) const {
    return new MtFloatAttribute(*this, groupsOfLevel);
}

MtStringAttribute::~MtStringAttribute() = default;

template <class Store>
void MtStringAttribute::replaceBy(int group, Store&& store) {
    tarnex::TextSlot& slot = slots.at(group, *groups, pool);
    if (nameIndex) nameIndex->leave(group);
    store(slot);
    if (nameIndex) nameIndex->enter(group);
}

void MtStringAttribute::setValue(int group, char const* value) {
    if (!hasGroup(group)) return;
    std::size_t const length = value ? std::strlen(value) : 0;
    if (length <= tarnex::ShortText::maxLength) return setValue(group, tarnex::ShortText(value, length));
    replaceBy(group, [&](tarnex::TextSlot& slot) { storeLong(slot, value, length); });
}

void MtStringAttribute::replace(int group, tarnex::ShortText value) {
    if (tarnex::TextSlot::fits(value)) {
        replaceBy(group, [&](tarnex::TextSlot& slot) { slot = tarnex::TextSlot(value); });
    } else {
        char text[tarnex::ShortText::room];
        value.put(text);
        replaceBy(group, [&](tarnex::TextSlot& slot) { storeLong(slot, text, value.length()); });
    }
}

/// In the place of the last text if there is room, so that values can change for ever.
void MtStringAttribute::storeLong(tarnex::TextSlot& slot, char const* value, std::size_t length) {
    if (slot.isLong() && length <= std::strlen(longTexts.data + slot.offset())) {
        std::memmove(longTexts.data + slot.offset(), value, length + 1);
        return;
    }
    std::int64_t const offset = longTexts.size;
    longTexts.insert(offset, static_cast<std::int64_t>(length) + 1, value);
    slot = tarnex::TextSlot::ofLongText(offset);
}

void MtStringAttribute::insertValue(int position) {
    slots.insertUnset(position, pool);
}

MtStringAttribute* MtStringAttribute::duplicate(McDArray<MtGroup*> const& groupsOfLevel) const {
    return new MtStringAttribute(*this, groupsOfLevel);
}
