#pragma once

#include "facts.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnex::tool {

/// What `info` tells of one input. Either its molecules are there or the reason why it could not be read.
struct FileReport {
    std::vector<std::string> files;
    std::string format;
    std::string formatDescription;
    std::uintmax_t bytes = 0;
    std::vector<MoleculeFacts> molecules;
    std::vector<std::string> errors;
};

/// For a person. Without `all` long lists and texts are cut.
void printReport(FileReport const& report, bool all);

/// For a program: all reports as one array.
void printJson(std::vector<FileReport> const& reports);

} // namespace tarnex::tool
