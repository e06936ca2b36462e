#include "mdl/records.h"

#include "textio/numberParsing.h"

#include <algorithm>
#include <cstring>

namespace tarnex::mdl {

namespace {

// The columns of the fields of each line.

namespace countsLine {
constexpr Columns atoms{1, 3};
constexpr Columns bonds{4, 6};
constexpr Columns version{35, 39};
} // namespace countsLine

namespace atomLine {
constexpr Columns x{1, 10};
constexpr Columns y{11, 20};
constexpr Columns z{21, 30};
constexpr Columns symbol{32, 34};
constexpr Columns massDifference{35, 36};
constexpr Columns chargeCode{37, 39};
constexpr Columns stereoParity{40, 42};
constexpr Columns hydrogenCount{43, 45};

// A coordinate in parts: the characters ahead of the point and the places behind it.
constexpr int aheadOfPoint = 5;
constexpr int places = 4;
static_assert(aheadOfPoint + 1 + places == x.width());
} // namespace atomLine

namespace bondLine {
constexpr Columns firstAtom{1, 3};
constexpr Columns secondAtom{4, 6};
constexpr Columns type{7, 9};
} // namespace bondLine

constexpr unsigned short alignRight = 0;
constexpr unsigned short alignLeft = 1;

void writeNumber(writer& out, int value, Columns columns) {
    out.writeColumns(value, columns.first, columns.last, alignRight);
}

} // namespace

bool CountsLine::find(lengthizer& scanner) {
    char atoms[countsLine::atoms.width() + 1];
    char bonds[countsLine::bonds.width() + 1];
    while (true) {
        scanner.getString(atoms, countsLine::atoms.width());
        scanner.getString(bonds, countsLine::bonds.width());
        scanner.skipChars(countsLine::version.first - countsLine::bonds.last - 1);
        scanner.getToken(countsLine::version.width());
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
    namespace columns = atomLine;
    Card const card(scanner.takeColumns(columns::hydrogenCount.last));
    return {
        .position = {card.real(columns::x, columns::places), card.real(columns::y, columns::places),
                     card.real(columns::z, columns::places)},
        .symbol = card.field(columns::symbol),
        .chargeCode = card.integer(columns::chargeCode),
        .hydrogenCount = card.integer(columns::hydrogenCount),
    };
}

void AtomLine::write(writer& out) const {
    for (float const coordinate : {position.x, position.y, position.z}) {
        out.writeParts(coordinate, atomLine::aheadOfPoint, atomLine::places);
    }
    out.write(" ", 1);
    out.writeColumns(symbol.c_str(), atomLine::symbol.first, atomLine::symbol.last, alignLeft);
    writeNumber(out, 0, atomLine::massDifference);
    writeNumber(out, chargeCode, atomLine::chargeCode);
    writeNumber(out, 0, atomLine::stereoParity);
    writeNumber(out, hydrogenCount, atomLine::hydrogenCount);
    out.write("   0  0  0\n");
}

BondLine BondLine::read(lengthizer& scanner) {
    namespace columns = bondLine;
    Card const card(scanner.takeColumns(columns::type.last));
    return {card.integer(columns::firstAtom), card.integer(columns::secondAtom), card.integer(columns::type)};
}

void BondLine::write(writer& out, bool withType) const {
    writeNumber(out, firstAtom, bondLine::firstAtom);
    writeNumber(out, secondAtom, bondLine::secondAtom);
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
