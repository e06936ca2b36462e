#pragma once

#include "model/MolTopology.h"
#include "model/MtListGroups.h"

#include <bit>
#include <cstdint>
#include <string>
#include <typeinfo>

namespace tarnex::test {

namespace detail {

/// Keeps the text of the first difference.
class Difference {
public:
    void expect(bool equal, std::string const& place) {
        if (!equal && text.empty()) text = place + " differs";
    }
    std::string text;
};

template <class Owner>
bool sameClass(Owner const& a, Owner const& b) {
    return typeid(a) == typeid(b);
}

inline bool sameGroups(MtGroup& a, MtGroup& b) {
    if (!sameClass(a, b)) return false;
    if (auto* range = dynamic_cast<MtIntraLevelRange*>(&a)) {
        auto* other = static_cast<MtIntraLevelRange*>(&b);
        return range->levelIx == other->levelIx && range->first == other->first && range->last == other->last;
    }
    if (a.size() != b.size()) return false;
    for (int i = 0; i < a.size(); ++i) {
        if (a[i] != b[i]) return false;
    }
    return true;
}

template <class Attribute>
bool sameNumbers(MtGroupAttribute& a, MtGroupAttribute& b, int group) {
    auto const* left = dynamic_cast<Attribute*>(&a);
    auto const* right = dynamic_cast<Attribute*>(&b);
    return !left || !right ||
           std::bit_cast<std::uint32_t>(left->getValue(group)) == std::bit_cast<std::uint32_t>(right->getValue(group));
}

inline bool sameTexts(MtGroupAttribute& a, MtGroupAttribute& b, int group) {
    auto const* left = dynamic_cast<MtStringAttribute*>(&a);
    auto const* right = dynamic_cast<MtStringAttribute*>(&b);
    return !left || !right || std::string(left->getValue(group)) == right->getValue(group);
}

inline void compareAttributes(MtGroupAttribute& a, MtGroupAttribute& b, int numGroups, std::string const& place,
                              Difference& difference) {
    difference.expect(sameClass(a, b), place + ": class");
    difference.expect(std::string(a.getName()) == b.getName(), place + ": name");
    for (int i = 0; i < numGroups; ++i) {
        bool const same =
            sameNumbers<MtIntegerAttribute>(a, b, i) && sameNumbers<MtFloatAttribute>(a, b, i) && sameTexts(a, b, i);
        if (!same) difference.expect(false, place + ": value " + std::to_string(i));
    }
}

inline void compareLevels(MtGroupingLevel& a, MtGroupingLevel& b, std::string const& place, Difference& difference) {
    difference.expect(std::string(a.getName()) == b.getName(), place + ": name");
    difference.expect(a.getLowerLevelIx() == b.getLowerLevelIx(), place + ": lower level");
    difference.expect(a.getKind() == b.getKind(), place + ": kind");
    difference.expect(a.getReserved() == b.getReserved(), place + ": reserved");
    difference.expect(a.flags == b.flags, place + ": flags");
    difference.expect(a.groups.size == b.groups.size, place + ": number of groups");
    difference.expect(a.attributes.size == b.attributes.size, place + ": number of attributes");
    if (!difference.text.empty()) return;
    for (int i = 0; i < a.groups.size; ++i) {
        if (!sameGroups(*a.groups[i], *b.groups[i])) difference.expect(false, place + ": group " + std::to_string(i));
    }
    for (int i = 0; i < a.attributes.size; ++i) {
        compareAttributes(*a.attributes[i], *b.attributes[i], static_cast<int>(a.groups.size),
                          place + ", attribute " + std::to_string(i), difference);
    }
}

template <class Datum>
bool sameValues(MolData& a, MolData& b) {
    auto* left = dynamic_cast<Datum*>(&a);
    auto* right = dynamic_cast<Datum*>(&b);
    if (!left || !right) return true;
    auto const bytes = [](auto const& value) {
        if constexpr (requires { value.length(); })
            return std::string(value.data, static_cast<std::size_t>(value.length()));
        else
            return std::bit_cast<std::uint32_t>(value);
    };
    return bytes(left->getValue()) == bytes(right->getValue());
}

inline bool sameData(MolData& a, MolData& b) {
    return sameClass(a, b) && std::string(a.getName()) == b.getName() && sameValues<MolDataInt>(a, b) &&
           sameValues<MolDataFloat>(a, b) && sameValues<MolDataString>(a, b);
}

} // namespace detail

/// The first difference between two topologies: their names, levels, groups, attributes and named data, in their order
/// and numbers by their bits. Empty if there is none.
inline std::string compareTopologies(MolTopology const& a, MolTopology const& b) {
    detail::Difference difference;
    difference.expect(std::string(a.getName()) == b.getName(), "topology: name");
    difference.expect(a.levels.size == b.levels.size, "number of levels");
    difference.expect(a.getNumData() == b.getNumData(), "number of data");
    if (!difference.text.empty()) return difference.text;
    for (int i = 0; i < a.levels.size; ++i) {
        detail::compareLevels(*a.levels[i], *b.levels[i], "level " + std::to_string(i), difference);
    }
    for (int i = 0; i < a.getNumData(); ++i) {
        difference.expect(detail::sameData(*a.getData(i), *b.getData(i)), "datum " + std::to_string(i));
    }
    return difference.text;
}

} // namespace tarnex::test
