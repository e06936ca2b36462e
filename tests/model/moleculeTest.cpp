#include "model/Molecule.h"

#include "foundation/McException.h"
#include "support/model.h"
#include "support/testing.h"

#include <algorithm>
#include <clocale>

namespace {

using namespace tarnex::test;

/// Two steps, of which the second cannot be read.
struct HalfReadable : MolTrajectory {
    static inline int living = 0;
    HalfReadable() {
        topology->addGroup(0, new MtAtom);
        ++living;
    }
    ~HalfReadable() override { --living; }
    int getNumTimeSteps() const override { return 2; }
    bool getTimeStep(int step, Molecule* molecule) override {
        molecule->setTopology(topology, false);
        molecule->coords[0] = McVec3f(4, 5, 6);
        return step == 0;
    }
};

TEST(MolTrajectoryMem, keepsItsOwnCoordinates) {
    auto* molecule = new Molecule(newTopology(2), true);
    molecule->coords[1] = McVec3f(1, 2, 3);
    MolTrajectoryMem trajectory(molecule, 1);
    EXPECT_EQ(trajectory.getTopology(), molecule->getTopology());
    molecule->coords[1] = McVec3f(9, 9, 9);
    delete molecule;
    Molecule step(newTopology(5), false);
    step.setTopology(step.getTopology(), false);
    ASSERT_EQ(step.coords.size, step.getNumAtoms()) << "the topology that it holds stays alive";
    step.setTopology(newTopology(7), false);
    EXPECT_EQ(step.coords[6], McVec3f(0, 0, 0));
    EXPECT_TRUE(trajectory.getTimeStep(0, &step));
    EXPECT_EQ(step.getTopology(), trajectory.getTopology());
    EXPECT_EQ(step.coords[1], McVec3f(1, 2, 3));
    EXPECT_FALSE(trajectory.getTimeStep(1, &step) || trajectory.getTimeStep(-1, &step));

    McHandle<MolTrajectory> source(new HalfReadable);
    MolTrajectoryMem copy(source);
    EXPECT_EQ(copy.getTopology(), source->getTopology());
    source = nullptr;
    EXPECT_EQ(HalfReadable::living, 0);
    EXPECT_EQ(copy.getNumTimeSteps(), 2);
    McDArray<McVec3f> coords;
    copy.getCoordinates(0, coords);
    ASSERT_EQ(coords.size, 1);
    EXPECT_EQ(coords[0], McVec3f(4, 5, 6));
    copy.getCoordinates(1, coords);
    EXPECT_EQ(coords.size, 0);
    EXPECT_FALSE(copy.getTimeStep(1, &step));
}

TEST(MolObject, isReachedByCasts) {
    auto* molecule = new Molecule(newTopology(1), true);
    MolObject* object = molecule;
    EXPECT_EQ(dynamic_cast<Molecule*>(object), molecule);
    EXPECT_EQ(dynamic_cast<MolTrajectory*>(object), nullptr);
    MolTrajectory* trajectory = new MolTrajectoryMem(molecule, 1);
    McHandable* shared = trajectory;
    auto* asObject = dynamic_cast<MolObject*>(trajectory);
    ASSERT_NE(asObject, nullptr);
    EXPECT_EQ(asObject->getTopology(), molecule->getTopology());
    EXPECT_EQ(dynamic_cast<MolTrajectory*>(asObject), trajectory);
    EXPECT_EQ(dynamic_cast<MolTrajectoryMem*>(shared), trajectory);
    EXPECT_EQ(dynamic_cast<Molecule*>(asObject), nullptr);
    delete object;
    EXPECT_EQ(asObject->getTopology()->refCount, 1);
    shared->unref();
    trajectory = new HalfReadable;
    EXPECT_EQ(dynamic_cast<MolObject*>(trajectory), nullptr);
    trajectory->unref();
    EXPECT_EQ(HalfReadable::living, 0);
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
    std::string const before = std::setlocale(LC_ALL, nullptr);
    bool found = false;
    for (char const* name : {"de_DE.UTF-8", "fr_FR.UTF-8", "es_ES.UTF-8", "pl_PL.UTF-8", "de_DE"}) {
        found = found || std::setlocale(LC_ALL, name);
    }
    if (!found) GTEST_SKIP() << "no locale with a decimal comma is installed";
    MolDataFloat datum("x", 1.5F);
    std::string const text = textOf(datum);
    datum.setValueFromString("2.25");
    std::string const pointOfTheHost = std::localeconv()->decimal_point;
    std::setlocale(LC_ALL, before.c_str());
    EXPECT_EQ(pointOfTheHost, ",");
    EXPECT_EQ(text, "1.500000");
    EXPECT_EQ(datum.getValue(), 2.25F);
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
