#pragma once

#include "textio/Parse_Error.h"

#include <cstdio>
#include <map>
#include <string>

/// The scanners' behaviour spelled out by `getc` and `ungetc`, one character at a time: what the fast ones must equal.
struct SlowScanner {
    FILE* file;
    std::string buffer;
    int lineNumber = 1;
    std::map<long, int> positions;
    bool eof = false;

    explicit SlowScanner(char const* filename) : file(std::fopen(filename, "rb")) {}
    SlowScanner(SlowScanner const&) = delete;
    SlowScanner& operator=(SlowScanner const&) = delete;
    ~SlowScanner() { std::fclose(file); }

    static bool endsLine(int c) { return c == '\n' || c == '\r'; }
    static bool isBlank(int c) { return c == ' ' || c == '\t'; }
    int get() { return std::getc(file); }
    void unget(int c) { std::ungetc(c, file); }
    void store(int c) { buffer.push_back(static_cast<char>(c)); }
    [[noreturn]] static void refuse() { throw Parse_Error{"Read in string in exceeds buffer"}; }
    void cutBlanks() { buffer.erase(buffer.find_last_not_of(' ') + 1); }

    void nextLine() {
        buffer.clear();
        int end = get();
        while (!endsLine(end)) {
            if (std::feof(file)) {
                eof = true;
                return;
            }
            end = get();
        }
        int const next = get();
        if (!endsLine(next) || next == end) unget(next);
        ++lineNumber;
    }

    void skipChars(int n) {
        for (int i = 0; i < n; ++i) {
            int const c = get();
            if (c == EOF) eof = true;
            if (endsLine(c)) unget(c);
            if (endsLine(c) || c == EOF) return;
        }
    }

    void getStreamPos(long& position) {
        position = std::ftell(file);
        positions[position] = lineNumber;
    }

    void setStreamPos(long position) {
        std::fseek(file, position, SEEK_SET);
        if (!std::feof(file)) eof = false;
        lineNumber = positions[position];
    }

    /// Stores the first character of a token or line; false at the end of the line or the file.
    bool start(int c) {
        buffer.clear();
        if (c == EOF) eof = true;
        if (c == EOF) return false;
        store(endsLine(c) ? '\n' : c);
        if (endsLine(c)) unget(c);
        return !endsLine(c);
    }

    int skipBlanks() {
        int c = get();
        while (isBlank(c)) c = get();
        return c;
    }

    void token() {
        if (!start(skipBlanks())) return;
        for (int c = get(); !isBlank(c) && c != EOF; c = get()) {
            if (endsLine(c)) {
                unget(c);
                return;
            }
            store(c);
            if (buffer.size() == 1000) refuse();
        }
    }

    void nextToken() {
        do {
            token();
            if (buffer[0] == '\n') nextLine();
        } while (!eof && buffer[0] == '\0');
    }

    void restOfLine() {
        int c = get();
        for (; !endsLine(c) && c != EOF; c = get()) {
            if (buffer.size() == 1000) refuse();
            store(c);
        }
        unget(c);
    }

    void tokenLine(bool trimmed) {
        if (!start(trimmed ? skipBlanks() : get())) return;
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
        std::string text;
        int c = 0;
        while (text.size() < count && !endsLine(c = get()) && c != EOF) text.push_back(static_cast<char>(c));
        if (text.size() < count) unget(c);
        text.resize(count, ' ');
        return text;
    }

    void field(int width) {
        if (width == 0) {
            buffer = buffer.c_str();
            cutBlanks();
            return;
        }
        buffer.clear();
        for (int i = 0; i < width; ++i) {
            int const c = get();
            if (c == EOF && buffer.empty()) eof = true;
            if (endsLine(c) || c == EOF) {
                unget(c);
                break;
            }
            if (c != ' ' || !buffer.empty()) store(c);
        }
        cutBlanks();
    }
};
