#include "model/members.h"

namespace tarnex {

McDArray<int> ownersOfMembers(MolTopology const& topology, int levelIx, int memberLevelIx) {
    McDArray<int> owners(topology.levels[memberLevelIx]->groups.size);
    std::fill(owners.begin(), owners.end(), -1);
    McDArray<MtGroup*> const& groups = topology.levels[levelIx]->groups;
    for (int g = 0; g < groups.size; ++g) {
        forEachMember(topology, groups[g], [&](MtGroupRef member) {
            if (member.levelIx == memberLevelIx && owners[member.groupIx] < 0) owners[member.groupIx] = g;
        });
    }
    return owners;
}

} // namespace tarnex
