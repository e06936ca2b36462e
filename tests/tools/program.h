#pragma once

#include "support/testing.h"

#include <csignal>
#include <fcntl.h>
#include <nlohmann/json.hpp>
#include <sys/resource.h>
#include <sys/wait.h>
#include <unistd.h>

namespace tarnex::test {

using ToolTest = CleanTest;

/// A run of the command line program in the scratch folder of the test.
class Program {
public:
    /// Starts it. Standard error goes to the descriptor `errorTo` if one is given. No file that it writes can be larger
    /// than `fileLimit` bytes, if that is not 0: writing fails then as on a full disk.
    explicit Program(std::vector<std::string> arguments, int errorTo = -1, rlim_t fileLimit = 0)
        : outPath(scratchPath("program.out")), errPath(scratchPath("program.err")) {
        arguments.insert(arguments.begin(), TARNEX_PROGRAM);
        std::vector<char*> pointers;
        for (std::string& argument : arguments) pointers.push_back(argument.data());
        pointers.push_back(nullptr);
        std::string const folder = scratchPath("");
        process = fork();
        if (process != 0) return;
        if (chdir(folder.c_str()) != 0) _exit(126);
        dup2(open(outPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666), STDOUT_FILENO);
        dup2(errorTo >= 0 ? errorTo : open(errPath.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0666), STDERR_FILENO);
        if (fileLimit != 0) {
            rlimit const limit = {fileLimit, fileLimit};
            setrlimit(RLIMIT_FSIZE, &limit);
            std::signal(SIGXFSZ, SIG_IGN);
        }
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
    std::string out() {
        status();
        return readFile(outPath);
    }
    std::string err() {
        status();
        return readFile(errPath);
    }

private:
    std::string outPath;
    std::string errPath;
    pid_t process;
    int waitStatus = 0;
};

/// The sample file of three molecules.
inline std::string const ligands = TARNEX_EXAMPLES "/ligands.sdf";

/// Runs the program, which has to succeed without a word, and returns what it wrote to standard output.
inline std::string runSilently(std::vector<std::string> const& arguments) {
    Program program(arguments);
    EXPECT_EQ(program.status(), 0);
    EXPECT_EQ(program.err(), "");
    return program.out();
}

/// Runs the program, which has to fail, and returns what it says.
inline std::string failureOf(std::vector<std::string> const& arguments, rlim_t fileLimit = 0) {
    Program program(arguments, -1, fileLimit);
    EXPECT_EQ(program.status(), 1);
    return program.err();
}

/// Runs the program, which has to succeed, and returns its notes and warnings.
inline std::string notesOf(std::vector<std::string> const& arguments) {
    Program program(arguments);
    EXPECT_EQ(program.status(), 0);
    return program.err();
}

/// What the report in JSON tells of the molecules in an input of these files.
inline nlohmann::json moleculesIn(std::vector<std::string> files) {
    files.insert(files.begin(), {"info", "--json"});
    return nlohmann::json::parse(runSilently(files))[0]["molecules"];
}

} // namespace tarnex::test
