#pragma once

#include "foundation/McVec3f.h"
#include "textio/lengthizer.h"
#include "textio/writer.h"

#include <string_view>

/// The lines of .gro and .top files (GROMACS Reference Manual, "File formats"). Each has one function that reads it
/// and, where it is written, one that writes it. Columns and widths stand at the head of records.cpp. Blank and missing
/// fields are 0 or empty.
namespace tarnex::gromacs {

constexpr float angstromPerNanometre = 10.0F;

/// The second line of a .gro file. The scanner is left on it; a negative count reads as 0.
int readAtomCount(lengthizer& in);
/// The first two lines of a .gro file.
void writeGroHead(writer& out, int numAtoms);
/// The last line of a .gro file: the edges of the box, without a line end.
void writeGroBox(writer& out);

/// Where the names of a line that has been read stand.
struct NameRoom {
    static constexpr int width = 5;
    char residue[width + 1] = "";
    char atom[width + 1] = "";
};

/// An atom of a .gro file. Widths are the least that a field takes: what is wider moves everything behind it.
struct AtomLine {
    int residueNumber = 0;
    char const* residueName = "";
    char const* atomName = "";
    /// Counts from 1. Written only: the place in the file tells the same.
    int atomNumber = 0;
    /// In nanometres. Velocities are passed over and written as 0.
    McVec3f position{0.0F, 0.0F, 0.0F};

    static AtomLine read(lengthizer& in, NameRoom& names);
    void write(writer& out) const;
};

/// The sections of a .top file that are read.
enum class Section { none, atoms, dihedrals, angles, moleculetype, bonds, pairs };

/// The section that a line opens. Nine bytes decide, so that longer names agree with those that begin alike.
Section sectionOpenedBy(char const* line);
/// The head lines of the section of bonds, and the line that ends it.
void writeBondsHead(writer& out);
void writeSectionEnd(writer& out);

/// A row of the section of atoms. Types, residues and names are left out.
struct AtomRow {
    /// Counts from 1.
    int number = 0;
    /// In elementary charges.
    float charge = 0.0F;
    /// In atomic mass units.
    float mass = 0.0F;

    static AtomRow read(std::string_view line);
};

/// A row that names atoms and a function type: bonds and pairs, angles, dihedrals. Parameters behind them are left out.
template <int N>
struct BondedRow {
    /// Count from 1.
    int atoms[N];
    int function;

    static BondedRow read(std::string_view line);
    void write(writer& out) const;
};

extern template struct BondedRow<2>;
extern template struct BondedRow<3>;
extern template struct BondedRow<4>;

} // namespace tarnex::gromacs
