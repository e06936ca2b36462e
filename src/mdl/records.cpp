#include "mdl/records.h"

#include "textio/numberParsing.h"

#include <algorithm>
#include <cstring>

namespace tarnex::mdl {

namespace {

// The widths of the fields of each line, in the order of the columns.

namespace countsLine {
constexpr unsigned char atoms = 3;
constexpr unsigned char bonds = 3;
constexpr unsigned char others = 28;
constexpr unsigned char version = 5;
static_assert(atoms + bonds + others + version == 39);
} // namespace countsLine

namespace atomLine {
constexpr unsigned char coordinate = 10;
constexpr unsigned char blank = 1;
constexpr unsigned char symbol = 3;
constexpr unsigned char massDifference = 2;
constexpr unsigned char chargeCode = 3;
constexpr unsigned char stereoParity = 3;
constexpr unsigned char hydrogenCount = 3;
static_assert(3 * coordinate + blank + symbol + massDifference + chargeCode + stereoParity + hydrogenCount == 45);

// A coordinate in parts: the characters ahead of the point and the places behind it.
constexpr int aheadOfPoint = 5;
constexpr int places = 4;
static_assert(aheadOfPoint + 1 + places == coordinate);
} // namespace atomLine

namespace bondLine {
constexpr unsigned char atom = 3;
constexpr unsigned char type = 3;
} // namespace bondLine

/// A number on the right side of a field.
void writeNumber(writer& out, int value, unsigned char width) {
    out.writeColumns(value, 1, width, 0);
}

} // namespace

bool CountsLine::find(lengthizer& scanner) {
    char atoms[countsLine::atoms + 1];
    char bonds[countsLine::bonds + 1];
    while (true) {
        scanner.getString(atoms, countsLine::atoms);
        scanner.getString(bonds, countsLine::bonds);
        scanner.skipChars(countsLine::others);
        scanner.getToken(countsLine::version);
        if (scanner.eof) return false;
        if (scanner.equals("V2000") || scanner.equals("V3000")) break;
        scanner.nextLine();
    }
    numAtoms = std::max(tarnex::parseInt(atoms), 0);
    numBonds = std::max(tarnex::parseInt(bonds), 0);
    return true;
}

void CountsLine::write(writer& out) const {
    writeNumber(out, numAtoms, countsLine::atoms);
    writeNumber(out, numBonds, countsLine::bonds);
    out.write("  0  0  0  0  0  0  0  0  1 V2000\n");
}

AtomLine AtomLine::read(lengthizer& scanner) {
    AtomLine line;
    line.position.x = scanner.getFloat(atomLine::coordinate);
    line.position.y = scanner.getFloat(atomLine::coordinate);
    line.position.z = scanner.getFloat(atomLine::coordinate);
    scanner.skipChars(atomLine::blank);
    scanner.getString(line.symbol, atomLine::symbol);
    scanner.skipChars(atomLine::massDifference);
    line.chargeCode = scanner.getInt(atomLine::chargeCode);
    scanner.skipChars(atomLine::stereoParity);
    line.hydrogenCount = scanner.getInt(atomLine::hydrogenCount);
    return line;
}

void AtomLine::write(writer& out) const {
    for (float const coordinate : {position.x, position.y, position.z}) {
        out.writeParts(coordinate, atomLine::aheadOfPoint, atomLine::places);
    }
    out.write(" ", atomLine::blank);
    out.writeColumns(symbol, 1, atomLine::symbol, 1);
    writeNumber(out, 0, atomLine::massDifference);
    writeNumber(out, chargeCode, atomLine::chargeCode);
    writeNumber(out, 0, atomLine::stereoParity);
    writeNumber(out, hydrogenCount, atomLine::hydrogenCount);
    out.write("   0  0  0\n");
}

int AtomLine::chargeOfCode(int code) {
    return code == 0 ? 0 : static_cast<int>(4U - static_cast<unsigned>(code));
}

int AtomLine::codeOfCharge(int charge) {
    return chargeOfCode(charge);
}

BondLine BondLine::read(lengthizer& scanner) {
    BondLine line;
    line.firstAtom = scanner.getInt(bondLine::atom);
    line.secondAtom = scanner.getInt(bondLine::atom);
    line.type = scanner.getInt(bondLine::type);
    return line;
}

void BondLine::write(writer& out, bool withType) const {
    writeNumber(out, firstAtom, bondLine::atom);
    writeNumber(out, secondAtom, bondLine::atom);
    if (withType) writeNumber(out, type, bondLine::type);
    out.write("  0  0  0\n");
}

bool readDataHeader(char const* line, char* name) {
    if (line[0] != '>' || std::strlen(line) <= 4) return false;
    char const* open = std::strchr(line + 1, '<');
    char const* close = std::strrchr(line, '>');
    if (!open || open + 1 >= close) return false;
    std::memcpy(name, open + 1, static_cast<std::size_t>(close - open - 1));
    name[close - open - 1] = '\0';
    return true;
}

} // namespace tarnex::mdl
