#pragma once

#include "model/MtSmallGroups.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"
#include "support/testing.h"

#include <bit>
#include <limits>

namespace tarnex::test {

/// A new, empty folder for the files of one test.
inline std::string scratchFolder() {
    std::filesystem::remove_all(scratchPath(""));
    return scratchPath("");
}

inline void writeBytes(std::string const& name, std::string const& bytes) {
    std::ofstream(name, std::ios::binary) << bytes;
}

inline Bundle read(std::string const& name) {
    Bundle bundle;
    MolTrajectoryVRK::readBundle(name.c_str(), bundle);
    return bundle;
}

inline MtGroup* groupOf(std::initializer_list<MtGroupRef> members) {
    MtGroup* group = MtGroup::createGroup(static_cast<int>(members.size()));
    int place = 0;
    for (MtGroupRef const& member : members) group->setElement(place++, member);
    return group;
}

inline float floatOf(std::uint32_t bits) {
    return std::bit_cast<float>(bits);
}

inline void addAtoms(MolTopology& topology, int numAtoms) {
    for (int i = 0; i < numAtoms; ++i) topology.addGroup(0, new (topology.groupPool) MtAtom);
}

/// Two atoms and a bond with a type: nothing in it is left out and nothing comes twice.
inline McHandle<MolTopology> smallTopology() {
    McHandle<MolTopology> topology(newTopology(2));
    topology->setName("small");
    topology->addBond(new MtBond(1, 0));
    setInteger(topology, 1, "type", 0, 2);
    return topology;
}

/// Every kind of group, attribute and datum, in mixed order, with extreme values.
inline McHandle<MolTopology> fullTopology() {
    using Level = MtGroupingLevel;
    McHandle<MolTopology> topology(new MolTopology);
    topology->setName("all kinds \xc3\xa9\n\x01\xff");
    addAtoms(*topology, 5);
    topology->addBond(new MtBond(4, 0));
    topology->addGroup(1, groupOf({{0, 1}, {0, 2}}));
    topology->addBond(new MtBond(2, 2));

    int const mixed = topology->addLevel("mixed", 0, 12, -1);
    topology->addGroup(mixed, new MtIntraLevelRange(0, 1, 3));
    topology->addGroup(mixed, listOf({{0, 4}, {1, 2}, {7, -3}}));
    topology->addGroup(mixed, listOf({}));
    topology->addGroup(mixed, new MtIntraLevelRange(-2, std::numeric_limits<int>::min(), 2147483647));
    topology->addGroup(mixed, new MtAtom);
    topology->addGroup(mixed, groupOf({{1, 0}, {mixed, 2}}));
    topology->addGroup(mixed, groupOf({{0, 0}, {0, 1}, {1, 1}}));
    topology->addGroup(mixed, groupOf({{0, 3}, {0, 2}, {0, 1}, {0, 0}}));
    auto* pair = new MtGroupOfAtoms<2>;
    pair->atoms[0] = 3;
    pair->atoms[1] = 1;
    topology->addGroup(mixed, pair);
    topology->addGroup(mixed, new MtBond(0, 1));
    // The same name again, and a lower level that is none.
    int const empty = topology->addLevel("mixed", 99, -7, 123456);
    topology->getLevel(empty)->flags = 0xC5;
    topology->getLevel(1)->clearFlag(Level::flagBit0);

    Level& atoms = *topology->getLevel(0);
    auto* names = atoms.stringAttribute("name", Level::CREATE, true);
    auto* charges = atoms.floatAttribute("charge", Level::CREATE, true);
    auto* numbers = atoms.integerAttribute("charge", Level::CREATE, true);
    names->setValue(0, "CA");
    names->setValue(3, "\"O5'\t\xfe");
    numbers->setValue(1, std::numeric_limits<int>::min());
    charges->setValue(0, -0.0F);
    charges->setValue(1, floatOf(0x7FC12345));
    charges->setValue(2, floatOf(0x00000001));
    charges->setValue(4, -std::numeric_limits<float>::infinity());
    atoms.floatAttribute("never set", Level::CREATE, true);
    topology->getLevel(mixed)->stringAttribute("", Level::CREATE, true)->setValue(9, "last");
    topology->getLevel(empty)->integerAttribute("of nothing", Level::CREATE, true);

    McString withNul("a", 0, 1);
    withNul.append("\0b\n", 3);
    topology->setData(new MolDataString("text", withNul));
    topology->setData(new MolDataInt("whole", -1));
    topology->setData(new MolDataFloat("real", floatOf(0xFFC00001)));
    topology->setData(new MolDataString("", ""));
    return topology;
}

/// A trajectory in memory whose coordinates differ from step to step and hold all sorts of bits.
struct SampleTrajectory : MadeTrajectory {
    SampleTrajectory(MolTopology* atoms, int numSteps)
        : MadeTrajectory(atoms, numSteps, [this](int step, McDArray<McVec3f>& coords) {
              coords.resize(coords.size + surplusAtoms);
              for (std::int64_t i = 0; i < coords.size; ++i) {
                  auto const seed = static_cast<std::uint32_t>(i + 1) * 0x9E3779B9U + static_cast<std::uint32_t>(step);
                  coords[i] = {floatOf(seed), floatOf(seed * 3), floatOf(seed ^ 0x7FC00000U)};
              }
              return step != failingStep;
          }) {}
    int failingStep = -1;
    int surplusAtoms = 0;
};

/// The coordinates of a step as raw bytes; "none" if it cannot be read.
inline std::string stepBytes(MolTrajectory* trajectory, int step) {
    Molecule molecule(nullptr, false);
    if (!trajectory->getTimeStep(step, &molecule)) return "none";
    if (molecule.getTopology() != trajectory->getTopology()) return "another topology";
    auto const length = static_cast<std::size_t>(molecule.coords.size) * sizeof(McVec3f);
    return length == 0 ? "" : std::string(reinterpret_cast<char const*>(molecule.coords.data), length);
}

} // namespace tarnex::test
