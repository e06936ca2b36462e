#include "textio/writer.h"

#include <algorithm>
#include <cstring>

namespace {

constexpr std::size_t blockSize = 65536;
/// Only fields up to this width cut their text.
constexpr long long widestCutField = 99;

long long widthOf(int firstColumn, int lastColumn) {
    return static_cast<long long>(lastColumn) - firstColumn + 1;
}

} // namespace

writer::writer(char const* filename)
    : file(filename ? std::fopen(filename, "w") : nullptr), block(new char[blockSize]), end(block.get()) {
    if (file) std::setvbuf(file, nullptr, _IONBF, 0);
}

writer::~writer() {
    flush();
    if (file) std::fclose(file);
}

void writer::flush() {
    if (file && end != block.get()) std::fwrite(block.get(), 1, static_cast<std::size_t>(end - block.get()), file);
    end = block.get();
}

/// Room for `length` characters, at most a block, behind `end`.
char* writer::reserve(std::size_t length) {
    if (static_cast<std::size_t>(block.get() + blockSize - end) < length) flush();
    return end;
}

void writer::write(char const* text) {
    write(text, std::strlen(text));
}

void writer::write(char const* text, std::size_t length) {
    while (length > 0) {
        std::size_t const piece = std::min(length, blockSize);
        std::memcpy(reserve(piece), text, piece);
        end += piece;
        text += piece;
        length -= piece;
    }
}

void writer::write(float value) {
    writeDecimal(value, 0, 6);
}

void writer::write(int value) {
    end = tarnex::putInt(reserve(tarnex::numberTextRoom), value);
}

void writer::writeBlanks(long long count) {
    for (; count > 0; --count) {
        *reserve(1) = ' ';
        ++end;
    }
}

void writer::writeField(char const* text, std::size_t length, long long width, unsigned short alignment) {
    if (alignment > 1) return;
    bool const alignRight = alignment == 0;
    long long const excess = static_cast<long long>(length) - width;
    if (excess > 0 && width <= widestCutField) {
        long long const fitting = alignRight ? width - 1 : width;
        if (fitting > 0) write(text, static_cast<std::size_t>(fitting));
        return;
    }
    if (alignRight) writeBlanks(-excess);
    write(text, length);
    if (!alignRight) writeBlanks(-excess);
}

void writer::writeColumns(std::string_view text, int firstColumn, int lastColumn, unsigned short alignment) {
    writeField(text.data(), text.size(), widthOf(firstColumn, lastColumn), alignment);
}

void writer::writeColumns(char const* text, int firstColumn, int lastColumn, unsigned short alignment) {
    writeColumns(std::string_view(text), firstColumn, lastColumn, alignment);
}

void writer::writeColumns(float value, int firstColumn, int lastColumn, unsigned short alignment) {
    long long const width = widthOf(firstColumn, lastColumn);
    if (width < 2 || width > 20) throw FloatConversion_Error{};
    char text[tarnex::numberTextRoom];
    char const* const textEnd = tarnex::putFloat(text, static_cast<int>(width), value);
    writeField(text, static_cast<std::size_t>(textEnd - text), width, alignment);
}

void writer::writeColumns(int value, int firstColumn, int lastColumn, unsigned short alignment) {
    char text[tarnex::numberTextRoom];
    char const* const textEnd = tarnex::putInt(text, value);
    writeField(text, static_cast<std::size_t>(textEnd - text), widthOf(firstColumn, lastColumn), alignment);
}

void writer::writeParts(float value, int leftWidth, int digits) {
    end = tarnex::putParts(reserve(2 * tarnex::numberTextRoom), leftWidth, digits, value);
}

void writer::writeDecimal(float value, int width, int digits) {
    end = tarnex::putDecimal(reserve(2 * tarnex::numberTextRoom), width, digits, value);
}
