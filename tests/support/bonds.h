#pragma once

#include "model/MolTopology.h"

#include <string>

namespace tarnex::test {

/// The bonds of a topology, as "first-second:type" each.
inline std::string bondsOf(MolTopology* topology) {
    MtGroupingLevel* level = topology->getLevel(1);
    auto const* types = level->integerAttribute("type", MtGroupingLevel::FIND, true);
    std::string all;
    for (int i = 0; i < level->groups.size; ++i) {
        auto const* bond = dynamic_cast<MtBond const*>(level->groups[i]);
        all += std::to_string(bond->atomA()) + "-" + std::to_string(bond->atomB()) + ":" +
               std::to_string(types->getValue(i)) + " ";
    }
    return all;
}

} // namespace tarnex::test
