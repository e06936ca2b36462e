#pragma once

#include "foundation/McDArray.h"
#include "model/MtGroup.h"

namespace tarnex {

/// Finds a bond by its two atoms. Takes in bonds that were appended since the last lookup; the atoms of a bond must not
/// change once it is in the index.
class BondIndex {
public:
    /// The index of the first bond between two atoms, in either order, or -1.
    int find(McDArray<MtGroup*> const& bonds, int atomA, int atomB);

    /// To be called when bonds have changed their places.
    void forgetAll();

private:
    int* slotOf(McDArray<MtGroup*> const& bonds, int atomA, int atomB);
    void takeIn(McDArray<MtGroup*> const& bonds);
    void enlargeTable(McDArray<MtGroup*> const& bonds);

    McDArray<int> slots;
    std::int64_t usedSlots = 0;
    std::int64_t numIndexed = 0;
};

} // namespace tarnex
