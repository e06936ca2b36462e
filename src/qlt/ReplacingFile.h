#pragma once

#include "foundation/McFilename.h"

#include <cstddef>
#include <cstdint>
#include <memory>

namespace tarnex {

/// An output file that stands under a temporary name in the folder of its final one until it is complete. A file of the
/// final name keeps its content until then, and keeps its permissions. Destroyed ahead of `commit`, it leaves nothing.
class ReplacingFile {
public:
    /// A file that cannot be made has failed from the start: also one that would replace something which is no ordinary
    /// file or is not writable.
    explicit ReplacingFile(char const* name);
    ~ReplacingFile();
    ReplacingFile(ReplacingFile const&) = delete;
    ReplacingFile& operator=(ReplacingFile const&) = delete;

    bool failed() const { return descriptor < 0 || writeFailed; }
    void append(char const* bytes, std::size_t count);
    /// Room for 1 to `blockSize` further bytes; what the caller puts there is appended by `appendRoom`.
    char* room(std::size_t count);
    void appendRoom(std::size_t count) { used += count; }
    std::uint64_t length() const { return flushed + used; }

    /// Writes `count` bytes over the beginning of the file and gives the file its final name. False if anything failed
    /// since the file was opened.
    bool commit(char const* start, std::size_t count);

    /// A block that stays in the processor's cache between its calculation and the system's copy.
    static constexpr std::size_t blockSize = 256 * 1024;

private:
    void open();
    void flush();
    void writeAt(std::uint64_t offset, char const* bytes, std::size_t count);
    void closeDescriptor();

    McFilename target;
    McFilename temporary;
    int descriptor = -1;
    bool writeFailed = false;
    std::unique_ptr<char[]> block;
    std::size_t used = 0;
    std::uint64_t flushed = 0;
};

} // namespace tarnex
