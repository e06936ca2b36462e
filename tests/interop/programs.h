#pragma once

#include "support/testing.h"

#include <cstdlib>

namespace tarnex::test {

inline bool succeeds(std::string const& command) {
    return std::system(("(" + command + ") >/dev/null 2>&1").c_str()) == 0;
}

/// What a command writes to standard output; its messages are dropped unless it sends them there.
inline std::string output(std::string const& command) {
    std::string text;
    FILE* pipe = popen(("(" + command + ") 2>/dev/null </dev/null").c_str(), "r");
    char block[4096];
    while (std::size_t const count = std::fread(block, 1, sizeof block, pipe)) text.append(block, count);
    pclose(pipe);
    return text;
}

} // namespace tarnex::test
