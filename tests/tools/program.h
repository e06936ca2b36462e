#pragma once

#include "support/testing.h"

#include <csignal>
#include <fcntl.h>
#include <iterator>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnex::test {

/// A test that begins with a scratch folder of one file, that of three molecules.
class ToolTest : public CleanTest {
protected:
    void SetUp() override {
        CleanTest::SetUp();
        std::filesystem::copy_file(TARNEX_EXAMPLES "/ligands.sdf", scratchPath("ligands.sdf"));
    }
};

/// What is in a file of the scratch folder.
inline std::string content(std::string const& name) {
    return readFile(scratchPath(name));
}

inline bool exists(std::string const& name) {
    return std::filesystem::exists(scratchPath(name));
}

/// A run of the command line program in the scratch folder of the test.
class Program {
public:
    /// Starts it with the words of a line. Standard error goes to the descriptor `errorTo` if one is given. No file
    /// that it writes can be larger than `fileLimit` bytes, if that is not 0: writing fails then as on a full disk.
    explicit Program(std::string const& line, int errorTo = -1, rlim_t fileLimit = 0) {
        std::istringstream words(line);
        std::vector<std::string> arguments(std::istream_iterator<std::string>(words), {});
        arguments.insert(arguments.begin(), TARNEX_PROGRAM);
        std::vector<char*> pointers;
        for (std::string& argument : arguments) pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        std::string const folder = scratchPath("");
        process = fork();
        if (process != 0) return;
        if (chdir(folder.c_str()) != 0) _exit(126);
        int const flags = O_WRONLY | O_CREAT | O_TRUNC;
        dup2(open("program.out", flags, 0666), STDOUT_FILENO);
        dup2(errorTo >= 0 ? errorTo : open("program.err", flags, 0666), STDERR_FILENO);
        if (fileLimit != 0) {
            rlimit const limit = {fileLimit, fileLimit};
            setrlimit(RLIMIT_FSIZE, &limit);
            std::signal(SIGXFSZ, SIG_IGN);
        }
        std::signal(SIGINT, SIG_DFL); // ignored where a shell has put the tests into the background
        execv(pointers[0], pointers.data());
        _exit(127);
    }

    void interrupt() const { kill(process, SIGINT); }

    /// Waits for the end. -1 if a signal ended it.
    int status() {
        if (process > 0) waitpid(process, &waitStatus, 0);
        process = -1;
        return WIFEXITED(waitStatus) ? WEXITSTATUS(waitStatus) : -1;
    }

private:
    pid_t process;
    int waitStatus = 0;
};

/// Runs the program, which has to end with this status, and returns its notes, warnings and errors.
inline std::string notesOf(std::string const& line, int status = 0, rlim_t fileLimit = 0) {
    EXPECT_EQ(Program(line, -1, fileLimit).status(), status) << line;
    return content("program.err");
}

/// Runs the program, which has to succeed without a word, and returns what it wrote to standard output.
inline std::string runSilently(std::string const& line) {
    EXPECT_EQ(notesOf(line), "") << line;
    return content("program.out");
}

/// What the report in JSON tells of the molecules in an input of these files.
inline nlohmann::json moleculesIn(std::string const& files) {
    return nlohmann::json::parse(runSilently("info --json " + files))[0]["molecules"];
}

} // namespace tarnex::test
