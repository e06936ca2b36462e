#pragma once

#include <cstdio>
#include <filesystem>
#include <string>
#include <unistd.h>

/// Generated files, in a folder of their own that is removed when the program ends.
namespace scratch {

class Folder {
public:
    Folder() : path(std::filesystem::temp_directory_path() / ("tarnex-benchmarks-" + std::to_string(::getpid()))) {
        std::filesystem::create_directories(path);
    }
    ~Folder() {
        std::error_code ignored;
        std::filesystem::remove_all(path, ignored);
    }
    Folder(Folder const&) = delete;
    Folder& operator=(Folder const&) = delete;

    std::filesystem::path const path;
};

inline std::string file(std::string const& name) {
    static Folder const folder;
    return (folder.path / name).string();
}

/// Makes a file by `write(FILE*)` and returns its path.
template <class Write>
std::string generate(std::string const& name, Write&& write) {
    std::string const path = file(name);
    FILE* stream = std::fopen(path.c_str(), "wb");
    write(stream);
    std::fclose(stream);
    return path;
}

} // namespace scratch
