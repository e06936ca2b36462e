#include "wizard/TarnexWizard.h"

#include "charmm/charmmSamples.h"
#include "mdl/MDLIO.h"
#include "model/MolTrajectoryMem.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/compareTopologies.h"
#include "support/files.h"
#include "support/printed.h"

#include <gtest/gtest.h>
#include <memory>

namespace {

using namespace tarnex::test;
using Wizard = TarnexWizard;

std::string sdf(int molecules) {
    std::string text;
    for (int i = 0; i < molecules; ++i) {
        text += "\n\n\n  1  0  0  0  0  0  0  0  0  0999 V2000\n" + std::string(9, ' ') + std::to_string(i) +
                "         0         0 C\nM  END\n$$$$\n";
    }
    return text;
}

std::string filled(std::string text, int value, std::string const& name) {
    text.replace(text.find("%d"), 2, std::to_string(value));
    return text.replace(text.find("%s"), 2, name);
}

std::string moleculeMessage(int value, std::string const& name, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += filled("Unable to read Molecule of type: %d\nNot saving molecule to %s\n\n", value, name);
    }
    return text;
}

std::string trajectoryMessage(int value, std::string const& name, int times) {
    std::string text;
    for (int i = 0; i < times; ++i) {
        text += filled("Unable to read Trajectory of type: %d\nNot saving Trajectory to %s\n\n", value, name);
    }
    return text;
}

std::string bundleMessage(int value, std::string const& name) {
    return filled("Unable to read Bundle of type: %d\nNot loading Bundle to %s\n\n", value, name);
}

std::string readMoleculePrints(char const* name, int type) {
    return printed(
        [&] { EXPECT_EQ(Wizard::readMolecule(name, static_cast<Wizard::ReadMolecules>(type), nullptr), nullptr); });
}

std::string readTrajectoryPrints(char const* name, int type) {
    return printed([&] {
        auto const selector = static_cast<Wizard::ReadTrajectories>(type);
        EXPECT_EQ(Wizard::readMolTrajectory(name, selector, nullptr, nullptr), nullptr);
    });
}

TEST(TarnexWizard, ReadsByExtensionAndKeepsTheResultAlive) {
    std::string const sdfFile = writeFile("three.x.sdf", sdf(3));
    std::string const qltFile = scratchPath("three.qlt");
    std::unique_ptr<Molecule> const first(
        Wizard::readMolecule(sdfFile.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
    ASSERT_TRUE(first);
    EXPECT_EQ(first->refCount, 0);
    EXPECT_EQ(first->getTopology()->refCount, 1);
    EXPECT_EQ(first->coords[0].x, 0.0F);

    auto const records = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(sdfFile.c_str());
    ASSERT_TRUE(tarnex::writeQltBundle(records, qltFile.c_str()));
    EXPECT_EQ(Wizard::readBundle(qltFile.c_str(), Wizard::ReadBundles::READ_AUTO).size, 3);
    std::unique_ptr<Molecule> const same(
        Wizard::readMolecule(qltFile.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
    ASSERT_TRUE(same);
    EXPECT_EQ(compareTopologies(*first->getTopology(), *same->getTopology()), "");

    for (std::string const& file : {sdfFile, qltFile}) {
        auto* trajectory =
            Wizard::readMolTrajectory(file.c_str(), Wizard::ReadTrajectories::READ_AUTO, nullptr, nullptr);
        ASSERT_TRUE(trajectory);
        EXPECT_EQ(trajectory->refCount, 0);
        McHandle<MolTrajectory> const held(trajectory);
        Molecule molecule(trajectory->getTopology(), false);
        EXPECT_TRUE(trajectory->getTimeStep(0, &molecule));
        EXPECT_EQ(molecule.getNumAtoms(), 1);
    }
}

TEST(TarnexWizard, Pdb) {
    std::string const line = "HETATM    1 FE   HEM A   1       1.000   2.000   3.000  1.00 10.00          FE\n";
    std::string const file = writeFile("models.pdb", "MODEL 1\n" + line + "MODEL 2\n" + line);
    std::string const vdeFile = writeFile("models.vde", "MODEL 1\n" + line + "MODEL 2\n" + line);
    auto const bundle = Wizard::readBundle(file.c_str(), Wizard::ReadBundles::READ_AUTO);
    ASSERT_EQ(bundle.size, 1);
    std::unique_ptr<Molecule> const molecule(
        Wizard::readMolecule(file.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
    ASSERT_TRUE(molecule);
    EXPECT_EQ(molecule->coords[0], McVec3f(1.0F, 2.0F, 3.0F));
    // Files of this extension go to the PDB reader; the steps are in memory.
    McHandle<MolTrajectory> const trajectory(
        Wizard::readMolTrajectory(vdeFile.c_str(), Wizard::ReadTrajectories::READ_AUTO, nullptr, nullptr));
    ASSERT_TRUE(trajectory);
    EXPECT_EQ(trajectory->getNumTimeSteps(), 2);
    EXPECT_TRUE(dynamic_cast<MolTrajectoryMem*>(static_cast<MolTrajectory*>(trajectory)));

    std::string const out = scratchPath("out.pdb");
    EXPECT_NE(Wizard::writeMolecule(out.c_str(), molecule.get(), Wizard::WriteMolecules::WRITE_PDB), 0);
    EXPECT_EQ(readFile(out).find("MODEL"), std::string::npos);
    EXPECT_NE(Wizard::writeMolTrajectory(out.c_str(), trajectory, Wizard::WriteTrajectories::WRITE_PDB), 0);
    EXPECT_NE(readFile(out).find("MODEL 1"), std::string::npos);
    EXPECT_NE(Wizard::writeBundle(out.c_str(), bundle, Wizard::WriteBundles::WRITE_PDB), 0);
    EXPECT_EQ(readMoleculePrints("no.pdb", 4), moleculeMessage(4, "no.pdb", 1));
    EXPECT_EQ(readTrajectoryPrints("no.vde", 9), trajectoryMessage(5, "no.vde", 1));
}

TEST(TarnexWizard, Amber) {
    std::string const topology = writeFile("a.top", "title\n     1\n\n\nCT\n");
    std::string const frames = writeFile("a.mdcrd", "title\n   1.000   2.000   3.000\n");
    writeFile("a.crd", "restart\n    1\n         4.0         5.0         6.0\n");
    std::unique_ptr<Molecule> const molecule(
        Wizard::readMolecule(topology.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
    ASSERT_TRUE(molecule);
    EXPECT_EQ(molecule->coords[0], McVec3f(4.0F, 5.0F, 6.0F));
    McHandle<MolTrajectory> const trajectory(
        Wizard::readMolTrajectory(frames.c_str(), Wizard::ReadTrajectories::READ_AUTO, topology.c_str(), nullptr));
    ASSERT_TRUE(trajectory);
    EXPECT_EQ(trajectory->refCount, 1);
    EXPECT_EQ(trajectory->getNumTimeSteps(), 2);
    EXPECT_TRUE(trajectory->getTimeStep(1, molecule.get()));
    EXPECT_EQ(molecule->coords[0], McVec3f(1.0F, 2.0F, 3.0F));

    EXPECT_EQ(readMoleculePrints("no.top", 8), moleculeMessage(0, "no.top", 1));
    EXPECT_EQ(readTrajectoryPrints("no.top", 9), trajectoryMessage(0, "no.top", 1)); // without a second name
    EXPECT_EQ(printed([] {
                  auto const type = Wizard::ReadTrajectories::READ_AMBER;
                  EXPECT_EQ(Wizard::readMolTrajectory("no.crd", type, "no.top", nullptr), nullptr);
              }),
              trajectoryMessage(0, "no.crd", 1));
}

TEST(TarnexWizard, Dcd) {
    std::string const psf = writeFile("run.psf", PsfText());
    std::string const dcd = writeFile("run.dcd", DcdBytes());
    McHandle<MolTrajectory> const trajectory(
        Wizard::readMolTrajectory(psf.c_str(), Wizard::ReadTrajectories::READ_AUTO, dcd.c_str(), nullptr));
    ASSERT_TRUE(trajectory);
    EXPECT_EQ(trajectory->getNumTimeSteps(), 4);
    EXPECT_EQ(readTrajectoryPrints("a.dcd", 1), trajectoryMessage(1, "a.dcd", 2));
    EXPECT_EQ(printed([] {
                  EXPECT_EQ(Wizard::readMolTrajectory("no.psf", Wizard::ReadTrajectories::READ_DCD, "no.dcd", nullptr),
                            nullptr);
              }),
              trajectoryMessage(1, "no.psf", 1));
}

TEST(TarnexWizard, Gromacs) {
    std::string const atom = "    1HOH     OW    1   0.100   0.200   0.300\n";
    std::string const gro = writeFile("a.gro", "t\n1\n" + atom);
    std::string const out = scratchPath("out");
    std::unique_ptr<Molecule> const molecule(
        Wizard::readMolecule(gro.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
    ASSERT_TRUE(molecule);
    EXPECT_EQ(molecule->coords[0], McVec3f(1.0F, 2.0F, 3.0F));
    // The second name alone chooses the format, but is not taken for the first.
    EXPECT_EQ(printed([&] {
                  auto const type = Wizard::ReadMolecules::READ_AUTO;
                  EXPECT_EQ(Wizard::readMolecule("no.x", type, gro.c_str()), nullptr);
              }),
              moleculeMessage(1, "no.x", 1));
    EXPECT_EQ(readMoleculePrints("no.gro", 2), moleculeMessage(2, "no.gro", 1));

    MolTrajectoryMem trajectory(molecule.get(), 1);
    struct Precision {
        Wizard::WriteMolecules moleculeWriter;
        Wizard::WriteTrajectories writer;
        Wizard::ReadTrajectories reader;
        std::uintmax_t bytes;
    };
    for (Precision const& p :
         {Precision{Wizard::WriteMolecules::WRITE_GRO, Wizard::WriteTrajectories::WRITE_GRO,
                    Wizard::ReadTrajectories::READ_AUTO, 188},
          Precision{Wizard::WriteMolecules::WRITE_GRO_SINGLE, Wizard::WriteTrajectories::WRITE_GRO_SINGLE,
                    Wizard::ReadTrajectories::READ_GRO_SINGLE, 132}}) {
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
              filled("Unable to write Molecule of type: %d\nNot saving molecule to %s\n\n", 0, "/no/x"));
    EXPECT_EQ(readTrajectoryPrints("a.trr", 9), trajectoryMessage(2, "a.trr", 1));
    EXPECT_EQ(readTrajectoryPrints("a.trr", 3), trajectoryMessage(3, "a.trr", 1));
}

TEST(TarnexWizard, TriposAndUniChem) {
    std::string const sdfFile = writeFile("two.sdf", sdf(2));
    std::string const mol2 = scratchPath("two.mol2");
    std::string const uni = scratchPath("one.uni");
    auto bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(sdfFile.c_str());
    bundle.append(nullptr);
    EXPECT_NE(Wizard::writeBundle(mol2.c_str(), bundle, Wizard::WriteBundles::WRITE_TRIPOS), 0);
    EXPECT_EQ(Wizard::readBundle(mol2.c_str(), Wizard::ReadBundles::READ_TRIPOS).size, 2);
    EXPECT_EQ(Wizard::writeBundle("/no/x", bundle, Wizard::WriteBundles::WRITE_TRIPOS), 0);

    auto const read = [](std::string const& file) {
        return std::unique_ptr<Molecule>(Wizard::readMolecule(file.c_str(), Wizard::ReadMolecules::READ_AUTO, nullptr));
    };
    auto const first = read(mol2);
    ASSERT_TRUE(first);
    EXPECT_EQ(first->refCount, 0);
    EXPECT_NE(Wizard::writeMolecule(uni.c_str(), first.get(), Wizard::WriteMolecules::WRITE_UNICHEM), 0);
    EXPECT_NE(Wizard::writeMolecule(mol2.c_str(), first.get(), Wizard::WriteMolecules::WRITE_TRIPOS), 0);
    EXPECT_EQ(Wizard::readBundle(mol2.c_str(), Wizard::ReadBundles::READ_TRIPOS).size, 1);
    auto const same = read(uni);
    ASSERT_TRUE(same);
    EXPECT_EQ(same->getNumAtoms(), 1);
    EXPECT_EQ(readMoleculePrints("no.mol2", 8), moleculeMessage(5, "no.mol2", 1));
    EXPECT_EQ(readMoleculePrints("no.uni", 8), moleculeMessage(6, "no.uni", 1));
}

TEST(TarnexWizard, ReadingFailures) {
    EXPECT_EQ(readMoleculePrints("no.sdf", 8), moleculeMessage(3, "no.sdf", 1));
    EXPECT_EQ(readMoleculePrints("no.qlt", 7), moleculeMessage(7, "no.qlt", 1));
    EXPECT_EQ(readMoleculePrints("a.SDF", 8), moleculeMessage(8, "a.SDF", 2));
    EXPECT_EQ(readMoleculePrints("df", 8), moleculeMessage(8, "df", 2));
    EXPECT_EQ(readMoleculePrints("x", 77), moleculeMessage(77, "x", 2));

    EXPECT_EQ(readTrajectoryPrints("no.sdf", 9), trajectoryMessage(4, "no.sdf", 1));
    EXPECT_EQ(readTrajectoryPrints("no.qlt", 8), trajectoryMessage(8, "no.qlt", 1));
    EXPECT_EQ(readTrajectoryPrints("a.xyz", 9), trajectoryMessage(7, "a.xyz", 1));
    EXPECT_EQ(readTrajectoryPrints("a.dcd", 9), trajectoryMessage(1, "a.dcd", 2));
    EXPECT_EQ(readTrajectoryPrints("a.b", 6), trajectoryMessage(6, "a.b", 2));
    EXPECT_EQ(readTrajectoryPrints("a.b", 9), bundleMessage(9, "a.b") + trajectoryMessage(9, "a.b", 1));

    auto const bundlePrints = [](char const* name, int type) {
        return printed([&] { EXPECT_EQ(Wizard::readBundle(name, static_cast<Wizard::ReadBundles>(type)).size, 0); });
    };
    EXPECT_EQ(bundlePrints("a.mol2", 4), bundleMessage(4, "a.mol2"));
    EXPECT_EQ(bundlePrints("a", 0), bundleMessage(0, "a"));
    EXPECT_EQ(bundlePrints("no.qlt", 4), "");
}

TEST(TarnexWizard, Writing) {
    auto* topology = new MolTopology;
    topology->addGroup(0, new MtAtom);
    Molecule molecule(topology, true);
    MolTrajectoryMem trajectory(&molecule, 1);
    std::string const sdfFile = scratchPath("out.sdf");
    std::string const qltFile = scratchPath("out.qlt");
    EXPECT_NE(Wizard::writeMolecule(sdfFile.c_str(), &molecule, Wizard::WriteMolecules::WRITE_MDL), 0);
    EXPECT_NE(Wizard::writeMolecule(qltFile.c_str(), &molecule, Wizard::WriteMolecules::WRITE_QLT), 0);
    EXPECT_NE(Wizard::writeMolTrajectory(sdfFile.c_str(), &trajectory, Wizard::WriteTrajectories::WRITE_MDL), 0);
    EXPECT_NE(Wizard::writeMolTrajectory(qltFile.c_str(), &trajectory, Wizard::WriteTrajectories::WRITE_QLT), 0);
    EXPECT_NE(readFile(sdfFile).find("V2000"), std::string::npos);

    std::string const noMolecule = "Unable to write Molecule of type: %d\nNot saving molecule to %s\n\n";
    std::string const noTrajectory = "Unable to write MolTrajectory of type: %d\nNot saving molecule to %s\n\n";
    EXPECT_EQ(printed([] { EXPECT_EQ(Wizard::writeMolecule("/no/x", nullptr, Wizard::WriteMolecules::WRITE_MDL), 0); }),
              filled(noMolecule, 2, "/no/x"));
    EXPECT_EQ(
        printed([&] { EXPECT_EQ(Wizard::writeMolecule("x", &molecule, static_cast<Wizard::WriteMolecules>(9)), 0); }),
        filled(noMolecule, 9, "x") + filled(noMolecule, 9, "x"));
    EXPECT_EQ(printed([&] {
                  auto const type = Wizard::WriteTrajectories::WRITE_MDL;
                  EXPECT_EQ(Wizard::writeMolTrajectory("/no/x", &trajectory, type), 0);
              }),
              filled(noTrajectory, 2, "/no/x"));
    EXPECT_EQ(printed([] { EXPECT_EQ(Wizard::writeBundle("x", {}, Wizard::WriteBundles::WRITE_QLT), 0); }), "");
    EXPECT_EQ(printed([] { EXPECT_EQ(Wizard::writeBundle("x", {}, static_cast<Wizard::WriteBundles>(0)), 0); }),
              filled("Unable to write Bundle of type: %d\nNot saving Bundle to %s\n\n", 0, "x"));
}

TEST(TarnexWizard, PackageEntry) {
    EXPECT_EQ(velorpackage_tarnex(), 100); // 0.1.0
}

} // namespace
