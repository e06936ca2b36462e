#include "CapturedOutput.h"

#include <unistd.h>

namespace tarnex::tool {

CapturedOutput::CapturedOutput(FILE* standardStream)
    : stream(standardStream), store(std::tmpfile()), original(dup(fileno(standardStream))) {
    std::fflush(stream);
    if (store) dup2(fileno(store), fileno(stream));
}

CapturedOutput::~CapturedOutput() {
    std::fflush(stream);
    if (original >= 0) {
        dup2(original, fileno(stream));
        close(original);
    }
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
