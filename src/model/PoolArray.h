#pragma once

#include "model/GroupPool.h"

#include <algorithm>
#include <cstdint>
#include <type_traits>

namespace tarnex {

/// Plain values whose number only grows. Short arrays stand in a pool, long ones in memory of their own.
template <class T>
class PoolArray {
    static_assert(std::is_trivially_copyable_v<T>);

public:
    PoolArray() = default;
    PoolArray(PoolArray const& other) {
        reserve(other.numValues, nullptr);
        numValues = other.numValues;
        std::copy(other.values, other.values + numValues, values);
    }
    PoolArray& operator=(PoolArray const&) = delete;
    ~PoolArray() { GroupPool::release(values); }

    std::int64_t size() const { return numValues; }
    std::int64_t capacity() const { return room; }
    T& operator[](std::int64_t i) { return values[i]; }
    T const& operator[](std::int64_t i) const { return values[i]; }

    /// Appends one value; there must be room.
    void append(T value) { values[numValues++] = value; }
    /// Makes room for at least `wanted` values, and for half as many again as there are. The pool may be null.
    void reserve(std::int64_t wanted, GroupPool* pool) {
        if (wanted > room) grow(std::max(wanted, numValues + numValues / 2), pool);
    }
    /// Inserts a value ahead of the one at `position`; there must be room.
    void insert(std::int64_t position, T value) {
        std::copy_backward(values + position, values + numValues, values + numValues + 1);
        values[position] = value;
        ++numValues;
    }

private:
    void grow(std::int64_t newRoom, GroupPool* pool) {
        std::size_t const bytes = static_cast<std::size_t>(newRoom) * sizeof(T);
        void* const place = pool ? pool->allocate(bytes) : GroupPool::allocateAlone(bytes);
        std::copy(values, values + numValues, static_cast<T*>(place));
        GroupPool::release(values);
        values = static_cast<T*>(place);
        room = newRoom;
    }

    T* values = nullptr;
    std::int64_t numValues = 0;
    std::int64_t room = 0;
};

} // namespace tarnex
