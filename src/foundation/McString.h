#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandable.h"

#include <compare>
#include <cstdarg>
#include <cstring>

/// Character string: an array of `char` whose terminating NUL always counts in `size`. Owns its characters.
class TARNEX_API McString : public McHandable, public McDArray<char> {
public:
    /// The empty string, with room for 16 bytes.
    McString();
    /// A null `text` counts as the empty string.
    McString(char const* text);
    /// The `length` characters from `text + start`, without a look for a terminator in them.
    McString(char const* text, int start, int length);
    McString(McString const& other);
    ~McString() override;

    McString& operator=(McString const& other);
    McString& operator=(char const* text);

    operator char const*() const { return data; }

    /// The number of characters without the terminating NUL.
    std::int64_t length() const { return size - 1; }

    /// Replaces the content by the formatted text, of any length; numbers are formatted as in the "C" locale. The
    /// arguments may be the string itself.
    void printf(char const* format, ...) __attribute__((format(printf, 2, 3)));
    /// The same with an argument list, which is used up.
    void vprintf(char const* format, va_list arguments) __attribute__((format(printf, 2, 0)));

    void append(char const* text);
    void append(char character);
    /// Appends `count` characters, which may hold NUL bytes.
    void append(char const* characters, std::int64_t count);
    McString& operator+=(char const* text);

private:
    void assign(char const* characters, std::int64_t count);
};

/// A copy of `a` with `b` appended; a null `b` gives a plain copy.
TARNEX_API McString operator+(McString const& a, char const* b);

// By byte, as `strcmp`.
inline bool operator==(McString const& a, char const* b) {
    return std::strcmp(a.data, b) == 0;
}
inline bool operator==(McString const& a, McString const& b) {
    return a == b.data;
}
inline std::strong_ordering operator<=>(McString const& a, char const* b) {
    return std::strcmp(a.data, b) <=> 0;
}
inline std::strong_ordering operator<=>(McString const& a, McString const& b) {
    return a <=> b.data;
}
