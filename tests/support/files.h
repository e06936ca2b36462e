#pragma once

#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <sstream>
#include <string>

namespace tarnex::test {

/// A path in the scratch folder of the running test.
inline std::string scratchPath(std::string const& name) {
    auto const* info = testing::UnitTest::GetInstance()->current_test_info();
    auto const folder = std::filesystem::path(testing::TempDir()) / info->test_suite_name() / info->name();
    std::filesystem::create_directories(folder);
    return (folder / name).string();
}

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

} // namespace tarnex::test
