#include "mdl/records.h"

#include <algorithm>
#include <cstring>

namespace tarnex::mdl {

namespace {

constexpr unsigned short columnsBeforeVersion = 34;
constexpr unsigned char versionWidth = 5;

} // namespace

bool CountsLine::find(lengthizer& scanner) {
    while (true) {
        long const lineStart = scanner.tell();
        scanner.skipChars(columnsBeforeVersion);
        scanner.getToken(versionWidth);
        if (scanner.eof) return false;
        if (scanner.equals("V2000") || scanner.equals("V3000")) {
            scanner.backTo(lineStart);
            return true;
        }
        scanner.nextLine();
    }
}

CountsLine CountsLine::read(lengthizer& scanner) {
    CountsLine line;
    line.numAtoms = std::max(scanner.getInt(3), 0); // columns 1-3
    line.numBonds = std::max(scanner.getInt(3), 0); // columns 4-6
    return line;
}

void CountsLine::write(writer& out) const {
    out.writeColumns(itoa2(numAtoms), 1, 3, 0);
    out.writeColumns(itoa2(numBonds), 4, 6, 0);
    out.write("  0  0  0  0  0  0  0  0  1 V2000\n");
}

AtomLine AtomLine::read(lengthizer& scanner) {
    AtomLine line;
    line.position.x = scanner.getFloat(10); // columns 1-10
    line.position.y = scanner.getFloat(10); // columns 11-20
    line.position.z = scanner.getFloat(10); // columns 21-30
    scanner.skipChars(1);
    scanner.getString(line.symbol, 3);      // columns 32-34
    scanner.skipChars(2);                   // mass difference
    line.chargeCode = scanner.getInt(3);    // columns 37-39
    scanner.skipChars(3);                   // stereo parity
    line.hydrogenCount = scanner.getInt(3); // columns 43-45
    return line;
}

void AtomLine::write(writer& out) const {
    for (float const coordinate : {position.x, position.y, position.z}) {
        out.writeParts(coordinate, 5, 4);
    }
    out.write(" ");
    out.writeColumns(symbol, 32, 34, 1);
    out.write(" 0");
    out.writeColumns(chargeCode, 37, 39, 0);
    out.write("  0");
    out.writeColumns(hydrogenCount, 43, 45, 0);
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
    line.firstAtom = scanner.getInt(3);  // columns 1-3
    line.secondAtom = scanner.getInt(3); // columns 4-6
    line.type = scanner.getInt(3);       // columns 7-9
    return line;
}

void BondLine::write(writer& out, bool withType) const {
    out.writeColumns(firstAtom, 1, 3, 0);
    out.writeColumns(secondAtom, 4, 6, 0);
    if (withType) out.writeColumns(type, 7, 9, 0);
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
