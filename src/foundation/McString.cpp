#include "foundation/McString.h"

#include "foundation/CLocale.h"

#include <cstdio>

McString::McString() {
    McDArray<char>::reserve(16);
    data[0] = '\0';
    size = 1;
}

McString::McString(char const* text) {
    assign(text, text ? static_cast<std::int64_t>(std::strlen(text)) : 0);
}

McString::McString(char const* text, int start, int length) {
    if (!text || length <= 0) {
        assign("", 0);
    } else {
        assign(text + start, length);
    }
}

McString::McString(McString const& other) = default;

McString::~McString() = default;

McString& McString::operator=(McString const& other) {
    if (this != &other) assign(other.data, other.size > 0 ? other.length() : 0);
    return *this;
}

McString& McString::operator=(char const* text) {
    assign(text, text ? static_cast<std::int64_t>(std::strlen(text)) : 0);
    return *this;
}

/// The characters may stand in this string: they are moved before the block can go.
void McString::assign(char const* characters, std::int64_t count) {
    if (count + 1 > capacity) {
        McDArray<char> fresh;
        fresh.reserve(count + 1);
        if (count > 0) std::memcpy(fresh.data, characters, static_cast<std::size_t>(count));
        swap(fresh);
    } else if (count > 0) {
        std::memmove(data, characters, static_cast<std::size_t>(count));
    }
    data[count] = '\0';
    size = count + 1;
}

void McString::printf(char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    vprintf(format, arguments);
    va_end(arguments);
}

void McString::vprintf(char const* format, va_list arguments) {
    tarnex::ScopedCLocale const cLocale;
    va_list again;
    va_copy(again, arguments);
    char small[256];
    int const length = std::vsnprintf(small, sizeof small, format, arguments);
    if (length < 0) {
        assign("", 0);
    } else if (static_cast<std::size_t>(length) < sizeof small) {
        assign(small, length);
    } else {
        McDArray<char> formatted(std::int64_t{length} + 1);
        std::vsnprintf(formatted.data, static_cast<std::size_t>(formatted.size), format, again);
        swap(formatted);
    }
    va_end(again);
}

void McString::append(char const* text) {
    if (text) append(text, static_cast<std::int64_t>(std::strlen(text)));
}

void McString::append(char character) {
    append(&character, 1);
}

void McString::append(char const* characters, std::int64_t count) {
    if (size > 0) --size;
    bool const own = characters >= data && characters <= data + size;
    std::int64_t const offset = own ? characters - data : 0;
    reserve(size + count + 1);
    if (own) characters = data + offset;
    if (count > 0) std::memmove(data + size, characters, static_cast<std::size_t>(count));
    data[size + count] = '\0';
    size += count + 1;
}

McString& McString::operator+=(char const* text) {
    append(text);
    return *this;
}

McString operator+(McString const& a, char const* b) {
    McString sum(a);
    sum.append(b);
    return sum;
}
