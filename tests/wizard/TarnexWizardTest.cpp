#include "wizard/TarnexWizard.h"

#include "charmm/charmmSamples.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"

namespace {

using namespace tarnex::test;
using Wizard = TarnexWizard;

constexpr char const* groText = "t\n1\n    1HOH     OW    1   0.100   0.200   0.300\n";
constexpr char const* amberText = "title\n     1\n\n\nCT\n";

/// What is printed of a failure, once or more often. `task` is such as "read Molecule".
std::string told(std::string const& task, int type, std::string const& name, int times = 1) {
    std::string const loss = task == "read Bundle"       ? "loading Bundle"
                             : task == "write Bundle"    ? "saving Bundle"
                             : task == "read Trajectory" ? "saving Trajectory"
                                                         : "saving molecule";
    std::string const once =
        "Unable to " + task + " of type: " + std::to_string(type) + "\nNot " + loss + " to " + name;
    return once + "\n\n" + (times > 1 ? told(task, type, name, times - 1) : "");
}

std::unique_ptr<Molecule> readMolecule(std::string const& file) {
    return std::unique_ptr<Molecule>(Wizard::readMolecule(file.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
}

TEST(TarnexWizard, ReadingFailures) {
    struct Failure {
        char const* file;
        int type;
        int typeTold;
        int times = 1;
        char const* second = nullptr;
    };
    for (Failure const& f : {Failure{"no.sdf", 8, 3},
                             {"no.qlt", 7, 7},
                             {"a.SDF", 8, 8, 2},
                             {"df", 8, 8, 2},
                             {"x", 77, 77, 2},
                             {"no.pdb", 4, 4},
                             {"no.top", 8, 0},
                             {"no.gro", 2, 2},
                             {"no.mol2", 8, 5},
                             {"no.uni", 8, 6}}) {
        auto const type = static_cast<Wizard::ReadMolecules>(f.type);
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readMolecule(f.file, type, nullptr), nullptr); }),
                  told("read Molecule", f.typeTold, f.file, f.times));
    }
    for (Failure const& f : {Failure{"no.sdf", 9, 4},
                             {"no.qlt", 8, 8},
                             {"a.xyz", 9, 7},
                             {"a.dcd", 9, 1, 2},
                             {"a.b", 6, 6, 2},
                             {"no.vde", 9, 5},
                             {"no.top", 9, 0},
                             {"a.dcd", 1, 1, 2},
                             {"a.trr", 9, 2},
                             {"a.trr", 3, 3},
                             {"a.b", 9, 9},
                             {"no.crd", 0, 0, 1, "no.top"},
                             {"no.psf", 1, 1, 1, "no.dcd"}}) {
        auto const type = static_cast<Wizard::ReadTrajectories>(f.type);
        std::string const alsoTold = f.typeTold == 9 ? told("read Bundle", 9, f.file) : "";
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readMolTrajectory(f.file, type, f.second, nullptr), nullptr); }),
                  alsoTold + told("read Trajectory", f.typeTold, f.file, f.times));
    }
    for (Failure const& f : {Failure{"a.mol2", 4, 4}, {"a", 0, 0}, {"no.qlt", 4, 1, 0}}) {
        auto const type = static_cast<Wizard::ReadBundles>(f.type);
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readBundle(f.file, type).size, 0); }),
                  f.times > 0 ? told("read Bundle", f.typeTold, f.file) : "");
    }
}

TEST(TarnexWizard, MoleculesOfAllFormats) {
    using Writer = Wizard::WriteMolecules;
    auto const source = readMolecule(writeFile("a.gro", groText));
    ASSERT_TRUE(source);
    for (auto const& [output, type, input] : {std::tuple{"x", Writer::WRITE_GRO, "x.gro"},
                                              {"single", Writer::WRITE_GRO_SINGLE, "single.gro"},
                                              {"x.y.sdf", Writer::WRITE_MDL, "x.y.sdf"},
                                              {"x.pdb", Writer::WRITE_PDB, "x.pdb"},
                                              {"x.mol2", Writer::WRITE_TRIPOS, "x.mol2"},
                                              {"x.uni", Writer::WRITE_UNICHEM, "x.uni"},
                                              {"x.qlt", Writer::WRITE_QLT, "x.qlt"}}) {
        EXPECT_EQ(Wizard::writeMolecule(scratchPath(output).c_str(), source.get(), type), 1) << output;
        auto const molecule = readMolecule(scratchPath(input));
        ASSERT_TRUE(molecule) << input;
        EXPECT_EQ(molecule->refCount, 0);
        EXPECT_EQ(molecule->getTopology()->refCount, 1);
        EXPECT_EQ(placesOf(molecule->coords), "1,2,3") << input;
    }
    EXPECT_EQ(readFile(scratchPath("x.pdb")).find("MODEL"), std::string::npos);
    writeFile("a.crd", "restart\n    1\n         4.0         5.0         6.0\n");
    auto const amber = readMolecule(writeFile("a.top", amberText));
    ASSERT_TRUE(amber);
    EXPECT_EQ(placesOf(amber->coords), "4,5,6");
    // The second name alone chooses the format, but is not taken for the first.
    EXPECT_EQ(printed([&] {
                  auto const type = Wizard::ReadMolecules::READ_AUTO;
                  EXPECT_EQ(Wizard::readMolecule("no.x", type, scratchPath("a.gro").c_str()), nullptr);
              }),
              told("read Molecule", 1, "no.x"));
}

TEST(TarnexWizard, TrajectoriesOfAllFormats) {
    using Writer = Wizard::WriteTrajectories;
    using Reader = Wizard::ReadTrajectories;
    auto const molecule = readMolecule(writeFile("a.gro", groText));
    ASSERT_TRUE(molecule);
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
    writeFile("a.crd", "restart\n    1\n         4.0         5.0         6.0\n");
    writeFile("a.top", amberText);
    writeFile("a.mdcrd", "title\n   1.000   2.000   3.000\n");
    writeFile("run.psf", PsfText());
    writeFile("run.dcd", DcdBytes());
    struct {
        char const* first;
        int steps;
        char const* second = "none";
        char const* third = "none";
        Reader type = Reader::READ_AUTO;
    } const inputs[] = {{"x.trr", 2, "x.gro", "x.top"},
                        {"single.trr", 2, "single.gro", "single.top", Reader::READ_GRO_SINGLE},
                        {"x.sdf", 1},
                        {"x.vde", 2},
                        {"x.qlt", 2},
                        {"a.mdcrd", 2, "a.top"},
                        {"run.psf", 4, "run.dcd"}};
    for (auto const& [first, steps, second, third, type] : inputs) {
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
    auto const molecule = readMolecule(writeFile("a.gro", groText));
    ASSERT_TRUE(molecule);
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
                  type == Bundles(0) ? told("write Bundle", 0, path) : "");
    }
}

TEST(TarnexWizard, TestsItselfOverAllFormats) {
    EXPECT_EQ(velorpackage_tarnex(), 100); // 0.1.0
    std::string const folder = "/share/molecules/MolWizardTest/";
    if (std::filesystem::exists(folder)) GTEST_SKIP() << "sample files are there";
    std::string const reading = printed(TarnexWizard::readTestMolecule);
    for (char const* failure :
         {"AMBER Molecule: *AMBER.top", "GRO_SINGLE Molecule: *GRO_SINGLE.gro", "GRO Molecule: *GRO.gro",
          "MDL Molecule: *MDL.sdf", "PDB Molecule: *PDB.pdb", "TRIPOS Molecule: *TRIPOS.mol2",
          "UNICHEM Molecule: *UNICHEM.uni", "QLTMolecule: *QLT.qlt"}) {
        std::string line = std::string("error while reading ") + failure + "\n";
        EXPECT_THAT(reading, HasSubstr(line.replace(line.find('*'), 1, folder + "Load/Molecules/")));
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
