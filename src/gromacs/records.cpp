#include "gromacs/records.h"

#include "textio/numberParsing.h"
#include "textio/numberText.h"

#include <algorithm>
#include <cstring>

namespace tarnex::gromacs {

namespace {

// The widths of the fields of each line, in the order of the columns.

namespace countLine {
constexpr unsigned char atoms = 5;
} // namespace countLine

namespace atomLine {
constexpr unsigned char residueNumber = 5;
constexpr unsigned char residueName = NameRoom::width;
constexpr unsigned char atomName = NameRoom::width;
constexpr unsigned char atomNumber = 5;
constexpr unsigned char coordinate = 8;
constexpr int coordinateDecimals = 3;
static_assert(residueNumber + residueName + atomName + atomNumber + 3 * coordinate == 44);

// Three fields of eight columns with four decimals.
constexpr std::string_view noVelocity = "  0.0000  0.0000  0.0000\n";
} // namespace atomLine

/// A field of a row, counted from 0.
struct Field {
    std::size_t offset;
    std::size_t width;

    /// Empty behind the end of the row.
    std::string_view of(std::string_view row) const { return row.substr(std::min(offset, row.size()), width); }
};

namespace atomRow {
constexpr Field number{0, 6};
constexpr Field charge{45, 11};
constexpr Field mass{56, 11};
} // namespace atomRow

namespace bondedRow {
/// The atoms stand one behind the other, and the function type behind the last of them.
constexpr Field field(std::size_t i) {
    return i == 0 ? Field{0, 5} : Field{5 + 6 * (i - 1), 6};
}
} // namespace bondedRow

/// Right-aligned; a text that is wider takes what it needs.
void writeField(writer& out, std::string_view text, std::size_t width) {
    static constexpr std::string_view blanks = "        ";
    if (text.size() < width) out.write(blanks.data(), width - text.size());
    out.write(text.data(), text.size());
}

void writeField(writer& out, int value, std::size_t width) {
    char text[numberTextRoom];
    writeField(out, {text, putInt(text, value)}, width);
}

} // namespace

int readAtomCount(lengthizer& in) {
    return std::max(in.getInt(countLine::atoms), 0);
}

void writeGroHead(writer& out, int numAtoms) {
    out.write("Protein\n");
    out.write(numAtoms);
    out.write("\n");
}

void writeGroBox(writer& out) {
    out.write("   5.00000   5.00000   5.00000");
}

AtomLine AtomLine::read(lengthizer& in, NameRoom& names) {
    AtomLine line;
    line.residueNumber = in.getInt(atomLine::residueNumber);
    in.getString(names.residue, atomLine::residueName);
    line.residueName = names.residue;
    in.getString(names.atom, atomLine::atomName);
    line.atomName = names.atom;
    in.skipChars(atomLine::atomNumber);
    line.position.x = in.getFloat(atomLine::coordinate);
    line.position.y = in.getFloat(atomLine::coordinate);
    line.position.z = in.getFloat(atomLine::coordinate);
    return line;
}

void AtomLine::write(writer& out) const {
    writeField(out, residueNumber, atomLine::residueNumber);
    writeField(out, residueName, atomLine::residueName);
    writeField(out, atomName, atomLine::atomName);
    writeField(out, atomNumber, atomLine::atomNumber);
    for (float const coordinate : {position.x, position.y, position.z}) {
        out.writeDecimal(coordinate, atomLine::coordinate, atomLine::coordinateDecimals);
    }
    out.write(atomLine::noVelocity.data(), atomLine::noVelocity.size());
}

Section sectionOpenedBy(char const* line) {
    constexpr std::size_t comparedBytes = 9;
    struct Header {
        char const* text;
        Section section;
    };
    static constexpr Header headers[] = {
        {"[ atoms ]", Section::atoms},   {"[ dihedrals ]", Section::dihedrals},
        {"[ angles ]", Section::angles}, {"[ moleculetype ]", Section::moleculetype},
        {"[ bonds ]", Section::bonds},   {"[ pairs ]", Section::pairs},
    };
    for (Header const& header : headers) {
        if (std::strncmp(line, header.text, comparedBytes) == 0) return header.section;
    }
    return Section::none;
}

void writeBondsHead(writer& out) {
    out.write("[ bonds ]\n;  ai    aj funct            c0            c1            c2            c3\n");
}

void writeSectionEnd(writer& out) {
    out.write("\n");
}

AtomRow AtomRow::read(std::string_view line) {
    AtomRow row;
    row.number = parseInt(atomRow::number.of(line));
    row.charge = static_cast<float>(parseDouble(atomRow::charge.of(line)));
    row.mass = static_cast<float>(parseDouble(atomRow::mass.of(line)));
    return row;
}

template <int N>
BondedRow<N> BondedRow<N>::read(std::string_view line) {
    BondedRow row;
    for (std::size_t i = 0; i < N; ++i) row.atoms[i] = parseInt(bondedRow::field(i).of(line));
    row.function = parseInt(bondedRow::field(N).of(line));
    return row;
}

template <int N>
void BondedRow<N>::write(writer& out) const {
    for (std::size_t i = 0; i < N; ++i) writeField(out, atoms[i], bondedRow::field(i).width);
    writeField(out, function, bondedRow::field(N).width);
    out.write("\n");
}

template struct BondedRow<2>;
template struct BondedRow<3>;
template struct BondedRow<4>;

} // namespace tarnex::gromacs
