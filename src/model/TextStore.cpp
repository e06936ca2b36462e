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
    while (block) {
        Block* const previous = block->previous;
        mcfree(block);
        block = previous;
    }
}

char const* TextStore::store(std::string_view text) {
    if (text.empty()) return "";
    Recent* shared = nullptr;
    std::uint64_t hash = 0;
    if (++storedTexts > textsBeforeSharing) {
        if (recent.size == 0) {
            recent.resize(recentTexts);
            std::fill(recent.begin(), recent.end(), Recent{0, ""});
        }
        hash = textHash(text.data(), text.size());
        shared = &recent.data[hash % recentTexts];
        if (shared->hash == hash && text == shared->text) return shared->text;
    }
    char* copy = allocate(text.size() + 1);
    std::memcpy(copy, text.data(), text.size());
    copy[text.size()] = '\0';
    if (shared) *shared = {hash, copy};
    return copy;
}

char* TextStore::allocate(std::size_t bytes) {
    if (blockUsed + bytes > blockSize) {
        std::size_t const wanted = std::clamp(2 * blockSize, firstBlockSize, largestBlockSize);
        std::size_t const newSize = std::max(sizeof(Block) + bytes, wanted);
        auto* fresh = static_cast<Block*>(mcmalloc(newSize));
        if (!fresh) throw std::bad_alloc();
        fresh->previous = block;
        block = fresh;
        blockSize = newSize;
        blockUsed = sizeof(Block);
    }
    char* place = reinterpret_cast<char*>(block) + blockUsed;
    blockUsed += bytes;
    return place;
}

} // namespace tarnex
