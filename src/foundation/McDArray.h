#pragma once

#include "foundation/memory.h"

#include <cstddef>
#include <cstdint>
#include <cstring>
#include <iterator>
#include <memory>
#include <new>
#include <type_traits>
#include <utility>

/// Growable array of bitwise-relocatable elements. The three fields are public: `data` is a plain C array of `size`
/// elements. The array owns its block and its elements.
///
/// Growth relocates elements bitwise and runs no destructors. `append` and `insert` copy the value, so that a handle or
/// a string in the array has its own reference or text.
template <class T>
class McDArray {
public:
    std::int64_t size = 0;
    std::int64_t capacity = 0;
    T* data = nullptr;

    McDArray() = default;
    explicit McDArray(std::int64_t n) : McDArray() { resize(n); }

    /// Allocates exactly `other.size` elements and copies the last element first.
    McDArray(McDArray const& other) : McDArray() { copyFrom(other); }
    McDArray(McDArray&& other) noexcept : size(other.size), capacity(other.capacity), data(other.data) {
        other.forget();
    }
    McDArray& operator=(McDArray const& other) {
        if (this != &other) {
            McDArray copy(other);
            swap(copy);
        }
        return *this;
    }
    McDArray& operator=(McDArray&& other) noexcept {
        if (this != &other) {
            clear();
            swap(other);
        }
        return *this;
    }
    ~McDArray() { clear(); }

    /// Makes room for `n` elements: if `n` exceeds the capacity, the new capacity is the larger of `n` and one and a
    /// half times the size. Throws `std::bad_alloc` if there is no such room.
    void reserve(std::int64_t n) {
        if (n <= capacity) return;
        auto grown = static_cast<std::int64_t>(static_cast<double>(size) * 1.5);
        if (grown < 0) grown = size;
        std::int64_t const wanted = n > grown ? n : grown;
        if (wanted > INT64_MAX / static_cast<std::int64_t>(sizeof(T))) throw std::bad_alloc();
        auto const bytes = static_cast<unsigned long long>(wanted) * sizeof(T);
        void* block = data ? mcrealloc(static_cast<void*>(data), bytes) : mcmalloc(bytes);
        if (!block) throw std::bad_alloc();
        data = static_cast<T*>(block);
        capacity = wanted;
    }

    /// Sets the size; a negative `n` counts as 0. New plain values are left unset; new lists, strings and handles are
    /// empty. The block is never made smaller.
    void resize(std::int64_t n) {
        if (n < 0) n = 0;
        reserve(n);
        if constexpr (!std::is_trivially_destructible_v<T>) {
            if (n < size) std::destroy(data + n, data + size);
        }
        if constexpr (!std::is_trivially_default_constructible_v<T>) {
            for (; size < n; ++size) new (static_cast<void*>(data + size)) T();
        }
        size = n;
    }

    void append(T const& value) {
        if (size < capacity) {
            new (static_cast<void*>(data + size)) T(value);
            ++size;
        } else {
            insert(size, value);
        }
    }

    void insert(std::int64_t position, T const& value) { insert(position, 1, &value); }

    /// Inserts `count` values ahead of the element at `position`. The values may stand in this array.
    void insert(std::int64_t position, std::int64_t count, T const* values) {
        if (count <= 0) return;
        bool const ownValues = values >= data && values < data + capacity;
        if (position == size && (!ownValues || size + count <= capacity)) {
            reserve(size + count);
            std::uninitialized_copy(values, values + count, data + size);
            size += count;
            return;
        }
        // Copied while nothing has moved yet; the copies are then relocated into the gap.
        McDArray copies;
        copies.insert(0, count, values);
        reserve(size + count);
        T* gap = data + position;
        relocate(gap + count, gap, size - position);
        relocate(gap, copies.data, count);
        size += count;
        copies.size = 0;
    }

    /// Removes the elements and frees the block.
    void clear() {
        destroyAll();
        if (data) mcfree(static_cast<void*>(data));
        forget();
    }

    T& operator[](std::int64_t i) { return data[i]; }
    T const& operator[](std::int64_t i) const { return data[i]; }
    T* begin() { return data; }
    T* end() { return data + size; }
    T const* begin() const { return data; }
    T const* end() const { return data + size; }

    void swap(McDArray& other) noexcept {
        std::swap(size, other.size);
        std::swap(capacity, other.capacity);
        std::swap(data, other.data);
    }

private:
    static void relocate(T* to, T const* from, std::int64_t count) {
        std::memmove(static_cast<void*>(to), static_cast<void const*>(from),
                     static_cast<std::size_t>(count) * sizeof(T));
    }

    void copyFrom(McDArray const& other) {
        reserve(other.size);
        if constexpr (std::is_trivially_copyable_v<T>) {
            if (other.size > 0) relocate(data, other.data, other.size);
        } else {
            std::uninitialized_copy(std::make_reverse_iterator(other.end()), std::make_reverse_iterator(other.begin()),
                                    std::make_reverse_iterator(data + other.size));
        }
        size = other.size;
    }

    void destroyAll() {
        if constexpr (!std::is_trivially_destructible_v<T>) std::destroy(data, data + size);
    }

    void forget() {
        size = 0;
        capacity = 0;
        data = nullptr;
    }
};
