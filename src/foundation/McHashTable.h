#pragma once

#include <cstdint>
#include <cstdlib>
#include <new>

/// The foundation's hash of an integer key. Neighbouring keys stay neighbours, so that a walk along rising keys is kind
/// to the cache; the folded upper bits spread keys that share a power of two as factor.
constexpr int hash(int key) {
    auto const k = static_cast<std::uint32_t>(key);
    return static_cast<int>(k ^ k >> 7U ^ k >> 14U ^ k >> 21U);
}

/// Chained hash table with a default value. Lookup by `operator[]` finds or creates; references to values stay valid as
/// the table grows. An empty table allocates nothing.
template <class Key, class Value>
class McHashTable {
public:
    struct Entry {
        Key key;
        Value value;
        Entry* next;
    };

    /// The number of buckets less one.
    int mask = 1;
    /// The number of entries.
    int count = 0;
    Entry** buckets;

private:
    Entry* firstBuckets[2] = {nullptr, nullptr};

public:
    Value defaultValue;

    explicit McHashTable(Value const& missing) : buckets(firstBuckets), defaultValue(missing) {}
    McHashTable(McHashTable const&) = delete;
    McHashTable& operator=(McHashTable const&) = delete;
    ~McHashTable() {
        removeAll();
        if (buckets != firstBuckets) std::free(static_cast<void*>(buckets));
    }

    /// The value of `key`; a missing key is entered with the default value first.
    Value& operator[](Key const& key) {
        Entry*& head = buckets[bucketOf(key)];
        for (Entry* entry = head; entry; entry = entry->next) {
            if (compare(entry->key, key) == 0) return entry->value;
        }
        auto* entry = new Entry{key, defaultValue, head};
        head = entry;
        ++count;
        if (count > 2 * std::int64_t{mask} + 1) rebuildTable();
        return entry->value;
    }

    void removeAll() {
        count = 0;
        if (mask < 0) return;
        Entry* all = nullptr;
        for (std::int64_t i = 0; i <= mask; ++i) {
            while (Entry* entry = buckets[i]) {
                buckets[i] = entry->next;
                entry->next = all;
                all = entry;
            }
        }
        while (all) {
            Entry* next = all->next;
            delete all;
            all = next;
        }
    }

private:
    static int compare(Key const& a, Key const& b) { return a == b ? 0 : 1; }
    int bucketOf(Key const& key) const { return ::hash(static_cast<int>(key)) & mask; }

    /// Doubles the buckets. The block has room for three pointers to a bucket, of which one is used; pages that are
    /// never touched cost nothing.
    void rebuildTable() {
        constexpr int largestMask = 0x3fffffff;
        if (mask >= largestMask) return;
        int const oldCount = mask + 1;
        std::size_t const newCount = 2 * static_cast<std::size_t>(oldCount);
        auto** newBuckets = static_cast<Entry**>(std::calloc(3 * newCount, sizeof(Entry*)));
        if (!newBuckets) throw std::bad_alloc();
        Entry** oldBuckets = buckets;
        buckets = newBuckets;
        mask = 2 * mask + 1;
        for (int i = 0; i < oldCount; ++i) {
            for (Entry* entry = oldBuckets[i]; entry;) {
                Entry* next = entry->next;
                Entry*& head = buckets[bucketOf(entry->key)];
                entry->next = head;
                head = entry;
                entry = next;
            }
        }
        if (oldBuckets != firstBuckets) std::free(static_cast<void*>(oldBuckets));
    }
};
