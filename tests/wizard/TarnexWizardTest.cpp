#include "wizard/TarnexWizard.h"

#include "charmm/charmmSamples.h"
#include "mdl/MDLIO.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/compareTopologies.h"

namespace {

using namespace tarnex::test;
using Wizard = TarnexWizard;
using Names = std::vector<std::string>;

std::string sdf(int molecules) {
    std::string text;
    for (int i = 0; i < molecules; ++i) {
        text += "\n\n\n  1  0  0  0  0  0  0  0  0  0999 V2000\n" + std::string(9, ' ') + std::to_string(i) +
                "         0         0 C\nM  END\n$$$$\n";
    }
    return text;
}

/// What is printed of a failure, once or more often. `task` is such as "read Molecule".
std::string told(std::string const& task, int type, std::string const& name, int times = 1) {
    std::string const loss = task == "read Bundle"       ? "loading Bundle"
                             : task == "write Bundle"    ? "saving Bundle"
                             : task == "read Trajectory" ? "saving Trajectory"
                                                         : "saving molecule";
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += "Unable to " + task + " of type: " + std::to_string(type) + "\nNot " + loss + " to " + name + "\n\n";
    }
    return text;
}

std::unique_ptr<Molecule> readMolecule(std::string const& file) {
    return std::unique_ptr<Molecule>(Wizard::readMolecule(file.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
}

McHandle<MolTrajectory> readTrajectory(std::string const& file, char const* second = nullptr) {
    return Wizard::readMolTrajectory(file.c_str(), Wizard::ReadTrajectories::READ_AUTO, second, nullptr);
}

struct Failure {
    char const* file;
    int type;
    int typeTold;
    int times = 1;
};

TEST(TarnexWizard, ReadingFailures) {
    Failure const molecules[] = {{"no.sdf", 8, 3},  {"no.qlt", 7, 7}, {"a.SDF", 8, 8, 2}, {"df", 8, 8, 2},
                                 {"x", 77, 77, 2},  {"no.pdb", 4, 4}, {"no.top", 8, 0},   {"no.gro", 2, 2},
                                 {"no.mol2", 8, 5}, {"no.uni", 8, 6}};
    for (Failure const& f : molecules) {
        auto const type = static_cast<Wizard::ReadMolecules>(f.type);
        EXPECT_EQ(printed([&] { EXPECT_EQ(Wizard::readMolecule(f.file, type, nullptr), nullptr); }),
                  told("read Molecule", f.typeTold, f.file, f.times));
    }
    auto const trajectoryPrints = [](char const* file, int type, char const* second = nullptr) {
        return printed([&] {
            auto const selector = static_cast<Wizard::ReadTrajectories>(type);
            EXPECT_EQ(Wizard::readMolTrajectory(file, selector, second, nullptr), nullptr);
        });
    };
    Failure const trajectories[] = {{"no.sdf", 9, 4}, {"no.qlt", 8, 8}, {"a.xyz", 9, 7},  {"a.dcd", 9, 1, 2},
                                    {"a.b", 6, 6, 2}, {"no.vde", 9, 5}, {"no.top", 9, 0}, {"a.dcd", 1, 1, 2},
                                    {"a.trr", 9, 2},  {"a.trr", 3, 3}};
    for (Failure const& f : trajectories) {
        EXPECT_EQ(trajectoryPrints(f.file, f.type), told("read Trajectory", f.typeTold, f.file, f.times));
    }
    EXPECT_EQ(trajectoryPrints("a.b", 9), told("read Bundle", 9, "a.b") + told("read Trajectory", 9, "a.b"));
    EXPECT_EQ(trajectoryPrints("no.crd", 0, "no.top"), told("read Trajectory", 0, "no.crd"));
    EXPECT_EQ(trajectoryPrints("no.psf", 1, "no.dcd"), told("read Trajectory", 1, "no.psf"));

    for (auto const& [file, type, prints] : {std::tuple{"a.mol2", 4, told("read Bundle", 4, "a.mol2")},
                                             {"a", 0, told("read Bundle", 0, "a")},
                                             {"no.qlt", 4, ""}}) {
        auto const selector = static_cast<Wizard::ReadBundles>(type);
        EXPECT_EQ(printed([&, name = file] { EXPECT_EQ(Wizard::readBundle(name, selector).size, 0); }), prints);
    }
}

TEST(TarnexWizard, ReadsByExtensionAndKeepsTheResultAlive) {
    std::string const sdfFile = writeFile("three.x.sdf", sdf(3));
    std::string const qltFile = scratchPath("three.qlt");
    auto const first = readMolecule(sdfFile);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->refCount, 0);
    EXPECT_EQ(first->getTopology()->refCount, 1);
    EXPECT_EQ(first->coords[0].x, 0.0F);
    auto const records = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(sdfFile.c_str());
    ASSERT_TRUE(tarnex::writeQltBundle(records, qltFile.c_str()));
    EXPECT_EQ(Wizard::readBundle(qltFile.c_str(), Wizard::ReadBundles::READ_AUTO).size, 3);
    auto const same = readMolecule(qltFile);
    ASSERT_TRUE(same);
    EXPECT_EQ(compareTopologies(*first->getTopology(), *same->getTopology()), "");
    for (std::string const& file : {sdfFile, qltFile}) {
        auto* trajectory =
            Wizard::readMolTrajectory(file.c_str(), Wizard::ReadTrajectories::READ_AUTO, nullptr, nullptr);
        ASSERT_TRUE(trajectory);
        EXPECT_EQ(trajectory->refCount, 0);
        EXPECT_EQ(placesOf(McHandle<MolTrajectory>(trajectory), 0), "0,0,0");
    }
}

TEST(TarnexWizard, Pdb) {
    std::string const line = "HETATM    1 FE   HEM A   1       1.000   2.000   3.000  1.00 10.00          FE\n";
    std::string const file = writeFile("models.pdb", "MODEL 1\n" + line + "MODEL 2\n" + line);
    auto const bundle = Wizard::readBundle(file.c_str(), Wizard::ReadBundles::READ_AUTO);
    ASSERT_EQ(bundle.size, 1);
    auto const molecule = readMolecule(file);
    ASSERT_TRUE(molecule);
    EXPECT_EQ(placesOf(molecule->coords), "1,2,3");
    // Files of this extension go to the PDB reader; the steps are in memory.
    auto const trajectory = readTrajectory(writeFile("models.vde", readFile(file)));
    ASSERT_TRUE(trajectory);
    EXPECT_EQ(trajectory->getNumTimeSteps(), 2);
    EXPECT_TRUE(dynamic_cast<MolTrajectoryMem*>(static_cast<MolTrajectory*>(trajectory)));

    std::string const out = scratchPath("out.pdb");
    EXPECT_NE(Wizard::writeMolecule(out.c_str(), molecule.get(), Wizard::WriteMolecules::WRITE_PDB), 0);
    EXPECT_EQ(readFile(out).find("MODEL"), std::string::npos);
    EXPECT_NE(Wizard::writeMolTrajectory(out.c_str(), trajectory, Wizard::WriteTrajectories::WRITE_PDB), 0);
    EXPECT_NE(readFile(out).find("MODEL 1"), std::string::npos);
    EXPECT_NE(Wizard::writeBundle(out.c_str(), bundle, Wizard::WriteBundles::WRITE_PDB), 0);
}

TEST(TarnexWizard, TrajectoriesWithASecondFile) {
    std::string const topology = writeFile("a.top", "title\n     1\n\n\nCT\n");
    writeFile("a.crd", "restart\n    1\n         4.0         5.0         6.0\n");
    auto const molecule = readMolecule(topology);
    ASSERT_TRUE(molecule);
    EXPECT_EQ(placesOf(molecule->coords), "4,5,6");
    auto const amber = readTrajectory(writeFile("a.mdcrd", "title\n   1.000   2.000   3.000\n"), topology.c_str());
    ASSERT_TRUE(amber);
    EXPECT_EQ(amber->refCount, 1);
    EXPECT_EQ(amber->getNumTimeSteps(), 2);
    EXPECT_EQ(placesOf(amber, 1), "1,2,3");
    auto const dcd = readTrajectory(writeFile("run.psf", PsfText()), writeFile("run.dcd", DcdBytes()).c_str());
    ASSERT_TRUE(dcd);
    EXPECT_EQ(dcd->getNumTimeSteps(), 4);
}

TEST(TarnexWizard, Gromacs) {
    std::string const gro = writeFile("a.gro", "t\n1\n    1HOH     OW    1   0.100   0.200   0.300\n");
    std::string const out = scratchPath("out");
    auto const molecule = readMolecule(gro);
    ASSERT_TRUE(molecule);
    EXPECT_EQ(placesOf(molecule->coords), "1,2,3");
    // The second name alone chooses the format, but is not taken for the first.
    EXPECT_EQ(printed([&] {
                  auto const type = Wizard::ReadMolecules::READ_AUTO;
                  EXPECT_EQ(Wizard::readMolecule("no.x", type, gro.c_str()), nullptr);
              }),
              told("read Molecule", 1, "no.x"));

    MolTrajectoryMem trajectory(molecule.get(), 1);
    struct {
        Wizard::WriteMolecules moleculeWriter;
        Wizard::WriteTrajectories writer;
        Wizard::ReadTrajectories reader;
        std::uintmax_t bytes;
    } const precisions[] = {{Wizard::WriteMolecules::WRITE_GRO, Wizard::WriteTrajectories::WRITE_GRO,
                             Wizard::ReadTrajectories::READ_AUTO, 188},
                            {Wizard::WriteMolecules::WRITE_GRO_SINGLE, Wizard::WriteTrajectories::WRITE_GRO_SINGLE,
                             Wizard::ReadTrajectories::READ_GRO_SINGLE, 132}};
    for (auto const& p : precisions) {
        EXPECT_EQ(Wizard::writeMolecule(out.c_str(), molecule.get(), p.moleculeWriter), 1);
        EXPECT_EQ(Wizard::writeMolTrajectory(out.c_str(), &trajectory, p.writer), 1);
        EXPECT_EQ(std::filesystem::file_size(out + ".trr"), p.bytes);
        McHandle<MolTrajectory> const read(Wizard::readMolTrajectory((out + ".trr").c_str(), p.reader,
                                                                     (out + ".gro").c_str(), (out + ".top").c_str()));
        ASSERT_TRUE(read);
        EXPECT_EQ(read->getNumTimeSteps(), 1);
    }
    // Only 0 of the writers counts as failure.
    EXPECT_EQ(printed([&] { Wizard::writeMolTrajectory("/no/x", &trajectory, Wizard::WriteTrajectories::WRITE_GRO); }),
              "");
    EXPECT_EQ(printed([&] { Wizard::writeMolecule("/no/x", molecule.get(), Wizard::WriteMolecules::WRITE_GRO); }),
              told("write Molecule", 0, "/no/x"));
}

TEST(TarnexWizard, Tripos) {
    std::string const mol2 = scratchPath("two.mol2");
    auto bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(writeFile("two.sdf", sdf(2)).c_str());
    bundle.append(nullptr);
    EXPECT_NE(Wizard::writeBundle(mol2.c_str(), bundle, Wizard::WriteBundles::WRITE_TRIPOS), 0);
    EXPECT_EQ(Wizard::readBundle(mol2.c_str(), Wizard::ReadBundles::READ_TRIPOS).size, 2);
    EXPECT_EQ(Wizard::writeBundle("/no/x", bundle, Wizard::WriteBundles::WRITE_TRIPOS), 0);
    auto const first = readMolecule(mol2);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->refCount, 0);
    EXPECT_NE(Wizard::writeMolecule(mol2.c_str(), first.get(), Wizard::WriteMolecules::WRITE_TRIPOS), 0);
    EXPECT_EQ(Wizard::readBundle(mol2.c_str(), Wizard::ReadBundles::READ_TRIPOS).size, 1);
}

TEST(TarnexWizard, Writing) {
    Molecule molecule(newTopology(1), true);
    MolTrajectoryMem trajectory(&molecule, 1);
    std::string const sdfFile = scratchPath("out.sdf"), qltFile = scratchPath("out.qlt");
    EXPECT_NE(Wizard::writeMolecule(sdfFile.c_str(), &molecule, Wizard::WriteMolecules::WRITE_MDL), 0);
    EXPECT_NE(Wizard::writeMolecule(qltFile.c_str(), &molecule, Wizard::WriteMolecules::WRITE_QLT), 0);
    EXPECT_NE(Wizard::writeMolTrajectory(sdfFile.c_str(), &trajectory, Wizard::WriteTrajectories::WRITE_MDL), 0);
    EXPECT_NE(Wizard::writeMolTrajectory(qltFile.c_str(), &trajectory, Wizard::WriteTrajectories::WRITE_QLT), 0);
    EXPECT_NE(readFile(sdfFile).find("V2000"), std::string::npos);

    auto const prints = [](auto write) { return printed([&] { EXPECT_EQ(write(), 0); }); };
    EXPECT_EQ(prints([] { return Wizard::writeMolecule("/no/x", nullptr, Wizard::WriteMolecules::WRITE_MDL); }),
              told("write Molecule", 2, "/no/x"));
    EXPECT_EQ(prints([&] { return Wizard::writeMolecule("x", &molecule, static_cast<Wizard::WriteMolecules>(9)); }),
              told("write Molecule", 9, "x", 2));
    EXPECT_EQ(
        prints([&] { return Wizard::writeMolTrajectory("/no/x", &trajectory, Wizard::WriteTrajectories::WRITE_MDL); }),
        told("write MolTrajectory", 2, "/no/x"));
    EXPECT_EQ(prints([] { return Wizard::writeBundle("x", {}, Wizard::WriteBundles::WRITE_QLT); }), "");
    EXPECT_EQ(prints([] { return Wizard::writeBundle("x", {}, static_cast<Wizard::WriteBundles>(0)); }),
              told("write Bundle", 0, "x"));
}

/// The lines that begin with `start`, each once, without it.
Names linesBehind(std::string const& start, std::string const& text) {
    Names lines;
    for (std::size_t at = text.find(start); at != std::string::npos; at = text.find(start, at + 1)) {
        std::size_t const begin = at + start.size();
        std::string const line = text.substr(begin, text.find('\n', begin) - begin);
        if (lines.empty() || lines.back() != line) lines.push_back(line);
    }
    return lines;
}

TEST(TarnexWizard, TestsItselfOverAllFormats) {
    EXPECT_EQ(velorpackage_tarnex(), 100); // 0.1.0
    if (std::filesystem::exists("/share/molecules/MolWizardTest")) GTEST_SKIP() << "sample files are there";
    std::string const load = "/share/molecules/MolWizardTest/Load/Molecules/";
    EXPECT_EQ(linesBehind("error while reading ", printed(TarnexWizard::readTestMolecule)),
              (Names{"AMBER Molecule: " + load + "AMBER.top", "GRO_SINGLE Molecule: " + load + "GRO_SINGLE.gro",
                     "GRO Molecule: " + load + "GRO.gro", "MDL Molecule: " + load + "MDL.sdf",
                     "PDB Molecule: " + load + "PDB.pdb", "TRIPOS Molecule: " + load + "TRIPOS.mol2",
                     "UNICHEM Molecule: " + load + "UNICHEM.uni", "QLTMolecule: " + load + "QLT.qlt"}));
    Molecule molecule(new MolTopology, true);
    MolTrajectoryMem trajectory(&molecule, 1);
    std::string const notSaved = "Not saving molecule to /share/molecules/MolWizardTest/Save/";
    EXPECT_EQ(linesBehind(notSaved, printed([&] { TarnexWizard::writeTestMolecule(&molecule); })),
              (Names{"Molecules/GRO_SINGLE", "Molecules/GRO", "Molecules/MDL.sdf", "Molecules/PDB.pdb",
                     "Molecules/TRIPOS.mol2", "Molecules/UNI.uni"}));
    // A failure of the GROMACS writers is -1, which is none to the wizard.
    EXPECT_EQ(linesBehind(notSaved, printed([&] { TarnexWizard::writeTestMolTrajectory(&trajectory); })),
              (Names{"MolTrajectories/MDL.sdf", "MolTrajectories/PDB.pdb"}));
    EXPECT_EQ(printed(TarnexWizard::readTestMolTrajectory), "");
}

} // namespace
