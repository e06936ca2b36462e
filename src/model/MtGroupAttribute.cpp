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

void MtStringAttribute::setValue(int group, std::string_view text) {
    if (!hasGroup(group)) return;
    char const*& slot = values.at(group, room(group));
    bool const isSame = slot ? text == slot : text.empty();
    if (isSame) return;
    char const* stored = texts.store(text);
    if (nameIndex) nameIndex->leave(group);
    slot = stored;
    if (nameIndex) nameIndex->enter(group);
}

void MtStringAttribute::insertValue(int position) {
    values.insertUnset(position);
}

MtStringAttribute* MtStringAttribute::duplicate(McDArray<MtGroup*> const& groupsOfLevel) const {
    auto* copy = new MtStringAttribute(getName(), groupsOfLevel);
    for (int i = 0; i < values.size(); ++i) {
        if (char const* text = values.get(i)) copy->setValue(i, text);
    }
    return copy;
}
