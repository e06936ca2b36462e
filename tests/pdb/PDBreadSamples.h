#pragma once

#include "model/Molecule.h"
#include "model/MtListGroups.h"
#include "pdb/PDBread.h"
#include "support/files.h"

#include <cstdio>
#include <sstream>
#include <string>

namespace tarnex::test {

using Bundle = McDArray<McHandle<MolTrajectory>>;

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

inline MtGroupingLevel* levelOf(MolTrajectory* trajectory, char const* name) {
    return trajectory->getTopology()->getLevel(trajectory->getTopology()->getLevelIx(name));
}

inline std::string textOf(MtGroupingLevel* level, char const* attribute, int group) {
    return level->stringAttribute(attribute, MtGroupingLevel::FIND, true)->getValue(group);
}

inline int integerOf(MtGroupingLevel* level, char const* attribute, int group) {
    return level->integerAttribute(attribute, MtGroupingLevel::FIND, true)->getValue(group);
}

inline float realOf(MtGroupingLevel* level, char const* attribute, int group) {
    return level->floatAttribute(attribute, MtGroupingLevel::FIND, true)->getValue(group);
}

/// The ranges of a level with their names, such as "A 0-1; B 2-2; ".
inline std::string ranges(MolTrajectory* trajectory, char const* levelName) {
    std::ostringstream text;
    MtGroupingLevel* level = levelOf(trajectory, levelName);
    for (int i = 0; i < level->groups.size; ++i) {
        auto const& range = dynamic_cast<MtIntraLevelRange const&>(*level->groups[i]);
        text << textOf(level, "name", i) << ' ' << range.first << '-' << range.last << "; ";
    }
    return text.str();
}

/// The bonds as "0-1; 2-0; ".
inline std::string bonds(MolTrajectory* trajectory) {
    std::ostringstream text;
    for (MtGroup const* group : trajectory->getTopology()->getLevel(1)->groups) {
        auto const& bond = dynamic_cast<MtBond const&>(*group);
        text << bond.atomA() << '-' << bond.atomB() << "; ";
    }
    return text.str();
}

inline McDArray<McVec3f> coordinates(MolTrajectory* trajectory, int step) {
    Molecule molecule(trajectory->getTopology(), false);
    EXPECT_TRUE(trajectory->getTimeStep(step, &molecule));
    return molecule.coords;
}

} // namespace tarnex::test
