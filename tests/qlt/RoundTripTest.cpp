#include "qltSamples.h"
#include "support/compareTopologies.h"
#include "support/qltBytes.h"

namespace {

using namespace tarnex::test;

using QltRoundTrip = QltTest;

TEST_F(QltRoundTrip, ChecksumIsThePublishedOneInPiecesOfAnySize) {
    constexpr std::pair<std::size_t, std::uint64_t> samples[] = {
        {0, 0xEF46DB3751D8E999U},  {1, 0x8A4127811B21E730U},  {7, 0x34084D91A233A751U},   {31, 0x6AB1C40E29F50073U},
        {32, 0x5A0756FBE9ECD3D1U}, {63, 0x10DD94885C71894AU}, {1000, 0x6BE03ACBF959C413U}};
    std::string bytes;
    for (int i = 0; i < 1000; ++i) bytes += static_cast<char>(i * 7 + 1);
    for (auto const& [length, published] : samples) {
        for (std::size_t piece : {1U, 5U, 31U, 32U, 33U, 1000U}) {
            tarnex::Checksum checksum;
            for (std::size_t at = 0; at < length; at += piece) {
                checksum.add(bytes.data() + at, std::min(piece, length - at));
            }
            EXPECT_EQ(checksum.value(), published) << length << " bytes in pieces of " << piece;
        }
    }
}

// A reader of another maker relies on these bytes.
TEST_F(QltRoundTrip, BytesOfASmallFile) {
    McHandle<MolTopology> const topology = smallTopology();
    topology->setData(new MolDataString("note", "hi"));
    Molecule molecule(topology, true);
    molecule.coords[0] = {1.0F, -2.0F, 0.5F};
    std::string const name = scratchPath("small.qlt");
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(&molecule, name.c_str()));

    Bytes section;
    section.text("small").u32(2);
    section.text("").i32(-1).i32(12).i32(-1).u8(0x23).u8(1).u32(2).u8(0).u32(0);
    section.text("").i32(0).i32(12).i32(-1).u8(0x23).u8(2).u32(1).i32(1).i32(0).u8(0);
    section.u32(1).u8(1).text("type").u32(1).i32(2);
    section.u32(1).u8(3).text("note").u64(2).raw("hi");
    Bytes step;
    step.u32(0x3F800000).u32(0xC0000000).u32(0x3F000000).u32(0).u32(0).u32(0);
    EXPECT_EQ(readFile(name), (QltFile{section.bytes, 2, {step.bytes}}.bytes()));
}

TEST_F(QltRoundTrip, SeveralTrajectoriesOfSeveralSteps) {
    // The coordinates of the third take several blocks; the last has steps without atoms.
    Bundle sources;
    sources.append(sampleOf(fullTopology(), 7));
    sources.append(sampleOf(smallTopology(), 0));
    sources.append(sampleOf(newTopology(50001), 3));
    sources.append(sampleOf(newTopology(0), 2));
    std::string const name = scratchPath("bundle.qlt"), again = scratchPath("again.qlt");
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
        for (int absent : {-1, numSteps}) EXPECT_EQ(stepBytes(bundle[i], absent), "none");
        EXPECT_FALSE(bundle[i]->getTimeStep(0, nullptr));
    }
    ASSERT_TRUE(tarnex::writeQltBundle(bundle, again.c_str()));
    EXPECT_TRUE(readFile(again) == readFile(name));
}

TEST_F(QltRoundTrip, AtomsTakeNoBytesUpToAMillionOfThem) {
    for (int numAtoms : {1'000'000, 1'010'000}) {
        std::string const name = scratchPath("atoms.qlt");
        ASSERT_TRUE(write(sampleOf(newTopology(numAtoms), 0), name));
        Bundle const bundle = read(name);
        ASSERT_EQ(bundle.size, 1) << numAtoms;
        EXPECT_EQ(bundle[0]->getTopology()->levels[0]->groups.size, numAtoms);
        EXPECT_EQ(std::filesystem::file_size(name) < 200, numAtoms == 1'000'000);
    }
}

TEST_F(QltRoundTrip, StepIsReadFromTheFileThatWasOpened) {
    McHandle<MolTrajectory> const source = sampleOf(smallTopology(), 2);
    std::string const name = scratchPath("steps.qlt");
    ASSERT_TRUE(write(source, name));
    std::string const bytes = readFile(name);
    Bundle const bundle = read(name);
    ASSERT_EQ(bundle.size, 1);

    auto const expectUnreadable = [&](char const* why) {
        McHandle<MolTopology> const other = smallTopology();
        Molecule molecule(other, true);
        EXPECT_FALSE(bundle[0]->getTimeStep(1, &molecule)) << why;
        EXPECT_EQ(molecule.getTopology(), other) << why;
        EXPECT_EQ(placesOf(molecule.coords), "0,0,0|0,0,0") << why;
    };
    std::string changed = bytes;
    changed[bytes.size() - 40 - 12] ^= 1;
    writeFile("steps.qlt", changed);
    expectUnreadable("changed coordinates");
    EXPECT_EQ(stepBytes(bundle[0], 0), stepBytes(source, 0));
    ASSERT_TRUE(write(sampleOf(source->getTopology(), 3), name));
    expectUnreadable("another file of the same shape at its beginning");
    std::filesystem::remove(name);
    expectUnreadable("no file");
    writeFile("steps.qlt", bytes);
    EXPECT_EQ(stepBytes(bundle[0], 1), stepBytes(source, 1));
    bundle[0]->getTopology()->addGroup(0, new MtAtom);
    expectUnreadable("a topology with a further atom");
}

} // namespace
