#pragma once

#include "textio/reader.h"

#include <string_view>

/// Reads the tokens of a line, which are separated by blanks and tabs. At the end of a line the token is "\n", as often
/// as it is asked for, until `nextLine` is called; at the end of the file it is empty, with `eof` set. A token of
/// `maxLength` characters or more throws `Parse_Error`, and so does a rest of line of more than `maxLength`.
class TARNEX_API tokenizer : public reader {
public:
    explicit tokenizer(char const* filename, std::size_t blockSize = 65536) : reader(filename, blockSize) {}

    /// The next token of the current line into `buffer`. One blank or tab behind it is passed as well.
    void getToken();
    /// `getToken`; returns `buffer`.
    char const* getString();
    /// `getToken`; returns the token with its length, which stays until the next call of any operation.
    std::string_view takeToken();
    /// The next token by `strtol` with base 10.
    int getInt();
    /// The next token by `strtod`, in the "C" locale.
    float getFloat();
    /// The next token, in this line or a later one; empty only at the end of the file.
    void getNextToken();
    /// The rest of the line without leading blanks and tabs and without trailing blanks; "\n" if there is none.
    char const* getLineString();
    /// The rest of the line exactly as it stands; "\n" if there is none.
    char const* getUntrimmedLineString();

    struct Token {
        char const* begin;
        char const* end;
    };
    /// Passes up to `count` tokens of the current line, all at once, and returns how many. They stay until the next
    /// call of any operation; `buffer` stays as it is. What is behind them, if they are fewer, is to be taken one by
    /// one: the end of the line or of the file, or a token that is long or crosses the block.
    int takeTokens(Token* tokens, int count);

private:
    bool stopsHere();
    void skipBlanks();
};
