#include "model/MolTopology.h"

#include "model/BondIndex.h"
#include "model/members.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <utility>

namespace tarnex {

/// Places of the named data by name.
class DataIndex : public std::unordered_map<std::string_view, int> {};

} // namespace tarnex

namespace {

constexpr char const* formalChargeName = "formal_charge";
constexpr int levelKind = 12;
// Room for what most topologies have.
constexpr int fewLevels = 4;
constexpr int fewData = 4;
constexpr std::int64_t dataWithoutIndex = 16;

} // namespace

MolTopology::MolTopology() : MolTopology(tarnex::GroupPool()) {}

MolTopology::MolTopology(tarnex::GroupPool&& rest) : groupPool(std::move(rest)) {
    levels.reserve(fewLevels);
    addLevel("", -1, levelKind, -1);
    addLevel("", 0, levelKind, -1);
}

MolTopology::MolTopology(MolTopology const& other) : McHandable(other), name(other.name) {
    for (MtGroupingLevel const* level : other.levels) levels.append(new MtGroupingLevel(*level));
    for (MolData const* datum : other.data) data.append(datum->duplicate());
}

MolTopology::~MolTopology() {
    for (MolData* datum : data) delete datum;
    for (MtGroupingLevel* level : levels) delete level;
}

MolTopology* MolTopology::duplicate() const {
    return new MolTopology(*this);
}

void MolTopology::setName(char const* topologyName) {
    name = topologyName ? topologyName : "";
}

int MolTopology::getLevelIx(char const* levelName) const {
    for (int i = 2; i < levels.size; ++i) {
        if (std::strcmp(levels[i]->getName(), levelName) == 0) return i;
    }
    return -1;
}

MtGroupingLevel* MolTopology::getLevel(int index) const {
    return index >= 0 && index < levels.size ? levels[index] : nullptr;
}

int MolTopology::addLevel(char const* levelName, int lowerLevelIx, int kind, int reserved) {
    levels.append(new (groupPool) MtGroupingLevel(levelName, lowerLevelIx, kind, reserved));
    levels[levels.size - 1]->pool = &groupPool;
    return static_cast<int>(levels.size - 1);
}

void MolTopology::prepLevelSize(int levelIx, int n) {
    if (MtGroupingLevel* level = getLevel(levelIx)) level->groups.reserve(n);
}

bool MolTopology::accepts(int levelIx, MtGroup const* group) const {
    if (!group || !getLevel(levelIx)) return false;
    int const size = group->size();
    return size == 0 || hasMembers(*group, size);
}

/// Ranges and lists can be completed after they are added; all other groups must name what exists.
bool MolTopology::hasMembers(MtGroup const& group, int size) const {
    if (tarnex::asRange(&group) || dynamic_cast<MtDynamicGroup const*>(&group)) return true;
    for (int i = 0; i < size; ++i) {
        if (!tarnex::exists(*this, group[i])) return false;
    }
    return true;
}

MtGroupRef MolTopology::addGroup(int levelIx, MtGroup* group) {
    return addIf(accepts(levelIx, group), levelIx, group);
}

MtGroupRef MolTopology::addIf(bool isAccepted, int levelIx, MtGroup* group) {
    if (!isAccepted) {
        delete group;
        return {levelIx, -1};
    }
    McDArray<MtGroup*>& groups = levels[levelIx]->groups;
    groups.append(group);
    return {levelIx, static_cast<int>(groups.size - 1)};
}

MtGroupRef MolTopology::insertGroup(int levelIx, MtGroup* group, int position) {
    if (!accepts(levelIx, group)) {
        delete group;
        return {levelIx, -1};
    }
    MtGroupingLevel* level = levels[levelIx];
    int const place = std::clamp(position, 0, static_cast<int>(level->groups.size));
    level->insertGroup(group, place);
    if (levelIx == 1 && bondIndex) bondIndex->forgetAll();
    return {levelIx, place};
}

/// There are as many bonds as atoms, so that they go without the questions that tell one kind of group from another.
MtGroupRef MolTopology::addBond(MtBond* bond) {
    return addIf(bond && hasAtom(bond->atoms[0]) && hasAtom(bond->atoms[1]), 1, bond);
}

int MolTopology::findBond(int atomA, int atomB) const {
    if (!bondIndex) bondIndex = std::make_unique<tarnex::BondIndex>();
    return bondIndex->find(levels[1]->groups, atomA, atomB);
}

void MolTopology::getAtomsOfGroup(MtGroupRef const& ref, McDArray<int>& atoms) const {
    atoms.resize(0);
    if (!tarnex::exists(*this, ref)) return;
    if (ref.levelIx == 0) return atoms.append(ref.groupIx);

    // Groups still to be walked, the next one last. Each group is walked once, so that groups that hold each other
    // come to an end.
    McDArray<MtGroupRef> pending;
    std::unordered_set<std::uint64_t> walked;
    pending.append(ref);
    while (pending.size > 0) {
        MtGroupRef const group = pending[pending.size - 1];
        pending.resize(pending.size - 1);
        if (group.levelIx == 0) {
            atoms.append(group.groupIx);
            continue;
        }
        auto const key = static_cast<std::uint64_t>(group.levelIx) << 32U | static_cast<std::uint32_t>(group.groupIx);
        if (!walked.insert(key).second) continue;
        std::int64_t const begin = pending.size;
        tarnex::forEachMember(*this, levels[group.levelIx]->groups[group.groupIx],
                              [&](MtGroupRef member) { pending.append(member); });
        std::reverse(pending.begin() + begin, pending.end());
    }
}

MtIntegerAttribute* MolTopology::addIntegerAttribute(int levelIx, char const* attributeName) {
    MtGroupingLevel* level = getLevel(levelIx);
    return level ? level->integerAttribute(attributeName, MtGroupingLevel::CREATE, true) : nullptr;
}

MtIntegerAttribute* MolTopology::getAtomFormalChargeAttribute(FINDING_BEHAVIOUR behaviour) {
    auto const levelBehaviour = behaviour == CREATE ? MtGroupingLevel::CREATE : MtGroupingLevel::FIND;
    return levels[0]->integerAttribute(formalChargeName, levelBehaviour, true);
}

int MolTopology::findData(char const* dataName) const {
    if (data.size <= dataWithoutIndex) {
        for (int i = 0; i < data.size; ++i) {
            if (std::strcmp(data[i]->getName(), dataName) == 0) return i;
        }
        return -1;
    }
    if (!dataIndex) {
        dataIndex = std::make_unique<tarnex::DataIndex>();
        for (int i = 0; i < data.size; ++i) dataIndex->emplace(data[i]->getName(), i);
    }
    auto const found = dataIndex->find(dataName);
    return found == dataIndex->end() ? -1 : found->second;
}

void MolTopology::setData(MolData* datum) {
    if (!datum) return;
    int const place = findData(datum->getName());
    if (place >= 0 && data[place] == datum) return;
    if (place < 0) {
        if (data.size == 0) data.reserve(fewData);
        data.append(datum);
        if (dataIndex) dataIndex->emplace(datum->getName(), static_cast<int>(data.size - 1));
        return;
    }
    // The key in the index stands in the datum that goes.
    if (dataIndex) dataIndex->erase(data[place]->getName());
    delete data[place];
    data[place] = datum;
    if (dataIndex) dataIndex->emplace(datum->getName(), place);
}

MolData* MolTopology::getData(char const* dataName) const {
    int const place = findData(dataName);
    return place < 0 ? nullptr : data[place];
}

int MolTopology::getNumData() const {
    return static_cast<int>(data.size);
}

MolData* MolTopology::getData(int index) const {
    return index >= 0 && index < data.size ? data[index] : nullptr;
}
