#include "model/GroupPool.h"

#include "foundation/memory.h"

#include <algorithm>
#include <new>

namespace tarnex {

namespace {

constexpr std::size_t firstBlockSize = 1024;
// Of what grows without being announced. Molecules that share a block keep each other's memory, so that it is not
// large.
constexpr std::size_t largestGrownSize = 16 * 1024;
constexpr std::size_t largestBlockSize = 64 * 1024;

// Ahead of an object outside pools; its last bytes are the owner.
constexpr std::size_t headerOfAlone = __STDCPP_DEFAULT_NEW_ALIGNMENT__;

void* allocateBytes(std::size_t bytes) {
    void* place = mcmalloc(bytes);
    if (!place) throw std::bad_alloc();
    return place;
}

} // namespace

void* GroupPool::allocateAlone(std::size_t bytes) {
    char* const object = static_cast<char*>(allocateBytes(headerOfAlone + bytes)) + headerOfAlone;
    *(reinterpret_cast<Owner*>(object) - 1) = nullptr;
    return object;
}

void GroupPool::release(void* object) noexcept {
    if (!object) return;
    Block* const owner = *(static_cast<Owner*>(object) - 1);
    if (owner)
        leave(owner);
    else
        mcfree(static_cast<char*>(object) - headerOfAlone);
}

void GroupPool::startBlock(std::size_t bytes) {
    std::size_t const grown = std::clamp(2 * blockSize, firstBlockSize, largestGrownSize);
    std::size_t const room = std::max({bytes, grown, std::min(expected, largestBlockSize)});
    auto* fresh = static_cast<Block*>(allocateBytes(sizeof(Block) + room));
    giveUpBlock();
    expected -= std::min(expected, room);
    fresh->users = 1;
    block = fresh;
    blockSize = sizeof(Block) + room;
    used = sizeof(Block);
}

void GroupPool::giveUpBlock() noexcept {
    if (block) leave(block);
}

void GroupPool::leave(Block* block) noexcept {
    if (--block->users == 0) mcfree(block);
}

} // namespace tarnex
