#include "SilentOutput.h"

#include <cstdio>
#include <fcntl.h>
#include <unistd.h>

namespace tarnex::tool {

SilentOutput::SilentOutput() {
    std::fflush(stdout);
    kept = fcntl(STDOUT_FILENO, F_DUPFD_CLOEXEC, 0);
    int const nowhere = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (nowhere < 0) return;
    dup2(nowhere, STDOUT_FILENO);
    if (nowhere != STDOUT_FILENO) close(nowhere);
}

SilentOutput::~SilentOutput() {
    std::fflush(stdout);
    if (kept < 0) {
        close(STDOUT_FILENO);
        return;
    }
    dup2(kept, STDOUT_FILENO);
    close(kept);
}

} // namespace tarnex::tool
