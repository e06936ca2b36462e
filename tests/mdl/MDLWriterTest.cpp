#include "mdl/MDLIO.h"
#include "support/model.h"
#include "support/testing.h"
#include "textio/numberText.h"

namespace {

using namespace tarnex::test;

/// Carbon and chlorine by turns, bonded to the first.
std::unique_ptr<Molecule> makeMolecule(int numAtoms) {
    MolTopology* topology = newTopology(numAtoms);
    for (int i = 1; i < numAtoms; ++i) topology->addBond(new MtBond(0, i));
    for (int i = 0; i < numAtoms; ++i) setInteger(topology, 0, "atomic_number", i, i % 2 == 0 ? 6 : 17);
    return std::make_unique<Molecule>(topology, true);
}

std::string record(std::string const& title) {
    return title + "\n -VelorNelst-\n\n"
                   "  2  1  0  0  0  0  0  0  0  0  1 V2000\n"
                   "    0.0000    0.0000    0.0000 C   0  0  0  0   0  0  0\n"
                   "    0.0000    0.0000    0.0000 Cl  0  0  0  0   0  0  0\n"
                   "  1  2  0  0  0\n"
                   "M END\n\n";
}

TEST(MDLWriter, ChargesHydrogensBondTypesAndData) {
    auto const molecule = makeMolecule(3);
    MolTopology* topology = molecule->getTopology();
    molecule->coords[0] = McVec3f(-1000.0F, 9.99996F, -0.00001F);
    topology->getAtomFormalChargeAttribute(MolTopology::CREATE)->setValue(0, 1);
    topology->getAtomFormalChargeAttribute(MolTopology::CREATE)->setValue(1, -1);
    topology->addIntegerAttribute(0, "implicit_hnum")->setValue(2, 3);
    topology->addIntegerAttribute(1, "type")->setValue(1, 1234);
    topology->setData(new MolDataString("name", "Title"));
    topology->setData(new MolDataFloat("x", 1.5F));
    topology->setData(new MolDataInt("n", -7));
    std::string const path = scratchPath("whole.sdf");
    EXPECT_TRUE(MDLIO(nullptr, nullptr).writeMDLMolecule(molecule.get(), path.c_str()));
    EXPECT_EQ(readFile(path), "Title\n -VelorNelst-\n\n"
                              "  3  2  0  0  0  0  0  0  0  0  1 V2000\n"
                              "-1000.0000    9.0000   -0.0000 C   0  3  0  1   0  0  0\n"
                              "    0.0000    0.0000    0.0000 Cl  0  5  0  1   0  0  0\n"
                              "    0.0000    0.0000    0.0000 C   0  0  0  4   0  0  0\n"
                              "  1  2  0  0  0  0\n"
                              "  1  312  0  0  0\n" // a number too wide loses one more than it must
                              "M END\n\n"
                              "> <name>\nTitle\n\n> <x>\n1.500000\n\n> <n>\n-7\n\n");
    topology->setData(new MolDataInt("name", 5)); // is no title
    molecule->coords[0].x = -10000.0F;
    EXPECT_THROW(MDLIO(nullptr, nullptr).writeMDLMolecule(molecule.get(), path.c_str()), FloatConversion_Error);
    EXPECT_THAT(readFile(path), StartsWith(path + "\n"));
}

TEST(MDLWriter, FilesAndTheirFailures) {
    std::ostringstream messages;
    MDLIO io(&messages, nullptr);
    auto const molecule = makeMolecule(2), large = makeMolecule(1000), bonded = makeMolecule(2);
    for (int i = 0; i < 999; ++i) bonded->getTopology()->addBond(new MtBond(0, 1));
    MolTrajectoryMem none(molecule.get(), 0), twice(molecule.get(), 2), manyBonds(bonded.get(), 1);
    std::string const path = scratchPath("out.sdf");
    std::filesystem::remove(path);
    EXPECT_FALSE(io.writeMDLMolecule(nullptr, path.c_str()));
    EXPECT_FALSE(io.writeMDLMolecule(molecule.get(), "/no/such/folder/x.sdf"));
    EXPECT_FALSE(io.writeMDLMolTrajectory(&none, path.c_str()));
    EXPECT_FALSE(std::filesystem::exists(path));
    EXPECT_TRUE(io.writeMDLMolecule(large.get(), path.c_str())); // the refused record is not told
    EXPECT_EQ(readFile(path), "");
    EXPECT_FALSE(io.writeMDLMolTrajectory(&manyBonds, path.c_str()));
    EXPECT_EQ(messages.str(), "Empty molecule !\nCould not create file !\nFirst time step of trajectory corrupted!\n"
                              "Molecule contains too many atoms for sdf format\n"
                              "Molecule contains too many bonds for sdf format\n");

    EXPECT_TRUE(io.checkNumAtomsBonds(makeMolecule(999)->getTopology()));
    ASSERT_TRUE(io.writeMDLMolTrajectory(&twice, path.c_str()));
    EXPECT_EQ(readFile(path), record(path) + "$$$$\n" + record(path) + "$$$$\n");
    McDArray<MolTrajectory*> bundle;
    bundle.append(&none);
    bundle.append(&twice);
    ASSERT_TRUE(io.writeMDLMolTrajectoryBundle(bundle, path.c_str()));
    EXPECT_EQ(readFile(path), record(path) + "$$$$\n");
}

TEST(MDLWriter, Interruption) {
    McHandle<MolTopology> const topology(makeMolecule(3)->getTopology());
    std::string const path = scratchPath("stopped.sdf");
    RecordingProgress first(1), second(2), third(2); // at the first atom, bond and eleventh trajectory
    EXPECT_TRUE(MDLIO(nullptr, &first).writeMDLMolecule(new Molecule(topology, false), path.c_str())); // deletes it
    EXPECT_EQ(topology->refCount, 1);
    Molecule molecule(topology, false);
    MolTrajectoryMem trajectory(&molecule, 1);
    EXPECT_FALSE(MDLIO(nullptr, &second).writeMDLMolTrajectory(&trajectory, path.c_str()));
    McDArray<MolTrajectory*> bundle;
    for (int i = 0; i < 11; ++i) bundle.append(&trajectory);
    MDLIO io(nullptr, &third);
    EXPECT_FALSE(io.writeMDLMolTrajectoryBundle(bundle, path.c_str()));
    EXPECT_THAT(third.calls, ElementsAre("start ", "stop"));
    EXPECT_TRUE(io.writeMDLMolTrajectoryBundle(bundle, path.c_str())); // the interface is back
    EXPECT_EQ(third.questions, 4);
}

} // namespace
