#pragma once

#include "foundation/McDArray.h"
#include "qlt/littleEndian.h"

#include <cstdint>
#include <cstring>

namespace tarnex {

/// Builds a section of a house format file in memory.
class SectionWriter {
public:
    /// Room for `count` further bytes, to be filled by the caller ahead of the next call.
    char* extend(std::int64_t count) {
        bytes.resize(bytes.size + count);
        return bytes.data + bytes.size - count;
    }
    template <class Integer>
    void put(Integer value) {
        storeLittle(extend(sizeof(Integer)), value);
    }
    void putBytes(char const* data, std::int64_t count) {
        if (count > 0) std::memcpy(extend(count), data, static_cast<std::size_t>(count));
    }
    /// A text is closed by a NUL.
    void putText(char const* text) { putBytes(text, static_cast<std::int64_t>(std::strlen(text)) + 1); }

    McDArray<char> bytes;
};

/// Reads a section in memory. A request for more bytes than are left fails, and so do all that follow; what they return
/// is 0, an empty text or null.
class SectionReader {
public:
    SectionReader(char const* bytes, std::uint64_t count) : next(bytes), end(bytes + count) {}

    bool failed() const { return next == nullptr; }
    void fail() { next = end = nullptr; }
    std::uint64_t bytesLeft() const { return static_cast<std::uint64_t>(end - next); }

    /// The next `count` bytes, which stay in the section.
    char const* take(std::uint64_t count) {
        if (count > bytesLeft()) fail();
        if (failed()) return nullptr;
        char const* taken = next;
        next += count;
        return taken;
    }
    template <class Integer>
    Integer get() {
        char const* bytes = take(sizeof(Integer));
        return bytes ? loadLittle<Integer>(bytes) : Integer{};
    }
    char const* getText() {
        auto const* nul = failed() ? nullptr : static_cast<char const*>(std::memchr(next, 0, bytesLeft()));
        char const* text = nul ? take(static_cast<std::uint64_t>(nul - next) + 1) : nullptr;
        if (!text) fail();
        return text ? text : "";
    }

private:
    char const* next;
    char const* end;
};

} // namespace tarnex
