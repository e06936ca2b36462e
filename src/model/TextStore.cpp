#include "model/TextStore.h"

#include "model/textHash.h"

#include <algorithm>
#include <cstring>

namespace tarnex {

namespace {
constexpr std::size_t firstBlockSize = 64;
constexpr std::size_t largestBlockSize = 64 * 1024;
constexpr std::size_t textsBeforeSharing = 64;
constexpr std::size_t recentTexts = 1024;
} // namespace

TextStore::~TextStore() {
    for (char* block : blocks) mcfree(block);
}

char const* TextStore::store(char const* text) {
    if (!*text) return "";
    std::size_t const length = std::strlen(text);
    Recent* shared = nullptr;
    std::uint64_t hash = 0;
    if (++storedTexts > textsBeforeSharing) {
        if (recent.size == 0) {
            recent.resize(recentTexts);
            std::fill(recent.begin(), recent.end(), Recent{0, ""});
        }
        hash = textHash(text, length);
        shared = &recent.data[hash % recentTexts];
        if (shared->hash == hash && std::strcmp(shared->text, text) == 0) return shared->text;
    }
    char* copy = allocate(length + 1);
    std::memcpy(copy, text, length + 1);
    if (shared) *shared = {hash, copy};
    return copy;
}

char* TextStore::allocate(std::size_t bytes) {
    if (blockUsed + bytes > blockSize) {
        blocks.reserve(blocks.size + 1);
        std::size_t const newSize = std::max(bytes, std::clamp(2 * blockSize, firstBlockSize, largestBlockSize));
        auto* block = static_cast<char*>(mcmalloc(newSize));
        if (!block) throw std::bad_alloc();
        blocks.append(block);
        blockSize = newSize;
        blockUsed = 0;
    }
    char* place = blocks.data[blocks.size - 1] + blockUsed;
    blockUsed += bytes;
    return place;
}

} // namespace tarnex
