#include "model/members.h"

#include <numeric>

namespace tarnex {

namespace {

/// Which members nobody owns yet, so that ranges that overlap are not walked again and again.
class FreeMembers {
public:
    explicit FreeMembers(std::int64_t members) : following(members + 1) {
        std::iota(following.begin(), following.end(), 0);
    }
    /// The first free member from `member` on, or the number of members.
    int from(int member) {
        while (following[member] != member) {
            following[member] = following[following[member]];
            member = following[member];
        }
        return member;
    }
    void take(int member) { following[member] = member + 1; }

private:
    McDArray<int> following;
};

} // namespace

McDArray<int> ownersOfMembers(MolTopology const& topology, int levelIx, int memberLevelIx) {
    McDArray<int> owners(topology.levels[memberLevelIx]->groups.size);
    std::fill(owners.begin(), owners.end(), -1);
    FreeMembers freeMembers(owners.size);
    McDArray<MtGroup*> const& groups = topology.levels[levelIx]->groups;
    for (int g = 0; g < groups.size; ++g) {
        if (auto const* range = dynamic_cast<MtIntraLevelRange const*>(groups[g])) {
            ExistingPart const part(topology, *range);
            if (range->levelIx != memberLevelIx || part.begin >= part.end) continue;
            for (int i = part.begin; (i = freeMembers.from(i)) < part.end; freeMembers.take(i)) owners[i] = g;
            continue;
        }
        forEachMember(topology, groups[g], [&](MtGroupRef member) {
            if (member.levelIx != memberLevelIx || owners[member.groupIx] >= 0) return;
            owners[member.groupIx] = g;
            freeMembers.take(member.groupIx);
        });
    }
    return owners;
}

} // namespace tarnex
