#pragma once

#include "pdb/PDBread.h"
#include "support/model.h"
#include "support/testing.h"

namespace tarnex::test {

struct AtomFields {
    char const* record = "ATOM";
    int serial = 1;
    char const* name = " C  ";
    char const* location = " ";
    char const* type = "ALA";
    char const* chain = "A";
    int number = 1;
    char const* insertion = " ";
    char const* element = " C";
    char const* charge = "  ";
    double x = 10.0 * serial; // 10 Angstrom apart, so that no bonds are perceived
    double occupancy = 0.5;
    double temperature = 12.25;
};

/// An atom line.
inline std::string atom(AtomFields const& a = {}) {
    char line[100];
    std::snprintf(line, sizeof line, "%-6s%5d %-4s%s%3s %s%4d%s   %8.3f%8.3f%8.3f%6.2f%6.2f      SEG %s%s\n", a.record,
                  a.serial, a.name, a.location, a.type, a.chain, a.number, a.insertion, a.x, -1.5, 0.25, a.occupancy,
                  a.temperature, a.element, a.charge);
    return line;
}

/// Reads a text of one trajectory; null on failure.
inline McHandle<MolTrajectory> readPDB(std::string const& text, McProgressInterface* progress = nullptr) {
    Bundle bundle;
    int const result = PDBread(nullptr, progress).readPDBMolTrajectoryBundle(writeFile("in.pdb", text).c_str(), bundle);
    EXPECT_EQ(bundle.size, result);
    return result == 1 ? bundle[0] : McHandle<MolTrajectory>();
}

/// The groups of a level, such as "helix H1 9-19; sheet A 1,2,3; "; empty without the level.
inline std::string namedGroups(MolTopology const* topology, char const* levelName) {
    MtGroupingLevel* level = levelOf(topology, levelName);
    if (!level) return "";
    auto const* types = level->stringAttribute("type", MtGroupingLevel::FIND, true);
    return joined(level->groups.size, "", [&](int i) {
        std::string const type = types ? types->getValue(i) + std::string(" ") : "";
        return type + level->getGroupName(i) + " " + membersOf(level->groups[i], level->getLowerLevelIx()) + "; ";
    });
}

} // namespace tarnex::test
