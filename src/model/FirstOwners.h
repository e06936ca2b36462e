#pragma once

#include "foundation/McDArray.h"
#include "model/members.h"

#include <algorithm>
#include <cstdint>
#include <numeric>

namespace tarnex {

/// Tells for each group of one level who takes it first. The time is linear in the groups, also if owners with ranges
/// overlap.
class FirstOwners {
public:
    static constexpr int nobody = -1;

    FirstOwners() = default;
    FirstOwners(MolTopology const& topology, int memberLevel)
        : memberLevelIx(memberLevel), owners(topology.levels[memberLevel]->groups.size) {
        std::fill(owners.begin(), owners.end(), nobody);
    }

    McDArray<int> const& get() const { return owners; }
    int operator[](int member) const { return owners[member]; }

    /// Gives an owner the members of `group` that nobody has, and calls `visit(int)` for each of them, in order.
    template <class Visitor>
    void take(MolTopology const& topology, MtGroup const* group, int owner, Visitor&& visit) {
        if (auto const* range = asRange(group)) {
            ExistingPart const part(topology, *range);
            if (range->levelIx == memberLevelIx && part.begin < part.end) takeRange(part, owner, visit);
            return;
        }
        forEachMember(topology, group, [&](MtGroupRef member) {
            if (member.levelIx == memberLevelIx && owners[member.groupIx] == nobody) {
                takeOne(member.groupIx, owner);
                visit(member.groupIx);
            }
        });
    }

private:
    template <class Visitor>
    void takeRange(ExistingPart const& part, int owner, Visitor&& visit) {
        bool const allAreFree = part.begin >= untouched;
        if (!allAreFree && following.size == 0) linkFreeMembers();
        for (int i = part.begin; (i = allAreFree ? i : freeFrom(i)) < part.end; ++i) {
            takeOne(i, owner);
            visit(i);
        }
    }

    void takeOne(int member, int owner) {
        owners[member] = owner;
        if (following.size > 0) following[member] = member + 1;
        untouched = std::max(untouched, member + 1);
    }

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

    int memberLevelIx = 0;
    McDArray<int> owners;
    /// From this member on all are free.
    int untouched = 0;
    /// Of a free member itself, of others one further on. Made when the first range may meet members that have owners.
    McDArray<int> following;
};

} // namespace tarnex
