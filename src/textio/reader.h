#pragma once

#include "foundation/McHashTable.h"
#include "foundation/export.h"
#include "textio/Parse_Error.h"
#include "textio/textScan.h"

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <memory>

/// A text file with a line counter and one buffer for the last token or line; base of `tokenizer` and `lengthizer`.
///
/// LF and CR both end a line, and the pairs CR LF and LF CR count as one line end. Only `nextLine` passes a line end;
/// everything else stops in front of it. Reading past the end of the file is no error: texts are empty, numbers 0, and
/// `eof` is set. A file that could not be opened, or not be read, behaves as an empty one.
class TARNEX_API reader {
public:
    /// The most characters that one token or line may have.
    static constexpr std::size_t maxLength = 1000;

    /// Owned; null if the file could not be opened. Characters are fetched from it in blocks, ahead of what has been
    /// scanned, so that its own position says nothing.
    FILE* file;
    /// The last token or line, NUL-terminated.
    char buffer[maxLength + 4];
    /// The current line, counted from 1.
    int lineNumber = 1;
    /// The line number at each offset that `getStreamPos` has recorded.
    McHashTable<long, int> positions;
    /// Set once a read ran into the end of the file.
    bool eof = false;

    /// Opens the file. `blockSize` is the number of bytes that are fetched at a time.
    explicit reader(char const* filename, std::size_t blockSize = 65536);
    ~reader();
    reader(reader const&) = delete;
    reader& operator=(reader const&) = delete;

    bool isOpen() const { return file != nullptr; }

    /// `count`, but no more records than are believed of this file: a million, or its number of bytes if that is more.
    /// So a count that lies cannot make a format allocate or loop out of proportion.
    int believableCount(int count) const;

    /// Moves to the start of the next line and empties `buffer`. A last line without line end sets `eof` and is not
    /// counted.
    void nextLine() {
        char const* const end = *cursor == '\n' ? cursor : tarnex::findLineEnd(cursor, blockEnd);
        if (blockEnd - end < 2) return nextLineAtBlockEnd();
        cursor = end;
        passLineEnd(true);
    }

    /// `count` calls of `nextLine`, or as many as it takes to set `eof`.
    void skipLines(std::int64_t count);

    /// Skips up to `n` characters of the current line.
    void skipChars(unsigned short n) {
        if (n <= blockEnd - cursor)
            cursor = tarnex::findLineEnd(cursor, cursor + n);
        else
            skipPastBlock(n);
    }

    /// The current file offset in bytes. Nothing is recorded: `setStreamPos` to it gives line number 0.
    long tell() const { return blockOffset + (cursor - block.get()); }

    /// Stores the current file offset in `position` and records the current line number for it.
    void getStreamPos(long& position);

    /// Moves to an offset and restores the line number recorded for it (0 if there is none), and clears `eof`. An
    /// offset that cannot be reached leaves the place and `eof` as they are.
    void setStreamPos(long position);

    /// A place in the file and the line that it is in.
    struct Place {
        long offset;
        int lineNumber;
    };
    /// The current place; nothing is recorded.
    Place place() const { return {tell(), lineNumber}; }
    /// As `setStreamPos`, with the line number of the place.
    void returnTo(Place const& place);

    /// True if `buffer` is exactly `text`.
    bool equals(char const* text) const;
    /// True if `buffer` has only digits behind an optional sign; also for the empty string and a lone sign.
    bool isInt() const;
    /// True if `buffer` looks like a decimal number with an optional exponent behind an upper-case E; also for the
    /// empty string.
    bool isFloat() const;

protected:
    /// Characters behind the end of the block that may be looked at, by code that takes several at once. They are line
    /// ends.
    static constexpr std::size_t slack = 64;

    /// Makes the next `wanted` characters stand in the block behind `cursor`, or all that are left if they are fewer.
    /// `wanted` is at most `maxLength`. Returns how many of them there are. Pointers into the block become invalid.
    std::size_t provide(std::size_t wanted) {
        auto held = static_cast<std::size_t>(blockEnd - cursor);
        if (held < wanted) held = fill(wanted);
        return held < wanted ? held : wanted;
    }

    /// Puts `length` characters of the block, at most `maxLength`, into `buffer` and terminates them.
    void keep(char const* text, std::size_t length) {
        constexpr std::size_t usualLength = 16;
        if (length <= usualLength) {
            std::memcpy(buffer, text, usualLength);
        } else {
            std::memcpy(buffer, text, length);
        }
        buffer[length] = '\0';
    }

    /// Moves the rest of the line, without its end, to `destination` and terminates it. Returns its length. Throws
    /// `Parse_Error` if `destination` is `buffer` and the text is longer than `maxLength`.
    std::size_t takeLine(char* destination);
    /// Cuts the trailing blanks of a text of this length.
    static void trim(char* text, std::size_t length);

    /// The message of the `Parse_Error` for a text that is too long.
    static constexpr char const* overlong = "Read in string in exceeds buffer";

    /// The next character, if `cursor` is before `blockEnd`.
    char const* cursor;
    /// Behind the last fetched character. A LF stands there, so that a search for a line end needs no other limit.
    char const* blockEnd;

private:
    /// Passes the line end at `cursor`. `isFollowed` tells whether the block has a character behind it.
    void passLineEnd(bool isFollowed) {
        bool const isPair = isFollowed && tarnex::isLineEnd(cursor[1]) && cursor[1] != cursor[0];
        cursor += isPair ? 2 : 1;
        lineNumber = static_cast<int>(static_cast<unsigned>(lineNumber) + 1U);
        buffer[0] = '\0';
    }
    void nextLineAtBlockEnd();
    std::size_t fill(std::size_t wanted);
    void moveTo(long offset);
    void skipPastBlock(std::ptrdiff_t n);
    std::int64_t skipPlainLines(std::int64_t count);

    std::size_t fetchSize;
    std::unique_ptr<char[]> block;
    /// The file offset of the first character in the block.
    long blockOffset = 0;
    /// Nothing follows `blockEnd` in the file.
    bool exhausted = false;
};
