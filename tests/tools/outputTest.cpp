#include "tools/program.h"

#include <cstdlib>
#include <sys/stat.h>

namespace {

using namespace tarnex::test;
using Output = ToolTest;

unsigned modeOf(std::string const& name) {
    struct stat status = {};
    EXPECT_EQ(stat(scratchPath(name).c_str(), &status), 0);
    return status.st_mode & 0777U;
}

TEST_F(Output, keepsLinksModesAndDevices) {
    std::string const file = writeFile("real.sdf", "old");
    std::filesystem::create_symlink("real.sdf", scratchPath("link.sdf"));
    chmod(file.c_str(), 0640);
    runSilently("convert ligands.sdf link.sdf");
    EXPECT_TRUE(std::filesystem::is_symlink(scratchPath("link.sdf")));
    EXPECT_NE(readFile(file), "old");
    EXPECT_EQ(modeOf("real.sdf"), 0640U);
    for (std::string const fresh : {"fresh.sdf", "fresh.qlt"}) {
        mode_t const mask = umask(027);
        runSilently("convert ligands.sdf " + fresh);
        umask(mask);
        EXPECT_EQ(modeOf(fresh), 0640U) << fresh;
    }
    mkfifo(scratchPath("pipe").c_str(), 0600);
    int const reader = open(scratchPath("pipe").c_str(), O_RDONLY | O_NONBLOCK);
    runSilently("convert --to sdf ligands.sdf pipe");
    EXPECT_TRUE(std::filesystem::is_fifo(scratchPath("pipe")));
    char start[8] = "";
    EXPECT_EQ(read(reader, start, sizeof start), 8);
    close(reader);
}

/// Everything up to a text, or up to the end.
std::string readUntil(int descriptor, std::string const& text) {
    std::string got;
    char c = 0;
    while (got.find(text) == std::string::npos && read(descriptor, &c, 1) == 1) got += c;
    return got;
}

TEST_F(Output, isLeftAsItWasByAnInterruptionUnderTheProgressBar) {
    std::string records;
    for (int i = 0; i < 1000; ++i) records += content("ligands.sdf");
    writeFile("large.sdf", records);
    writeFile("out.sdf", "old");
    std::string line = "convert";
    for (int i = 0; i < 100; ++i) line += " large.sdf";

    int const terminal = posix_openpt(O_RDWR | O_NOCTTY);
    grantpt(terminal);
    unlockpt(terminal);
    int const otherEnd = open(ptsname(terminal), O_RDWR | O_NOCTTY);
    Program program(line + " out.sdf", otherEnd);
    close(otherEnd);
    EXPECT_THAT(readUntil(terminal, " %"), StartsWith("\rreading large.sdf ["));
    program.interrupt();
    EXPECT_THAT(readUntil(terminal, "interrupted"), EndsWith("\r\x1b[Ktarnex: interrupted"));
    EXPECT_EQ(program.status(), 1);
    close(terminal);
    EXPECT_EQ(content("out.sdf"), "old");
    EXPECT_EQ(filesLeft().size(), 3U);
}

} // namespace
