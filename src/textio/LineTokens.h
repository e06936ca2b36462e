#pragma once

#include "textio/numberParsing.h"
#include "textio/plainNumber.h"
#include "textio/tokenizer.h"

#include <string_view>

namespace tarnex {

/// The tokens of the current line, as those of the scanner, but found several at a time. The scanner is not to be used
/// between them; its place may be ahead of theirs, within the line.
class LineTokens {
public:
    /// `expected` (at most 16) tokens will be taken, or fewer.
    LineTokens(tokenizer& lineScanner, int expected)
        : scanner(lineScanner), found(lineScanner.takeTokens(tokens, expected)) {}

    /// Stays until the next one is taken.
    std::string_view next() {
        if (taken == found) return scanner.takeToken();
        tokenizer::Token const& token = tokens[taken++];
        return {token.begin, static_cast<std::size_t>(token.end - token.begin)};
    }
    /// By `strtol` with base 10.
    int nextInt() {
        std::string_view const token = next();
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
    int found;
    int taken = 0;
};

} // namespace tarnex
