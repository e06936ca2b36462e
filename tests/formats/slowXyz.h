#pragma once

#include "foundation/McVec3f.h"

#include <fstream>
#include <string>
#include <vector>

namespace tarnex::test {

/// Reads XYZ frames by nothing but a standard stream, step by step as the format is told.
class SlowXyz {
public:
    std::vector<std::string> words;
    std::vector<std::streampos> positions;

    explicit SlowXyz(std::string const& file) : in(file) {
        in.imbue(std::locale::classic());
        int count = 0;
        for (int previous = 0; in >> count; previous = count) {
            if (!positions.empty() && count != previous) return;
            passLine();
            passLine();
            if (!in) return;
            std::streampos const position = in.tellg();
            for (int i = 0; i < count && in.good(); ++i) {
                std::string word;
                if (positions.empty()) {
                    in >> word;
                    words.push_back(word.c_str());
                }
                passLine();
            }
            if (!in) return;
            positions.push_back(position);
        }
    }

    void readStep(std::size_t step, std::vector<McVec3f>& places) {
        in.clear();
        in.seekg(positions[step]);
        std::string word;
        for (McVec3f& place : places) {
            if (!in.good()) return;
            in >> word >> place.x >> place.y >> place.z;
            passLine();
        }
    }

private:
    void passLine() {
        do in.ignore(300, '\n');
        while (in.gcount() == 300);
    }

    std::ifstream in;
};

} // namespace tarnex::test
