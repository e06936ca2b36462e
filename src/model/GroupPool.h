#pragma once

#include "foundation/export.h"

#include <cstddef>
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
        used = std::exchange(other.used, 0);
        expected = 0;
        return *this;
    }
    ~GroupPool() { giveUpBlock(); }

    /// Announces `count` objects of this size, so that blocks fit them.
    void expect(std::size_t count, std::size_t bytes) { expected += count * placeFor(bytes); }
    /// Room for one object of up to a thousand bytes or so, aligned for pointers.
    void* allocate(std::size_t bytes) {
        std::size_t const needed = placeFor(bytes);
        if (used + needed > blockSize) startBlock(needed);
        auto* owner = reinterpret_cast<Owner*>(reinterpret_cast<char*>(block) + used);
        *owner = block;
        used += needed;
        ++block->users;
        return owner + 1;
    }
    /// Room for one object outside any pool, aligned for objects of every class that asks for no more than usual.
    static void* allocateAlone(std::size_t bytes);
    /// Gives back what either of them returned.
    static void release(void* object) noexcept;

private:
    /// Its objects follow it in memory.
    struct Block {
        /// Objects that live, and one for the pool that still fills the block.
        std::size_t users;
    };
    /// Stands ahead of each object; null outside pools.
    using Owner = Block*;

    /// The bytes that an object takes in a block.
    static constexpr std::size_t placeFor(std::size_t bytes) {
        return sizeof(Owner) + (bytes + alignof(Owner) - 1) / alignof(Owner) * alignof(Owner);
    }
    void startBlock(std::size_t bytes);
    void giveUpBlock() noexcept;
    static void leave(Block* block) noexcept;

    Block* block = nullptr;
    std::size_t blockSize = 0;
    std::size_t used = 0;
    /// Bytes of announced objects for which there is no block yet.
    std::size_t expected = 0;
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
