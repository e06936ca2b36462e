#pragma once

#include "foundation/McDArray.h"
#include "foundation/ShortText.h"
#include "model/GroupPool.h"

#include <cstddef>
#include <cstdint>

namespace tarnex {

/// Keeps copies of many texts, most of them short, in a few large blocks. A stored text stays in place until the store
/// is destroyed. Texts that come again soon, such as atom types, are mostly stored once.
class TextStore {
public:
    TextStore() = default;
    TextStore(TextStore const&) = delete;
    TextStore& operator=(TextStore const&) = delete;
    ~TextStore();

    /// The first, small blocks stand in the pool; it may be null.
    char const* store(char const* text, GroupPool* pool);
    char const* store(ShortText text, GroupPool* pool);

private:
    struct Recent {
        ShortText key; ///< the text itself if it is short, else empty
        char const* text;
    };

    /// Its texts follow it in memory.
    struct Block {
        Block* previous;
    };

    bool usesTable();
    Recent* placeOf(std::uint64_t hash);
    char* allocate(std::size_t bytes, std::size_t room, GroupPool* pool);
    void startBlock(std::size_t room, GroupPool* pool);

    Block* block = nullptr;
    std::size_t blockSize = 0;
    std::size_t blockUsed = 0;
    std::int64_t numTexts = 0;
    std::int64_t numShared = 0;
    /// By hash, the text stored last; empty while there are only a few texts, and once they turn out to differ.
    McDArray<Recent> recent;
};

} // namespace tarnex
