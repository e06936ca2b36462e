#include "model/members.h"

#include <algorithm>
#include <numeric>
#include <utility>

namespace tarnex {

namespace {

/// The first owners of members. Which members are free yet is told by links, so that ranges that overlap are not walked
/// again and again.
class Owners {
public:
    explicit Owners(std::int64_t members) : owners(members) { std::fill(owners.begin(), owners.end(), nobody); }

    void take(int member, int owner) {
        if (owners[member] != nobody) return;
        owners[member] = owner;
        if (following.size > 0) following[member] = member + 1;
        untouched = std::max(untouched, member + 1);
    }
    void takeRange(int begin, int end, int owner) {
        if (begin >= untouched) {
            std::fill(owners.begin() + begin, owners.begin() + end, owner);
            if (following.size > 0) std::iota(following.begin() + begin, following.begin() + end, begin + 1);
            untouched = end;
            return;
        }
        if (following.size == 0) linkFreeMembers();
        for (int i = begin; (i = freeFrom(i)) < end;) take(i, owner);
    }

    McDArray<int> owners;

private:
    static constexpr int nobody = -1;

    void linkFreeMembers() {
        following.resize(owners.size + 1);
        std::iota(following.begin(), following.end(), 0);
        for (int i = 0; i < owners.size; ++i) {
            if (owners[i] != nobody) following[i] = i + 1;
        }
    }
    /// The first free member from `member` on, or the number of members.
    int freeFrom(int member) {
        while (following[member] != member) {
            following[member] = following[following[member]];
            member = following[member];
        }
        return member;
    }

    /// From this member on all are free.
    int untouched = 0;
    /// Of a free member itself, of others one further on. Made when the first range meets members that have an owner.
    McDArray<int> following;
};

} // namespace

McDArray<int> ownersOfMembers(MolTopology const& topology, int levelIx, int memberLevelIx) {
    Owners result(topology.levels[memberLevelIx]->groups.size);
    McDArray<MtGroup*> const& groups = topology.levels[levelIx]->groups;
    for (int g = 0; g < groups.size; ++g) {
        if (auto const* range = asRange(groups[g])) {
            ExistingPart const part(topology, *range);
            if (range->levelIx == memberLevelIx && part.begin < part.end) result.takeRange(part.begin, part.end, g);
            continue;
        }
        forEachMember(topology, groups[g], [&](MtGroupRef member) {
            if (member.levelIx == memberLevelIx) result.take(member.groupIx, g);
        });
    }
    return std::move(result.owners);
}

} // namespace tarnex
