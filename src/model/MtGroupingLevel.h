#pragma once

#include "foundation/McDArray.h"
#include "foundation/export.h"
#include "model/MtGroup.h"
#include "model/MtGroupAttribute.h"

#include <memory>
#include <string>

class MolTopology;

/// One level of a topology: its groups and the attributes that hold values for them. Owns both.
class TARNEX_API MtGroupingLevel : public tarnex::Pooled {
public:
    enum FindingBehaviour { FIND = 0, CREATE = 1 };

    /// Bits of `flags`. `segmentation` says that each group of the lower level lies in at most one group of this level.
    /// The others are for consumers of the model; nothing in this library reads them.
    enum Flag : unsigned char { flagBit0 = 0x01, flagBit1 = 0x02, segmentation = 0x10, flagBit5 = 0x20 };

    /// `kind` and `reserved` are kept as they are given.
    MtGroupingLevel(char const* levelName, int lowerLevel, int levelKind, int levelReserved);
    /// A deep copy.
    MtGroupingLevel(MtGroupingLevel const& other);
    MtGroupingLevel& operator=(MtGroupingLevel const&) = delete;
    ~MtGroupingLevel();

    /// The attribute of that name and type. A missing one gives null with `FIND` and is created with `CREATE`. The last
    /// argument plays no part. The level owns the result.
    MtIntegerAttribute* integerAttribute(char const* attributeName, FindingBehaviour behaviour, bool);
    MtFloatAttribute* floatAttribute(char const* attributeName, FindingBehaviour behaviour, bool);
    MtStringAttribute* stringAttribute(char const* attributeName, FindingBehaviour behaviour, bool);

    /// The attribute at `index` of `attributes`; null outside it.
    MtGroupAttribute* getAttribute(int index);

    /// The value of the level's "name" attribute; the empty string if there is none.
    char const* getGroupName(int group) const;

    /// The last group of that name, or -1.
    int findGroupBackward(char const* groupName) const;

    /// Recomputes `segmentation` of this level, which has the index `levelIx` in the topology, from its groups.
    void updateSegmentationFlag(MolTopology* topology, int levelIx);

    void setFlag(Flag flag) { flags = static_cast<unsigned char>(flags | flag); }
    void clearFlag(Flag flag) { flags = static_cast<unsigned char>(flags & ~flag); }
    bool hasFlag(Flag flag) const { return (flags & flag) != 0; }

    char const* getName() const { return name.c_str(); }
    int getLowerLevelIx() const { return lowerLevelIx; }
    int getKind() const { return kind; }
    int getReserved() const { return reserved; }

    McDArray<MtGroup*> groups;
    McDArray<MtGroupAttribute*> attributes;
    unsigned char flags = flagBit0 | flagBit1 | flagBit5;

private:
    friend class MolTopology;

    /// Inserts a group at a position from 0 to the number of groups; values move along.
    void insertGroup(MtGroup* group, int position);

    template <class Attribute>
    Attribute* find(char const* attributeName) const;
    template <class Attribute>
    Attribute* findOrCreate(char const* attributeName, FindingBehaviour behaviour);

    std::string name;
    int lowerLevelIx;
    int kind;
    int reserved;
    /// Where the attributes are made if the topology made this level.
    tarnex::GroupPool* pool = nullptr;
    /// Made by the first lookup of a name.
    mutable std::unique_ptr<tarnex::GroupNameIndex> nameIndex;
};
