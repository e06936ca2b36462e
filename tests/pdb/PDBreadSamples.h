#pragma once

#include "pdb/PDBread.h"
#include "support/model.h"
#include "support/testing.h"

namespace tarnex::test {

/// An atom line; the atoms stand 10 Angstrom apart, so that no bonds are perceived.
struct AtomText {
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
    double x = 10.0 * serial;
    double occupancy = 0.5;
    double temperature = 12.25;

    operator std::string() const {
        char line[100];
        std::snprintf(line, sizeof line, "%-6s%5d %-4s%s%3s %s%4d%s   %8.3f%8.3f%8.3f%6.2f%6.2f      SEG %s%s\n",
                      record, serial, name, location, type, chain, number, insertion, x, -1.5, 0.25, occupancy,
                      temperature, element, charge);
        return line;
    }
};

inline std::string operator+(std::string const& text, AtomText const& atom) {
    return text + std::string(atom);
}

inline std::string operator+(AtomText const& atom, std::string const& text) {
    return std::string(atom) + text;
}

inline std::string operator+(AtomText const& a, AtomText const& b) {
    return std::string(a) + std::string(b);
}

/// Reads a text of one trajectory; null on failure.
inline McHandle<MolTrajectory> readPDB(std::string const& text, McProgressInterface* progress = nullptr) {
    Bundle bundle;
    int const result = PDBread(nullptr, progress).readPDBMolTrajectoryBundle(writeFile("in.pdb", text).c_str(), bundle);
    EXPECT_EQ(bundle.size, result);
    return result == 1 ? bundle[0] : McHandle<MolTrajectory>();
}

/// The groups of a level, such as "helix H1 9-19; sheet A 1,2,3; ".
inline std::string namedGroups(MolTopology const* topology, char const* levelName) {
    MtGroupingLevel* level = levelOf(topology, levelName);
    if (!level) return "no level";
    auto const* types = level->stringAttribute("type", MtGroupingLevel::FIND, true);
    std::string text;
    for (int i = 0; i < level->groups.size; ++i) {
        if (types) text += std::string(types->getValue(i)) + ' ';
        text += level->getGroupName(i) + (' ' + membersOf(level->groups[i], level->getLowerLevelIx())) + "; ";
    }
    return text;
}

inline McDArray<McVec3f> coordinates(MolTrajectory* trajectory, int step) {
    Molecule molecule(trajectory->getTopology(), false);
    EXPECT_TRUE(trajectory->getTimeStep(step, &molecule));
    return molecule.coords;
}

} // namespace tarnex::test
