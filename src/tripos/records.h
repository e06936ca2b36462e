#pragma once

#include "foundation/McVec3f.h"
#include "textio/LineTokens.h"
#include "textio/writer.h"

/// The lines of a mol2 file ("Tripos Mol2 File Format", Tripos Inc.). Each has a function that reads it, and leaves the
/// scanner on it, beside one that writes it. Fields are read by their order and written in columns.
namespace tarnex::tripos {

constexpr char const* moleculeRecord = "@<TRIPOS>MOLECULE";
constexpr char const* atomRecord = "@<TRIPOS>ATOM";
constexpr char const* bondRecord = "@<TRIPOS>BOND";

/// Atom and bond lines between two reports of progress.
constexpr int linesPerProgress = 50;

struct CountsLine {
    int numAtoms = 0;
    int numBonds = 0;
    int numSubstructures = 0;

    /// Negative counts read as 0. Counts of features and sets are passed over.
    static CountsLine read(tokenizer& scanner);
    void write(writer& out) const;
};

/// What kind of molecule and of charges a molecule has.
struct TypeLines {
    /// The word of the first line: a small molecule, a protein, or nothing.
    enum MoleculeType { SMALL, PROTEIN, OTHER };

    MoleculeType molecule = SMALL;
    bool hasCharges = false;

    /// From the line ahead of them; any word but "SMALL" is another type, any but "NO_CHARGES" means charges.
    static TypeLines read(tokenizer& scanner);
    /// The line of another type than the two that have a word stays empty.
    void write(writer& out) const;
};

/// Which columns behind the atom type a molecule uses.
struct AtomColumns {
    bool substructure = false;
    bool charge = false;
};

struct AtomLine {
    /// Room for texts of a line.
    struct Texts {
        char name[tokenizer::maxLength];
        char element[tokenizer::maxLength];
        char substructure[tokenizer::maxLength];
    };

    int id = 0;
    /// Empty for an atom that is called as its element.
    std::string_view name;
    McVec3f position{0.0F, 0.0F, 0.0F};
    /// The symbol, which is the atom type up to its first point.
    std::string_view element;
    /// Only written; the symbol is if this is empty.
    std::string_view type;
    /// 0 for an atom outside of all.
    int substructure = 0;
    std::string_view substructureName;
    float charge = 0.0F;

    /// Columns that are not used are left at their defaults. The texts stay until the scanner is used again, and as
    /// long as `texts`.
    static AtomLine read(tokenizer& scanner, AtomColumns columns, Texts& texts);
    /// Throws `FloatConversion_Error` for a coordinate of more than nine characters ahead of the point.
    void write(writer& out, AtomColumns columns) const;
};

/// Is read field by field: a line that names an unknown atom is left there.
struct BondLine {
    int id = 0;
    int firstAtom = 0;
    int secondAtom = 0;
    /// 1 to 3, and 4 for an aromatic bond. An amide bond and every type that is none of these is read as 1.
    int type = 1;

    /// Passes the id as well, which is not kept.
    void readFirstAtom(LineTokens& tokens) {
        tokens.next();
        firstAtom = tokens.nextInt();
    }
    void readSecondAtom(LineTokens& tokens) { secondAtom = tokens.nextInt(); }
    void readType(LineTokens& tokens);
    static constexpr int numTokens = 4;

    /// Without `withType` the line ends behind the blank ahead of the type.
    void write(writer& out, bool withType) const;
};

} // namespace tarnex::tripos
