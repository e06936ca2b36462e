#include "foundation/McBitfield.h"

#include <algorithm>

void McBitfield::resize(unsigned long n, INIT init) {
    numBits = n;
    words.resize(static_cast<std::int64_t>((n + 31) / 32));
    if (init == CLEARED) unsetAll();
}

void McBitfield::setAll() {
    fill(~std::uint32_t{0});
}

void McBitfield::unsetAll() {
    fill(0);
}

void McBitfield::fill(std::uint32_t value) {
    std::fill(words.begin(), words.end(), value);
}
