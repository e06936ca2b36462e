#pragma once

#include "foundation/McProgressInterface.h"

#include <csignal>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <sstream>
#include <string>
#include <sys/resource.h>
#include <vector>

namespace tarnex::test {

using testing::ElementsAre;
using testing::EndsWith;
using testing::FloatEq;
using testing::HasSubstr;
using testing::StartsWith;
using testing::UnorderedElementsAre;

/// A path in the scratch folder of the running test.
inline std::string scratchPath(std::string const& name) {
    auto const* info = testing::UnitTest::GetInstance()->current_test_info();
    auto const folder = std::filesystem::path(testing::TempDir()) / info->test_suite_name() / info->name();
    std::filesystem::create_directories(folder);
    return (folder / name).string();
}

/// Returns the path of the file.
inline std::string writeFile(std::string const& name, std::string const& content) {
    std::string const path = scratchPath(name);
    std::ofstream(path, std::ios::binary) << content;
    return path;
}

inline std::string readFile(std::string const& path) {
    std::ostringstream content;
    content << std::ifstream(path, std::ios::binary).rdbuf();
    return content.str();
}

/// Names of the files in the scratch folder, without those that hold a program's output.
inline std::vector<std::string> filesLeft() {
    std::vector<std::string> names;
    for (auto const& entry : std::filesystem::directory_iterator(scratchPath(""))) {
        std::string const name = entry.path().filename().string();
        if (!name.starts_with("program.")) names.push_back(name);
    }
    return names;
}

/// A test that begins with an empty scratch folder.
class CleanTest : public testing::Test {
protected:
    void SetUp() override { std::filesystem::remove_all(scratchPath("")); }
};

/// What a call writes on standard output.
template <class Call>
std::string printed(Call&& call) {
    testing::internal::CaptureStdout();
    call();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

/// The result of a call during which no file grows beyond a number of bytes, as on a full disk.
template <class Call>
auto onFullDisk(rlim_t numBytes, Call&& call) {
    rlimit before = {};
    EXPECT_EQ(getrlimit(RLIMIT_FSIZE, &before), 0);
    rlimit const low = {numBytes, before.rlim_max};
    auto const oldHandler = std::signal(SIGXFSZ, SIG_IGN);
    EXPECT_EQ(setrlimit(RLIMIT_FSIZE, &low), 0);
    auto const result = call();
    setrlimit(RLIMIT_FSIZE, &before);
    std::signal(SIGXFSZ, oldHandler);
    return result;
}

/// Writes down every call and asks to stop at the question number `stopAt`, counted from 1; never for 0.
class RecordingProgress : public McProgressInterface {
public:
    explicit RecordingProgress(int stopAtQuestion = 0) : stopAt(stopAtQuestion) {}

    void startWorking(char const* format, ...) override { calls.push_back(std::string("start ") + format); }
    void stopWorking() override { calls.emplace_back("stop"); }
    void setProgressValue(float fraction) override { fractions.push_back(fraction); }
    int wasInterrupted(int) override { return ++questions == stopAt ? 1 : 0; }
    void setProgressInfo(char const* format, ...) override { calls.push_back(std::string("info ") + format); }

    std::vector<std::string> calls;
    std::vector<float> fractions;
    int questions = 0;

private:
    int stopAt;
};

} // namespace tarnex::test
