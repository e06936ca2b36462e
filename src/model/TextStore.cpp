#include "model/TextStore.h"

#include "model/textHash.h"

#include <algorithm>
#include <cstring>

namespace tarnex {

namespace {

constexpr std::size_t firstBlockSize = 64;
constexpr std::size_t largestBlockInPool = 1024;
constexpr std::size_t largestBlockSize = 64 * 1024;
constexpr std::size_t recentTexts = 1024;
// Until there are some texts, a table is not worth while, and if few of the first texts came again, nor is it for the
// others: atom names that are numbered through would only fill it.
constexpr std::int64_t textsBeforeTable = 64;
constexpr std::int64_t textsOnTrial = 4096;
constexpr std::int64_t fewShared = textsOnTrial / 4;

} // namespace

TextStore::~TextStore() {
    while (block) {
        Block* const previous = block->previous;
        GroupPool::release(block);
        block = previous;
    }
}

char const* TextStore::store(char const* text, GroupPool* pool) {
    std::size_t const length = std::strlen(text);
    if (length <= ShortText::maxLength) return store(ShortText(text, length), pool);
    Recent* const place = usesTable() ? placeOf(textHash(text, length)) : nullptr;
    if (place && std::strcmp(place->text, text) == 0) {
        ++numShared;
        return place->text;
    }
    char* const copy = allocate(length + 1, length + 1, pool);
    std::memcpy(copy, text, length + 1);
    if (place) *place = {ShortText(), copy};
    return copy;
}

char const* TextStore::store(ShortText text, GroupPool* pool) {
    if (text == ShortText()) return "";
    Recent* const place = usesTable() ? placeOf(textHash(text)) : nullptr;
    if (place && place->key == text) {
        ++numShared;
        return place->text;
    }
    char* const copy = allocate(text.length() + 1, ShortText::room, pool);
    text.put(copy);
    if (place) *place = {text, copy};
    return copy;
}

/// To be asked once for each text.
bool TextStore::usesTable() {
    ++numTexts;
    if (numTexts == textsBeforeTable) {
        recent.resize(recentTexts);
        std::fill(recent.begin(), recent.end(), Recent{ShortText(), ""});
    } else if (numTexts == textsOnTrial && numShared < fewShared) {
        recent.clear();
    }
    return recent.size > 0;
}

/// The place among the recent texts for the next one to be stored.
TextStore::Recent* TextStore::placeOf(std::uint64_t hash) {
    return &recent.data[hash % recentTexts];
}

/// Takes `bytes` characters; `room`, at least as many, may be written.
char* TextStore::allocate(std::size_t bytes, std::size_t room, GroupPool* pool) {
    if (blockUsed + room > blockSize) startBlock(room, pool);
    char* const place = reinterpret_cast<char*>(block) + blockUsed;
    blockUsed += bytes;
    return place;
}

void TextStore::startBlock(std::size_t room, GroupPool* pool) {
    std::size_t const wanted = std::clamp(2 * blockSize, firstBlockSize, largestBlockSize);
    std::size_t const newSize = std::max(sizeof(Block) + room, wanted);
    bool const standsInPool = pool && newSize <= largestBlockInPool;
    auto* fresh = static_cast<Block*>(standsInPool ? pool->allocate(newSize) : GroupPool::allocateAlone(newSize));
    fresh->previous = block;
    block = fresh;
    blockSize = newSize;
    blockUsed = sizeof(Block);
}

} // namespace tarnex
