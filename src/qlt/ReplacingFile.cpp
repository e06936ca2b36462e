#include "qlt/ReplacingFile.h"

#include <algorithm>
#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnex {

namespace {

/// The file itself where the name is a symbolic link, which is to stay one.
McFilename behindLinks(char const* name) {
    std::unique_ptr<char, decltype(&std::free)> const path(realpath(name, nullptr), &std::free);
    return {path ? path.get() : name};
}

} // namespace

ReplacingFile::ReplacingFile(char const* name) {
    if (!name || !*name) return;
    target = behindLinks(name);
    open();
    if (descriptor >= 0) block = std::make_unique_for_overwrite<char[]>(blockSize);
}

ReplacingFile::~ReplacingFile() {
    if (descriptor < 0) return;
    closeDescriptor();
    unlink(temporary);
}

void ReplacingFile::open() {
    struct stat older;
    bool const replaces = stat(target, &older) == 0;
    if (replaces && (!S_ISREG(older.st_mode) || access(target, W_OK) != 0)) return;

    constexpr int attempts = 10000;
    McString folder;
    target.dirname(folder);
    for (int i = 0; i < attempts; ++i) {
        temporary.printf("%s.qlt-%ld-%d.tmp", folder.data, static_cast<long>(getpid()), i);
        descriptor = ::open(temporary, O_WRONLY | O_CREAT | O_EXCL | O_CLOEXEC, 0666);
        if (descriptor >= 0 || errno != EEXIST) break;
    }
    if (descriptor >= 0 && replaces) fchmod(descriptor, older.st_mode & 0777U);
}

void ReplacingFile::append(char const* bytes, std::size_t count) {
    while (count > 0 && !failed()) {
        std::size_t const part = std::min(count, blockSize);
        std::memcpy(room(part), bytes, part);
        appendRoom(part);
        bytes += part;
        count -= part;
    }
}

char* ReplacingFile::room(std::size_t count) {
    if (count > blockSize - used) flush();
    return block.get() + used;
}

void ReplacingFile::flush() {
    writeAt(flushed, block.get(), used);
    flushed += used;
    used = 0;
}

void ReplacingFile::writeAt(std::uint64_t offset, char const* bytes, std::size_t count) {
    while (count > 0 && !failed()) {
        ssize_t const written = pwrite(descriptor, bytes, count, static_cast<off_t>(offset));
        if (written < 0 && errno == EINTR) continue;
        if (written <= 0) {
            writeFailed = true;
            return;
        }
        bytes += written;
        offset += static_cast<std::uint64_t>(written);
        count -= static_cast<std::size_t>(written);
    }
}

void ReplacingFile::closeDescriptor() {
    // Some file systems report a full disk only here.
    if (close(descriptor) != 0) writeFailed = true;
    descriptor = -1;
}

bool ReplacingFile::commit(char const* start, std::size_t count) {
    if (failed()) return false;
    flush();
    writeAt(0, start, count);
    closeDescriptor();
    bool const done = !writeFailed && std::rename(temporary, target) == 0;
    if (!done) unlink(temporary);
    return done;
}

} // namespace tarnex
