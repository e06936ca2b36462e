#include "foundation/McFilename.h"
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

int write(Molecule& molecule, std::string const& path) {
    return GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(&molecule, path.c_str());
}

int write(MolTrajectory* trajectory, std::string const& path) {
    return GROMACSwrite(nullptr, nullptr).writeGROMACSMolTrajectory(trajectory, path.c_str());
}

int writeSingle(MolTrajectory* trajectory, std::string const& path) {
    return GROMACSwrite_SINGLE(nullptr, nullptr).writeGROMACS_SINGLEMolTrajectory(trajectory, path.c_str());
}

void setTypes(Molecule& molecule, int levelIx, std::initializer_list<char const*> values) {
    int group = 0;
    for (char const* value : values) setText(molecule.getTopology(), levelIx, "type", group++, value);
}

TEST_F(GromacsWriter, StructureFilesByteForByte) {
    auto const molecule = makeChain(4);
    MolTopology* topology = molecule->getTopology();
    topology->addGroup(0, new MtAtom); // in no residue, and without coordinates
    setTypes(*molecule, 0, {"N", "longname", "", "CA"});
    setTypes(*molecule, 2, {"ALA", "SEVENTH"});
    topology->addGroup(2, new MtIntraLevelRange(0, 3, 3)); // the later residue of an atom counts
    setInteger(topology, 1, "type", 1, 1234567);
    topology->addGroup(1, new MtDynamicGroup); // joins nothing
    molecule->coords[3] = McVec3f(-123456.0F, 0.006F, -0.004F);
    if (std::setlocale(LC_ALL, "de_DE.UTF-8")) EXPECT_EQ(std::localeconv()->decimal_point[0], ',');
    EXPECT_EQ(write(*molecule, scratchPath("out.x")), 1);
    std::setlocale(LC_ALL, "C");
    EXPECT_EQ(readFile(scratchPath("out.x.gro")),
              "Protein\n5\n"
              "    1  ALA    N    1   0.000   0.025  -0.000  0.0000  0.0000  0.0000\n"
              "    1  ALAlongname    2   0.100   0.125  -0.100  0.0000  0.0000  0.0000\n"
              "    2SEVENTH         3   0.200   0.225  -0.200  0.0000  0.0000  0.0000\n"
              "    3        CA    4-12345.600   0.001  -0.000  0.0000  0.0000  0.0000\n"
              "    0              5   0.000   0.000   0.000  0.0000  0.0000  0.0000\n"
              "   5.00000   5.00000   5.00000");
    EXPECT_EQ(readFile(scratchPath("out.x.top")),
              "[ bonds ]\n;  ai    aj funct            c0            c1            c2            c3\n"
              "    1     2     0\n    2     31234567\n    3     4     0\n\n");
    // Nothing but the element and the name of each residue was added.
    std::string attributes;
    for (int const level : {0, 2}) {
        for (MtGroupAttribute const* each : topology->getLevel(level)->attributes)
            (attributes += each->getName()) += " ";
    }
    EXPECT_EQ(attributes, "type atomic_number type name ");
}

TEST_F(GromacsWriter, NamesOfFiles) {
    auto const molecule = makeChain(1);
    MovingTrajectory trajectory(*molecule, 0);
    EXPECT_EQ(write(*molecule, scratchPath("a.gro")), 1);
    EXPECT_EQ(write(*molecule, scratchPath("b.GRO")), 1);
    EXPECT_EQ(write(*molecule, scratchPath("c.Gro")), 1);
    EXPECT_EQ(write(&trajectory, scratchPath("d")), 1);
    EXPECT_EQ(writeSingle(&trajectory, scratchPath("e.gro")), 1);
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.gro", "a.top", "b.GRO", "b.top", "c.Gro.gro", "c.Gro.top", "d.gro",
                                                  "d.top", "d.trr", "e.gro", "e.gro.trr", "e.top"));
    EXPECT_EQ(readFile(scratchPath("d.trr")), "");
    EXPECT_EQ(readFile(scratchPath("a.top")),
              "[ bonds ]\n;  ai    aj funct            c0            c1            c2            c3\n\n");
}

TEST_F(GromacsWriter, FramesByteForByte) {
    auto const molecule = makeChain(1);
    molecule->coords[0] = McVec3f(1.0F, -20.0F, 0.0F);
    MovingTrajectory trajectory(*molecule, 2);
    ASSERT_EQ(write(&trajectory, scratchPath("d")), 1);
    ASSERT_EQ(writeSingle(&trajectory, scratchPath("s")), 1);

    // Worked out by hand: 1993, 13, 12, the text, then the sizes; box at 32, x at 52, natoms at 64, step at 68.
    auto const head = [](char step) {
        return std::string("\x00\x00\x07\xC9\x00\x00\x00\x0D\x00\x00\x00\x0CGMX_trn_file", 24) + std::string(8, '\0') +
               std::string("\x00\x00\x00\x48", 4) + std::string(16, '\0') + std::string("\x00\x00\x00\x18", 4) +
               std::string(8, '\0') + std::string("\x00\x00\x00\x01\x00\x00\x00", 7) + step + std::string(4, '\0');
    };
    std::string const five("\x40\x14\0\0\0\0\0\0", 8);
    std::string const tenth("\x3F\xB9\x99\x99\xA0\0\0\0", 8); // 0.1 as a float, widened
    std::string const fifth("\x3F\xC9\x99\x99\xA0\0\0\0", 8);
    std::string const minusTwo("\xC0\0\0\0\0\0\0\0", 8);
    std::string const gap(24, '\0');
    std::string const behindHead = std::string(16, '\0') + five + gap + five + gap + five;
    EXPECT_EQ(readFile(scratchPath("d.trr")), head(0) + behindHead + tenth + minusTwo + std::string(8, '\0') + head(1) +
                                                  behindHead + fifth + minusTwo + std::string(8, '\0'));
    std::string const shortFive("\x40\xA0\0\0", 4);
    std::string const shortGap(12, '\0');
    std::string const first = head(0) + std::string(8, '\0') + shortFive + shortGap + shortFive + shortGap + shortFive +
                              std::string("\x3D\xCC\xCC\xCD\xC0\0\0\0\0\0\0\0", 12);
    EXPECT_EQ(readFile(scratchPath("s.trr")).substr(0, first.size()), first);
    EXPECT_EQ(readFile(scratchPath("s.trr")).size(), 2 * first.size());
}

template <class Trajectory>
void expectRead(MolTrajectory& written, std::string const& path, long frameSize) {
    Molecule structure(written.getTopology(), false);
    Molecule expected(written.getTopology(), false);
    McHandle<Trajectory> const read(new Trajectory(&structure, path.c_str()));
    ASSERT_EQ(read->getNumTimeSteps(), written.getNumTimeSteps());
    testing::internal::CaptureStdout();
    for (int i = 0; i < read->getNumTimeSteps(); ++i) {
        EXPECT_EQ(read->streamPositions[i], i * frameSize);
        ASSERT_TRUE(read->getTimeStep(i, &structure));
        EXPECT_EQ(read->lastHeader->step, i);
        written.getTimeStep(i, &expected);
        for (int k = 0; k < 3 * structure.coords.size; ++k) {
            EXPECT_FLOAT_EQ(structure.coords[k / 3][k % 3], expected.coords[k / 3][k % 3]);
        }
    }
    testing::internal::GetCapturedStdout();
}

TEST_F(GromacsWriter, RoundTripOfTrajectories) {
    for (int const numAtoms : {100, 5000}) { // arrays of less than a block, and of more
        auto const molecule = makeChain(numAtoms);
        MovingTrajectory trajectory(*molecule, 3);
        ASSERT_EQ(write(&trajectory, scratchPath("d")), 1);
        ASSERT_EQ(writeSingle(&trajectory, scratchPath("s")), 1);
        EXPECT_EQ(readFile(scratchPath("d.gro")), readFile(scratchPath("s.gro")));
        EXPECT_EQ(readFile(scratchPath("d.top")), readFile(scratchPath("s.top")));
        expectRead<MolTrajectoryGROMACS>(trajectory, scratchPath("d.trr"), 164 + 24 * numAtoms);
        expectRead<MolTrajectoryGROMACS_SINGLE>(trajectory, scratchPath("s.trr"), 120 + 12 * numAtoms);
    }
}

TEST_F(GromacsWriter, StepsThatCannotBeRead) {
    auto const molecule = makeChain(1);
    MovingTrajectory trajectory(*molecule, 3);
    trajectory.unreadable = 2;
    auto const lastX = [](std::string const& file) { return readFile(file).substr(readFile(file).size() - 12, 4); };
    ASSERT_EQ(write(&trajectory, scratchPath("d")), 1);
    ASSERT_EQ(writeSingle(&trajectory, scratchPath("s")), 1);
    std::string const doubles = readFile(scratchPath("d.trr"));
    // One molecule for all frames keeps the step before it, one for each has none.
    EXPECT_EQ(doubles.substr(doubles.size() - 24), doubles.substr(2 * 188 - 24, 24));
    EXPECT_EQ(lastX(scratchPath("s.trr")), std::string(4, '\0'));
}

TEST_F(GromacsWriter, ProgressAndInterruption) {
    auto const molecule = makeChain(1);
    MovingTrajectory trajectory(*molecule, 250);
    RecordingProgress progress;
    EXPECT_EQ(GROMACSwrite(nullptr, &progress).writeGROMACSMolTrajectory(&trajectory, scratchPath("a").c_str()), 1);
    std::string const info = "info writing timestep %d of %d";
    EXPECT_THAT(progress.calls, ElementsAre("start writing trajectory...", info, info, info, "stop"));
    EXPECT_THAT(progress.fractions, ElementsAre(0.0F, 0.4F, 0.8F));

    RecordingProgress stopping(2);
    GROMACSwrite_SINGLE single(nullptr, &stopping);
    EXPECT_EQ(single.writeGROMACS_SINGLEMolTrajectory(&trajectory, scratchPath("b").c_str()), 0);
    EXPECT_THAT(stopping.calls, ElementsAre("start writing trajectory...", info, "stop"));
    EXPECT_THAT(stopping.fractions, ElementsAre(0.0F, 1.0F));
    EXPECT_EQ(readFile(scratchPath("b.trr")).size(), 100U * 132);
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.gro", "a.top", "a.trr", "b.gro", "b.top", "b.trr"));
}

TEST_F(GromacsWriter, WhatCannotBeWrittenLeavesNothing) {
    std::ostringstream messages;
    RecordingProgress progress;
    GROMACSwrite writer(&messages, &progress);
    EXPECT_EQ(writer.writeGROMACSMolTrajectory(nullptr, "x"), -1);
    EXPECT_TRUE(progress.calls.empty());
    EXPECT_EQ(GROMACSwrite_SINGLE(&messages, nullptr).writeGROMACS_SINGLEMolTrajectory(nullptr, "x"), -1);
    EXPECT_EQ(messages.str(), "Empty molecule!\nEmpty molecule!\n");
    EXPECT_EQ(writer.writeGROMACSMolecule(nullptr, "x"), 0);

    Molecule noResidues(new MolTopology, true);
    MovingTrajectory noResidueSteps(noResidues, 1);
    EXPECT_EQ(write(noResidues, scratchPath("x")), 0);
    EXPECT_EQ(writer.writeGROMACSMolTrajectory(&noResidueSteps, scratchPath("x").c_str()), -1);
    EXPECT_THAT(progress.calls, ElementsAre("start writing trajectory...", "stop"));

    // A folder in the place of each of the files in turn; an older file next to it keeps its content.
    auto const molecule = makeChain(2);
    MovingTrajectory trajectory(*molecule, 1);
    for (std::string const extension : {".gro", ".top", ".trr"}) {
        std::filesystem::remove_all(scratchPath(""));
        std::filesystem::create_directories(scratchPath("x" + extension));
        std::string const older = extension == ".gro" ? "x.top" : "x.gro";
        writeFile(older, "older");
        EXPECT_EQ(write(&trajectory, scratchPath("x")), -1) << extension;
        if (extension != ".trr") EXPECT_EQ(write(*molecule, scratchPath("x")), 0) << extension;
        EXPECT_EQ(filesLeft().size(), 2U) << extension;
        EXPECT_EQ(readFile(scratchPath(older)), "older");
    }
    std::filesystem::remove_all(scratchPath(""));
    std::filesystem::create_symlink("/dev/full", scratchPath("x.trr"));
    EXPECT_EQ(writeSingle(&trajectory, scratchPath("x")), -1);
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("x.trr"));
}

} // namespace
