#include "PDBreadSamples.h"
#include "pdb/MolTrajectoryPDB.h"

namespace {

using namespace tarnex::test;

/// A model of carbons with x coordinates 10, 20, ... plus `shift`.
std::string model(int number, int numAtoms, double shift) {
    std::string text = "MODEL " + std::to_string(number) + "\n";
    for (int i = 1; i <= numAtoms; ++i) {
        text += AtomText{.record = i % 2 ? "ATOM" : "HETATM", .serial = i, .number = i, .x = 10 * i + shift};
        if (i == 1) text += "TER\n";
    }
    return text + "ENDMDL\n";
}

TEST(PDBreadModels, EachModelIsAStep) {
    auto const trajectory =
        readPDB("HEADER    text\n" + model(7, 3, 0) + model(7, 3, 0.25) + model(9, 3, 0.5) + "CONECT    1    3\n");
    ASSERT_TRUE(dynamic_cast<MolTrajectoryPDB*>(static_cast<MolTrajectory*>(trajectory)));
    EXPECT_EQ(trajectory->getNumTimeSteps(), 3);
    EXPECT_STREQ(trajectory->getTopology()->getName(), "Model 1-3");
    EXPECT_EQ(trajectory->getTopology()->getNumData(), 0);
    EXPECT_EQ(groupsOf(trajectory->getTopology()->getLevel(1)), "0,2");
    EXPECT_EQ(placesOf(trajectory, 2), "10.5,-1.5,0.25|20.5,-1.5,0.25|30.5,-1.5,0.25");
    EXPECT_EQ(placesOf(trajectory, 0), "10,-1.5,0.25|20,-1.5,0.25|30,-1.5,0.25");
    for (int const absent : {-1, 3}) EXPECT_EQ(placesOf(trajectory, absent), "false");
}

TEST(PDBreadModels, ModelsOfOtherSizes) {
    std::string const path = writeFile("in.pdb", model(1, 2, 0) + model(2, 1, 0) + model(3, 3, 0) + "MODEL\n");
    Bundle bundle;
    ASSERT_EQ(PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(path.c_str(), bundle), 1);
    Molecule molecule(bundle[0]->getTopology(), false);
    EXPECT_TRUE(bundle[0]->getTimeStep(0, &molecule));
    for (int const step : {1, 2, 3}) EXPECT_FALSE(bundle[0]->getTimeStep(step, &molecule)) << step;

    std::ostringstream messages;
    PDBread::streamPositions third;
    third.atomFirst = static_cast<long>(model(1, 2, 0).size() + model(2, 1, 0).size());
    third.atomLast = third.atomFirst + 8 + 81 + 4 + 81 + 81 - 81;
    EXPECT_FALSE(PDBread(&messages, nullptr).readCoordinates(&molecule, path.c_str(), third, 0));
    EXPECT_EQ(messages.str(), "Timestep corrupt. Fewer coordinates than atoms.\n");
    EXPECT_EQ(molecule.coords.size, 3);
    EXPECT_FALSE(PDBread(&messages, nullptr).readCoordinates(&molecule, path.c_str(), {}, 0));
    EXPECT_EQ(molecule.coords.size, 0);
    EXPECT_EQ(messages.str(), "Timestep corrupt. Fewer coordinates than atoms.\n");
}

TEST(PDBreadModels, AtomsAheadOfTheFirstModel) {
    std::string const early = AtomText{.x = 5};
    auto const one = readPDB(early + model(1, 3, 0));
    EXPECT_EQ(one->getNumTimeSteps(), 1);
    EXPECT_EQ(one->getTopology()->getLevel(0)->groups.size, 1);
    auto const two = readPDB(early + model(1, 1, 0) + model(2, 3, 0)); // the early atoms and the first model
    EXPECT_EQ(two->getNumTimeSteps(), 2);
    EXPECT_EQ(coordinates(two, 0)[0].x, 5.0F);
    EXPECT_EQ(coordinates(two, 1)[0].x, 10.0F);
    auto const single = readPDB("HEADER\n" + model(1, 3, 0));
    EXPECT_FALSE(dynamic_cast<MolTrajectoryPDB*>(static_cast<MolTrajectory*>(single)));
    EXPECT_EQ(single->getTopology()->getNumData(), 1);
    EXPECT_EQ(readPDB("MODEL\n")->getTopology()->getLevel(0)->groups.size, 0);
}

/// A digit counts as location of an atom for the topology but not for the steps.
TEST(PDBreadModels, AlternateLocations) {
    auto const steps = [](char const* location) {
        std::string const text = "MODEL\n" + AtomText{.location = "A"} + AtomText{.location = location};
        auto const trajectory = readPDB(text + text);
        Molecule molecule(trajectory->getTopology(), false);
        return std::pair(molecule.getNumAtoms(), trajectory->getTimeStep(1, &molecule));
    };
    EXPECT_EQ(steps("B"), std::pair(1, true));
    EXPECT_EQ(steps("1"), std::pair(2, false));
}

TEST(PDBreadModels, FilesThatGoAway) {
    std::string const path = writeFile("in.pdb", model(1, 2, 0) + model(2, 2, 0));
    Bundle bundle;
    ASSERT_EQ(PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(path.c_str(), bundle), 1);
    Molecule molecule(bundle[0]->getTopology(), false);
    std::filesystem::resize_file(path, 100);
    EXPECT_FALSE(bundle[0]->getTimeStep(1, &molecule));
    std::filesystem::remove(path);
    EXPECT_FALSE(bundle[0]->getTimeStep(0, &molecule));

    McDArray<PDBread::streamPositions> positions;
    positions.append({});
    MolTrajectoryPDB gone(path.c_str(), positions);
    EXPECT_EQ(gone.getNumTimeSteps(), 1);
    EXPECT_EQ(gone.getTopology()->levels.size, 2);
    EXPECT_STREQ(gone.getTopology()->getName(), "Model 1-1");
    positions.resize(0);
    EXPECT_STREQ(MolTrajectoryPDB(path.c_str(), positions).getTopology()->getName(), "Model 1-0");
}

TEST(PDBreadModels, ReadPDBMolecule) {
    PDBread pdb(nullptr, nullptr);
    auto const read = [&](std::string const& text) { return pdb.readPDBMolecule(writeFile("in.pdb", text).c_str()); };
    McHandle<Molecule> molecule = read(model(1, 2, 0) + model(2, 2, 1) + model(3, 2, 2));
    ASSERT_TRUE(molecule);
    ASSERT_EQ(molecule->coords.size, 2);
    EXPECT_EQ(molecule->coords[1].x, 20.0F);
    EXPECT_STREQ(molecule->getTopology()->getName(), "Model 1-3");
    molecule = read(model(1, 1, 0.5));
    EXPECT_EQ(molecule->coords[0].x, 10.5F);
    EXPECT_FALSE(read("REMARK\n"));
    EXPECT_FALSE(pdb.readPDBMolecule("no/such.pdb"));
}

TEST(PDBreadModels, ProgressOfCoordinates) {
    std::string const path = writeFile("in.pdb", model(1, 120, 0));
    Molecule molecule(new MolTopology, true);
    for (int i = 0; i < 120; ++i) molecule.getTopology()->addGroup(0, new MtAtom);
    PDBread::streamPositions positions;
    positions.atomFirst = 0;
    positions.atomLast = 8 + 4 + 119 * 81;
    auto const part = [&](long place) { return static_cast<float>(place) / static_cast<float>(positions.atomLast); };
    RecordingProgress progress;
    EXPECT_TRUE(PDBread(nullptr, &progress).readCoordinates(&molecule, path.c_str(), positions, 0));
    // Ahead of the first atom, and at atoms 50 and 100: the place within the line is behind what was read of it.
    EXPECT_THAT(progress.fractions,
                testing::ElementsAre(part(6), part(8 + 4 + 49 * 81 + 54), part(8 + 4 + 99 * 81 + 54)));
    EXPECT_THAT(progress.calls, testing::ElementsAre("start ", "info Parsing ATOM and HETATM Records", "stop"));
    RecordingProgress stopping(2);
    EXPECT_FALSE(PDBread(nullptr, &stopping).readCoordinates(&molecule, path.c_str(), positions, 0));
    EXPECT_EQ(stopping.calls.back(), "stop");
    EXPECT_EQ(molecule.coords.size, 50);
}

} // namespace
