#include "qltSamples.h"
#include "support/compareTopologies.h"
#include "support/qltBytes.h"

namespace {

using namespace tarnex::test;

TEST(QltRoundTrip, ChecksumIsThePublishedOneInPiecesOfAnySize) {
    struct Sample {
        std::size_t length;
        std::uint64_t checksum;
    };
    constexpr Sample samples[] = {{0, 0xEF46DB3751D8E999U},   {1, 0x8A4127811B21E730U},   {3, 0xB6E6C910C2FD373AU},
                                  {4, 0x22EDA2CF6AF4C124U},   {7, 0x34084D91A233A751U},   {8, 0xC6F1803A5E0B3222U},
                                  {15, 0x514C6F58D37CE6F1U},  {31, 0x6AB1C40E29F50073U},  {32, 0x5A0756FBE9ECD3D1U},
                                  {33, 0xDC50CDC37BB9C183U},  {63, 0x10DD94885C71894AU},  {64, 0x90083DA9CDB9D795U},
                                  {100, 0xD248BFC5208B0B16U}, {1000, 0x6BE03ACBF959C413U}};
    std::string bytes;
    for (int i = 0; i < 1000; ++i) bytes += static_cast<char>(i * 7 + 1);
    for (Sample const& sample : samples) {
        for (std::size_t piece : {1U, 5U, 31U, 32U, 33U, 1000U}) {
            tarnex::Checksum checksum;
            for (std::size_t at = 0; at < sample.length; at += piece) {
                checksum.add(bytes.data() + at, std::min(piece, sample.length - at));
            }
            EXPECT_EQ(checksum.value(), sample.checksum) << sample.length << " bytes in pieces of " << piece;
        }
    }
}

TEST(QltRoundTrip, MoleculeWithEverythingInIt) {
    std::string const folder = scratchFolder();
    McHandle<MolTopology> const topology = fullTopology();
    Molecule molecule(topology, true);
    SampleTrajectory(topology, 1).getTimeStep(0, &molecule);
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(&molecule, (folder + "full.qlt").c_str()));

    Bundle const bundle = read(folder + "full.qlt");
    ASSERT_EQ(bundle.size, 1);
    EXPECT_EQ(compareTopologies(*topology, *bundle[0]->getTopology()), "");
    ASSERT_EQ(bundle[0]->getNumTimeSteps(), 1);
    SampleTrajectory source(topology, 1);
    EXPECT_EQ(stepBytes(bundle[0], 0), stepBytes(&source, 0));

    ASSERT_TRUE(tarnex::writeQltBundle(bundle, (folder + "again.qlt").c_str()));
    EXPECT_EQ(readFile(folder + "again.qlt"), readFile(folder + "full.qlt"));
}

// A reader of another maker relies on these bytes.
TEST(QltRoundTrip, BytesOfASmallFile) {
    std::string const name = scratchFolder() + "small.qlt";
    McHandle<MolTopology> const topology = smallTopology();
    topology->setData(new MolDataString("note", "hi"));
    Molecule molecule(topology, true);
    molecule.coords[0] = {1.0F, -2.0F, 0.5F};
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(&molecule, name.c_str()));

    QltBytes section;
    section.text("small").u32(2);
    section.text("").i32(-1).i32(12).i32(-1).u8(0x23).u8(1).u32(2).u8(0).u32(0);
    section.text("").i32(0).i32(12).i32(-1).u8(0x23).u8(2).u32(1).i32(1).i32(0).u8(0);
    section.u32(1).u8(1).text("type").u32(1).i32(2);
    section.u32(1).u8(3).text("note").u64(2).raw("hi");
    QltBytes step;
    step.u32(0x3F800000).u32(0xC0000000).u32(0x3F000000).u32(0).u32(0).u32(0);
    EXPECT_EQ(readFile(name), (QltFile{section.bytes, 2, {step.bytes}}.bytes()));
}

TEST(QltRoundTrip, SeveralTrajectoriesOfSeveralSteps) {
    std::string const name = scratchFolder() + "bundle.qlt";
    // The coordinates of the third take several blocks; the last has steps without atoms.
    McHandle<MolTopology> const large(new MolTopology);
    addAtoms(*large, 50001);
    Bundle sources;
    sources.append(new SampleTrajectory(fullTopology(), 7));
    sources.append(new SampleTrajectory(smallTopology(), 0));
    sources.append(new SampleTrajectory(large, 3));
    sources.append(new SampleTrajectory(McHandle<MolTopology>(new MolTopology), 2));
    ASSERT_TRUE(tarnex::writeQltBundle(sources, name.c_str()));

    Bundle const bundle = read(name);
    ASSERT_EQ(bundle.size, sources.size);
    for (int i = 0; i < bundle.size; ++i) {
        EXPECT_EQ(compareTopologies(*sources[i]->getTopology(), *bundle[i]->getTopology()), "") << i;
        int const numSteps = bundle[i]->getNumTimeSteps();
        ASSERT_EQ(numSteps, sources[i]->getNumTimeSteps()) << i;
        for (int step = numSteps; step-- > 0;) {
            EXPECT_TRUE(stepBytes(bundle[i], step) == stepBytes(sources[i], step)) << i << ", step " << step;
        }
        EXPECT_EQ(stepBytes(bundle[i], -1), "none");
        EXPECT_EQ(stepBytes(bundle[i], numSteps), "none");
        EXPECT_FALSE(bundle[i]->getTimeStep(0, nullptr));
    }
}

TEST(QltRoundTrip, AtomsTakeNoBytesUpToAMillionOfThem) {
    std::string const folder = scratchFolder();
    for (int numAtoms : {1'000'000, 1'010'000}) {
        std::string const name = folder + std::to_string(numAtoms);
        McHandle<MolTopology> const topology(new MolTopology);
        addAtoms(*topology, numAtoms);
        SampleTrajectory source(topology, 0);
        ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, name.c_str()));
        Bundle const bundle = read(name);
        ASSERT_EQ(bundle.size, 1) << numAtoms;
        EXPECT_EQ(bundle[0]->getTopology()->levels[0]->groups.size, numAtoms);
    }
    EXPECT_LT(std::filesystem::file_size(folder + "1000000"), 200U);
}

TEST(QltRoundTrip, StepIsReadFromTheFileThatWasOpened) {
    std::string const name = scratchFolder() + "steps.qlt";
    McHandle<MolTopology> const topology = smallTopology();
    SampleTrajectory source(topology, 2);
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, name.c_str()));
    std::string const bytes = readFile(name);
    Bundle const bundle = read(name);
    ASSERT_EQ(bundle.size, 1);

    auto const expectUnreadable = [&](char const* why) {
        McHandle<MolTopology> const other = smallTopology();
        Molecule molecule(other, true);
        EXPECT_FALSE(bundle[0]->getTimeStep(1, &molecule)) << why;
        EXPECT_EQ(molecule.getTopology(), other) << why;
        EXPECT_EQ(molecule.coords[0], McVec3f(0.0F, 0.0F, 0.0F)) << why;
    };
    std::string changed = bytes;
    changed[bytes.size() - 40 - 12] ^= 1;
    writeBytes(name, changed);
    expectUnreadable("changed coordinates");
    EXPECT_EQ(stepBytes(bundle[0], 0), stepBytes(&source, 0));

    SampleTrajectory shifted(topology, 3);
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&shifted, name.c_str()));
    expectUnreadable("another file of the same shape at its beginning");
    std::filesystem::remove(name);
    expectUnreadable("no file");

    writeBytes(name, bytes);
    EXPECT_EQ(stepBytes(bundle[0], 1), stepBytes(&source, 1));
    addAtoms(*bundle[0]->getTopology(), 1);
    expectUnreadable("a topology with a further atom");
}

TEST(QltRoundTrip, FileIsReplacedByATrajectoryThatReadsFromIt) {
    std::string const name = scratchFolder() + "self.qlt";
    SampleTrajectory source(fullTopology(), 4);
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, name.c_str()));
    Bundle bundle = read(name);
    ASSERT_EQ(bundle.size, 1);
    bundle[0]->getTopology()->setName("renamed");
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(bundle[0], name.c_str()));
    bundle = read(name);
    ASSERT_EQ(bundle.size, 1);
    EXPECT_STREQ(bundle[0]->getTopology()->getName(), "renamed");
    EXPECT_EQ(stepBytes(bundle[0], 3), stepBytes(&source, 3));
}

} // namespace
