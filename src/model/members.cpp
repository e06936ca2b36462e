#include "model/members.h"

#include "model/FirstOwners.h"

namespace tarnex {

McDArray<int> ownersOfMembers(MolTopology const& topology, int levelIx, int memberLevelIx) {
    FirstOwners owners(topology, memberLevelIx);
    McDArray<MtGroup*> const& groups = topology.levels[levelIx]->groups;
    for (int g = 0; g < groups.size; ++g) owners.take(topology, groups[g], g, [](int) {});
    return owners.get();
}

} // namespace tarnex
