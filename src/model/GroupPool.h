#pragma once

#include "foundation/export.h"

#include <cstddef>
#include <cstdint>
#include <utility>

namespace tarnex {

/// Room for the many small objects of a topology, its groups, attributes and values, in blocks instead of one
/// allocation each. An object out of a pool is deleted like any other and may outlive the pool: each block goes with
/// the last object in it.
///
///     topology->addGroup(0, new (pool) MtAtom);
class TARNEX_API GroupPool {
public:
    GroupPool() = default;
    GroupPool(GroupPool const&) = delete;
    GroupPool& operator=(GroupPool const&) = delete;
    /// Goes on filling the block of another pool, which is left without one.
    GroupPool(GroupPool&& other) noexcept { *this = std::move(other); }
    GroupPool& operator=(GroupPool&& other) noexcept {
        giveUpBlock();
        block = std::exchange(other.block, nullptr);
        blockSize = std::exchange(other.blockSize, 0);
        next = std::exchange(other.next, nullptr);
        endOfPage = std::exchange(other.endOfPage, nullptr);
        endOfBlock = std::exchange(other.endOfBlock, nullptr);
        return *this;
    }
    ~GroupPool() { giveUpBlock(); }

    /// Room for one object, aligned for pointers. One of more than a thousand bytes gets its own allocation.
    void* allocate(std::size_t bytes) {
        std::size_t const place = placeFor(bytes);
        if (place > static_cast<std::size_t>(endOfPage - next)) {
            if (place > largestPlace) return allocateAlone(bytes);
            startPage(place);
        }
        void* const object = next;
        next += place;
        ++block->users;
        return object;
    }
    /// Room for one object outside any pool, aligned for objects of every class that asks for no more than usual.
    static void* allocateAlone(std::size_t bytes);
    /// Gives back what either of them returned.
    static void release(void* object) noexcept;

private:
    // Objects need no room for the way to their block: those in pages lie half an alignment off from those outside, and
    // the page that leads to the block begins at the next lower multiple of its size.
    static constexpr std::size_t alignment = __STDCPP_DEFAULT_NEW_ALIGNMENT__;
    static constexpr std::size_t pageSize = 1024;
    static constexpr std::size_t largestPlace = pageSize - alignment;

    /// One allocation. Its pages follow it in memory.
    struct Block {
        /// Objects that live, and one for the pool that still fills the block.
        std::size_t users;
    };
    /// Its objects follow it in memory.
    struct Page {
        Block* block;
    };
    static_assert(sizeof(Page) == alignment / 2);

    static std::size_t addressOf(void const* place) { return reinterpret_cast<std::uintptr_t>(place); }
    static bool isInPage(void const* object) { return addressOf(object) % alignment != 0; }
    static Page* pageOf(void* place) {
        return reinterpret_cast<Page*>(static_cast<char*>(place) - addressOf(place) % pageSize);
    }
    /// The bytes that an object takes in a page.
    static constexpr std::size_t placeFor(std::size_t bytes) { return (bytes + alignment - 1) / alignment * alignment; }
    void startPage(std::size_t place);
    void startBlock();
    void giveUpBlock() noexcept;
    static void leave(Block* block) noexcept;

    Block* block = nullptr;
    std::size_t blockSize = 0;
    char* next = nullptr;
    char* endOfPage = nullptr;
    char* endOfBlock = nullptr;
};

/// Base of what may be made in a pool. It is deleted in the same way wherever it was made.
class Pooled {
public:
    static void* operator new(std::size_t bytes) { return GroupPool::allocateAlone(bytes); }
    static void* operator new(std::size_t bytes, GroupPool& pool) { return pool.allocate(bytes); }
    static void* operator new(std::size_t, void* place) noexcept { return place; }
    static void operator delete(void* object) noexcept { GroupPool::release(object); }
    static void operator delete(void* object, GroupPool&) noexcept { GroupPool::release(object); }
    static void operator delete(void*, void*) noexcept {}
};

} // namespace tarnex
