#pragma once

#include "textio/numberParsing.h"
#include "textio/plainNumber.h"
#include "textio/tokenizer.h"

#include <cstring>
#include <string_view>

namespace tarnex {

/// The tokens of the current line, as those of the scanner, but found several at a time, and without a NUL and what
/// stands behind it. The scanner is not to be used between them; its place may be ahead of theirs, within the line.
class LineTokens {
public:
    /// `number` (at most 16) tokens will be taken, or fewer.
    LineTokens(tokenizer& lineScanner, int number)
        : scanner(lineScanner), expected(number), found(lineScanner.takeTokens(tokens, number)) {}

    /// Stays until the next one is taken.
    std::string_view next() {
        if (taken == found) return scanner.getString();
        tokenizer::Token const& token = tokens[taken++];
        return {token.begin, static_cast<std::size_t>(token.end - token.begin)};
    }
    /// The same, but it stays as long as `room`, which is used if the tokens were not all found at once, and until the
    /// scanner is used again.
    std::string_view nextText(char (&room)[tokenizer::maxLength]) {
        std::string_view const token = next();
        if (found == expected) return token;
        std::memcpy(room, token.data(), token.size());
        return {room, token.size()};
    }
    /// By `strtol` with base 10.
    int nextInt() { return toInt(next()); }
    static int toInt(std::string_view token) {
        int value;
        return parseShortInt(token, value) ? value : parseInt(token);
    }
    /// By `strtod`, in the "C" locale.
    float nextFloat() {
        std::string_view const token = next();
        double value;
        return static_cast<float>(parseShortDouble(token, value) ? value : parseDouble(token));
    }

private:
    tokenizer& scanner;
    tokenizer::Token tokens[16];
    int expected;
    int found;
    int taken = 0;
};

} // namespace tarnex
