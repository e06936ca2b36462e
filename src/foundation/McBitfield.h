#pragma once

#include "foundation/McDArray.h"
#include "foundation/export.h"

#include <cstdint>

/// Set of a given number of bits; bit `i` stands in the 32-bit word `i >> 5`. Indices are not checked.
class TARNEX_API McBitfield {
public:
    enum INIT { UNINITIALIZED = 0, CLEARED = 1 };

    McBitfield() = default;
    McBitfield(unsigned long n, INIT init) { resize(n, init); }

    /// Sets the number of bits and, with `CLEARED`, clears them all.
    void resize(unsigned long n, INIT init);
    void setAll();
    void unsetAll();

    unsigned long size() const { return numBits; }
    bool operator[](unsigned long i) const { return isSet(i); }
    bool isSet(unsigned long i) const { return (word(i) >> (i & 31U) & 1U) != 0; }
    void set(unsigned long i) { word(i) |= 1U << (i & 31U); }
    void unset(unsigned long i) { word(i) &= ~(1U << (i & 31U)); }

private:
    std::uint32_t& word(unsigned long i) { return words.data[i >> 5U]; }
    std::uint32_t word(unsigned long i) const { return words.data[i >> 5U]; }
    void fill(std::uint32_t value);

    unsigned long numBits = 0;
    McDArray<std::uint32_t> words;
};
