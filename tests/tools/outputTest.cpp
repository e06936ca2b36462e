#include "tools/program.h"

#include <cstdlib>
#include <sys/stat.h>

namespace {

using namespace tarnex::test;

class Output : public ToolTest {};

/// The terminal end that a program writes to, and ours.
class Terminal {
public:
    Terminal() : ours(posix_openpt(O_RDWR | O_NOCTTY)) {
        grantpt(ours);
        unlockpt(ours);
        theirs = open(ptsname(ours), O_RDWR | O_NOCTTY);
    }
    ~Terminal() {
        close(ours);
        closeTheirs();
    }
    Terminal(Terminal const&) = delete;
    Terminal& operator=(Terminal const&) = delete;

    int descriptor() const { return theirs; }
    /// What the program has closed ends the reading.
    void closeTheirs() {
        if (theirs >= 0) close(theirs);
        theirs = -1;
    }
    /// Everything up to a text, or up to the end.
    std::string readUntil(std::string const& text) const {
        std::string got;
        char c = 0;
        while (got.find(text) == std::string::npos && read(ours, &c, 1) == 1) got += c;
        return got;
    }

private:
    int ours;
    int theirs = -1;
};

TEST_F(Output, mayBeOneOfTheInputs) {
    runSilently({"convert", ligands, "a.qlt"});
    runSilently({"convert", ligands, "a.sdf"});
    std::string const once = readFile(scratchPath("a.sdf"));
    runSilently({"convert", "a.qlt", "a.qlt", "a.qlt"});
    runSilently({"convert", "a.sdf", "a.qlt", "a.sdf"});
    EXPECT_EQ(readFile(scratchPath("a.sdf")), once + once + once);
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("a.sdf", "a.qlt"));
}

TEST_F(Output, keepsLinksAndModes) {
    std::string const file = writeFile("real.sdf", "old");
    std::filesystem::create_symlink("real.sdf", scratchPath("link.sdf"));
    chmod(file.c_str(), 0640);
    runSilently({"convert", ligands, "link.sdf"});
    EXPECT_TRUE(std::filesystem::is_symlink(scratchPath("link.sdf")));
    EXPECT_NE(readFile(file), "old");
    struct stat status = {};
    ASSERT_EQ(stat(file.c_str(), &status), 0);
    EXPECT_EQ(status.st_mode & 0777, 0640U);

    for (char const* const fresh : {"fresh.sdf", "fresh.qlt"}) {
        mode_t const mask = umask(027);
        runSilently({"convert", ligands, fresh});
        umask(mask);
        ASSERT_EQ(stat(scratchPath(fresh).c_str(), &status), 0);
        EXPECT_EQ(status.st_mode & 0777, 0640U) << fresh;
    }
}

TEST_F(Output, thatCannotBeMadeIsToldWithTheReason) {
    std::filesystem::create_directory(scratchPath("folder.sdf"));
    EXPECT_EQ(failureOf({"convert", ligands, "absent/out.sdf"}), "tarnex: absent/out.sdf: No such file or directory\n");
    EXPECT_EQ(failureOf({"convert", ligands, "folder.sdf"}), "tarnex: folder.sdf: Is a directory\n");
}

TEST_F(Output, onAFullDiskLeavesNothingNewBehind) {
    for (char const* const name : {"out.sdf", "out.qlt"}) {
        writeFile(name, "old");
        EXPECT_EQ(failureOf({"convert", ligands, name}, 1000), "tarnex: " + std::string(name) + ": File too large\n");
        EXPECT_EQ(readFile(scratchPath(name)), "old");
    }
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("out.sdf", "out.qlt"));
}

TEST_F(Output, toADeviceIsWrittenThroughAndNotReplaced) {
    if (access("/dev/full", W_OK) != 0) GTEST_SKIP() << "needs /dev/full";
    EXPECT_EQ(failureOf({"convert", "--to", "qlt", ligands, "/dev/full"}),
              "tarnex: /dev/full: No space left on device\n");
    runSilently({"convert", "--to", "sdf", ligands, "/dev/null"});
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/null"));
    EXPECT_TRUE(std::filesystem::is_character_file("/dev/full"));
}

TEST_F(Output, isLeftAsItWasByAnInterruptionUnderTheProgressBar) {
    std::string records;
    for (int i = 0; i < 1000; ++i) records += readFile(ligands);
    writeFile("large.sdf", records);
    std::vector<std::string> arguments(102, "large.sdf");
    arguments.front() = "convert";
    arguments.back() = "out.sdf";
    writeFile("out.sdf", "old");

    Terminal terminal;
    Program program(arguments, terminal.descriptor());
    terminal.closeTheirs();
    EXPECT_THAT(terminal.readUntil(" %"), testing::StartsWith("\rreading large.sdf ["));
    program.interrupt();
    EXPECT_THAT(terminal.readUntil("interrupted"), testing::EndsWith("\r\x1b[Ktarnex: interrupted"));
    EXPECT_EQ(program.status(), 1);
    EXPECT_EQ(readFile(scratchPath("out.sdf")), "old");
    EXPECT_THAT(filesLeft(), UnorderedElementsAre("large.sdf", "out.sdf"));
}

} // namespace
