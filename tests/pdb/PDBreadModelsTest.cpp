#include "PDBreadSamples.h"
#include "pdb/MolTrajectoryPDB.h"

namespace {

using namespace tarnex::test;

/// A model of carbons with x coordinates 10, 20, ... plus `shift`.
std::string model(int number, int numAtoms, double shift) {
    std::string text = "MODEL " + std::to_string(number) + "\n";
    for (int i = 1; i <= numAtoms; ++i) {
        text += atom({.record = i % 2 ? "ATOM" : "HETATM", .serial = i, .number = i, .x = 10 * i + shift});
        if (i == 1) text += "TER\n";
    }
    return text + "ENDMDL\n";
}

TEST(PDBreadModels, EachModelIsAStep) {
    std::string const models = model(7, 3, 0) + model(7, 3, 0.25) + model(9, 3, 0.5);
    auto const trajectory = readPDB("HEADER    text\n" + models + "CONECT    1    3\n");
    ASSERT_TRUE(dynamic_cast<MolTrajectoryPDB*>(static_cast<MolTrajectory*>(trajectory)));
    EXPECT_EQ(trajectory->getNumTimeSteps(), 3);
    EXPECT_THAT(describe(trajectory->getTopology()), StartsWith("Model 1-3;\natoms(-1) flags 3: 3 "));
    EXPECT_EQ(bondsOf(trajectory->getTopology()), "0,2 type 1");
    EXPECT_EQ(placesOf(trajectory, 2), "10.5,-1.5,0.25|20.5,-1.5,0.25|30.5,-1.5,0.25");
    EXPECT_EQ(placesOf(trajectory, 0), "10,-1.5,0.25|20,-1.5,0.25|30,-1.5,0.25");
    for (int const absent : {-1, 3}) EXPECT_EQ(placesOf(trajectory, absent), "false");

    PDBread pdb(nullptr, nullptr);
    McHandle<Molecule> const molecule = pdb.readPDBMolecule(writeFile("models.pdb", models).c_str());
    EXPECT_EQ(placesOf(molecule->coords), placesOf(trajectory, 0));
    EXPECT_STREQ(molecule->getTopology()->getName(), "Model 1-3");
    EXPECT_FALSE(pdb.readPDBMolecule(writeFile("none.pdb", "REMARK\n").c_str()));
}

TEST(PDBreadModels, ModelsOfOtherSizes) {
    std::string const one = model(1, 2, 0), two = model(2, 1, 0), three = model(3, 3, 0);
    auto const trajectory = readPDB(one + two + three + "MODEL\n");
    EXPECT_NE(placesOf(trajectory, 0), "false");
    for (int const step : {1, 2, 3}) EXPECT_EQ(placesOf(trajectory, step), "false") << step;

    std::string const path = writeFile("in.pdb", one + two + three);
    std::ostringstream messages;
    Molecule molecule(trajectory->getTopology(), false);
    PDBread::streamPositions third;
    third.atomFirst = static_cast<long>(one.size() + two.size());
    third.atomLast = third.atomFirst + static_cast<long>(three.rfind("ATOM"));
    for (auto const& [positions, numAtoms] : {std::pair{third, 3}, {PDBread::streamPositions(), 0}}) {
        EXPECT_FALSE(PDBread(&messages, nullptr).readCoordinates(&molecule, path.c_str(), positions, 0));
        EXPECT_EQ(molecule.coords.size, numAtoms);
        EXPECT_EQ(messages.str(), "Timestep corrupt. Fewer coordinates than atoms.\n"); // once
    }
}

TEST(PDBreadModels, AtomsAheadOfTheFirstModel) {
    auto const one = readPDB(atom({.x = 5}) + model(1, 3, 0));
    EXPECT_EQ(one->getNumTimeSteps(), 1);
    EXPECT_EQ(placesOf(one, 0), "5,-1.5,0.25");
    auto const two = readPDB(atom({.x = 5}) + model(1, 1, 0) + model(2, 3, 0)); // the early atoms and the first model
    EXPECT_EQ(two->getNumTimeSteps(), 2);
    EXPECT_EQ(placesOf(two, 0) + placesOf(two, 1), "5,-1.5,0.2510,-1.5,0.25");
    auto const single = readPDB("HEADER\n" + model(1, 3, 0));
    EXPECT_FALSE(dynamic_cast<MolTrajectoryPDB*>(static_cast<MolTrajectory*>(single)));
    EXPECT_EQ(single->getTopology()->getNumData(), 1);
    EXPECT_EQ(placesOf(readPDB("MODEL\n"), 0), "");
}

/// A digit counts as location of an atom for the topology but not for the steps.
TEST(PDBreadModels, AlternateLocations) {
    for (auto const& [location, step] : {std::pair{"B", "10,-1.5,0.25"}, {"1", "false"}}) {
        std::string const text = "MODEL\n" + atom({.location = "A"}) + atom({.location = location});
        EXPECT_EQ(placesOf(readPDB(text + text), 1), step);
    }
}

TEST(PDBreadModels, FilesThatGoAway) {
    auto const trajectory = readPDB(model(1, 2, 0) + model(2, 2, 0));
    std::filesystem::resize_file(scratchPath("in.pdb"), 100);
    EXPECT_EQ(placesOf(trajectory, 1), "false");
    std::filesystem::remove(scratchPath("in.pdb"));
    EXPECT_EQ(placesOf(trajectory, 0), "false");

    McDArray<PDBread::streamPositions> positions;
    positions.append({});
    MolTrajectoryPDB gone("no/such.pdb", positions);
    EXPECT_THAT(describe(gone.getTopology()), StartsWith("Model 1-1;\natoms(-1) flags 35: 0\n"));
}

TEST(PDBreadModels, ProgressOfCoordinates) {
    std::string const path = writeFile("in.pdb", model(1, 120, 0));
    Molecule molecule(newTopology(120), true);
    PDBread::streamPositions positions;
    positions.atomFirst = 0;
    positions.atomLast = 8 + 4 + 119 * 81;
    auto const part = [&](long place) { return static_cast<float>(place) / static_cast<float>(positions.atomLast); };
    RecordingProgress progress;
    EXPECT_TRUE(PDBread(nullptr, &progress).readCoordinates(&molecule, path.c_str(), positions, 0));
    // Ahead of the first atom, and at atoms 50 and 100: the place within the line is behind what was read of it.
    EXPECT_THAT(progress.fractions, ElementsAre(part(6), part(8 + 4 + 49 * 81 + 54), part(8 + 4 + 99 * 81 + 54)));
    EXPECT_THAT(progress.calls, ElementsAre("start ", "info Parsing ATOM and HETATM Records", "stop"));
    RecordingProgress stopping(2);
    EXPECT_FALSE(PDBread(nullptr, &stopping).readCoordinates(&molecule, path.c_str(), positions, 0));
    EXPECT_EQ(stopping.calls.back(), "stop");
    EXPECT_EQ(molecule.coords.size, 50);
}

} // namespace
