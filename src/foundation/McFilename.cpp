#include "foundation/McFilename.h"

McFilename::~McFilename() = default;

void McFilename::fixSlashes() {
    for (char& c : *this) {
        if (c == '\\') c = '/';
    }
}

char const* McFilename::basename() const {
    char const* slash = std::strrchr(data, '/');
    return slash ? slash + 1 : data;
}

void McFilename::dirname(McString& out) const {
    out = McString(data, 0, static_cast<int>(basename() - data));
}

char const* McFilename::extension() const {
    char const* name = basename();
    char const* point = std::strrchr(name, '.');
    return point && point != name ? point : data + length();
}
