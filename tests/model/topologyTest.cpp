#include "model/MolTopology.h"
#include "model/members.h"
#include "support/compareTopologies.h"
#include "support/testing.h"

#include <climits>
#include <utility>

namespace {

using namespace tarnex::test;

constexpr auto create = MtGroupingLevel::CREATE;

/// Ten atoms, and two levels above them.
class TopologyTest : public testing::Test {
protected:
    void SetUp() override {
        for (int i = 0; i < 10; ++i) topology.addGroup(0, new MtAtom);
    }
    std::vector<int> atomsOf(MtGroupRef ref) const {
        McDArray<int> atoms(3);
        topology.getAtomsOfGroup(ref, atoms);
        return {atoms.begin(), atoms.end()};
    }
    bool segmentedWith(MtGroup* group) {
        topology.addGroup(residues, group);
        level->updateSegmentationFlag(&topology, residues);
        return level->hasFlag(MtGroupingLevel::segmentation);
    }

    MolTopology topology;
    int residues = topology.addLevel("residues", 0, 12, -1);
    int chains = topology.addLevel("chains", residues, 12, -1);
    MtGroupingLevel* level = topology.getLevel(residues);
};

TEST_F(TopologyTest, refusesWhatCannotExist) {
    for (auto [a, b] : {std::pair{0, 10}, {-1, 3}, {INT_MAX, 0}, {0, INT_MIN}}) {
        EXPECT_EQ(topology.addBond(new MtBond(a, b)).groupIx, -1);
        EXPECT_EQ(topology.insertGroup(1, new MtBond(a, b), 0).groupIx, -1);
    }
    MtGroup* angle = MtGroup::createGroup(3);
    for (int i = 0; i < 2; ++i) angle->setElement(i, MtGroupRef(0, i));
    EXPECT_EQ(topology.addGroup(residues, angle).groupIx, -1) << "its third member is unset";
    EXPECT_EQ(topology.addGroup(7, new MtAtom).groupIx, -1);
    EXPECT_EQ(topology.addGroup(0, nullptr).groupIx, -1);
    EXPECT_EQ(topology.levels[1]->groups.size + level->groups.size, 0);
    EXPECT_EQ(topology.addBond(new MtBond(9, 0)), MtGroupRef(1, 0));
    EXPECT_EQ(topology.addGroup(residues, new MtIntraLevelRange(0, 99, 200)), MtGroupRef(residues, 0))
        << "ranges and lists can be completed later";
}

TEST_F(TopologyTest, movesValuesWithTheirGroups) {
    auto* number = level->integerAttribute("x", create, true);
    auto* real = level->floatAttribute("x", create, true);
    auto* text = level->stringAttribute("x", create, true);
    EXPECT_EQ(level->integerAttribute("x", create, true), number) << "an attribute is known by its name and type";
    EXPECT_EQ(level->integerAttribute("y", MtGroupingLevel::FIND, true), nullptr);
    EXPECT_EQ(level->getAttribute(2), text);
    for (int const absent : {-1, 3}) EXPECT_EQ(level->getAttribute(absent), nullptr);
    number->setValue(0, 5); // ahead of its group it is not kept
    for (int i = 0; i < 3; ++i) topology.addGroup(residues, new MtDynamicGroup);
    number->setValue(1, 1);
    real->setValue(1, 1.5F);
    text->setValue(1, "one");
    text->setValue(0, text->getValue(1));
    text->setValue(0, nullptr);
    for (auto [position, expected] : {std::pair{1, 1}, {-4, 0}, {99, 5}}) {
        EXPECT_EQ(topology.insertGroup(residues, new MtDynamicGroup, position).groupIx, expected);
    }
    EXPECT_EQ(valuesOf(level, number), "0|0|0|1|0|0");
    EXPECT_EQ(valuesOf(level, real), "0|0|0|1.5|0|0");
    EXPECT_EQ(valuesOf(level, text), "|||one||");
    for (int absent : {-1, 6}) EXPECT_STREQ(text->getValue(absent), "");
}

TEST_F(TopologyTest, keepsTextsOfAnyLengthThroughChangesOfTheirLength) {
    auto* text = level->stringAttribute("x", create, true);
    constexpr int count = 100;
    for (int i = 0; i < count; ++i) topology.addGroup(residues, new MtDynamicGroup);
    for (int round = 0; round < 12; ++round) {
        auto const textOf = [=](int i) {
            return std::string(static_cast<std::size_t>((i + 5 * round) % 12), 'x') + std::to_string(i);
        };
        for (int i = 0; i < count; ++i) {
            std::string const value = textOf(i);
            if (value.size() <= tarnex::ShortText::maxLength)
                text->setValue(i, tarnex::ShortText(value.data(), value.size()));
            else
                text->setValue(i, value.c_str());
            text->setValue(0, text->getValue(i));
        }
        EXPECT_EQ(text->getValue(0), textOf(count - 1));
        for (int i = 1; i < count; ++i) ASSERT_EQ(text->getValue(i), textOf(i));
    }
}

TEST_F(TopologyTest, walksDownToTheAtoms) {
    topology.addBond(new MtBond(7, 2));
    EXPECT_EQ(atomsOf({1, 0}), (std::vector{7, 2}));
    topology.addGroup(residues, new MtIntraLevelRange(0, 2, 4));
    topology.addGroup(residues, listOf({{0, 9}, {0, 10}, {0, 9}, {3, -1}, {8, 0}}));
    topology.addGroup(residues, new MtIntraLevelRange(0, INT_MIN, INT_MAX));
    EXPECT_EQ(atomsOf({residues, 1}), (std::vector{9, 9}));
    EXPECT_EQ(atomsOf({residues, 2}).size(), 10U);
    topology.addGroup(chains, listOf({{residues, 1}, {0, 5}, {residues, 0}}));
    EXPECT_EQ(atomsOf({chains, 0}), (std::vector{9, 9, 5, 2, 3, 4}));
    topology.addGroup(chains, listOf({{chains, 2}, {0, 1}}));
    topology.addGroup(chains, listOf({{0, 0}, {chains, 2}, {chains, 1}, {0, 3}}));
    EXPECT_EQ(atomsOf({chains, 1}), (std::vector{0, 3, 1})) << "groups that hold each other";
    for (MtGroupRef const missing : {MtGroupRef(), MtGroupRef(0, 10), MtGroupRef(9, 0), MtGroupRef(-1, 0)}) {
        EXPECT_TRUE(atomsOf(missing).empty());
    }
}

TEST_F(TopologyTest, knowsWhetherGroupsShareMembers) {
    EXPECT_TRUE(segmentedWith(new MtIntraLevelRange(0, 0, 4)));
    EXPECT_TRUE(segmentedWith(listOf({{0, 7}, {0, 7}, {0, 12}})));
    EXPECT_FALSE(segmentedWith(listOf({{0, 8}, {0, 4}})));
    level->groups[2]->setElement(1, MtGroupRef(0, 5));
    EXPECT_TRUE(segmentedWith(new MtIntraLevelRange(0, INT_MAX, INT_MAX)));
}

/// Walking every range would take 10^10 steps here.
TEST_F(TopologyTest, findsOwnersAmongOverlappingRanges) {
    for (int i = 10; i < 100000; ++i) topology.addGroup(0, new MtAtom);
    topology.addGroup(residues, listOf({{0, 70}, {0, 3}}));
    topology.addGroup(residues, new MtIntraLevelRange(0, 1, 50));
    topology.addGroup(residues, new MtIntraLevelRange(residues, 0, 99));
    for (int i = 0; i < 100000; ++i) topology.addGroup(residues, new MtIntraLevelRange(0, 20 - i, 90 + i));
    McDArray<int> const owners = tarnex::ownersOfMembers(topology, residues, 0);
    for (auto [atom, owner] :
         {std::pair{0, 23}, {1, 1}, {3, 0}, {50, 1}, {51, 3}, {70, 0}, {90, 3}, {91, 4}, {99999, 99912}}) {
        EXPECT_EQ(owners[atom], owner) << atom;
    }
}

TEST_F(TopologyTest, copiesDeeply) {
    auto original = std::make_unique<MolTopology>(topology);
    original->addBond(new MtBond(3, 7));
    original->addGroup(residues, new MtIntraLevelRange(0, 1, 2));
    original->addGroup(chains, listOf({{residues, 0}}));
    original->setData(new MolDataInt("n", 4));
    original->levels[residues]->flags = 0x31;
    setText(original.get(), residues, "name", 0, "GLY");
    original->getAtomFormalChargeAttribute(MolTopology::CREATE)->setValue(9, -2);
    EXPECT_EQ(original->levels[residues]->findGroupBackward("GLY") + original->findBond(7, 3), 0);

    std::unique_ptr<MolTopology> const copy(original->duplicate());
    std::string const before = describeExactly(original.get());
    setText(original.get(), residues, "name", 0, "ALA");
    original->setData(new MolDataInt("n", 5));
    static_cast<MtBond*>(original->levels[1]->groups[0])->atomA() = 0;
    original.reset();
    EXPECT_EQ(describeExactly(copy.get()), before);
    EXPECT_EQ(copy->refCount, 0);
    EXPECT_EQ(copy->levels[residues]->findGroupBackward("ALA"), -1);
    EXPECT_EQ(copy->levels[residues]->findGroupBackward("GLY"), 0);
    EXPECT_EQ(copy->findBond(7, 3), 0);
}

TEST(SharedPool, keepsTheMemoryOfMoleculesThatOutliveEachOther) {
    tarnex::GroupPool pool;
    std::unique_ptr<MolTopology> kept;
    for (int i = 0; i < 100; ++i) {
        auto topology = std::make_unique<MolTopology>(std::move(pool));
        for (int atom = 0; atom < 20; ++atom) {
            topology->addGroup(0, new (topology->groupPool) MtAtom);
            setText(topology.get(), 0, "name", atom, ("a long name " + std::to_string(100 * i + atom)).c_str());
        }
        pool = std::move(topology->groupPool);
        if (i == 50) kept = std::move(topology);
    }
    kept->insertGroup(0, new (kept->groupPool) MtAtom, 3);
    EXPECT_THAT(valuesOf(kept.get(), 0, "name"), testing::MatchesRegex(".*long name 5002[|][|]a long.* 5019"));
}

/// Groups of a host's own.
struct LargeGroup : MtDynamicGroup {
    char values[3000];
};

TEST(SharedPool, hasRoomForGroupsOfAllSizes) {
    MolTopology topology;
    for (int i = 0; i < 100; ++i) {
        auto* large = new (topology.groupPool) LargeGroup;
        std::fill(std::begin(large->values), std::end(large->values), 'x');
        topology.addGroup(0, large);
        topology.addGroup(0, new (topology.groupPool) MtAtom);
    }
    for (MtGroup const* group : topology.levels[0]->groups) EXPECT_EQ(group->size(), 0);
}

struct AlignedGroup : MtDynamicGroup {
    alignas(16) char values[16];
};

TEST(MtGroup, isAlignedAsItsClassAsks) {
    std::unique_ptr<AlignedGroup> const first(new AlignedGroup), second(new AlignedGroup);
    for (auto const& group : {first.get(), second.get()}) EXPECT_EQ(reinterpret_cast<std::uintptr_t>(group) % 16, 0U);
}

/// Groups move up by 10; group 5 is removed.
struct Renumbering : MtGroupRefTranslator {
    MtGroupRef translate(MtGroupRef ref) override { return {ref.levelIx, ref.groupIx == 5 ? -1 : ref.groupIx + 10}; }
};

TEST(MtGroup, translatesUpToTheFirstRemovedMember) {
    Renumbering renumbering;
    MtIntraLevelRange range(0, 6, 8), unset, cut(0, 3, 5);
    std::unique_ptr<MtGroup> const list(listOf({{0, 3}, {0, 5}, {0, 4}}));
    EXPECT_FALSE(list->translate(&renumbering, false) || cut.translate(&renumbering, true));
    EXPECT_TRUE(range.translate(&renumbering, true) && unset.translate(&renumbering, true));
    EXPECT_EQ(membersOf(list.get(), 0) + " " + membersOf(&range, 0) + " " + membersOf(&cut, 0), "13,5,4 16-18 3-5");
    EXPECT_EQ(unset.size(), 0);
}

TEST(MtGroup, rangesTakeTheirEndsAndTheLevel) {
    MtIntraLevelRange range(2, 6, 8), single(2, 6, 6);
    range.setElement(0, {3, 4});
    range.setElement(1, {3, 77}); // follows from the first
    range.setElement(4, {3, 5});
    single.setElement(0, {2, 9});
    EXPECT_EQ(membersOf(&range, 3) + " " + membersOf(&single, 2), "4-5 9-9");
}

} // namespace
