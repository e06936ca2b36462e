#pragma once

#include <charconv>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

/// The limits that text formats are compared with: what any reader or writer of such a file has to do at least.
namespace bare {

/// Calls `visit(begin, end)` for each line of a file that is read in blocks.
template <class Visitor>
void forEachLine(char const* filename, Visitor&& visit) {
    FILE* file = std::fopen(filename, "rb");
    if (!file) return;
    std::setvbuf(file, nullptr, _IONBF, 0);
    std::vector<char> block(256 * 1024);
    std::size_t kept = 0;
    while (std::size_t const count = std::fread(block.data() + kept, 1, block.size() - kept, file)) {
        char const* begin = block.data();
        char const* const end = begin + kept + count;
        while (auto const* lf =
                   static_cast<char const*>(std::memchr(begin, '\n', static_cast<std::size_t>(end - begin)))) {
            visit(begin, lf);
            begin = lf + 1;
        }
        kept = static_cast<std::size_t>(end - begin);
        std::memmove(block.data(), begin, kept);
    }
    std::fclose(file);
}

/// One coordinate out of a column field.
inline float coordinate(char const* begin, char const* end) {
    while (begin != end && *begin == ' ') ++begin;
    float value = 0.0F;
    std::from_chars(begin, end, value);
    return value;
}

/// Reads a file whose atom lines `isAtom(begin, end)` tells, with three coordinates of `width` columns from column
/// `first` (counted from 0) on. Returns their sum, so that no work can be left out.
template <class IsAtom>
double readCoordinates(char const* filename, int first, int width, IsAtom&& isAtom) {
    double sum = 0.0;
    forEachLine(filename, [&](char const* begin, char const* end) {
        if (!isAtom(begin, end)) return;
        for (int i = 0; i < 3; ++i) {
            char const* field = begin + first + i * width;
            sum += static_cast<double>(coordinate(field, field + width));
        }
    });
    return sum;
}

/// The lines of a file in memory, and the coordinates of its atom lines.
struct Lines {
    std::string text;
    std::vector<std::size_t> ends;
    std::vector<bool> isAtom;
    std::vector<float> coordinates;
};

template <class IsAtom>
Lines load(char const* filename, int first, int width, IsAtom&& isAtom) {
    Lines lines;
    forEachLine(filename, [&](char const* begin, char const* end) {
        lines.text.append(begin, end + 1);
        lines.ends.push_back(lines.text.size());
        lines.isAtom.push_back(isAtom(begin, end));
        if (!lines.isAtom.back()) return;
        for (int i = 0; i < 3; ++i) {
            char const* field = begin + first + i * width;
            lines.coordinates.push_back(coordinate(field, field + width));
        }
    });
    return lines;
}

/// Writes the lines again, copied from memory, with the coordinates of the atom lines formatted anew.
inline void writeLines(Lines const& lines, char const* filename, int first, int width, int digits) {
    FILE* file = std::fopen(filename, "wb");
    if (!file) return;
    std::setvbuf(file, nullptr, _IONBF, 0);
    std::vector<char> block(256 * 1024);
    std::size_t used = 0;
    std::size_t begin = 0;
    float const* next = lines.coordinates.data();
    for (std::size_t i = 0; i < lines.ends.size(); ++i) {
        std::size_t const length = lines.ends[i] - begin;
        if (used + length > block.size()) {
            std::fwrite(block.data(), 1, used, file);
            used = 0;
        }
        char* line = block.data() + used;
        std::memcpy(line, lines.text.data() + begin, length);
        for (int c = 0; lines.isAtom[i] && c < 3; ++c) {
            char number[64];
            auto const end =
                std::to_chars(number, number + sizeof number, *next++, std::chars_format::fixed, digits).ptr;
            auto const size = static_cast<std::size_t>(end - number);
            char* field = line + first + c * width;
            std::memset(field, ' ', static_cast<std::size_t>(width) - size);
            std::memcpy(field + static_cast<std::size_t>(width) - size, number, size);
        }
        used += length;
        begin = lines.ends[i];
    }
    std::fwrite(block.data(), 1, used, file);
    std::fclose(file);
}

} // namespace bare
