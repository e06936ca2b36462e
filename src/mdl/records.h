#pragma once

#include "foundation/McVec3f.h"
#include "textio/Card.h"
#include "textio/lengthizer.h"
#include "textio/writer.h"

/// The lines of an MDL connection table in the V2000 layout ("CTfile Formats", MDL Information Systems). Each has one
/// function that reads it, and leaves the scanner on it, and one that writes it. The columns of their fields stand at
/// the head of records.cpp.
namespace tarnex::mdl {

/// Atom and bond lines between two reports of progress.
constexpr int linesPerProgress = 200;

struct CountsLine {
    int numAtoms = 0;
    int numBonds = 0;

    /// Moves to the next line that has the version token in columns 35-39 and reads it. Negative counts read as 0.
    /// False at the end of the file.
    bool find(lengthizer& scanner);
    void write(writer& out) const;
};

struct AtomLine {
    McVec3f position{0.0F, 0.0F, 0.0F};
    FieldText symbol;
    /// 0 for no charge, else 4 less the charge.
    int chargeCode = 0;
    /// 0 for an unknown number of implicit hydrogens, else one more than the number.
    int hydrogenCount = 0;

    static AtomLine read(lengthizer& scanner);
    /// Throws `FloatConversion_Error` for a coordinate of more than five characters ahead of the point.
    void write(writer& out) const;

    static int chargeOfCode(int code) { return code == 0 ? 0 : static_cast<int>(4U - static_cast<unsigned>(code)); }
    static int codeOfCharge(int charge) { return chargeOfCode(charge); }
};

struct BondLine {
    /// Atom numbers count from 1.
    int firstAtom = 0;
    int secondAtom = 0;
    int type = 0;

    static BondLine read(lengthizer& scanner);
    /// Without `withType` the columns of the type are left out of the line.
    void write(writer& out, bool withType) const;
};

/// The line that ends a record.
constexpr char const* recordEnd = "$$$$";

/// Takes the name out of the header line of a data item, such as "> 25 <name> (1)". `name` needs room for the length of
/// the line. False if the line is no such header.
bool readDataHeader(char const* line, char* name);

} // namespace tarnex::mdl
