#include "model/MolTopology.h"
#include "support/model.h"
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

TEST(findGroupBackward, agreesWithASearch) {
    for (int kinds : {2, 5, 40, 1000}) {
        MolTopology topology;
        int const ix = topology.addLevel("residues", 0, 12, -1);
        McDArray<MtGroup*>& groups = topology.getLevel(ix)->groups;
        std::vector<std::string> expected; // the names, beside those of the level
        auto const rename = [&](int group, std::string const& name) {
            setText(&topology, ix, "name", group, name.c_str());
            expected[static_cast<std::size_t>(group)] = name;
        };
        auto const someName = [&] {
            int const n = below(kinds);
            return n == 0 ? std::string() : std::string(static_cast<std::size_t>(1 + n % 11), 'r') + std::to_string(n);
        };
        for (int i = 0; i < 6000; ++i) {
            auto const size = static_cast<int>(expected.size());
            int const action = size < 2 ? 0 : below(16);
            if (action < 4) {
                groups.append(new MtDynamicGroup);
                expected.emplace_back();
            } else if (action < 6) {
                int const position = below(size + 1);
                topology.insertGroup(ix, new MtDynamicGroup, position);
                expected.insert(expected.begin() + position, std::string());
            } else if (action == 6) {
                delete groups[size - 1];
                groups.resize(size - 1);
                rename(0, "renamed while one is missing");
                groups.append(new MtDynamicGroup);
                rename(size - 1, expected[0]);
            } else {
                rename(below(size), someName());
            }
            std::string const name = someName();
            auto const last = std::find(expected.rbegin(), expected.rend(), name);
            ASSERT_EQ(topology.getLevel(ix)->findGroupBackward(name.c_str()), expected.rend() - last - 1)
                << "step " << i << ", name \"" << name << '"';
        }
    }
}

/// A walk or a new index for each lookup would take minutes here.
TEST(findGroupBackward, staysQuickWhenNamesChangeInAnyOrder) {
    constexpr int groups = 150000;
    MolTopology topology;
    for (int i = 0; i < groups; ++i) topology.addGroup(0, new (topology.groupPool) MtAtom);
    MtGroupingLevel* const level = topology.getLevel(0);
    auto* names = level->stringAttribute("name", MtGroupingLevel::CREATE, true);
    for (int i = groups; i-- > 0;) {
        names->setValue(i, "HOH");
        ASSERT_EQ(level->findGroupBackward("HOH"), groups - 1);
    }
    for (int i = groups - 1; i > 0; --i) {
        names->setValue(i, std::to_string(i).c_str());
        ASSERT_EQ(level->findGroupBackward("HOH"), i - 1);
    }
}

TEST(findBond, agreesWithASearch) {
    constexpr int atoms = 40;
    std::unique_ptr<MolTopology> const topology(newTopology(atoms));
    std::vector<std::pair<int, int>> expected;
    for (int i = 0; i < 4000; ++i) {
        std::pair const joined(below(atoms), below(atoms));
        auto* bond = new MtBond(joined.first, joined.second);
        auto const size = static_cast<int>(expected.size());
        int const position = i % 5 == 0 ? below(size + 1) : size;
        i % 5 == 0 ? topology->insertGroup(1, bond, position) : topology->addBond(bond);
        expected.insert(expected.begin() + position, joined);
        int const a = below(atoms + 2) - 1, b = below(atoms);
        auto const found = std::find_if(expected.begin(), expected.end(), [&](auto const& pair) {
            return pair == std::pair(a, b) || pair == std::pair(b, a);
        });
        ASSERT_EQ(topology->findBond(a, b), found == expected.end() ? -1 : found - expected.begin()) << "step " << i;
    }
}

} // namespace
