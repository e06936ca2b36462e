#pragma once

#include "foundation/export.h"

#include <cstddef>

namespace tarnex {

/// Room for the many small groups of a topology, in blocks instead of one allocation each. A group out of a pool is
/// deleted like any other and may outlive the pool: each block goes with the last group in it.
///
///     topology->addGroup(0, new (pool) MtAtom);
class TARNEX_API GroupPool {
public:
    GroupPool() = default;
    GroupPool(GroupPool const&) = delete;
    GroupPool& operator=(GroupPool const&) = delete;
    ~GroupPool() { giveUpBlock(); }

    /// Announces `count` objects of this size, so that blocks fit them.
    void expect(std::size_t count, std::size_t bytes) { expected += count * placeFor(bytes); }
    /// Room for one object of up to a few hundred bytes, aligned for pointers.
    void* allocate(std::size_t bytes);
    /// Room for one object outside any pool.
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

} // namespace tarnex
