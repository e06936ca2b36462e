#pragma once

#include "foundation/export.h"
#include "textio/numberText.h"

#include <cstddef>
#include <cstdio>
#include <memory>
#include <string_view>

/// A text file that is written by columns. It does not know the current column: a range of columns only states a width.
/// Nothing is reported; a file that could not be opened takes everything silently.
class TARNEX_API writer {
public:
    /// Owned; null if the file could not be created. Text reaches it in blocks: call `flush` before writing to it
    /// directly.
    FILE* file;

    /// Creates the file, in mode "w".
    explicit writer(char const* filename);
    /// Writes what is still held and closes the file.
    ~writer();
    writer(writer const&) = delete;
    writer& operator=(writer const&) = delete;

    bool isOpen() const { return file != nullptr; }

    /// Hands everything written so far to the system.
    void flush();

    void write(char const* text);
    void write(char const* text, std::size_t length);
    /// As printf with "%f" in the "C" locale.
    void write(float value);
    void write(int value);

    /// Writes a field of `lastColumn - firstColumn + 1` characters, filled up with blanks. `alignment` 0 aligns right,
    /// 1 left; any other value writes nothing. A text that is too long for a field of up to 99 characters is cut: to
    /// the width on the left, but to one character less on the right, so that what follows moves left by one. In a
    /// wider field it is written whole.
    void writeColumns(std::string_view text, int firstColumn, int lastColumn, unsigned short alignment);
    void writeColumns(char const* text, int firstColumn, int lastColumn, unsigned short alignment);
    /// Writes `floatToString` of the field's width. Throws `FloatConversion_Error` if `value` does not fit.
    void writeColumns(float value, int firstColumn, int lastColumn, unsigned short alignment);
    /// Writes `itoa2` of `value` as a text.
    void writeColumns(int value, int firstColumn, int lastColumn, unsigned short alignment);

    /// Writes `leftFloatToString(leftWidth, value)`, right-aligned in `leftWidth` (at most 19) columns, a point, and
    /// `rightFloatToString(digits, value)`. Throws `FloatConversion_Error`, with nothing written, if `value` does not
    /// fit.
    void writeParts(float value, int leftWidth, int digits);
    /// As printf with "%*.*f" in the "C" locale, for a `width` of at most 100 and 0 to 20 decimals.
    void writeDecimal(float value, int width, int digits);

private:
    char* reserve(std::size_t length);
    void writeBlanks(long long count);
    void writeField(char const* text, std::size_t length, long long width, unsigned short alignment);

    std::unique_ptr<char[]> block;
    char* end;
};
