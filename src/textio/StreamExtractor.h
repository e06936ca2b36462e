#pragma once

#include "foundation/export.h"

#include <cstddef>
#include <istream>
#include <memory>
#include <string>
#include <string_view>

namespace tarnex {

/// Formatted extraction as from a standard stream in the "C" locale, out of blocks: the values, the consumed characters
/// and the state are those of `std::istream`, for every input. Where the system cannot read on, the input ends. What
/// has been read is ahead of the stream's own position, which is undefined while an extractor works on it.
class TARNEX_API StreamExtractor {
public:
    /// Begins at the current position of `stream`, which must outlive the extractor, and with its state. The state of
    /// the stream itself is left alone; a stream that is not good gives nothing.
    explicit StreamExtractor(std::istream& stream, std::size_t blockSize = 65536);
    StreamExtractor(StreamExtractor const&) = delete;
    StreamExtractor& operator=(StreamExtractor const&) = delete;

    /// No extraction has failed and none has run into the end.
    bool good() const { return !failed && !ended; }
    /// An extraction has failed. Everything further does nothing, as long as it is so.
    bool fail() const { return failed; }
    /// An extraction has run into the end: also a number or word that the end of the file closes. The next one fails.
    bool eof() const { return ended; }
    explicit operator bool() const { return !failed; }
    /// Makes the state good.
    void clear() { failed = ended = false; }

    /// Skips white space and takes a number. A text that is none gives 0 and fails; one that is out of range gives the
    /// nearest value and fails. Where extraction does not begin at all, because the state is not good or nothing but
    /// white space is left, the value stays.
    StreamExtractor& operator>>(int& value);
    StreamExtractor& operator>>(float& value);
    /// Skips white space and takes the characters up to the next white space. `word` is valid until the next call; it
    /// is empty where extraction does not begin.
    StreamExtractor& operator>>(std::string_view& word);

    /// Skips characters while the state is good and the next one is white space, by looking at each and taking it then.
    void skipWhiteSpace();
    /// Takes at most `count` characters, up to and including the first `delimiter`. Returns how many it took.
    std::size_t ignore(std::size_t count, char delimiter);
    /// Takes everything up to and including the next line feed.
    void ignoreLine();
    /// Takes pieces of at most `pieceSize` characters up to and including a line feed, as long as they are full. A line
    /// whose line feed is the last character of a full piece takes the next line with it.
    void ignoreLineInPieces(std::size_t pieceSize = 300);
    /// Takes a line without its line feed, at most `size - 1` characters, and terminates it; the line feed is passed. A
    /// longer line and the end of the file fail. Returns the number of characters stored.
    std::size_t getLine(char* line, std::size_t size);

    /// The number of characters taken since construction.
    std::streamoff taken() const { return beforeBlock + (at - block.get()); }

    /// Puts the stream where extraction from it would have left it: its position, if it can be moved, and its state.
    /// The extractor is not used after this.
    void giveBack();

private:
    std::istream& source;
    std::size_t room;
    /// `room` characters, and a few more that may be looked at.
    std::unique_ptr<char[]> block;
    char const* at;
    char const* end;
    std::streamoff beforeBlock = 0;
    bool failed;
    bool ended;
    bool exhausted = false;

    bool begins();
    bool beginsField();
    bool refill();
    void lookAhead();
    bool hasNext() { return at != end || refill(); }
    bool takeIf(char c);
    bool takeDigits(std::string& text);
    bool takeShort(int& value);
    bool takeShort(float& value);
    void takeAny(int& value);
    void takeAny(float& value);
    std::string takeFloatText();
};

} // namespace tarnex
