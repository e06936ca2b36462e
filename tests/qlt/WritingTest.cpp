#include "qltSamples.h"

#include <csignal>
#include <sys/resource.h>
#include <sys/stat.h>

namespace {

using namespace tarnex::test;
namespace fs = std::filesystem;

class QltWriting : public testing::Test {
protected:
    void SetUp() override { writeBytes(name, "an older file"); }

    /// After a failed call: the older file as it was, and nothing beside it.
    void expectUntouched(std::string const& what) {
        EXPECT_EQ(readFile(name), "an older file") << what;
        EXPECT_EQ(std::distance(fs::directory_iterator(folder), {}), 1) << what;
    }
    bool write(MolTrajectory* trajectory) { return MolTrajectoryVRK::writeQLTMolTrajectory(trajectory, name.c_str()); }
    /// A molecule with the small topology after a change.
    template <class Change>
    bool writeChanged(Change change) {
        McHandle<MolTopology> const topology = smallTopology();
        change(*topology);
        Molecule molecule(topology, true);
        return MolTrajectoryVRK::writeQLTMolecule(&molecule, name.c_str());
    }

    std::string folder = scratchFolder();
    std::string name = folder + "file.qlt";
};

class OtherGroup : public MtDynamicGroup {};

class OtherAttribute : public MtIntegerAttribute {
public:
    using MtIntegerAttribute::MtIntegerAttribute;
};

class OtherData : public MolDataInt {
public:
    OtherData() : MolDataInt("other", 1) {}
};

TEST_F(QltWriting, WhatCannotBeStoredFailsAndLeavesNothing) {
    EXPECT_TRUE(writeChanged([](MolTopology&) {}));
    writeBytes(name, "an older file");

    auto const refuses = [&](char const* what, auto change) {
        EXPECT_FALSE(writeChanged(change)) << what;
        expectUntouched(what);
    };
    refuses("a group of another class", [](MolTopology& t) { t.addGroup(t.addLevel("x", 0, 12, -1), new OtherGroup); });
    refuses("an attribute of another class",
            [](MolTopology& t) { t.levels[0]->attributes.append(new OtherAttribute("x", t.levels[0]->groups)); });
    refuses("a datum of another class", [](MolTopology& t) { t.setData(new OtherData); });
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
    SampleTrajectory unreadable(smallTopology(), 3);
    unreadable.failingStep = 2;
    EXPECT_FALSE(write(&unreadable));
    expectUntouched("a step that cannot be read");
    SampleTrajectory oversized(smallTopology(), 1);
    oversized.surplusAtoms = 1;
    EXPECT_FALSE(write(&oversized));
    expectUntouched("more coordinates than atoms");
    McHandle<MolTopology> const topology = smallTopology();
    Molecule incomplete(topology, true);
    incomplete.coords.resize(1);
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolecule(&incomplete, name.c_str()));
    expectUntouched("fewer coordinates than atoms");

    EXPECT_FALSE(write(nullptr));
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolecule(nullptr, name.c_str()));
    Molecule withoutTopology(nullptr, false);
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolecule(&withoutTopology, name.c_str()));
    Bundle bundle;
    EXPECT_FALSE(tarnex::writeQltBundle(bundle, name.c_str()));
    bundle.append(new SampleTrajectory(smallTopology(), 1));
    bundle.append(nullptr);
    EXPECT_FALSE(tarnex::writeQltBundle(bundle, name.c_str()));
    expectUntouched("no source");
}

class Thrown {};

TEST_F(QltWriting, ExceptionOfTheSourcePassesAndLeavesNothing) {
    MadeTrajectory source(smallTopology(), 1, [](int, McDArray<McVec3f>&) -> bool { throw Thrown(); });
    EXPECT_THROW(write(&source), Thrown);
    expectUntouched("an exception");
}

TEST_F(QltWriting, FullDiskIsNoticed) {
    SampleTrajectory source(fullTopology(), 10000);
    struct rlimit before;
    ASSERT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    auto const oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    // In the first block, at the first write of a later one, and within the last one.
    for (rlim_t limit : {100U, 256U * 1024U, 600U * 1024U}) {
        struct rlimit const low = {limit, before.rlim_max};
        ASSERT_EQ(setrlimit(RLIMIT_FSIZE, &low), 0);
        bool const written = write(&source);
        setrlimit(RLIMIT_FSIZE, &before);
        EXPECT_FALSE(written) << limit;
        expectUntouched("a full disk");
    }
    std::signal(SIGXFSZ, oldHandler);
    EXPECT_TRUE(write(&source));
    EXPECT_GT(fs::file_size(name), 600U * 1024U);
}

TEST_F(QltWriting, PlacesThatCannotBeWritten) {
    SampleTrajectory source(smallTopology(), 1);
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, (folder + "none/file.qlt").c_str()));
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, folder.c_str()));
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, "/dev/null"));
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, ""));
    EXPECT_FALSE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, nullptr));
    EXPECT_TRUE(fs::is_character_file("/dev/null"));
    expectUntouched("a wrong place");
}

TEST_F(QltWriting, PermissionsAndLinksStayAsTheyAre) {
    SampleTrajectory source(smallTopology(), 1);
    auto const modeAfterWriting = [&](std::string const& file) {
        EXPECT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, file.c_str()));
        struct stat status = {};
        stat(file.c_str(), &status);
        return status.st_mode & 0777U;
    };
    mode_t const before = umask(027);
    EXPECT_EQ(modeAfterWriting(folder + "new.qlt"), 0640U);
    ASSERT_EQ(chmod(name.c_str(), 0604), 0);
    EXPECT_EQ(modeAfterWriting(name), 0604U);
    umask(before);

    writeBytes(name, "an older file");
    fs::create_symlink("file.qlt", folder + "link.qlt");
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, (folder + "link.qlt").c_str()));
    EXPECT_TRUE(fs::is_symlink(folder + "link.qlt"));
    EXPECT_EQ(read(name).size, 1);
}

TEST_F(QltWriting, NamesWithoutFolderAndOfFullLength) {
    SampleTrajectory source(smallTopology(), 1);
    std::string const longName = folder + std::string(255, 'x');
    EXPECT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, longName.c_str()));
    EXPECT_EQ(read(longName).size, 1);
    fs::path const before = fs::current_path();
    fs::current_path(folder);
    EXPECT_TRUE(MolTrajectoryVRK::writeQLTMolTrajectory(&source, "bare.qlt"));
    EXPECT_EQ(read("bare.qlt").size, 1);
    fs::current_path(before);
}

} // namespace
