#include "gromacs/TargetFiles.h"

#include <cstdio>
#include <filesystem>

namespace tarnex::gromacs {

TargetFiles::TargetFiles(std::initializer_list<char const*> names) {
    std::error_code ignored;
    for (char const* name : names) {
        bool const isNew = !std::filesystem::exists(name, ignored);
        FILE* file = std::fopen(name, "ab");
        if (!file) {
            writable = false;
            return;
        }
        std::fclose(file);
        if (isNew) toRemove.emplace_back(name);
    }
    // From here on files that were there lose their content as well. Devices and pipes are not removed.
    toRemove.clear();
    for (char const* name : names) {
        if (std::filesystem::is_regular_file(name, ignored)) toRemove.emplace_back(name);
    }
}

TargetFiles::~TargetFiles() {
    std::error_code ignored;
    for (std::string const& name : toRemove) std::filesystem::remove(name, ignored);
}

} // namespace tarnex::gromacs
