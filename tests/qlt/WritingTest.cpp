#include "qltSamples.h"

#include <sys/stat.h>

namespace {

using namespace tarnex::test;
namespace fs = std::filesystem;

class QltWriting : public QltTest {
protected:
    void SetUp() override {
        QltTest::SetUp();
        name = writeFile("file.qlt", "an older file");
    }
    /// After a failed call: the older file as it was, and nothing beside it.
    void expectUntouched(std::string const& what) {
        EXPECT_EQ(readFile(name), "an older file") << what;
        EXPECT_THAT(filesLeft(), ElementsAre("file.qlt")) << what;
    }
    void expectRefused(std::string const& what, MolTrajectory* trajectory) {
        EXPECT_FALSE(write(trajectory, name)) << what;
        expectUntouched(what);
    }
    bool writeMolecule(Molecule* molecule) { return MolTrajectoryVRK::writeQLTMolecule(molecule, name.c_str()); }

    std::string name;
};

template <class Stored>
struct Other : Stored {
    using Stored::Stored;
};

TEST_F(QltWriting, WhatCannotBeStoredFailsAndLeavesNothing) {
    auto const refuses = [&](char const* what, auto change) {
        McHandle<MolTopology> const topology = smallTopology();
        change(*topology);
        expectRefused(what, sampleOf(topology, 1));
    };
    refuses("a group of another class",
            [](MolTopology& t) { t.addGroup(t.addLevel("x", 0, 12, -1), new Other<MtDynamicGroup>); });
    refuses("an attribute of another class", [](MolTopology& t) {
        t.levels[0]->attributes.append(new Other<MtIntegerAttribute>("x", t.levels[0]->groups));
    });
    refuses("a datum of another class", [](MolTopology& t) { t.setData(new Other<MolDataInt>("other", 1)); });
    refuses("a missing group", [](MolTopology& t) { t.levels[0]->groups.append(nullptr); });
    refuses("a bond to a missing atom", [](MolTopology& t) { t.levels[1]->groups.append(new MtBond(0, 2)); });
    refuses("a bond to atom -1", [](MolTopology& t) { t.levels[1]->groups.append(new MtBond(-1, 0)); });
    refuses("a bond that is a list of three", [](MolTopology& t) { t.addGroup(1, listOf({{0, 0}, {0, 1}, {0, 0}})); });
    refuses("a group that names a missing group", [](MolTopology& t) {
        t.levels[t.addLevel("angles", 0, 12, -1)]->groups.append(groupOf({{0, 0}, {0, 1}, {3, 0}}));
    });
    refuses("no bond level", [](MolTopology& t) {
        delete t.levels[1];
        t.levels.resize(1);
    });
}

TEST_F(QltWriting, SourcesThatFail) {
    using Coords = McDArray<McVec3f>;
    MadeTrajectory unreadable(smallTopology(), 3, [](int step, Coords&) { return step < 2; });
    expectRefused("a step that cannot be read", &unreadable);
    MadeTrajectory oversized(smallTopology(), 1, [](int, Coords& coords) {
        coords.append({});
        return true;
    });
    expectRefused("more coordinates than atoms", &oversized);
    MadeTrajectory throwing(smallTopology(), 1, [](int, Coords&) -> bool { throw std::bad_alloc(); });
    EXPECT_THROW(write(&throwing, name), std::bad_alloc);
    expectRefused("no source", nullptr);

    McHandle<MolTopology> const topology = smallTopology();
    Molecule incomplete(topology, true), withoutTopology(nullptr, false);
    incomplete.coords.resize(1);
    for (Molecule* molecule : {&incomplete, &withoutTopology, static_cast<Molecule*>(nullptr)}) {
        EXPECT_FALSE(writeMolecule(molecule));
    }
    Bundle bundle;
    EXPECT_FALSE(tarnex::writeQltBundle(bundle, name.c_str()));
    bundle.append(sampleOf(smallTopology(), 1));
    bundle.append(nullptr);
    EXPECT_FALSE(tarnex::writeQltBundle(bundle, name.c_str()));
    expectUntouched("no complete source");
}

TEST_F(QltWriting, FullDiskIsNoticed) {
    McHandle<MolTrajectory> const source = sampleOf(fullTopology(), 10000);
    // In the first block, at the first write of a later one, and within the last one.
    for (rlim_t limit : {100U, 256U * 1024U, 600U * 1024U}) {
        EXPECT_FALSE(onFullDisk(limit, [&] { return write(source, name); })) << limit;
        expectUntouched("a full disk");
    }
    EXPECT_TRUE(write(source, name));
    EXPECT_GT(fs::file_size(name), 600U * 1024U);
}

TEST_F(QltWriting, OnlyOrdinaryFilesAreReadAndReplaced) {
    Bundle bundle;
    bundle.append(sampleOf(smallTopology(), 1));
    McHandle<MolTrajectory> const source = bundle[0];
    std::string const pipe = scratchPath("pipe");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (std::string const& place : {pipe, scratchPath("none/file.qlt"), scratchPath(""), std::string()}) {
        EXPECT_FALSE(write(source, place)) << place;
        EXPECT_EQ(read(place).size, 0) << place;
    }
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolTrajectory(source, nullptr));
    MolTrajectoryVRK::readBundle(nullptr, bundle);
    EXPECT_EQ(bundle.size, 0) << "nothing is left of an earlier result";
    EXPECT_TRUE(fs::is_fifo(pipe));
    fs::remove(pipe);
    expectUntouched("a wrong place");
}

TEST_F(QltWriting, PermissionsAndLinksStayAsTheyAre) {
    McHandle<MolTrajectory> const source = sampleOf(smallTopology(), 1);
    auto const modeAfterWriting = [&](std::string const& file) {
        EXPECT_TRUE(write(source, file));
        EXPECT_EQ(read(file).size, 1);
        return static_cast<unsigned>(fs::status(file).permissions());
    };
    mode_t const before = umask(027);
    EXPECT_EQ(modeAfterWriting(scratchPath(std::string(255, 'x'))), 0640U) << "the longest name";
    ASSERT_EQ(chmod(name.c_str(), 0604), 0);
    EXPECT_EQ(modeAfterWriting(name), 0604U);
    umask(before);

    std::string const link = scratchPath("link.qlt");
    writeFile("file.qlt", "an older file");
    fs::create_symlink("file.qlt", link);
    fs::path const folder = fs::current_path();
    fs::current_path(scratchPath(""));
    EXPECT_EQ(modeAfterWriting("link.qlt"), 0604U) << "a name without folder";
    fs::current_path(folder);
    EXPECT_TRUE(fs::is_symlink(link));
    EXPECT_EQ(read(name).size, 1);
}

} // namespace
