#pragma once

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <gmock/gmock.h>
#include <memory>
#include <sstream>
#include <string>
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

/// What a call writes on standard output.
template <class Call>
std::string printed(Call&& call) {
    testing::internal::CaptureStdout();
    call();
    std::fflush(stdout);
    return testing::internal::GetCapturedStdout();
}

} // namespace tarnex::test
