#include "wizard/TarnexWizard.h"

#include "charmm/charmmSamples.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"

namespace {

using namespace tarnex::test;
using Wizard = TarnexWizard;

/// What is printed of a failure, as often as it is told. `task` is such as "read Molecule".
std::string told(std::string const& task, int type, std::string const& name, int times = 1) {
    std::string const loss = task == "read Bundle"       ? "loading Bundle"
                             : task == "write Bundle"    ? "saving Bundle"
                             : task == "read Trajectory" ? "saving Trajectory"
                                                         : "saving molecule";
    return joined(times, "", [&](int) {
        return "Unable to " + task + " of type: " + std::to_string(type) + "\nNot " + loss + " to " + name + "\n\n";
    });
}

std::unique_ptr<Molecule> readMolecule(std::string const& file) {
    return std::unique_ptr<Molecule>(Wizard::readMolecule(file.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
}

std::unique_ptr<Molecule> readGro() {
    return readMolecule(writeFile("a.gro", "t\n1\n    1HOH     OW    1   0.100   0.200   0.300\n"));
}

/// Writes "a.top" and its coordinates.
void writeAmber() {
    writeFile("a.top", "title\n     1\n\n\nCT\n");
    writeFile("a.crd", "restart\n    1\n         4.0         5.0         6.0\n");
}

TEST(TarnexWizard, ReadingFailures) {
    std::string name, second;
    int type = 0, typeTold = 0, times = 0;
    // The name, the type that is asked for, the one that is told, and how often.
    std::istringstream molecules(R"(
        no.sdf  8  3  1
        no.qlt  7  7  1
        a.SDF   8  8  2
        df      8  8  2
        x       77 77 2
        no.pdb  4  4  1
        no.top  8  0  1
        no.gro  2  2  1
        no.mol2 8  5  1
        no.uni  8  6  1)");
    while (molecules >> name >> type >> typeTold >> times) {
        auto const asked = static_cast<Wizard::ReadMolecules>(type);
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readMolecule(name.c_str(), asked, nullptr), nullptr); }),
                  told("read Molecule", typeTold, name, times));
    }
    std::istringstream trajectories(R"(
        no.sdf -      9 4 1
        no.qlt -      8 8 1
        a.xyz  -      9 7 1
        a.dcd  -      9 1 2
        a.b    -      6 6 2
        no.vde -      9 5 1
        no.top -      9 0 1
        a.dcd  -      1 1 2
        a.trr  -      9 2 1
        a.trr  -      3 3 1
        a.b    -      9 9 1
        no.crd no.top 0 0 1
        no.psf no.dcd 1 1 1)");
    while (trajectories >> name >> second >> type >> typeTold >> times) {
        auto const asked = static_cast<Wizard::ReadTrajectories>(type);
        char const* other = second == "-" ? nullptr : second.c_str();
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readMolTrajectory(name.c_str(), asked, other, nullptr), nullptr); }),
                  (typeTold == 9 ? told("read Bundle", 9, name) : "") + told("read Trajectory", typeTold, name, times));
    }
    std::istringstream bundles(R"(
        a.mol2 4 4 1
        a      0 0 1
        no.qlt 4 1 0)");
    while (bundles >> name >> type >> typeTold >> times) {
        auto const asked = static_cast<Wizard::ReadBundles>(type);
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readBundle(name.c_str(), asked).size, 0); }),
                  told("read Bundle", typeTold, name, times));
    }
}

TEST(TarnexWizard, MoleculesOfAllFormats) {
    using Writer = Wizard::WriteMolecules;
    auto const source = readGro();
    ASSERT_TRUE(source);
    for (auto const& [name, type] : {std::pair<std::string, Writer>{"x", Writer::WRITE_GRO},
                                     {"single", Writer::WRITE_GRO_SINGLE},
                                     {"x.y.sdf", Writer::WRITE_MDL},
                                     {"x.pdb", Writer::WRITE_PDB},
                                     {"x.mol2", Writer::WRITE_TRIPOS},
                                     {"x.uni", Writer::WRITE_UNICHEM},
                                     {"x.qlt", Writer::WRITE_QLT}}) {
        EXPECT_EQ(Wizard::writeMolecule(scratchPath(name).c_str(), source.get(), type), 1) << name;
        auto const molecule = readMolecule(scratchPath(name.find('.') < name.size() ? name : name + ".gro"));
        ASSERT_TRUE(molecule) << name;
        EXPECT_EQ(molecule->refCount, 0);
        EXPECT_EQ(molecule->getTopology()->refCount, 1);
        EXPECT_EQ(placesOf(molecule->coords), "1,2,3") << name;
    }
    EXPECT_EQ(readFile(scratchPath("x.pdb")).find("MODEL"), std::string::npos);
    writeAmber();
    auto const amber = readMolecule(scratchPath("a.top"));
    ASSERT_TRUE(amber);
    EXPECT_EQ(placesOf(amber->coords), "4,5,6");
    // The second name alone chooses the format, but is not taken for the first.
    auto const type = Wizard::ReadMolecules::READ_AUTO;
    std::string const gro = scratchPath("a.gro");
    EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readMolecule("no.x", type, gro.c_str()), nullptr); }),
              told("read Molecule", 1, "no.x"));
}

TEST(TarnexWizard, TrajectoriesOfAllFormats) {
    using Writer = Wizard::WriteTrajectories;
    using Reader = Wizard::ReadTrajectories;
    auto const molecule = readGro();
    MolTrajectoryMem source(molecule.get(), 2);
    for (auto const& [output, type] : {std::pair{"x", Writer::WRITE_GRO},
                                       {"single", Writer::WRITE_GRO_SINGLE},
                                       {"x.sdf", Writer::WRITE_MDL},
                                       {"x.vde", Writer::WRITE_PDB},
                                       {"x.qlt", Writer::WRITE_QLT}}) {
        EXPECT_EQ(Wizard::writeMolTrajectory(scratchPath(output).c_str(), &source, type), 1) << output;
    }
    EXPECT_NE(readFile(scratchPath("x.vde")).find("MODEL 1"), std::string::npos)
        << "the PDB writer and reader serve it";
    EXPECT_EQ(std::filesystem::file_size(scratchPath("x.trr")), 376U);
    EXPECT_EQ(std::filesystem::file_size(scratchPath("single.trr")), 264U);
    writeAmber();
    writeFile("a.mdcrd", "title\n   1.000   2.000   3.000\n");
    writeFile("run.psf", PsfText());
    writeFile("run.dcd", DcdBytes());
    std::istringstream inputs(R"(
        x.trr      x.gro      x.top      2
        single.trr single.gro single.top 2
        x.sdf      -          -          1
        x.vde      -          -          2
        x.qlt      -          -          2
        a.mdcrd    a.top      -          2
        run.psf    run.dcd    -          4)");
    std::string first, second, third;
    for (int steps = 0; inputs >> first >> second >> third >> steps;) {
        auto const type = first == "single.trr" ? Reader::READ_GRO_SINGLE : Reader::READ_AUTO;
        auto* trajectory = Wizard::readMolTrajectory(scratchPath(first).c_str(), type, scratchPath(second).c_str(),
                                                     scratchPath(third).c_str());
        ASSERT_TRUE(trajectory) << first;
        EXPECT_EQ(trajectory->refCount, 0) << first;
        McHandle<MolTrajectory> const holder(trajectory);
        EXPECT_EQ(trajectory->getNumTimeSteps(), steps) << first;
        if (steps < 4) EXPECT_EQ(placesOf(trajectory, steps - 1), "1,2,3") << first;
    }
}

TEST(TarnexWizard, Bundles) {
    auto const molecule = readGro();
    Bundle bundle;
    for (int i = 0; i < 2; ++i) bundle.append(new MolTrajectoryMem(molecule.get(), 1));
    ASSERT_TRUE(tarnex::writeQltBundle(bundle, scratchPath("x.qlt").c_str()));
    bundle.append(nullptr);
    std::string const mol2 = scratchPath("x.mol2"), pdb = scratchPath("x.pdb");
    EXPECT_EQ(Wizard::writeBundle(mol2.c_str(), bundle, Wizard::WriteBundles::WRITE_TRIPOS), 1);
    EXPECT_EQ(Wizard::writeBundle(pdb.c_str(), bundle, Wizard::WriteBundles::WRITE_PDB), 1);
    EXPECT_EQ(Wizard::readBundle(mol2.c_str(), Wizard::ReadBundles::READ_TRIPOS).size, 2);
    EXPECT_EQ(Wizard::readBundle(pdb.c_str(), Wizard::ReadBundles::READ_AUTO).size, 1) << "the first one only";
    EXPECT_EQ(Wizard::readBundle(scratchPath("x.qlt").c_str(), Wizard::ReadBundles::READ_AUTO).size, 2);
}

TEST(TarnexWizard, WritingFailures) {
    Molecule molecule(newTopology(1), true);
    MolTrajectoryMem trajectory(&molecule, 1);
    char const* const path = "/no/x";
    for (int type : {0, 2, 9}) {
        auto const selector = static_cast<Wizard::WriteMolecules>(type);
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::writeMolecule(path, &molecule, selector), 0); }),
                  told("write Molecule", type, path, type == 9 ? 2 : 1));
    }
    for (int type : {0, 2}) { // the -1 of the GROMACS writers is no failure
        auto const selector = static_cast<Wizard::WriteTrajectories>(type);
        EXPECT_EQ(printed([&] { Wizard::writeMolTrajectory(path, &trajectory, selector); }),
                  type == 0 ? "" : told("write MolTrajectory", type, path));
    }
    using Bundles = Wizard::WriteBundles;
    for (auto type : {Bundles(0), Bundles::WRITE_QLT, Bundles::WRITE_TRIPOS}) {
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::writeBundle(path, {}, type), 0); }),
                  told("write Bundle", 0, path, type == Bundles(0)));
    }
}

TEST(TarnexWizard, TestsItselfOverAllFormats) {
    EXPECT_EQ(velorpackage_tarnex(), 100); // 0.1.0
    std::string const folder = "/share/molecules/MolWizardTest/";
    if (std::filesystem::exists(folder)) GTEST_SKIP() << "sample files are there";
    std::string const reading = printed(TarnexWizard::readTestMolecule);
    std::istringstream loaded("AMBER.top GRO_SINGLE.gro GRO.gro MDL.sdf PDB.pdb TRIPOS.mol2 UNICHEM.uni QLT.qlt");
    for (std::string name; loaded >> name;) {
        std::string const kind = name.substr(0, name.find('.')) + (name == "QLT.qlt" ? "" : " ");
        EXPECT_THAT(reading, HasSubstr("reading " + kind + "Molecule: " + folder + "Load/Molecules/" + name + "\n\n"));
    }
    Molecule molecule(new MolTopology, true);
    std::string const writing = printed([&] { TarnexWizard::writeTestMolecule(&molecule); });
    for (char const* name : {"GRO_SINGLE", "GRO", "MDL.sdf", "PDB.pdb", "TRIPOS.mol2", "UNI.uni"}) {
        EXPECT_THAT(writing, HasSubstr("Not saving molecule to " + folder + "Save/Molecules/" + name + "\n"));
    }
    MolTrajectoryMem trajectory(&molecule, 1);
    EXPECT_EQ(printed([&] { TarnexWizard::writeTestMolTrajectory(&trajectory); }),
              told("write MolTrajectory", 2, folder + "Save/MolTrajectories/MDL.sdf") +
                  told("write MolTrajectory", 3, folder + "Save/MolTrajectories/PDB.pdb"));
    EXPECT_EQ(printed(TarnexWizard::readTestMolTrajectory), "");
}

} // namespace
