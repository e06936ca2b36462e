#include "DivertedOutput.h"

#include <fcntl.h>
#include <unistd.h>

namespace tarnex::tool {

namespace {

/// Opens what takes everything, in no place of a standard stream that is closed.
int openNowhere() {
    int const lowest = open("/dev/null", O_WRONLY | O_CLOEXEC);
    if (lowest < 0) return lowest;
    int const descriptor = fcntl(lowest, F_DUPFD_CLOEXEC, STDERR_FILENO + 1);
    close(lowest);
    return descriptor;
}

/// Opened once.
int nowhere() {
    static int const descriptor = openNowhere();
    return descriptor;
}

} // namespace

DivertedOutput::DivertedOutput(FILE* standardStream, int target) : stream(standardStream) {
    std::fflush(stream);
    kept = fcntl(fileno(stream), F_DUPFD_CLOEXEC, 0);
    if (target >= 0) dup2(target, fileno(stream));
}

DivertedOutput::~DivertedOutput() {
    std::fflush(stream);
    if (kept < 0) {
        close(fileno(stream));
        return;
    }
    dup2(kept, fileno(stream));
    close(kept);
}

SilentOutput::SilentOutput(FILE* standardStream) : DivertedOutput(standardStream, nowhere()) {}

CapturedOutput::CapturedOutput(FILE* standardStream, FILE* newStore)
    : DivertedOutput(standardStream, newStore ? fileno(newStore) : -1), store(newStore) {}

CapturedOutput::~CapturedOutput() {
    std::fflush(stream);
    if (store) std::fclose(store);
}

std::string CapturedOutput::text() const {
    std::fflush(stream);
    std::string all;
    if (!store) return all;
    char block[4096];
    off_t offset = 0;
    for (ssize_t count = 0; (count = pread(fileno(store), block, sizeof block, offset)) > 0; offset += count) {
        all.append(block, static_cast<std::size_t>(count));
    }
    return all;
}

} // namespace tarnex::tool
