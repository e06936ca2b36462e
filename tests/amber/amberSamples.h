#pragma once

#include <cstdio>
#include <functional>
#include <string>
#include <vector>

namespace tarnex::test {

/// `count` fields, written by `field(i)`, so many to a line. Nothing for none.
inline std::string block(int count, int perLine, std::function<std::string(int)> const& field) {
    std::string text;
    for (int i = 0; i < count; ++i) text += field(i) + (i % perLine == perLine - 1 || i == count - 1 ? "\n" : "");
    return text;
}

inline std::string formatted(char const* format, double value) {
    char text[40];
    std::snprintf(text, sizeof text, format, value);
    return text;
}

inline std::string integers(std::vector<int> const& values) {
    return block(static_cast<int>(values.size()), 12,
                 [&](int i) { return formatted("%6.0f", values[static_cast<std::size_t>(i)]); });
}

/// A topology in the older layout. Blocks that are passed over hold letters. Atoms have the names A1, A2..., the
/// charges 18.2223, 36.4446... and the masses 1.5, 2.5...
struct AmberText {
    std::vector<std::string> symbols;
    std::vector<int> pointers;
    std::vector<int> bondsWithHydrogen = {};
    std::vector<int> bondsWithout = {};
    int ntypes = 0;
    /// All counters of blocks that are passed over, but for that of hydrogen-bond terms.
    int passed = 0;
    int nphb = 0;
    /// Ahead of the first block behind the residues.
    std::string behindPointers = {};

    static std::string letters(int count, int perLine) {
        return block(count, perLine, [](int) { return "abcd"; });
    }

    std::string text() const {
        auto const natom = static_cast<int>(symbols.size()), nres = static_cast<int>(pointers.size());
        auto const bonds = [](std::vector<int> const& triples) { return static_cast<int>(triples.size()) / 3; };
        int const p = passed, nbonh = bonds(bondsWithHydrogen), nbona = bonds(bondsWithout);
        std::string all = "title\n" + integers({natom, ntypes, nbonh, 7, p,    7, p, 7, 7, 7, p, nres, nbona, p, p,
                                                p,     p,      p,     p, nphb, 7, 7, 7, 7, 7, 7, 7,    7,     7, 7});
        all += block(natom, 20, [](int i) { return formatted("A%-3.0f", i + 1); });
        all += block(natom, 5, [](int i) { return formatted("%16.8E", 18.2223 * (i + 1)); });
        all += block(natom, 5, [](int i) { return formatted("%16.8E", i + 1.5); });
        all += letters(natom, 12) + letters(natom, 12) + letters(ntypes * ntypes, 12);
        all += block(nres, 20, [](int i) { return formatted("R%-3.0f", i + 1); });
        all += integers(pointers) + behindPointers;
        for (int i = 0; i < 8; ++i) all += letters(passed, 5);
        for (int i = 0; i < 2; ++i) all += letters(ntypes * (ntypes + 1) / 2, 5);
        all += integers(bondsWithHydrogen) + integers(bondsWithout);
        for (int const perTerm : {4, 4, 5, 5, 1}) all += letters(perTerm * passed, 12);
        for (int i = 0; i < 3; ++i) all += nphb > 0 ? letters(nphb, 5) : "\n";
        all += block(natom, 20, [&](int i) { return (symbols[static_cast<std::size_t>(i)] + "   ").substr(0, 4); });
        return all + letters(natom, 20);
    }
};

/// Coordinates of a restart file: x is the number of the atom from 1, y and z are x + 0.1 and x + 0.2.
inline std::string restartText(int natoms) {
    std::string text = "restart\n" + formatted("%5.0f", natoms) + "  1.0000000E+00\n";
    text += block(3 * natoms, 6, [](int i) { return formatted("%12.7f", i / 3 + 1 + 0.1 * (i % 3)); });
    return text + "velocities and box sizes\n";
}

} // namespace tarnex::test
