#pragma once

#include "model/MtSmallGroups.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"
#include "support/testing.h"

#include <bit>
#include <limits>

namespace tarnex::test {

class QltTest : public CleanTest {
protected:
    static Bundle read(std::string const& path) {
        Bundle bundle;
        MolTrajectoryVRK::readBundle(path.c_str(), bundle);
        return bundle;
    }
    static bool write(MolTrajectory* trajectory, std::string const& path) {
        return MolTrajectoryVRK::writeQLTMolTrajectory(trajectory, path.c_str());
    }
    /// The number of trajectories in a file of these bytes.
    static std::int64_t sizeOf(std::string const& bytes) { return read(writeFile("file.qlt", bytes)).size; }
};

inline MtGroup* groupOf(std::initializer_list<MtGroupRef> members) {
    MtGroup* group = MtGroup::createGroup(static_cast<int>(members.size()));
    int place = 0;
    for (MtGroupRef const& member : members) group->setElement(place++, member);
    return group;
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
    using Limits = std::numeric_limits<int>;
    McHandle<MolTopology> topology(newTopology(5));
    topology->setName("all kinds \xc3\xa9\n\x01\xff");
    for (MtGroup* bond :
         std::initializer_list<MtGroup*>{new MtBond(4, 0), groupOf({{0, 1}, {0, 2}}), new MtBond(2, 2)}) {
        topology->addGroup(1, bond);
    }

    int const mixed = topology->addLevel("mixed", 0, 12, -1);
    auto* pair = new MtGroupOfAtoms<2>;
    pair->atoms[0] = 3;
    pair->atoms[1] = 1;
    for (MtGroup* group : std::initializer_list<MtGroup*>{
             new MtIntraLevelRange(0, 1, 3), listOf({{0, 4}, {1, 2}, {7, -3}}), listOf({}),
             new MtIntraLevelRange(-2, Limits::min(), Limits::max()), new MtAtom, groupOf({{1, 0}, {mixed, 2}}),
             groupOf({{0, 0}, {0, 1}, {1, 1}}), groupOf({{0, 3}, {0, 2}, {0, 1}, {0, 0}}), pair, new MtBond(0, 1)}) {
        topology->addGroup(mixed, group);
    }
    // The same name again, and a lower level that is none.
    int const empty = topology->addLevel("mixed", 99, -7, 123456);
    topology->getLevel(empty)->flags = 0xC5;
    topology->getLevel(1)->clearFlag(MtGroupingLevel::flagBit0);

    setText(topology, 0, "name", 0, "CA");
    setText(topology, 0, "name", 3, "\"O5'\t\xfe");
    std::uint32_t const charges[] = {0x80000000, 0x7FC12345, 1, 0, 0xFF800000};
    for (int i = 0; i < 5; ++i) setReal(topology, "charge", i, std::bit_cast<float>(charges[i]));
    setReal(topology, "minus zeros", 0, -0.0F);
    setInteger(topology, 0, "charge", 1, Limits::min());
    topology->getLevel(0)->floatAttribute("never set", MtGroupingLevel::CREATE, true);
    setText(topology, mixed, "", 9, "l");
    topology->addIntegerAttribute(empty, "of nothing");

    topology->setData(new MolDataString("text", McString("a\0b\n", 0, 4)));
    topology->setData(new MolDataInt("whole", -1));
    topology->setData(new MolDataFloat("real", std::bit_cast<float>(0xFFC00001)));
    topology->setData(new MolDataString("", ""));
    return topology;
}

/// A trajectory whose coordinates differ from step to step and hold all sorts of bits.
inline McHandle<MolTrajectory> sampleOf(MolTopology* topology, int numSteps) {
    return new MadeTrajectory(topology, numSteps, [](int step, McDArray<McVec3f>& coords) {
        auto seed = static_cast<std::uint32_t>(step);
        for (McVec3f& place : coords) {
            seed += 0x9E3779B9U;
            place = {std::bit_cast<float>(seed), std::bit_cast<float>(seed * 3),
                     std::bit_cast<float>(seed ^ 0x7FC00000U)};
        }
        return true;
    });
}

/// The coordinates of a step as raw bytes; "none" if it cannot be read.
inline std::string stepBytes(MolTrajectory* trajectory, int step) {
    Molecule molecule(nullptr, false);
    if (!trajectory->getTimeStep(step, &molecule)) return "none";
    if (molecule.getTopology() != trajectory->getTopology()) return "another topology";
    auto const length = static_cast<std::size_t>(molecule.coords.size) * sizeof(McVec3f);
    return length == 0 ? "" : std::string(reinterpret_cast<char const*>(molecule.coords.data), length);
}

} // namespace tarnex::test
