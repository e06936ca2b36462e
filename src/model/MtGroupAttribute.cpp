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

void MtStringAttribute::setValue(int group, char const* value) {
    if (!hasGroup(group)) return;
    char const* text = value ? value : "";
    char const*& slot = values.at(group, *groups, pool);
    bool const isSame = slot ? std::strcmp(slot, text) == 0 : *text == 0;
    if (!isSame) replace(group, slot, texts.store(text, pool));
}

void MtStringAttribute::setValue(int group, tarnex::ShortText value) {
    if (hasGroup(group)) replace(group, values.at(group, *groups, pool), texts.store(value, pool));
}

void MtStringAttribute::replace(int group, char const*& slot, char const* stored) {
    if (nameIndex) nameIndex->leave(group);
    slot = stored;
    if (nameIndex) nameIndex->enter(group);
}

void MtStringAttribute::insertValue(int position) {
    values.insertUnset(position, pool);
}

MtStringAttribute* MtStringAttribute::duplicate(McDArray<MtGroup*> const& groupsOfLevel) const {
    auto* copy = new MtStringAttribute(getName(), groupsOfLevel);
    for (int i = 0; i < values.size(); ++i) {
        if (char const* text = values.get(i)) copy->setValue(i, text);
    }
    return copy;
}
