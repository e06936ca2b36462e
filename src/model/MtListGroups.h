#pragma once

#include "foundation/McDArray.h"
#include "model/MtGroup.h"

/// A group of any number of members, which may be appended to `members` at any time.
class TARNEX_API MtDynamicGroup : public MtGroup {
public:
    MtDynamicGroup() = default;
    MtDynamicGroup(MtDynamicGroup const&) = default;
    MtDynamicGroup& operator=(MtDynamicGroup const&) = default;
    ~MtDynamicGroup() override;

    MtDynamicGroup* clone() const override;
    int size() const override;
    MtGroupRef operator[](int i) const override;
    void setElement(int i, MtGroupRef ref) override;

    McDArray<MtGroupRef> members;
};

/// A contiguous range of groups of one level, from `first` to `last` inclusive. The fields may be set at any time. A
/// new range holds no group.
class TARNEX_API MtIntraLevelRange : public MtGroup {
public:
    MtIntraLevelRange() = default;
    MtIntraLevelRange(int level, int firstGroup, int lastGroup) : levelIx(level), first(firstGroup), last(lastGroup) {}
    MtIntraLevelRange(MtIntraLevelRange const&) = default;
    MtIntraLevelRange& operator=(MtIntraLevelRange const&) = default;
    ~MtIntraLevelRange() override;

    MtIntraLevelRange* clone() const override;
    /// Maps both ends; false if either was removed. A range without members stays as it is.
    bool translate(MtGroupRefTranslator* translator, bool flag) override;
    /// `last` - `first` + 1, so that a range without members may have a negative size.
    int size() const override;
    MtGroupRef operator[](int i) const override;
    /// Moves the range to the level of `ref`; the first and the last member set the ends, others change nothing.
    void setElement(int i, MtGroupRef ref) override;

    int levelIx = 0;
    int first = 0;
    int last = -1;
};
