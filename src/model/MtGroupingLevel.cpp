#include "model/MtGroupingLevel.h"

#include "model/GroupNameIndex.h"
#include "model/members.h"

#include <algorithm>
#include <cstring>

namespace {
constexpr int fewAttributes = 6; // room for what most levels have
} // namespace

MtGroupingLevel::MtGroupingLevel(char const* levelName, int lowerLevel, int levelKind, int levelReserved)
    : name(levelName ? levelName : ""), lowerLevelIx(lowerLevel), kind(levelKind), reserved(levelReserved) {}

MtGroupingLevel::MtGroupingLevel(MtGroupingLevel const& other)
    : flags(other.flags), name(other.name), lowerLevelIx(other.lowerLevelIx), kind(other.kind),
      reserved(other.reserved) {
    groups.reserve(other.groups.size);
    for (MtGroup const* group : other.groups) groups.append(group ? group->clone() : nullptr);
    for (MtGroupAttribute const* attribute : other.attributes) attributes.append(attribute->duplicate(groups));
}

MtGroupingLevel::~MtGroupingLevel() {
    for (MtGroupAttribute* attribute : attributes) delete attribute;
    for (MtGroup* group : groups) delete group;
}

template <class Attribute>
Attribute* MtGroupingLevel::find(char const* attributeName) const {
    for (MtGroupAttribute* attribute : attributes) {
        if (std::strcmp(attribute->getName(), attributeName) != 0) continue;
        if (auto* found = dynamic_cast<Attribute*>(attribute)) return found;
    }
    return nullptr;
}

template <class Attribute>
Attribute* MtGroupingLevel::findOrCreate(char const* attributeName, FindingBehaviour behaviour) {
    auto* attribute = find<Attribute>(attributeName);
    if (!attribute && behaviour == CREATE) {
        attribute = pool ? new (*pool) Attribute(attributeName, groups) : new Attribute(attributeName, groups);
        attribute->pool = pool;
        if (attributes.size == 0) attributes.reserve(fewAttributes);
        attributes.append(attribute);
    }
    return attribute;
}

MtIntegerAttribute* MtGroupingLevel::integerAttribute(char const* attributeName, FindingBehaviour behaviour, bool) {
    return findOrCreate<MtIntegerAttribute>(attributeName, behaviour);
}

MtFloatAttribute* MtGroupingLevel::floatAttribute(char const* attributeName, FindingBehaviour behaviour, bool) {
    return findOrCreate<MtFloatAttribute>(attributeName, behaviour);
}

MtStringAttribute* MtGroupingLevel::stringAttribute(char const* attributeName, FindingBehaviour behaviour, bool) {
    return findOrCreate<MtStringAttribute>(attributeName, behaviour);
}

MtGroupAttribute* MtGroupingLevel::getAttribute(int index) {
    return index >= 0 && index < attributes.size ? attributes[index] : nullptr;
}

char const* MtGroupingLevel::getGroupName(int group) const {
    auto const* names = find<MtStringAttribute>("name");
    return names ? names->getValue(group) : "";
}

int MtGroupingLevel::findGroupBackward(char const* groupName) const {
    auto* names = find<MtStringAttribute>("name");
    if (!names) return *groupName ? -1 : static_cast<int>(groups.size - 1);
    if (!names->nameIndex) {
        nameIndex = std::make_unique<tarnex::GroupNameIndex>(names, groups);
        names->nameIndex = nameIndex.get();
    }
    return names->nameIndex->findLast(groupName);
}

void MtGroupingLevel::updateSegmentationFlag(MolTopology* topology, int levelIx) {
    constexpr int nobody = -1;
    McDArray<McDArray<int>> owners(topology->levels.size);
    bool shared = false;
    for (int g = 0; g < groups.size && !shared; ++g) {
        tarnex::forEachMember(*topology, groups[g], [&](MtGroupRef member) {
            if (member.levelIx == levelIx) return;
            McDArray<int>& ownersOfLevel = owners[member.levelIx];
            if (ownersOfLevel.size == 0) {
                ownersOfLevel.resize(topology->levels[member.levelIx]->groups.size);
                std::fill(ownersOfLevel.begin(), ownersOfLevel.end(), nobody);
            }
            int& owner = ownersOfLevel[member.groupIx];
            if (owner != nobody && owner != g) shared = true;
            owner = g;
        });
    }
    if (shared)
        clearFlag(segmentation);
    else
        setFlag(segmentation);
}

void MtGroupingLevel::insertGroup(MtGroup* group, int position) {
    groups.insert(position, group);
    for (MtGroupAttribute* attribute : attributes) attribute->insertValue(position);
    if (nameIndex) nameIndex->inserted(position);
}
