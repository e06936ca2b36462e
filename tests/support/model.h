#pragma once

#include "model/MolTrajectoryMem.h"
#include "model/Molecule.h"
#include "model/MtListGroups.h"

#include <cstdio>
#include <functional>
#include <initializer_list>
#include <string>

namespace tarnex::test {

using Bundle = McDArray<McHandle<MolTrajectory>>;

inline MolTopology* newTopology(int numAtoms) {
    auto* topology = new MolTopology;
    for (int i = 0; i < numAtoms; ++i) topology->addGroup(0, new MtAtom);
    return topology;
}

inline MtDynamicGroup* listOf(std::initializer_list<MtGroupRef> members) {
    auto* list = new MtDynamicGroup;
    for (MtGroupRef const& member : members) list->members.append(member);
    return list;
}

inline void setText(MolTopology* topology, int levelIx, char const* name, int group, char const* value) {
    topology->getLevel(levelIx)->stringAttribute(name, MtGroupingLevel::CREATE, true)->setValue(group, value);
}
inline void setInteger(MolTopology* topology, int levelIx, char const* name, int group, int value) {
    topology->getLevel(levelIx)->integerAttribute(name, MtGroupingLevel::CREATE, true)->setValue(group, value);
}
inline void setReal(MolTopology* topology, char const* name, int atom, float value) {
    topology->getLevel(0)->floatAttribute(name, MtGroupingLevel::CREATE, true)->setValue(atom, value);
}

/// A trajectory whose steps a function gives: it sets the places, and tells whether the step can be read.
class MadeTrajectory : public MolTrajectory {
public:
    using Places = std::function<bool(int step, McDArray<McVec3f>& coords)>;
    MadeTrajectory(MolTopology* atoms, int numSteps, Places placesOfStep)
        : MolTrajectory(atoms), steps(numSteps), places(std::move(placesOfStep)) {}

    int getNumTimeSteps() const override { return steps; }
    bool getTimeStep(int step, Molecule* molecule) override {
        if (molecule) molecule->setTopology(topology, false);
        return molecule && places(step, molecule->coords);
    }

private:
    int steps;
    Places places;
};

inline std::string numberText(float number) {
    char text[32];
    std::snprintf(text, sizeof text, "%.7g", static_cast<double>(number));
    return text;
}

/// The texts of the numbers below `count`.
inline std::string joined(std::int64_t count, char const* divider, std::function<std::string(int)> const& textOf) {
    std::string all;
    for (int i = 0; i < count; ++i) all += (i > 0 ? divider : "") + textOf(i);
    return all;
}

/// "0-3" for a range of groups of the level below, "0,3" for other groups; members of another level with its index.
inline std::string membersOf(MtGroup const* group, int lowerLevelIx) {
    auto const level = [=](int index) { return index == lowerLevelIx ? "" : std::to_string(index) + ":"; };
    if (auto const* range = dynamic_cast<MtIntraLevelRange const*>(group)) {
        return level(range->levelIx) + std::to_string(range->first) + "-" + std::to_string(range->last);
    }
    return joined(group ? group->size() : 0, ",",
                  [&](int i) { return level((*group)[i].levelIx) + std::to_string((*group)[i].groupIx); });
}

/// "0-1|2-4" for two residues, "0,1|2,0" for two bonds.
inline std::string groupsOf(MtGroupingLevel const* level) {
    return joined(level->groups.size, "|",
                  [&](int i) { return membersOf(level->groups[i], level->getLowerLevelIx()); });
}

/// The values of all groups, such as "N|CA".
inline std::string valuesOf(MtGroupingLevel const* level, MtGroupAttribute const* attribute) {
    return joined(level->groups.size, "|", [&](int i) {
        if (auto const* texts = dynamic_cast<MtStringAttribute const*>(attribute))
            return std::string(texts->getValue(i));
        if (auto const* reals = dynamic_cast<MtFloatAttribute const*>(attribute)) return numberText(reals->getValue(i));
        return std::to_string(dynamic_cast<MtIntegerAttribute const&>(*attribute).getValue(i));
    });
}

/// "none" without the attribute.
inline std::string valuesOf(MtGroupingLevel const* level, std::string const& name) {
    for (MtGroupAttribute const* attribute : level->attributes) {
        if (attribute->getName() == name) return valuesOf(level, attribute);
    }
    return "none";
}
inline std::string valuesOf(MolTopology const* topology, int levelIx, std::string const& name) {
    return valuesOf(topology->getLevel(levelIx), name);
}

inline MtGroupingLevel* levelOf(MolTopology const* topology, char const* name) {
    return topology->getLevel(topology->getLevelIx(name));
}

/// The bonds with their types, as "0,1|2,0 type 1|2".
inline std::string bondsOf(MolTopology const* topology) {
    return groupsOf(topology->getLevel(1)) + " type " + valuesOf(topology, 1, "type");
}

inline std::string placesOf(McDArray<McVec3f> const& coords) {
    return joined(coords.size, "|", [&](int i) {
        return numberText(coords[i].x) + "," + numberText(coords[i].y) + "," + numberText(coords[i].z);
    });
}

/// The places of a step. "false" if the trajectory refuses it.
inline std::string placesOf(MolTrajectory* trajectory, int step) {
    Molecule molecule(trajectory->getTopology(), false);
    return trajectory->getTimeStep(step, &molecule) ? placesOf(molecule.coords) : "false";
}

/// The name and the data of a topology, and a line for each level: its name and the level below, flags, groups, and
/// attributes in their order. `McString` data stand in quotes.
inline std::string describe(MolTopology const* topology) {
    std::string text = std::string(topology->getName()) + ";";
    for (int i = 0; i < topology->getNumData(); ++i) {
        McString value;
        topology->getData(i)->getValueAsString(value);
        char const* const quote = dynamic_cast<MolDataString const*>(topology->getData(i)) ? "\"" : "";
        text += std::string(" ") + topology->getData(i)->getName() + "=" + quote + value.data + quote;
    }
    for (int i = 0; i < topology->levels.size; ++i) {
        MtGroupingLevel const* level = topology->levels[i];
        text += "\n" + (i < 2 ? std::string(i == 0 ? "atoms" : "bonds") : level->getName()) + "(" +
                std::to_string(level->getLowerLevelIx()) + ") flags " + std::to_string(level->flags) + ": " +
                (i == 0 ? std::to_string(level->groups.size) : groupsOf(level));
        for (MtGroupAttribute const* attribute : level->attributes) {
            text += std::string(" ") + attribute->getName() + "=" + valuesOf(level, attribute);
        }
    }
    return text;
}

} // namespace tarnex::test
