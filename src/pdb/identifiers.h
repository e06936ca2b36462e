#pragma once

#include "pdb/CardReader.h"
#include "textio/plainNumber.h"

#include <algorithm>

namespace tarnex::pdb {

/// For a number of at most seven digits.
inline ShortText decimalText(int number) {
    std::uint64_t const digits = splitDigits(static_cast<std::uint32_t>(number < 0 ? -number : number));
    int const zerosAhead = std::min(std::countr_zero(digits) / 8, static_cast<int>(wordLength) - 1);
    ShortText const magnitude((digits | repeated('0')) >> (8 * zerosAhead));
    return number < 0 ? ShortText('-') + magnitude : magnitude;
}

/// The chain of ATOM records without chain id. HETATM records without one are in no chain.
inline constexpr char const* unnamedChain = "NIL";

inline bool isInUnnamedChain(char const* chainId, bool isHet) {
    return *chainId == '\0' && !isHet;
}

/// Ids of residues of HETATM records begin with this.
inline constexpr char const* hetPrefix = "HET";

/// The id of a residue behind the prefix, if it has one.
inline ShortText residueId(ShortText chainName, int number, ShortText insertionCode) {
    return chainName + decimalText(number) + insertionCode;
}

} // namespace tarnex::pdb
