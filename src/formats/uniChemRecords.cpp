#include "formats/uniChemRecords.h"

#include "textio/LineTokens.h"

#include <algorithm>

namespace tarnex::unichem {

namespace {
constexpr int coordinateWidth = 10;
} // namespace

CountLine CountLine::read(tokenizer& scanner) {
    CountLine line;
    line.count = std::max(scanner.getInt(), 0);
    scanner.getToken();
    return line;
}

void CountLine::write(writer& out, char const* keyword, char const* name, char const* end) const {
    out.write(keyword);
    out.write(" ", 1);
    out.write(count);
    out.write(" ", 1);
    out.write(name);
    out.write(end);
}

AtomLine AtomLine::read(tokenizer& scanner) {
    AtomLine line;
    LineTokens tokens(scanner, 4);
    line.atomicNumber = tokens.nextInt();
    line.position.x = tokens.nextFloat();
    line.position.y = tokens.nextFloat();
    line.position.z = tokens.nextFloat();
    return line;
}

void AtomLine::write(writer& out) const {
    out.write(atomicNumber);
    for (float const coordinate : {position.x, position.y, position.z}) {
        out.write(" ", 1);
        out.writeColumns(coordinate, 1, coordinateWidth, 1);
    }
    out.write(" 0\n", 3);
}

BondLine BondLine::read(tokenizer& scanner) {
    BondLine line;
    LineTokens tokens(scanner, 3);
    line.firstAtom = tokens.nextInt();
    line.secondAtom = tokens.nextInt();
    line.type = tokens.nextInt();
    if (line.type == 0) line.type = 1;
    return line;
}

void BondLine::write(writer& out, bool withType) const {
    out.write(firstAtom);
    out.write(" ", 1);
    out.write(secondAtom);
    out.write(" ", 1);
    if (withType) out.write(type);
    out.write("\n", 1);
}

} // namespace tarnex::unichem
