#include "model/GroupPool.h"

#include "foundation/memory.h"

#include <algorithm>
#include <new>

namespace tarnex {

namespace {

// Molecules that share a block keep each other's memory, so that it is not large.
constexpr std::size_t largestBlock = 16 * 1024;

} // namespace

void* GroupPool::allocateAlone(std::size_t bytes) {
    void* place = mcmalloc(bytes);
    if (!place) throw std::bad_alloc();
    return place;
}

void GroupPool::release(void* object) noexcept {
    if (isInPage(object))
        leave(pageOf(object)->block);
    else
        mcfree(object);
}

/// The last page of a block may be cut short.
void GroupPool::startPage(std::size_t place) {
    if (static_cast<std::size_t>(endOfBlock - endOfPage) < sizeof(Page) + place) startBlock();
    next = reinterpret_cast<char*>(new (endOfPage) Page{block} + 1);
    endOfPage += std::min<std::ptrdiff_t>(pageSize, endOfBlock - endOfPage);
}

void GroupPool::startBlock() {
    std::size_t const size = std::clamp(2 * blockSize, 2 * pageSize, largestBlock);
    auto* const fresh = new (allocateAlone(size)) Block{1};
    giveUpBlock();
    block = fresh;
    blockSize = size;
    // Pages begin at multiples of their size.
    endOfPage = reinterpret_cast<char*>(fresh) + pageSize - addressOf(fresh) % pageSize;
    endOfBlock = reinterpret_cast<char*>(fresh) + size;
}

void GroupPool::giveUpBlock() noexcept {
    if (block) leave(block);
}

void GroupPool::leave(Block* block) noexcept {
    if (--block->users == 0) mcfree(block);
}

} // namespace tarnex
