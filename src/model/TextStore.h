#pragma once

#include "foundation/McDArray.h"

#include <cstddef>
#include <cstdint>
#include <string_view>

namespace tarnex {

/// Keeps copies of many short texts in a few large blocks. A stored text stays in place until the store is destroyed.
/// Texts that come again soon, such as atom types, are mostly stored once.
class TextStore {
public:
    TextStore() = default;
    TextStore(TextStore const&) = delete;
    TextStore& operator=(TextStore const&) = delete;
    ~TextStore();

    /// A terminated copy of a text without NUL, or an older one.
    char const* store(std::string_view text);

private:
    struct Recent {
        std::uint64_t hash;
        char const* text;
    };

    /// Its texts follow it in memory.
    struct Block {
        Block* previous;
    };

    char* allocate(std::size_t bytes);

    Block* block = nullptr;
    std::size_t blockSize = 0;
    std::size_t blockUsed = 0;
    std::size_t storedTexts = 0;
    /// By hash, the text stored last; empty while there are only a few texts.
    McDArray<Recent> recent;
};

} // namespace tarnex
