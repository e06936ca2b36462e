#include "model/MolTopology.h"
#include "model/MtListGroups.h"
#include "support/testing.h"

#include <algorithm>
#include <random>
#include <utility>

namespace {

using namespace tarnex::test;

/// Numbers below a limit, the same in every run.
int below(int limit) {
    static std::mt19937 engine(20);
    return static_cast<int>(engine() % static_cast<unsigned>(limit));
}

/// A level with names and a plain list of the same names beside it.
class NamedLevel {
public:
    void add() {
        level->groups.append(new MtDynamicGroup);
        expected.emplace_back();
    }
    void insert(int position) {
        ASSERT_EQ(topology.insertGroup(ix, new MtDynamicGroup, position), MtGroupRef(ix, position));
        expected.insert(expected.begin() + position, std::string());
    }
    void rename(int group, std::string const& name) {
        names->setValue(group, name.c_str());
        expected[static_cast<std::size_t>(group)] = name;
    }
    void dropLastAndAdd() {
        delete level->groups[size() - 1];
        level->groups.resize(size() - 1);
        if (size() > 1) rename(0, "renamed while one is missing");
        level->groups.append(new MtDynamicGroup);
        rename(size() - 1, expected[0]);
    }
    int size() const { return static_cast<int>(expected.size()); }
    int find(std::string const& name) const { return level->findGroupBackward(name.c_str()); }
    int search(std::string const& name) const {
        int group = size() - 1;
        while (group >= 0 && expected[static_cast<std::size_t>(group)] != name) --group;
        return group;
    }

    MolTopology topology;
    int ix = topology.addLevel("residues", 0, 12, -1);
    MtGroupingLevel* level = topology.getLevel(ix);
    MtStringAttribute* names = level->stringAttribute("name", MtGroupingLevel::CREATE, true);
    std::vector<std::string> expected;
};

TEST(findGroupBackward, agreesWithASearch) {
    for (int kinds : {2, 5, 40, 1000}) {
        NamedLevel level;
        auto const someName = [&] {
            int const n = below(kinds);
            return n == 0 ? std::string() : std::string(static_cast<std::size_t>(1 + n % 11), 'r') + std::to_string(n);
        };
        for (int i = 0; i < 6000; ++i) {
            int const action = level.size() == 0 ? 0 : below(16);
            if (action < 4) level.add();
            if (action == 4 || action == 5) level.insert(below(level.size() + 1));
            if (action == 6) level.dropLastAndAdd();
            if (action > 6) level.rename(below(level.size()), someName());
            std::string const name = someName();
            ASSERT_EQ(level.find(name), level.search(name)) << "step " << i << ", name \"" << name << '"';
        }
        for (int i = 0; i < level.size(); ++i) {
            ASSERT_EQ(level.level->getGroupName(i), level.expected[static_cast<std::size_t>(i)]);
        }
    }
}

/// A walk or a new index for each lookup would take minutes here.
TEST(findGroupBackward, staysQuickWhenNamesChangeInAnyOrder) {
    constexpr int groups = 150000;
    NamedLevel level;
    for (int i = 0; i < groups; ++i) level.add();
    for (int i = groups; i-- > 0;) {
        level.rename(i, "HOH");
        ASSERT_EQ(level.find("HOH"), groups - 1);
        level.rename(below(groups), "HOH");
    }
    for (int i = groups - 1; i > 0; --i) {
        level.rename(i, std::to_string(i));
        ASSERT_EQ(level.find("HOH"), i - 1);
    }
}

TEST(findBond, agreesWithASearch) {
    constexpr int atoms = 40;
    MolTopology topology;
    for (int i = 0; i < atoms; ++i) topology.addGroup(0, new MtAtom);
    McDArray<MtGroup*>& bonds = topology.levels[1]->groups;
    std::vector<std::pair<int, int>> expected;
    for (int i = 0; i < 4000; ++i) {
        std::pair const joined(below(atoms), below(atoms));
        auto* bond = new MtBond(joined.first, joined.second);
        int const position =
            i % 5 == 0 ? below(static_cast<int>(expected.size()) + 1) : static_cast<int>(expected.size());
        if (i % 5 == 0)
            topology.insertGroup(1, bond, position);
        else
            bonds.append(bond);
        expected.insert(expected.begin() + position, joined);
        int const a = below(atoms + 2) - 1, b = below(atoms);
        auto const found = std::find_if(expected.begin(), expected.end(), [&](auto const& pair) {
            return pair == std::pair(a, b) || pair == std::pair(b, a);
        });
        ASSERT_EQ(topology.findBond(a, b), found == expected.end() ? -1 : found - expected.begin()) << "step " << i;
    }
}

} // namespace
