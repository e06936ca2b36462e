#include "textio/tokenizer.h"

#include "textio/SeparatorWindow.h"
#include "textio/numberParsing.h"
#include "textio/plainNumber.h"
#include "textio/textScan.h"

using tarnex::isSeparator;

namespace {

/// The first blank, tab or line end; one of them is known to follow.
char const* findTokenEnd(char const* c) {
    while (static_cast<unsigned char>(*c) > ' ' || (!isSeparator(*c) && !tarnex::isLineEnd(*c))) ++c;
    return c;
}

} // namespace

/// True if nothing is left of the line or of the file; `buffer` then holds the token that stands for it.
bool tokenizer::stopsHere() {
    bool const atEnd = provide(1) == 0;
    if (!atEnd && !tarnex::isLineEnd(*cursor)) return false;
    if (atEnd) eof = true;
    buffer[0] = atEnd ? '\0' : '\n';
    buffer[1] = '\0';
    return true;
}

void tokenizer::skipBlanks() {
    while (provide(1) == 1 && isSeparator(*cursor)) ++cursor;
}

/// The text returned is that of `buffer`, but stands in the block if it can.
std::string_view tokenizer::takeToken() {
    skipBlanks();
    if (stopsHere()) return buffer;
    char const* end = findTokenEnd(cursor);
    if (end == blockEnd) {
        provide(maxLength);
        end = findTokenEnd(cursor);
    }
    auto const length = static_cast<std::size_t>(end - cursor);
    if (length >= maxLength) {
        keep(cursor, maxLength);
        cursor += maxLength;
        throw Parse_Error{overlong};
    }
    std::string_view const token(cursor, length);
    keep(cursor, length);
    cursor = end != blockEnd && isSeparator(*end) ? end + 1 : end;
    return token;
}

int tokenizer::takeTokens(Token* tokens, int count) {
    auto const placeBehind = [](Token const& token) { return isSeparator(*token.end) ? token.end + 1 : token.end; };
    char const* place = cursor;
    Token* next = tokens;
    for (Token* const last = tokens + count; next != last; place = placeBehind(next[-1])) {
        Token* const first = next;
        next = tarnex::SeparatorWindow(place).take(first, last);
        if (next == first) break;
    }
    // Behind the block are line ends, which may be none of the file.
    while (next != tokens && next[-1].end >= blockEnd) --next;
    if (next != tokens) cursor = placeBehind(next[-1]);
    return static_cast<int>(next - tokens);
}

void tokenizer::getToken() {
    takeToken();
}

char const* tokenizer::getString() {
    takeToken();
    return buffer;
}

int tokenizer::getInt() {
    std::string_view const token = takeToken();
    int value;
    return tarnex::parseShortInt(token, value) ? value : tarnex::parseInt(token);
}

float tokenizer::getFloat() {
    std::string_view const token = takeToken();
    double value;
    return static_cast<float>(tarnex::parseShortDouble(token, value) ? value : tarnex::parseDouble(token));
}

void tokenizer::getNextToken() {
    do {
        takeToken();
        if (buffer[0] == '\n') nextLine();
    } while (!eof && buffer[0] == '\0');
}

char const* tokenizer::getLineString() {
    skipBlanks();
    if (!stopsHere()) trim(buffer, takeLine(buffer));
    return buffer;
}

char const* tokenizer::getUntrimmedLineString() {
    if (!stopsHere()) takeLine(buffer);
    return buffer;
}
