#pragma once

#include "foundation/McVec3f.h"
#include "textio/tokenizer.h"
#include "textio/writer.h"

/// The lines of a UniChem file. Each has a function that reads it, and leaves the scanner on it, beside one that writes
/// it. Fields are read by their order.
namespace tarnex::unichem {

/// Atom and bond lines between two reports of progress.
constexpr int linesPerProgress = 50;

/// The line that begins a molecule, and the one ahead of its bonds: a count and a name. The name is passed over.
struct CountLine {
    int count = 0;

    /// Reads what follows the keyword. A negative count reads as 0.
    static CountLine read(tokenizer& scanner);
    /// Writes the keyword as well. `end` is what follows the name.
    void write(writer& out, char const* keyword, char const* name, char const* end) const;
};

struct AtomLine {
    int atomicNumber = 0;
    McVec3f position{0.0F, 0.0F, 0.0F};

    /// A number at the end of the line is passed over.
    static AtomLine read(tokenizer& scanner);
    /// Throws `FloatConversion_Error` for a coordinate of more than nine characters ahead of the point.
    void write(writer& out) const;
};

struct BondLine {
    /// Atom numbers count from 1.
    int firstAtom = 0;
    int secondAtom = 0;
    int type = 0;

    /// A missing type, or 0, reads as 1.
    static BondLine read(tokenizer& scanner);
    /// Without `withType` the line ends behind the blank ahead of the type.
    void write(writer& out, bool withType) const;
};

} // namespace tarnex::unichem
