#include "foundation/McRawData.h"

#include "foundation/bigEndian.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstring>

namespace {

template <class Word>
void swapWords(unsigned char* bytes, std::size_t n) {
    for (std::size_t i = 0; i < n; ++i) {
        auto const word = tarnex::loadBig<Word>(bytes + i * sizeof(Word));
        std::memcpy(bytes + i * sizeof(Word), &word, sizeof(Word));
    }
}

/// Turns elements from the machine's order to big-endian or back.
void toOrFromBigEndian(unsigned char* bytes, std::size_t n, unsigned width) {
    if constexpr (std::endian::native == std::endian::big) return;
    if (width == 4) swapWords<std::uint32_t>(bytes, n);
    if (width == 8) swapWords<std::uint64_t>(bytes, n);
}

} // namespace

unsigned McTypedPointer::elementWidth() const {
    switch (type) {
    case INT32:
    case FLOAT32:
        return 4;
    case FLOAT64:
        return 8;
    default:
        return 1;
    }
}

unsigned long McRawData::readBigEndian(McTypedPointer p, unsigned long n, FILE* f) {
    unsigned const width = p.elementWidth();
    unsigned long const count = std::fread(p.pointer, width, n, f);
    toOrFromBigEndian(static_cast<unsigned char*>(p.pointer), count, width);
    return count;
}

void McRawData::writeBigEndian(McTypedPointer p, unsigned long n, FILE* f) {
    unsigned const width = p.elementWidth();
    auto const* source = static_cast<unsigned char const*>(p.pointer);
    unsigned char block[8192];
    unsigned long const perBlock = sizeof block / width;
    while (n > 0) {
        unsigned long const count = std::min(n, perBlock);
        std::memcpy(block, source, count * width);
        toOrFromBigEndian(block, count, width);
        if (std::fwrite(block, width, count, f) != count) return;
        source += count * width;
        n -= count;
    }
}
