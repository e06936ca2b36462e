#include "qltSamples.h"
#include "support/qltBytes.h"

#include <sys/stat.h>

namespace {

using namespace tarnex::test;

Bundle readAs(std::string const& name, std::string const& bytes) {
    writeBytes(name, bytes);
    return read(name);
}

TEST(QltDamage, EveryChangedByteAndEveryCutIsRefused) {
    std::string const folder = scratchFolder();
    Bundle sources;
    sources.append(new SampleTrajectory(fullTopology(), 2));
    sources.append(new SampleTrajectory(smallTopology(), 1));
    ASSERT_TRUE(tarnex::writeQltBundle(sources, (folder + "good").c_str()));
    std::string const good = readFile(folder + "good");
    ASSERT_EQ(readAs(folder + "copy", good).size, 2);

    std::string const bad = folder + "bad";
    writeBytes(bad, good);
    std::fstream file(bad, std::ios::binary | std::ios::in | std::ios::out);
    auto const putByte = [&](std::size_t place, unsigned value) {
        file.seekp(static_cast<std::streamoff>(place)).put(static_cast<char>(value)).flush();
    };
    for (std::size_t i = 0; i < good.size(); ++i) {
        auto const byte = static_cast<unsigned char>(good[i]);
        for (unsigned bits : {0x01U, 0x80U, 0xFFU}) {
            putByte(i, byte ^ bits);
            ASSERT_EQ(read(bad).size, 0) << "byte " << i << " of " << good.size();
        }
        putByte(i, byte);
    }
    ASSERT_EQ(readFile(bad), good);
    for (std::size_t length = good.size(); length-- > 0;) {
        std::filesystem::resize_file(bad, length);
        ASSERT_EQ(read(bad).size, 0) << "cut at " << length;
    }
    EXPECT_EQ(readAs(bad, good + '\0').size, 0);
    EXPECT_EQ(readAs(bad, good + good).size, 0);
    EXPECT_EQ(readAs(bad, good.substr(1)).size, 0);
}

TEST(QltDamage, PartsOfTwoFilesAreRefused) {
    std::string const name = scratchFolder() + "mixed";
    std::string const first(24, 'a');
    std::string const second(24, 'b');
    QltBytes section;
    section.text("").u32(2);
    section.text("").i32(-1).i32(12).i32(-1).u8(0).u8(1).u32(2).u8(0).u32(0);
    section.text("").i32(0).i32(12).i32(-1).u8(0).u8(0).u32(0).u32(0);
    QltFile file{section.bytes, 2, {first, second}};
    std::string const good = file.bytes();
    ASSERT_EQ(readAs(name, good).size, 1);
    file.steps = {second, first};
    std::string const swapped = file.bytes();

    // Each step has its right checksum; only they are not the steps of this file.
    std::size_t const steps = 48 + section.bytes.size();
    std::size_t const index = good.size() - 40;
    EXPECT_EQ(readAs(name, good.substr(0, 48) + swapped.substr(48)).size, 0);
    EXPECT_EQ(readAs(name, good.substr(0, steps) + swapped.substr(steps, index - steps) + good.substr(index)).size, 0);

    // Nothing is left of an earlier result.
    Bundle result;
    result.append(new SampleTrajectory(smallTopology(), 1));
    MolTrajectoryVRK::readBundle(name.c_str(), result);
    EXPECT_EQ(result.size, 0);
}

TEST(QltDamage, WhatIsNoFileGivesNothing) {
    std::string const folder = scratchFolder();
    Bundle result;
    result.append(new SampleTrajectory(smallTopology(), 1));
    MolTrajectoryVRK::readBundle((folder + "missing").c_str(), result);
    EXPECT_EQ(result.size, 0);
    EXPECT_EQ(read(folder).size, 0);
    EXPECT_EQ(read("/dev/zero").size, 0);
    ASSERT_EQ(mkfifo((folder + "pipe").c_str(), 0600), 0);
    EXPECT_EQ(read(folder + "pipe").size, 0);
    MolTrajectoryVRK::readBundle(nullptr, result);
    EXPECT_EQ(result.size, 0);
}

} // namespace
