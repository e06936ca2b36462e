#include "model/Molecule.h"

#include "foundation/McException.h"
#include "support/model.h"
#include "support/testing.h"

#include <algorithm>
#include <clocale>

namespace {

using namespace tarnex::test;

TEST(MolTrajectoryMem, keepsItsOwnCoordinates) {
    auto* molecule = new Molecule(newTopology(2), true);
    molecule->coords[1] = McVec3f(1, 2, 3);
    MolTrajectoryMem trajectory(molecule, 1);
    EXPECT_EQ(trajectory.getTopology(), molecule->getTopology());
    molecule->coords[1] = McVec3f(9, 9, 9);
    delete molecule;
    Molecule step(newTopology(1), false);
    step.coords[0] = McVec3f(4, 5, 6);
    step.setTopology(step.getTopology(), false);
    ASSERT_EQ(step.getNumAtoms(), 1) << "the topology that it holds stays alive";
    step.setTopology(newTopology(2), false);
    EXPECT_EQ(placesOf(step.coords), "4,5,6|0,0,0");
    EXPECT_TRUE(trajectory.getTimeStep(0, &step));
    EXPECT_EQ(step.getTopology(), trajectory.getTopology());
    EXPECT_EQ(placesOf(step.coords), "0,0,0|1,2,3");
    EXPECT_FALSE(trajectory.getTimeStep(1, &step) || trajectory.getTimeStep(-1, &step));
}

TEST(MolTrajectoryMem, remembersWhichStepsOfItsSourceCouldBeRead) {
    McHandle<MolTrajectory> source(new MadeTrajectory(newTopology(1), 2, [](int step, McDArray<McVec3f>& coords) {
        coords[0] = McVec3f(4, 5, 6);
        return step == 0;
    }));
    MolTrajectoryMem copy(source);
    EXPECT_EQ(copy.getTopology(), source->getTopology());
    EXPECT_EQ(source->refCount, 1) << "it is not held";
    EXPECT_EQ(copy.getNumTimeSteps(), 2);
    McDArray<McVec3f> coords;
    copy.getCoordinates(0, coords);
    EXPECT_EQ(placesOf(coords), "4,5,6");
    copy.getCoordinates(1, coords);
    EXPECT_EQ(placesOf(coords) + placesOf(&copy, 1), "false");
}

std::string textOf(MolData const& datum) {
    McString text("before");
    datum.getValueAsString(text);
    return text.data;
}

TEST(MolData, convertsToAndFromText) {
    MolDataInt whole("n", 42);
    MolDataFloat real("x", 1.5F);
    MolDataString text("t", "two\nlines");
    for (auto const& [datum, expected] :
         {std::pair<MolData*, char const*>(&whole, "42"), {&real, "1.500000"}, {&text, "two\nlines"}}) {
        std::unique_ptr<MolData> const copy(datum->duplicate());
        datum->setValueFromString("no number");
        EXPECT_STREQ(copy->getName(), datum->getName());
        EXPECT_EQ(textOf(*copy), expected);
    }
    EXPECT_EQ(static_cast<float>(whole.getValue()) + real.getValue(), 0.0F);
    whole.setValueFromString(" -17x");
    text.setValueFromString(nullptr);
    EXPECT_EQ(textOf(whole) + textOf(text), "-17");

    struct Opaque : MolData {
        using MolData::MolData;
        Opaque* duplicate() const override { return new Opaque(*this); }
    };
    try {
        textOf(Opaque("density"));
        FAIL();
    } catch (McException const& error) {
        EXPECT_STREQ(error.getMessage(), "Error: String conversion of molecular data density not possible.");
    }
    EXPECT_THROW(Opaque("density").setValueFromString("1"), McException);
}

TEST(MolData, keepsThePointWhereHostsWriteAComma) {
    if (!std::setlocale(LC_NUMERIC, "de_DE.UTF-8")) GTEST_SKIP() << "no locale with a decimal comma here";
    MolDataFloat datum("x", 1.5F);
    EXPECT_EQ(textOf(datum), "1.500000");
    datum.setValueFromString("2.25");
    EXPECT_EQ(datum.getValue(), 2.25F);
    EXPECT_STREQ(std::localeconv()->decimal_point, ",") << "the host's locale stays";
    std::setlocale(LC_NUMERIC, "C");
}

TEST(MolTopology, keepsDataInOrderOfFirstInsertion) {
    MolTopology topology;
    auto const key = [](int i) { return "key" + std::to_string(i * 7 % 60); };
    for (int i = 0; i < 400; ++i) {
        topology.setData(new MolDataInt(key(i).c_str(), i));
        topology.setData(topology.getData(key(i).c_str()));
        ASSERT_EQ(textOf(*topology.getData(key(i).c_str())), std::to_string(i));
        ASSERT_EQ(topology.getNumData(), std::min(i + 1, 60));
    }
    for (int i = 0; i < 60; ++i) EXPECT_EQ(topology.getData(i)->getName(), key(i));
    EXPECT_EQ(topology.getData("key60"), nullptr);
    EXPECT_EQ(topology.getData(60), nullptr);
}

} // namespace
