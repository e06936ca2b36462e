#include "textio/reader.h"

#include "textio/textScan.h"

#include <algorithm>
#include <cstring>

using tarnex::findLineEnd;

namespace {

/// How many of a row of characters end a line.
struct LineEnds {
    static constexpr std::ptrdiff_t rowLength = 240; // each count fits in a byte

    explicit LineEnds(char const* row) {
        unsigned char lfs = 0;
        unsigned char crs = 0;
        for (std::ptrdiff_t i = 0; i < rowLength; ++i) {
            lfs = static_cast<unsigned char>(lfs + (row[i] == '\n'));
            crs = static_cast<unsigned char>(crs + (row[i] == '\r'));
        }
        lf = lfs;
        cr = crs;
    }
    int lf;
    int cr;
};

} // namespace

reader::reader(char const* filename, std::size_t blockSize)
    : file(filename ? std::fopen(filename, "rb") : nullptr), positions(0),
      fetchSize(std::max<std::size_t>(blockSize, 1)), block(new char[maxLength + (file ? fetchSize : 0) + slack]) {
    buffer[0] = '\0';
    cursor = blockEnd = block.get();
    std::memset(block.get(), '\n', slack);
    if (file) std::setvbuf(file, nullptr, _IONBF, 0);
}

reader::~reader() {
    if (file) std::fclose(file);
}

/// Moves what is left to the front of the block and fetches behind it until `wanted` characters are there. A file that
/// cannot be read, such as a directory, has ended as well.
std::size_t reader::fill(std::size_t wanted) {
    auto held = static_cast<std::size_t>(blockEnd - cursor);
    if (!file || exhausted) return held;
    blockOffset = tell();
    std::memmove(block.get(), cursor, held);
    while (held < wanted && !exhausted) {
        std::size_t const fetched = std::fread(block.get() + held, 1, fetchSize, file);
        exhausted = fetched < fetchSize;
        held += fetched;
    }
    cursor = block.get();
    blockEnd = cursor + held;
    std::memset(block.get() + held, '\n', slack);
    return held;
}

int reader::believableCount(int count) const {
    constexpr int alwaysBelieved = 1000000;
    if (count <= alwaysBelieved) return count;
    long const place = file ? std::ftell(file) : -1;
    if (place < 0 || std::fseek(file, 0, SEEK_END) != 0) return alwaysBelieved;
    long const bytes = std::ftell(file);
    std::fseek(file, place, SEEK_SET);
    return static_cast<int>(std::clamp<long>(bytes, alwaysBelieved, count));
}

void reader::nextLineAtBlockEnd() {
    do {
        if (provide(1) == 0) {
            buffer[0] = '\0';
            eof = true;
            return;
        }
        cursor = findLineEnd(cursor, blockEnd);
    } while (cursor == blockEnd);
    passLineEnd(provide(2) == 2);
}

void reader::skipLines(std::int64_t count) {
    for (; count > 0 && !eof; --count) {
        count -= skipPlainLines(count);
        nextLine();
    }
}

/// Passes rows of characters whose line ends are all LF, as long as they end fewer than `count` lines in all. Returns
/// how many lines they end.
std::int64_t reader::skipPlainLines(std::int64_t count) {
    std::int64_t passed = 0;
    while (blockEnd - cursor > LineEnds::rowLength) {
        LineEnds const ends(cursor);
        // A CR right behind the row may belong to a LF at its end.
        if (ends.cr > 0 || cursor[LineEnds::rowLength] == '\r' || passed + ends.lf >= count) break;
        passed += ends.lf;
        cursor += LineEnds::rowLength;
    }
    lineNumber = static_cast<int>(static_cast<unsigned>(lineNumber) + static_cast<unsigned>(passed));
    return passed;
}

void reader::skipPastBlock(std::ptrdiff_t n) {
    while (n > 0) {
        if (provide(1) == 0) {
            eof = true;
            return;
        }
        char const* const stop = cursor + std::min(n, blockEnd - cursor);
        n -= stop - cursor;
        cursor = findLineEnd(cursor, stop);
        if (cursor != stop) return;
    }
}

void reader::getStreamPos(long& position) {
    position = tell();
    positions[position] = lineNumber;
}

void reader::moveTo(long offset) {
    long const blockLimit = blockOffset + (blockEnd - block.get());
    if (offset >= blockOffset && offset <= blockLimit) {
        cursor = block.get() + (offset - blockOffset);
        eof = false;
    } else if (file && std::fseek(file, offset, SEEK_SET) == 0) {
        blockOffset = offset;
        cursor = blockEnd = block.get();
        exhausted = false;
        eof = false;
    }
}

void reader::setStreamPos(long position) {
    moveTo(position);
    lineNumber = positions[position];
}

void reader::returnTo(Place const& place) {
    moveTo(place.offset);
    lineNumber = place.lineNumber;
}

std::size_t reader::takeLine(char* destination) {
    std::size_t length = 0;
    while (provide(1) == 1) {
        char const* const end = findLineEnd(cursor, blockEnd);
        auto const piece = static_cast<std::size_t>(end - cursor);
        if (destination == buffer && length + piece > maxLength) {
            std::memcpy(buffer + length, cursor, maxLength - length);
            buffer[maxLength] = '\0';
            cursor += maxLength - length + 1;
            throw Parse_Error{overlong};
        }
        std::memcpy(destination + length, cursor, piece);
        length += piece;
        cursor = end;
        if (end != blockEnd) break;
    }
    destination[length] = '\0';
    return length;
}

void reader::trim(char* text, std::size_t length) {
    while (length > 0 && text[length - 1] == ' ') --length;
    text[length] = '\0';
}

bool reader::equals(char const* text) const {
    return std::strcmp(buffer, text) == 0;
}

bool reader::isInt() const {
    for (char const* c = buffer; *c; ++c) {
        bool const digit = *c >= '0' && *c <= '9';
        bool const sign = c == buffer && (*c == '-' || *c == '+');
        if (!digit && !sign) return false;
    }
    return true;
}

bool reader::isFloat() const {
    enum { START, MANTISSA, FRACTION, BEHIND_E, EXPONENT } state = START;
    for (char const* c = buffer; *c; ++c) {
        if (*c == '-' || *c == '+') {
            if (state != START && state != BEHIND_E) return false;
            state = state == START ? MANTISSA : EXPONENT;
        } else if (*c == '.') {
            if (state != START && state != MANTISSA) return false;
            state = FRACTION;
        } else if (*c == 'E') {
            if (state > FRACTION) return false;
            state = BEHIND_E;
        } else if (*c >= '0' && *c <= '9') {
            if (state == START) state = MANTISSA;
            if (state == BEHIND_E) state = EXPONENT;
        } else {
            return false;
        }
    }
    return true;
}
