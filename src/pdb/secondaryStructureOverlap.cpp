#include "model/members.h"
#include "pdb/PDBread.h"
#include "pdb/StructureRanges.h"

#include <algorithm>
#include <climits>
#include <cstdint>
#include <cstring>

namespace {

using tarnex::asRange;
using tarnex::pdb::cut;
using tarnex::pdb::Remainder;

/// Whether a structure is a sheet; for others the first letter nearly always tells.
bool isSheet(molInfo const& info, int structure) {
    constexpr char const* sheet = "sheet";
    char const* type = info.secStructType->getValue(structure);
    return *type == *sheet && std::strcmp(type, sheet) == 0;
}

/// Finds the first group of a level that holds a member. Ranges may have been changed in place at any time, so that
/// only a walk can tell that no group ahead of a hit holds the member as well; what it tells of the members around it
/// is kept.
class OwnerFinder {
public:
    OwnerFinder(MtGroupingLevel const* groupLevel, int memberLevel) : level(groupLevel), memberLevelIx(memberLevel) {}

    /// The index of the group, or -1. The level must not change between calls.
    int ownerOf(int member) {
        if (first <= member && member <= last) return owner;
        first = INT_MIN;
        last = INT_MAX;
        owner = -1;
        for (int i = 0; level && i < level->groups.size; ++i) {
            if (!isIn(level->groups[i], member)) continue;
            owner = i;
            break;
        }
        return owner;
    }

private:
    bool isIn(MtGroup const* group, int member) {
        if (auto const* range = asRange(group)) return isBetween(range->first, range->last, member);
        for (int i = 0, n = group ? group->size() : 0; i < n; ++i) {
            MtGroupRef const other = (*group)[i];
            if (other.levelIx == memberLevelIx && isBetween(other.groupIx, other.groupIx, member)) return true;
        }
        return false;
    }
    bool isBetween(int a, int b, int member) {
        bool const isHit = a <= member && member <= b;
        if (isHit || a > member) last = std::min(last, isHit ? b : a - 1);
        if (isHit || b < member) first = std::max(first, isHit ? a : b + 1);
        return isHit;
    }

    MtGroupingLevel const* level;
    int memberLevelIx;
    /// Members that have the same owner.
    int first = 0;
    int last = -1;
    int owner = -1;
};

OwnerFinder chainFinder(molInfo const& info) {
    return {info.hasChains ? info.chains : nullptr, info.residuesIx};
}

/// Cuts a new range against the others, one after the other.
class OverlapChecker {
public:
    OverlapChecker(molInfo const& info, int& newFirst, int& newLast, bool& isAdjustable)
        : first(newFirst), last(newLast), adjustable(isAdjustable), chainsOfFirst(chainFinder(info)),
          chainsOfLast(chainFinder(info)) {
        adjustable = true;
    }

    /// Whether there was an overlap.
    bool check(MtIntraLevelRange const* other) {
        if (!other) return false;
        Remainder const rest = cut(first, last, other->first, other->last);
        if (rest.overlaps) adjustable = rest.first >= 0 && rest.first <= rest.last && moveTo(rest);
        return rest.overlaps;
    }

private:
    /// False if an end would come to lie in another chain.
    bool moveTo(Remainder const& rest) {
        auto const newFirst = static_cast<int>(rest.first);
        auto const newLast = static_cast<int>(rest.last);
        if (chainsOfFirst.ownerOf(first) != chainsOfFirst.ownerOf(newFirst)) return false;
        if (chainsOfLast.ownerOf(last) != chainsOfLast.ownerOf(newLast)) return false;
        first = newFirst;
        last = newLast;
        return true;
    }

    int& first;
    int& last;
    bool& adjustable;
    OwnerFinder chainsOfFirst;
    OwnerFinder chainsOfLast;
};

} // namespace

bool PDBread::checkSecStructOverlap(molInfo const& info, MtIntraLevelRange const* other, int& first, int& last,
                                    bool& adjustable) const {
    return OverlapChecker(info, first, last, adjustable).check(other);
}

bool PDBread::checkSecStructUniqueness(molInfo const& info, int& first, int& last, int& conflict,
                                       bool& adjustable) const {
    conflict = -1;
    OverlapChecker overlap(info, first, last, adjustable);
    if (!info.hasSecondaryStructure) return true;
    auto const leavesNothing = [&](MtIntraLevelRange const* other, int structure) {
        if (!overlap.check(other)) return false;
        conflict = structure;
        return !adjustable;
    };
    // Sheets of this reader are lists, with which new structures may overlap. One that is a range is one of strands.
    McDArray<MtGroup*> const& structures = info.secondaryStructure->groups;
    for (int i = 0; i < structures.size; ++i) {
        auto const* range = asRange(structures[i]);
        if (!range) continue;
        if (!info.hasStrands || !isSheet(info, i)) {
            if (leavesNothing(range, i)) return false;
            continue;
        }
        McDArray<MtGroup*> const& strands = info.strands->groups;
        std::int64_t const end = std::min(std::int64_t{range->last} + 1, strands.size);
        for (std::int64_t strand = std::max(range->first, 0); strand < end; ++strand) {
            if (leavesNothing(asRange(strands[strand]), i)) return false;
        }
    }
    return conflict < 0;
}

int PDBread::getChainIxOfRes(molInfo const& info, int residue) {
    return chainFinder(info).ownerOf(residue);
}

int PDBread::getResIxOfAtom(molInfo const& info, int atom) {
    return OwnerFinder(info.hasResidues ? info.residues : nullptr, info.atomsIx).ownerOf(atom);
}
