#include "qlt/groupCodec.h"

#include "model/members.h"

#include <array>
#include <climits>
#include <cstddef>
#include <type_traits>
#include <typeinfo>
#include <utility>

namespace tarnex {

namespace {

enum class GroupKind : std::uint8_t {
    none = 0,
    atom = 1,
    bond = 2,
    pairOfAtoms = 3,
    range = 4,
    list = 5,
    smallGroup2 = 6,
    smallGroup3 = 7,
    smallGroup4 = 8
};

GroupKind kindOf(std::type_info const& type) {
    if (type == typeid(MtAtom)) return GroupKind::atom;
    if (type == typeid(MtBond)) return GroupKind::bond;
    if (type == typeid(MtGroupOfAtoms<2>)) return GroupKind::pairOfAtoms;
    if (type == typeid(MtIntraLevelRange)) return GroupKind::range;
    if (type == typeid(MtDynamicGroup)) return GroupKind::list;
    if (type == typeid(MtSmallGroup<2>)) return GroupKind::smallGroup2;
    if (type == typeid(MtSmallGroup<3>)) return GroupKind::smallGroup3;
    if (type == typeid(MtSmallGroup<4>)) return GroupKind::smallGroup4;
    return GroupKind::none;
}

/// Calls `visit` with the class of a kind whose groups all have the same size in the file; false for other kinds.
template <class Visitor>
bool withClassOf(GroupKind kind, Visitor&& visit) {
    switch (kind) {
    case GroupKind::atom:
        return visit(std::type_identity<MtAtom>());
    case GroupKind::bond:
        return visit(std::type_identity<MtBond>());
    case GroupKind::pairOfAtoms:
        return visit(std::type_identity<MtGroupOfAtoms<2>>());
    case GroupKind::range:
        return visit(std::type_identity<MtIntraLevelRange>());
    case GroupKind::smallGroup2:
        return visit(std::type_identity<MtSmallGroup<2>>());
    case GroupKind::smallGroup3:
        return visit(std::type_identity<MtSmallGroup<3>>());
    case GroupKind::smallGroup4:
        return visit(std::type_identity<MtSmallGroup<4>>());
    default:
        return false;
    }
}

// The integers that make up a group, in the order of the file.

std::array<int*, 0> fieldsOf(MtAtom&) {
    return {};
}

std::array<int*, 2> fieldsOf(MtGroupOfAtoms<2>& pair) {
    return {&pair.atoms[0], &pair.atoms[1]};
}

std::array<int*, 3> fieldsOf(MtIntraLevelRange& range) {
    return {&range.levelIx, &range.first, &range.last};
}

template <int N>
std::array<int*, 2 * N> fieldsOf(MtSmallGroup<N>& group) {
    std::array<int*, 2 * N> fields;
    for (std::size_t i = 0; i < N; ++i) {
        fields[2 * i] = &group.elements[i].levelIx;
        fields[2 * i + 1] = &group.elements[i].groupIx;
    }
    return fields;
}

template <class Group>
constexpr std::int64_t bytesOf = 4 * std::tuple_size_v<decltype(fieldsOf(std::declval<Group&>()))>;

static_assert(sizeof(MtGroupRef) == 8 && offsetof(MtGroupRef, groupIx) == 4);

/// Calls `visit(kind, first, end)` for each run of groups of one class, for as long as it returns true. False if it
/// did not, and for a group that is missing.
template <class Visitor>
bool forEachRun(McDArray<MtGroup*> const& groups, Visitor&& visit) {
    for (std::int64_t first = 0, end = 0; first < groups.size; first = end) {
        if (!groups[first]) return false;
        MtGroup const& firstGroup = *groups[first];
        std::type_info const& type = typeid(firstGroup);
        for (end = first + 1; end < groups.size && groups[end]; ++end) {
            MtGroup const& group = *groups[end];
            if (typeid(group) != type) break;
        }
        if (!visit(kindOf(type), first, end)) return false;
    }
    return true;
}

bool joinsExistingAtoms(MolTopology const& topology, MtGroup const* group) {
    int atomA = -1;
    int atomB = -1;
    return getExistingBondAtoms(topology, group, atomA, atomB);
}

bool allMembersExist(MolTopology const& topology, MtGroup const* group) {
    for (int i = 0, n = group->size(); i < n; ++i) {
        if (!exists(topology, (*group)[i])) return false;
    }
    return true;
}

template <class Group>
bool putRun(McDArray<MtGroup*> const& groups, std::int64_t first, std::int64_t end, SectionWriter& out) {
    char* place = out.extend((end - first) * bytesOf<Group>);
    for (std::int64_t i = first; i < end; ++i) {
        for (int const* field : fieldsOf(static_cast<Group&>(*groups[i]))) {
            storeLittle(place, *field);
            place += 4;
        }
    }
    return true;
}

template <class Group>
bool getRun(SectionReader& in, std::uint32_t count, GroupPool& pool, McDArray<MtGroup*>& groups) {
    char const* place = in.take(count * static_cast<std::uint64_t>(bytesOf<Group>));
    if (!place) return false;
    groups.reserve(groups.size + count);
    for (std::uint32_t i = 0; i < count; ++i) {
        auto* group = new (pool) Group;
        groups.append(group);
        for (int* field : fieldsOf(*group)) {
            *field = loadLittle<std::int32_t>(place);
            place += 4;
        }
    }
    return true;
}

bool putLists(McDArray<MtGroup*> const& groups, std::int64_t first, std::int64_t end, SectionWriter& out) {
    for (std::int64_t i = first; i < end; ++i) {
        std::int64_t const size = static_cast<MtDynamicGroup const*>(groups[i])->members.size;
        if (size > INT_MAX) return false;
        out.put(static_cast<std::uint32_t>(size));
    }
    for (std::int64_t i = first; i < end; ++i) {
        McDArray<MtGroupRef> const& members = static_cast<MtDynamicGroup const*>(groups[i])->members;
        auto const* words = reinterpret_cast<char const*>(members.data);
        copyWords(out.extend(members.size * 8), words, static_cast<std::size_t>(members.size) * 2);
    }
    return true;
}

bool getLists(SectionReader& in, std::uint32_t count, GroupPool& pool, McDArray<MtGroup*>& groups) {
    char const* sizes = in.take(std::uint64_t{count} * 4);
    if (!sizes) return false;
    groups.reserve(groups.size + count);
    for (std::uint32_t i = 0; i < count; ++i) {
        auto const size = loadLittle<std::uint32_t>(sizes + std::uint64_t{i} * 4);
        char const* members = in.take(std::uint64_t{size} * 8);
        if (!members || size > INT_MAX) return false;
        auto* group = new (pool) MtDynamicGroup;
        groups.append(group);
        group->members.resize(size);
        copyWords(reinterpret_cast<char*>(group->members.data), members, std::size_t{size} * 2);
    }
    return true;
}

} // namespace

bool putGroups(McDArray<MtGroup*> const& groups, std::uint64_t& numAtoms, SectionWriter& out) {
    bool const stored = forEachRun(groups, [&](GroupKind kind, std::int64_t first, std::int64_t end) {
        out.put(kind);
        out.put(static_cast<std::uint32_t>(end - first));
        if (kind == GroupKind::atom) numAtoms += static_cast<std::uint64_t>(end - first);
        if (kind == GroupKind::list) return putLists(groups, first, end, out);
        return withClassOf(
            kind, [&]<class Group>(std::type_identity<Group>) { return putRun<Group>(groups, first, end, out); });
    });
    out.put(GroupKind::none);
    return stored;
}

bool getGroups(SectionReader& in, std::uint64_t& atomsLeft, GroupPool& pool, McDArray<MtGroup*>& groups) {
    for (;;) {
        auto const kind = in.get<GroupKind>();
        if (kind == GroupKind::none) return !in.failed();
        auto const count = in.get<std::uint32_t>();
        if (count > INT_MAX - groups.size) return false;
        if (kind == GroupKind::atom) {
            if (count > atomsLeft) return false;
            atomsLeft -= count;
        }
        bool const good = kind == GroupKind::list ? getLists(in, count, pool, groups)
                                                  : withClassOf(kind, [&]<class Group>(std::type_identity<Group>) {
                                                        return getRun<Group>(in, count, pool, groups);
                                                    });
        if (!good) return false;
    }
}

bool isSound(MolTopology const& topology) {
    for (int levelIx = 0; levelIx < topology.levels.size; ++levelIx) {
        McDArray<MtGroup*> const& groups = topology.levels[levelIx]->groups;
        bool const sound = forEachRun(groups, [&](GroupKind kind, std::int64_t first, std::int64_t end) {
            bool const anyMembers = kind == GroupKind::atom || kind == GroupKind::range || kind == GroupKind::list;
            if (levelIx != 1 && anyMembers) return true;
            for (std::int64_t i = first; i < end; ++i) {
                bool const good =
                    levelIx == 1 ? joinsExistingAtoms(topology, groups[i]) : allMembersExist(topology, groups[i]);
                if (!good) return false;
            }
            return true;
        });
        if (!sound) return false;
    }
    return true;
}

} // namespace tarnex
