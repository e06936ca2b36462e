#pragma once

#include "foundation/McDArray.h"

#include <cstddef>
#include <cstdint>

namespace tarnex {

/// Keeps copies of many short texts in a few large blocks. A stored text stays in place until the store is destroyed.
/// Texts that come again soon, such as atom types, are mostly stored once.
class TextStore {
public:
    TextStore() = default;
    TextStore(TextStore const&) = delete;
    TextStore& operator=(TextStore const&) = delete;
    ~TextStore();

    char const* store(char const* text);

private:
    struct Recent {
        std::uint64_t hash;
        char const* text;
    };

    char* allocate(std::size_t bytes);

    McDArray<char*> blocks;
    std::size_t blockSize = 0;
    std::size_t blockUsed = 0;
    std::size_t storedTexts = 0;
    /// By hash, the text stored last; empty while there are only a few texts.
    McDArray<Recent> recent;
};

} // namespace tarnex
