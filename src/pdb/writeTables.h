#pragma once

#include "foundation/McBitfield.h"
#include "model/MtGroupingLevel.h"
#include "model/members.h"

#include <algorithm>
#include <cstdint>

namespace tarnex::pdb {

/// The repeated scans of a part with gaps multiply its segments, and sheets multiply them once more by their parts. No
/// real file comes near this number of segments, or of records made of them.
inline constexpr std::int64_t mostSegments = 1000000;

/// Walks over those members of groups that lie on one level and exist there. Groups of a file may overlap without
/// measure, though real ones hardly do: all walks of one object together take up to eight members for each group of the
/// level, or a million, whichever is more; beyond that there are none.
class LevelMembers {
public:
    /// A null level has no groups.
    LevelMembers(MtGroupingLevel const* level, int memberLevelIx)
        : levelIx(memberLevelIx), numGroups(level ? static_cast<int>(level->groups.size) : 0),
          left(std::max<std::int64_t>(1000000, std::int64_t{8} * numGroups)) {}

    /// The first member, as its index on the level, for which `test` is true, or -1.
    template <class Test>
    int find(MtGroup const* group, Test&& test) {
        if (!group) return -1;
        if (auto const* range = tarnex::asRange(group)) {
            if (range->levelIx != levelIx) return -1;
            int const end = range->last < numGroups ? range->last + 1 : numGroups;
            for (int i = std::max(range->first, 0); i < end && left > 0; ++i, --left) {
                if (test(i)) return i;
            }
            return -1;
        }
        for (int i = 0, size = group->size(); i < size && left > 0; ++i, --left) {
            MtGroupRef const ref = (*group)[i];
            bool const isHere = ref.levelIx == levelIx && ref.groupIx >= 0 && ref.groupIx < numGroups;
            if (isHere && test(ref.groupIx)) return ref.groupIx;
        }
        return -1;
    }

    template <class Visitor>
    void forEach(MtGroup const* group, Visitor&& visit) {
        find(group, [&](int member) {
            visit(member);
            return false;
        });
    }

private:
    int levelIx;
    int numGroups;
    std::int64_t left;
};

/// The value for a group in a table of the writer; `otherwise` if the table has none.
inline int valueAt(McDArray<int> const& table, int group, int otherwise) {
    return group >= 0 && group < table.size ? table.data[group] : otherwise;
}

/// Whether a residue is written as HETATM; those that the table does not have are.
inline bool isHet(McBitfield const& hetResidue, int residue) {
    auto const bit = static_cast<unsigned long>(residue);
    return residue < 0 || bit >= hetResidue.size() || hetResidue[bit];
}

} // namespace tarnex::pdb
