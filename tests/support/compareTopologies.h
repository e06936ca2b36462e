#pragma once

#include "model.h"

#include <bit>
#include <typeinfo>

namespace tarnex::test {

/// What `describe` leaves out: the classes of groups, attributes and data, the bits of their numbers, and what a level
/// has besides its flags.
inline std::string describeExactly(MolTopology const* topology) {
    std::string text = describe(topology);
    auto const bits = [](float value) { return std::to_string(std::bit_cast<std::uint32_t>(value)); };
    for (MtGroupingLevel const* level : topology->levels) {
        text += "\nlevel " + std::to_string(level->getKind()) + " " + std::to_string(level->getReserved()) + " " +
                std::to_string(level->groups.size) + " groups: ";
        for (MtGroup const* group : level->groups) text += typeid(*group).name();
        for (MtGroupAttribute const* attribute : level->attributes) {
            text += std::string(", ") + typeid(*attribute).name();
            auto const* reals = dynamic_cast<MtFloatAttribute const*>(attribute);
            for (int i = 0; reals && i < level->groups.size; ++i) text += " " + bits(reals->getValue(i));
        }
    }
    for (int i = 0; i < topology->getNumData(); ++i) {
        MolData const* datum = topology->getData(i);
        text += std::string("\n") + typeid(*datum).name() + " ";
        if (auto const* real = dynamic_cast<MolDataFloat const*>(datum)) text += bits(real->getValue());
        auto const* string = dynamic_cast<MolDataString const*>(datum);
        if (string) text.append(string->getValue().data, static_cast<std::size_t>(string->getValue().length()));
    }
    return text;
}

/// Where two topologies differ in names, levels, groups, attributes, named data, or the bits of a number: the text of
/// the first from there on. Empty if they are the same.
inline std::string compareTopologies(MolTopology const& a, MolTopology const& b) {
    std::string const left = describeExactly(&a), right = describeExactly(&b);
    if (left == right) return "";
    std::size_t const place = static_cast<std::size_t>(
        std::mismatch(left.begin(), left.end(), right.begin(), right.end()).first - left.begin());
    return "differs at: " + left.substr(place, 200);
}

} // namespace tarnex::test
