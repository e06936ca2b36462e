#pragma once

#include "textio/reader.h"
#include "textio/textScan.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string_view>

/// Reads the fields of fixed width of card-image formats. A field takes exactly its width from a line that is long
/// enough, whatever it holds; on a shorter line it stops in front of the line end and is short or empty. Leading and
/// trailing blanks are dropped; tabs are ordinary characters.
class TARNEX_API lengthizer : public reader {
public:
    /// Where `getToken` stores: `buffer`, or a place of the caller's with room for the field and a NUL.
    char* target;

    explicit lengthizer(char const* filename, std::size_t blockSize = 65536);

    /// Stores the next field of `width` characters in `target`, terminated. `eof` is set only if the file ends before a
    /// character other than a blank. Width 0 reads nothing and cuts trailing blanks of what `target` holds.
    void getToken(unsigned char width);
    /// `getToken`; returns `buffer`.
    char const* getString(unsigned char width);
    /// Stores the next field in `destination`, which has room for `width` + 1 characters. Returns `buffer`, untouched.
    char const* getString(char* destination, unsigned char width);
    /// The next field by `strtol` with base 10.
    int getInt(unsigned char width);
    /// The next field by `strtod`, in the "C" locale.
    float getFloat(unsigned char width);
    /// The rest of the line with leading blanks, without trailing ones. Never sets `eof`. Throws `Parse_Error` if the
    /// text is longer than `maxLength`.
    char const* getUntrimmedLineString();

    /// Passes the next `count` characters, at most `maxLength`, as far as the line has them, and returns them as they
    /// stand, with blanks for those that the line lacks. They stay in place until the next call of any kind. A few
    /// characters behind them may be looked at. `eof` is left as it is.
    char const* takeColumns(int count) {
        char const* const first = passColumns(count);
        std::ptrdiff_t const length = cursor - first;
        return length == count ? first : padColumns(first, length, count);
    }

    /// Passes the same characters. Returns where they begin.
    char const* passColumns(int count) {
        std::size_t const held = provide(static_cast<std::size_t>(count));
        char const* const first = cursor;
        bool const isWhole = held == static_cast<std::size_t>(count) && isPlain(first, count);
        cursor = isWhole ? first + count : tarnex::findLineEnd(first, first + held);
        return first;
    }

private:
    /// Whether the characters are free of control characters, as line ends are. It may fail to see that they are.
    static bool isPlain(char const* text, std::ptrdiff_t length) {
        using tarnex::wordLength;
        if (length < wordLength) return false;
        std::uint64_t below = 0; // the high bit of each character that is below a blank
        for (std::ptrdiff_t i = 0; i + wordLength <= length; i += wordLength) below |= belowBlank(text + i);
        below |= belowBlank(text + length - wordLength);
        return (below & tarnex::repeated('\x80')) == 0;
    }
    static std::uint64_t belowBlank(char const* text) {
        std::uint64_t const word = tarnex::loadWord(text);
        return (word - tarnex::repeated(' ')) & ~word;
    }
    char const* padColumns(char const* text, std::ptrdiff_t length, std::ptrdiff_t count);

    std::string_view takeField(unsigned char width);
    std::string_view storeField(unsigned char width);
    std::string_view peekNumber(unsigned char width) const;
    void passNumber(std::string_view number);
};
