#include "gromacs/GROMACSwrite.h"
#include "gromacs/GROMACSwrite_SINGLE.h"
#include "gromacs/MolTrajectoryGROMACS.h"
#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "samples.h"
#include "support/testing.h"

#include <clocale>

namespace {

using namespace tarnex::test;

using GromacsWriter = CleanTest;

int write(Molecule& molecule, std::string const& name) {
    return GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(&molecule, scratchPath(name).c_str());
}

int write(MolTrajectory* trajectory, std::string const& name, McProgressInterface* progress = nullptr) {
    return GROMACSwrite(nullptr, progress).writeGROMACSMolTrajectory(trajectory, scratchPath(name).c_str());
}

int writeSingle(MolTrajectory* trajectory, std::string const& name, McProgressInterface* progress = nullptr) {
    return GROMACSwrite_SINGLE(nullptr, progress)
        .writeGROMACS_SINGLEMolTrajectory(trajectory, scratchPath(name).c_str());
}

std::string written(std::string const& name) {
    return readFile(scratchPath(name));
}

TEST_F(GromacsWriter, StructureFilesByteForByte) {
    auto const molecule = makeChain(4);
    MolTopology* topology = molecule->getTopology();
    topology->addGroup(0, new MtAtom); // in no residue, and without coordinates
    setText(topology, 0, "type", 0, "N");
    setText(topology, 0, "type", 1, "longname");
    setText(topology, 2, "type", 0, "ALA");
    setText(topology, 2, "type", 1, "SEVENTH");
    topology->addGroup(2, new MtIntraLevelRange(0, 3, 3)); // the later residue of an atom counts
    setInteger(topology, 1, "type", 1, 1234567);
    topology->addGroup(1, new MtDynamicGroup); // joins nothing
    molecule->coords[3] = McVec3f(-123456.0F, 0.006F, -0.004F);
    if (std::setlocale(LC_ALL, "de_DE.UTF-8")) EXPECT_EQ(std::localeconv()->decimal_point[0], ',');
    EXPECT_EQ(write(*molecule, "out.x"), 1);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(written("out.x.gro"), "Protein\n5\n"
                                    "    1  ALA    N    1   0.000   0.025  -0.000  0.0000  0.0000  0.0000\n"
                                    "    1  ALAlongname    2   0.100   0.125  -0.100  0.0000  0.0000  0.0000\n"
                                    "    2SEVENTH         3   0.200   0.225  -0.200  0.0000  0.0000  0.0000\n"
                                    "    3              4-12345.600   0.001  -0.000  0.0000  0.0000  0.0000\n"
                                    "    0              5   0.000   0.000   0.000  0.0000  0.0000  0.0000\n"
                                    "   5.00000   5.00000   5.00000");
    EXPECT_EQ(written("out.x.top"),
              "[ bonds ]\n;  ai    aj funct            c0            c1            c2            c3\n"
              "    1     2     0\n    2     31234567\n    3     4     0\n\n");
    // Nothing but the element and the name of each residue was added.
    EXPECT_THAT(describe(topology),
                testing::ContainsRegex(": 5 type=[^ ]* atomic_number=[^ ]*\nbonds.*\n.*name=[|]*$"));
}

TEST_F(GromacsWriter, NamesOfFiles) {
    auto const molecule = makeChain(1);
    MovingTrajectory trajectory(*molecule, 0);
    for (char const* const name : {"a.gro", "b.GRO", "c.Gro"}) EXPECT_EQ(write(*molecule, name), 1);
    EXPECT_EQ(write(&trajectory, "d"), 1);
    EXPECT_EQ(writeSingle(&trajectory, "e.gro"), 1);
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.gro", "a.top", "b.GRO", "b.top", "c.Gro.gro", "c.Gro.top", "d.gro",
                                                  "d.top", "d.trr", "e.gro", "e.gro.trr", "e.top"));
    EXPECT_EQ(written("d.trr"), "");
}

/// Frames of an atom at these places, in nanometres. The sizes are those of double precision in both.
template <class Real>
std::string framesOf(std::initializer_list<McVec3f> places) {
    Bytes all{.isBig = true};
    int step = 0;
    for (McVec3f const& place : places) {
        all.put(1993).put(13).put(12).raw("GMX_trn_file").put(0, 2).put(72).put(0, 4).put(24).put(0, 2);
        all.put(1).put(step++).put(0).put(Real(0), 2);
        all.put(Real(5)).put(Real(0), 3).put(Real(5)).put(Real(0), 3).put(Real(5));
        all.put(Real(place.x)).put(Real(place.y)).put(Real(place.z));
    }
    return all.bytes;
}

TEST_F(GromacsWriter, FramesByteForByteAndStepsThatCannotBeRead) {
    auto const molecule = makeChain(1);
    molecule->coords[0] = McVec3f(1.0F, -20.0F, 0.0F);
    MovingTrajectory trajectory(*molecule, 3);
    trajectory.unreadable = 2;
    ASSERT_EQ(write(&trajectory, "d"), 1);
    ASSERT_EQ(writeSingle(&trajectory, "s"), 1);
    // One molecule for all frames keeps the step before it, one for each has none.
    EXPECT_EQ(written("d.trr"), framesOf<double>({{0.1F, -2, 0}, {0.2F, -2, 0}, {0.2F, -2, 0}}));
    EXPECT_EQ(written("s.trr"), framesOf<float>({{0.1F, -2, 0}, {0.2F, -2, 0}, {}}));
}

TEST_F(GromacsWriter, RoundTripOfArraysOfMoreThanABlock) {
    auto const molecule = makeChain(5000);
    MovingTrajectory trajectory(*molecule, 3);
    ASSERT_EQ(write(&trajectory, "d"), 1);
    ASSERT_EQ(writeSingle(&trajectory, "s"), 1);
    EXPECT_EQ(written("d.gro") + written("d.top"), written("s.gro") + written("s.top"));
    MolTrajectoryGROMACS inDouble(molecule.get(), scratchPath("d.trr").c_str());
    MolTrajectoryGROMACS_SINGLE inSingle(molecule.get(), scratchPath("s.trr").c_str());
    for (MolTrajectory* read : std::initializer_list<MolTrajectory*>{&inDouble, &inSingle}) {
        ASSERT_EQ(read->getNumTimeSteps(), 3);
        for (int i = 0; i < 3; ++i) printed([&] { EXPECT_TRUE(placesOf(read, i) == placesOf(&trajectory, i)) << i; });
    }
}

TEST_F(GromacsWriter, ProgressAndInterruption) {
    auto const molecule = makeChain(1);
    MovingTrajectory trajectory(*molecule, 250);
    RecordingProgress progress;
    EXPECT_EQ(write(&trajectory, "a", &progress), 1);
    std::string const info = "info writing timestep %d of %d";
    EXPECT_THAT(progress.calls, ElementsAre("start writing trajectory...", info, info, info, "stop"));
    EXPECT_THAT(progress.fractions, ElementsAre(0.0F, 0.4F, 0.8F));

    RecordingProgress stopping(2);
    EXPECT_EQ(writeSingle(&trajectory, "b", &stopping), 0);
    EXPECT_THAT(stopping.calls, ElementsAre("start writing trajectory...", info, "stop"));
    EXPECT_THAT(stopping.fractions, ElementsAre(0.0F, 1.0F));
    EXPECT_EQ(written("b.trr").size(), 100U * 132);
}

TEST_F(GromacsWriter, WhatCannotBeWrittenLeavesNothing) {
    std::ostringstream messages;
    RecordingProgress progress;
    GROMACSwrite writer(&messages, &progress);
    EXPECT_EQ(writer.writeGROMACSMolTrajectory(nullptr, "x"), -1);
    EXPECT_TRUE(progress.calls.empty());
    EXPECT_EQ(messages.str(), "Empty molecule!\n");
    EXPECT_EQ(writer.writeGROMACSMolecule(nullptr, "x"), 0);

    Molecule noResidues(new MolTopology, true);
    MovingTrajectory noResidueSteps(noResidues, 1);
    EXPECT_EQ(write(noResidues, "x"), 0);
    EXPECT_EQ(write(&noResidueSteps, "x", &progress), -1);
    EXPECT_THAT(progress.calls, ElementsAre("start writing trajectory...", "stop"));

    // A folder in the place of each of the files in turn; an older file next to it keeps its content.
    auto const molecule = makeChain(2);
    MovingTrajectory trajectory(*molecule, 1);
    for (std::string const extension : {".gro", ".top", ".trr"}) {
        std::filesystem::remove_all(scratchPath(""));
        std::filesystem::create_directories(scratchPath("x" + extension));
        std::string const older = extension == ".gro" ? "x.top" : "x.gro";
        writeFile(older, "older");
        EXPECT_EQ(write(&trajectory, "x"), -1) << extension;
        if (extension != ".trr") EXPECT_EQ(write(*molecule, "x"), 0) << extension;
        EXPECT_EQ(filesLeft().size(), 2U) << extension;
        EXPECT_EQ(written(older), "older");
    }
    std::filesystem::remove_all(scratchPath(""));
    MovingTrajectory longer(*molecule, 100);
    auto const expectFull = [](rlim_t numBytes, auto const& writeFiles, int result) {
        EXPECT_EQ(onFullDisk(numBytes, writeFiles), result) << numBytes;
        EXPECT_THAT(filesLeft(), ElementsAre()) << numBytes;
    };
    // In the midst of the longer .gro, the longer .top and the .trr file.
    expectFull(
        150, [&] { return write(*molecule, "x"); }, 0);
    for (int i = 0; i < 100; ++i) molecule->getTopology()->addBond(new MtBond(0, 1));
    expectFull(
        1000, [&] { return write(*molecule, "x"); }, 0);
    expectFull(
        10000, [&] { return writeSingle(&longer, "x"); }, -1);
}

} // namespace
