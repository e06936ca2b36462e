#pragma once

#include "textio/reader.h"

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

private:
    std::string_view takeField(unsigned char width);
    std::string_view storeField(unsigned char width);
    std::string_view peekNumber(unsigned char width) const;
    void passNumber(std::string_view number);
};
