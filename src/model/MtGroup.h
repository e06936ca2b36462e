#pragma once

#include "foundation/export.h"
#include "model/GroupPool.h"

/// Reference to a group: its level and its index there. A negative `groupIx` refers to no group.
struct MtGroupRef {
    int levelIx = 0;
    int groupIx = -1;

    MtGroupRef() = default;
    constexpr MtGroupRef(int level, int group) : levelIx(level), groupIx(group) {}
    bool operator==(MtGroupRef const&) const = default;
};

/// Maps references to where their targets have moved.
class TARNEX_API MtGroupRefTranslator {
public:
    virtual ~MtGroupRefTranslator();
    /// A negative `groupIx` in the result means that the target was removed.
    virtual MtGroupRef translate(MtGroupRef ref) = 0;
};

/// Abstract base of all groups: an ordered list of references to groups of other levels.
class TARNEX_API MtGroup : public tarnex::Pooled {
public:
    MtGroup() = default;
    MtGroup(MtGroup const&) = default;
    MtGroup& operator=(MtGroup const&) = default;

    /// A new copy of the same class, owned by the caller.
    virtual MtGroup* clone() const = 0;
    /// Rewrites the members by the translator. Returns false at the first member whose target was removed; members
    /// ahead of it keep their new values.
    virtual bool translate(MtGroupRefTranslator* translator, bool flag);
    virtual ~MtGroup();
    virtual int size() const = 0;
    virtual MtGroupRef operator[](int i) const = 0;
    virtual void setElement(int i, MtGroupRef ref) = 0;

    /// A group of exactly `n` members at the default reference, to be set by `setElement`. The caller owns it.
    static MtGroup* createGroup(int n);
};
