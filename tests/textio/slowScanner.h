#pragma once

#include "textio/Parse_Error.h"

#include <map>
#include <string>

/// The scanners' behaviour spelled out one character at a time: what the fast ones must equal.
struct SlowScanner {
    std::string text;
    std::string buffer = {};
    std::size_t at = 0;
    int lineNumber = 1;
    std::map<long, int> positions = {};
    bool eof = false;

    bool atEnd() const { return at >= text.size(); }
    char peek() const { return atEnd() ? '\0' : text[at]; }
    bool atLineEnd() const { return peek() == '\n' || peek() == '\r'; }
    bool atBlank() const { return peek() == ' ' || peek() == '\t'; }
    void cutBlanks() { buffer.erase(buffer.find_last_not_of(' ') + 1); }

    void nextLine() {
        buffer.clear();
        while (!atLineEnd() && !atEnd()) ++at;
        if (atEnd()) {
            eof = true;
            return;
        }
        char const end = text[at++];
        if (atLineEnd() && peek() != end) ++at;
        ++lineNumber;
    }

    void skipChars(int n) {
        for (; n > 0 && !atLineEnd(); --n, ++at) {
            if (!atEnd()) continue;
            eof = true;
            return;
        }
    }

    void setStreamPos(long position) {
        lineNumber = positions[position];
        if (position < 0) return;
        at = static_cast<std::size_t>(position);
        eof = false;
    }

    /// False at the end of the line or the file.
    bool start() {
        buffer = atLineEnd() ? "\n" : "";
        if (atEnd()) eof = true;
        return !atLineEnd() && !atEnd();
    }

    void skipBlanks() {
        while (atBlank()) ++at;
    }

    void token() {
        skipBlanks();
        if (!start()) return;
        while (!atEnd() && !atBlank() && !atLineEnd()) {
            buffer += text[at++];
            if (buffer.size() == 1000) throw Parse_Error{"Read in string in exceeds buffer"};
        }
        if (atBlank()) ++at;
    }

    void nextToken() {
        do {
            token();
            if (buffer[0] == '\n') nextLine();
        } while (!eof && buffer[0] == '\0');
    }

    void restOfLine() {
        while (!atLineEnd() && !atEnd()) {
            char const c = text[at++];
            if (buffer.size() == 1000) throw Parse_Error{"Read in string in exceeds buffer"};
            buffer += c;
        }
    }

    void tokenLine(bool trimmed) {
        if (trimmed) skipBlanks();
        if (!start()) return;
        restOfLine();
        if (trimmed) cutBlanks();
    }

    void fieldLine() {
        buffer.clear();
        restOfLine();
        cutBlanks();
    }

    /// The next columns, filled up with blanks.
    std::string columns(std::size_t count) {
        std::string taken;
        while (taken.size() < count && !atLineEnd() && !atEnd()) taken += text[at++];
        taken.resize(count, ' ');
        return taken;
    }

    void field(int width) {
        buffer = width == 0 ? buffer.c_str() : "";
        for (int i = 0; i < width && !atLineEnd(); ++i) {
            if (atEnd() && buffer.empty()) eof = true;
            if (atEnd()) break;
            char const c = text[at++];
            if (c != ' ' || !buffer.empty()) buffer += c;
        }
        cutBlanks();
    }
};
