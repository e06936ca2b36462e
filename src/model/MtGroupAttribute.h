#pragma once

#include "foundation/McDArray.h"
#include "foundation/export.h"
#include "model/GroupPool.h"
#include "model/MtGroup.h"
#include "model/PoolArray.h"
#include "model/TextSlot.h"

#include <cstdint>
#include <string>

namespace tarnex {
class GroupNameIndex;
}

/// Abstract base of an attribute: one value per group of a level, found by the index of the group. The level makes and
/// owns its attributes.
class TARNEX_API MtGroupAttribute : public tarnex::Pooled {
public:
    virtual ~MtGroupAttribute();
    MtGroupAttribute(MtGroupAttribute const&) = delete;
    MtGroupAttribute& operator=(MtGroupAttribute const&) = delete;

    char const* getName() const { return name.c_str(); }

    /// Moves the values from the group at `position` on up by one; the new value there is unset.
    virtual void insertValue(int position) = 0;
    /// A copy of this attribute for another level's groups, owned by the caller.
    virtual MtGroupAttribute* duplicate(McDArray<MtGroup*> const& groupsOfLevel) const = 0;

protected:
    MtGroupAttribute(char const* attributeName, McDArray<MtGroup*> const& groupsOfLevel)
        : groups(&groupsOfLevel), name(attributeName ? attributeName : "") {}

    bool hasGroup(int group) const { return group >= 0 && group < groups->size; }

    McDArray<MtGroup*> const* groups;
    /// Where the values are kept if the topology made this attribute.
    tarnex::GroupPool* pool = nullptr;

private:
    friend class MtGroupingLevel;

    std::string name;
};

namespace tarnex {

/// Values of type `T` by group index, as far as they have been set.
template <class T>
class GroupValues {
public:
    /// Null for a value that was never set. Good until another value is set.
    T const* find(int group) const { return group < values.size() ? &values[group] : nullptr; }
    /// A reference to the value of one of the level's groups, for which there is as much room as for groups.
    T& at(int group, McDArray<MtGroup*> const& groups, GroupPool* pool) {
        if (group == values.size() && group < values.capacity())
            values.append(T{});
        else if (group >= values.size())
            growTo(group, groups.capacity, pool);
        return values[group];
    }
    void insertUnset(int position, GroupPool* pool) {
        if (position >= values.size()) return;
        values.reserve(values.size() + 1, pool);
        values.insert(position, T{});
    }
    std::int64_t size() const { return values.size(); }

private:
    [[gnu::noinline]] void growTo(int group, std::int64_t room, GroupPool* pool) {
        if (group >= values.capacity()) values.reserve(room, pool);
        while (values.size() <= group) values.append(T{});
    }

    PoolArray<T> values;
};

/// What the attributes of numbers share.
template <class T>
class NumberAttribute : public MtGroupAttribute {
public:
    /// A group that does not exist in the level is ignored.
    void setValue(int group, T value) {
        if (hasGroup(group)) values.at(group, *groups, pool) = value;
    }
    /// 0 for a value that was never set and for a group that does not exist.
    T getValue(int group) const {
        T const* value = hasGroup(group) ? values.find(group) : nullptr;
        return value ? *value : T{};
    }

    void insertValue(int position) override { values.insertUnset(position, pool); }

protected:
    using MtGroupAttribute::MtGroupAttribute;
    NumberAttribute(NumberAttribute const& other, McDArray<MtGroup*> const& groupsOfLevel)
        : MtGroupAttribute(other.getName(), groupsOfLevel), values(other.values) {}

private:
    GroupValues<T> values;
};

} // namespace tarnex

class TARNEX_API MtIntegerAttribute : public tarnex::NumberAttribute<int> {
public:
    MtIntegerAttribute(char const* attributeName, McDArray<MtGroup*> const& groupsOfLevel)
        : NumberAttribute(attributeName, groupsOfLevel) {}
    MtIntegerAttribute(MtIntegerAttribute const& other, McDArray<MtGroup*> const& groupsOfLevel)
        : NumberAttribute(other, groupsOfLevel) {}
    ~MtIntegerAttribute() override;
    MtIntegerAttribute* duplicate(McDArray<MtGroup*> const& groupsOfLevel) const override;
};

class TARNEX_API MtFloatAttribute : public tarnex::NumberAttribute<float> {
public:
    MtFloatAttribute(char const* attributeName, McDArray<MtGroup*> const& groupsOfLevel)
        : NumberAttribute(attributeName, groupsOfLevel) {}
    MtFloatAttribute(MtFloatAttribute const& other, McDArray<MtGroup*> const& groupsOfLevel)
        : NumberAttribute(other, groupsOfLevel) {}
    ~MtFloatAttribute() override;
    MtFloatAttribute* duplicate(McDArray<MtGroup*> const& groupsOfLevel) const override;
};

class TARNEX_API MtStringAttribute : public MtGroupAttribute {
public:
    MtStringAttribute(char const* attributeName, McDArray<MtGroup*> const& groupsOfLevel)
        : MtGroupAttribute(attributeName, groupsOfLevel) {}
    ~MtStringAttribute() override;

    /// Keeps a copy of the text, which may be one of this attribute's own; null counts as the empty string. A group
    /// that does not exist in the level is ignored.
    void setValue(int group, char const* value);
    void setValue(int group, tarnex::ShortText value) {
        if (!hasGroup(group)) return;
        if (nameIndex || !tarnex::TextSlot::fits(value)) return replace(group, value);
        slots.at(group, *groups, pool) = tarnex::TextSlot(value);
    }
    /// The empty string for a value that was never set and for a group that does not exist. The pointer is good until
    /// a value of this attribute is set or inserted.
    char const* getValue(int group) const {
        tarnex::TextSlot const* slot = hasGroup(group) ? slots.find(group) : nullptr;
        if (!slot) return "";
        return slot->isLong() ? longTexts.data + slot->offset() : slot->text();
    }

    void insertValue(int position) override;
    MtStringAttribute* duplicate(McDArray<MtGroup*> const& groupsOfLevel) const override;

private:
    friend class MtGroupingLevel;

    MtStringAttribute(MtStringAttribute const& other, McDArray<MtGroup*> const& groupsOfLevel)
        : MtGroupAttribute(other.getName(), groupsOfLevel), slots(other.slots), longTexts(other.longTexts) {}

    void replace(int group, tarnex::ShortText value);
    template <class Store>
    void replaceBy(int group, Store&& store);
    void storeLong(tarnex::TextSlot& slot, char const* value, std::size_t length);

    tarnex::GroupValues<tarnex::TextSlot> slots;
    /// The texts that do not fit in their slots, each with its NUL.
    McDArray<char> longTexts;
    /// The level's index of group names if this attribute holds the names; it is told of every change.
    tarnex::GroupNameIndex* nameIndex = nullptr;
};
