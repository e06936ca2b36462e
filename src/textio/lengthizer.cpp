#include "textio/lengthizer.h"

#include "textio/numberParsing.h"
#include "textio/plainNumber.h"
#include "textio/textScan.h"

#include <cstring>

lengthizer::lengthizer(char const* filename, std::size_t blockSize) : reader(filename, blockSize), target(buffer) {}

/// Passes the next field and returns its text, which stands in the block until the next call. At most 255 characters,
/// so that a field always fits in `buffer`.
std::string_view lengthizer::takeField(unsigned char width) {
    std::size_t const held = provide(width);
    char const* const limit = cursor + held;
    char const* const first = tarnex::skipBlanks(cursor, limit);
    if (first == limit) {
        if (held < width) eof = true;
        cursor = limit;
        return {limit, 0};
    }
    cursor = tarnex::findLineEnd(first, limit);
    return {first, static_cast<std::size_t>(tarnex::cutBlanks(first, cursor) - first)};
}

/// The next field, in `target` and as the text that the numbers are made from, which is always that of `buffer`.
std::string_view lengthizer::storeField(unsigned char width) {
    if (width == 0) {
        trim(target, std::strlen(target));
        return buffer;
    }
    std::string_view const field = takeField(width);
    if (target == buffer) {
        keep(field.data(), field.size());
        return field;
    }
    std::memcpy(target, field.data(), field.size());
    target[field.size()] = '\0';
    return buffer;
}

void lengthizer::getToken(unsigned char width) {
    storeField(width);
}

char const* lengthizer::getString(unsigned char width) {
    storeField(width);
    return buffer;
}

char const* lengthizer::getString(char* destination, unsigned char width) {
    target = destination;
    storeField(width);
    target = buffer;
    return buffer;
}

/// The text from the next field's first character other than a blank up to its last column, if that is at hand. Nothing
/// is passed.
std::string_view lengthizer::peekNumber(unsigned char width) const {
    if (blockEnd - cursor < width || target != buffer) return "";
    char const* const limit = cursor + width;
    char const* const first = tarnex::skipBlanks(cursor, limit);
    return {first, static_cast<std::size_t>(limit - first)};
}

void lengthizer::passNumber(std::string_view number) {
    keep(number.data(), number.size());
    cursor = number.data() + number.size();
}

/// A number that fills its field up to the last column, as nearly all do, needs no search for a line end or blanks.
int lengthizer::getInt(unsigned char width) {
    std::string_view const number = peekNumber(width);
    int value;
    if (!tarnex::parseShortInt(number, value)) return tarnex::parseInt(storeField(width));
    passNumber(number);
    return value;
}

float lengthizer::getFloat(unsigned char width) {
    std::string_view const number = peekNumber(width);
    double value;
    if (!tarnex::parseShortDouble(number, value)) return static_cast<float>(tarnex::parseDouble(storeField(width)));
    passNumber(number);
    return static_cast<float>(value);
}

char const* lengthizer::getUntrimmedLineString() {
    trim(target, takeLine(target));
    return target;
}

/// Makes a copy in `buffer`.
char const* lengthizer::padColumns(char const* text, std::ptrdiff_t length, std::ptrdiff_t count) {
    std::memcpy(buffer, text, static_cast<std::size_t>(length));
    std::memset(buffer + length, ' ', static_cast<std::size_t>(count - length));
    buffer[count] = '\0';
    return buffer;
}
