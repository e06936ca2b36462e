#pragma once

#include "pdb/CardReader.h"
#include "textio/numberText.h"

namespace tarnex::pdb {

inline char* put(char* out, char const* text) {
    while (*text) *out++ = *text++;
    return out;
}

inline char* put(char* out, FieldText const& text) {
    return text.put(out);
}

/// The chain of ATOM records without chain id. HETATM records without one are in no chain.
inline constexpr char const* unnamedChain = "NIL";

inline bool isInUnnamedChain(char const* chainId, bool isHet) {
    return *chainId == '\0' && !isHet;
}

/// Writes the id of a residue, of texts of either kind, and terminates it.
template <class Text>
void putResidueId(char* out, Text const& chainName, int number, Text const& insertionCode, bool isHet) {
    if (isHet) out = put(out, "HET");
    out = put(out, chainName);
    out = putInt(out, number);
    *put(out, insertionCode) = '\0';
}

} // namespace tarnex::pdb
