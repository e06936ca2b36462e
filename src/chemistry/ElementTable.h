#pragma once

#include "chemistry/Element.h"
#include "foundation/export.h"

namespace molchem {

/// The periodic table. Every lookup yields an element, for what is no element the default one; null is never returned.
class TARNEX_API ElementTable {
public:
    /// The one table of the process, null until a caller needs it:
    /// `if (!ElementTable::singletonObject) ElementTable::singletonObject = new ElementTable();`
    /// There is no lock, so the first use has to happen on one thread. The table lives as long as the process.
    static ElementTable* singletonObject;

    ElementTable();

    /// The element with this IUPAC symbol, matched without regard to case; "D" is hydrogen. Any other text, also an
    /// empty one, blanks around a symbol, or null, gives the default element. The flag has no effect.
    Element const* getElement(char const* symbol, bool flag) const;

    /// The element with this atomic number; the default element outside 1 to 118.
    Element const* getElement(int atomicNumber) const;

    /// The element that stands for "unknown": number 0, symbol "X".
    Element const* getDefaultElement() const;

private:
    static constexpr int alphabetSize = 27; // "no letter" and A to Z

    unsigned char numberOfSymbol[alphabetSize][alphabetSize] = {}; // by first and second letter
};

} // namespace molchem

namespace tarnex {

/// The process's element table, made on first use.
inline molchem::ElementTable const& elementTable() {
    if (!molchem::ElementTable::singletonObject) molchem::ElementTable::singletonObject = new molchem::ElementTable();
    return *molchem::ElementTable::singletonObject;
}

/// The element whose symbol an atom's name begins with: the name is looked up as it is, then without its last
/// character, and so on until the table knows it. HB1 is hydrogen, CT carbon, CA calcium. The default element if
/// nothing fits.
TARNEX_API molchem::Element const& elementAtStartOfName(char const* name);

} // namespace tarnex
