#include "tripos/records.h"

#include "textio/LineTokens.h"

#include <algorithm>
#include <string_view>

namespace tarnex::tripos {

namespace {

// The widths of written fields. All are aligned left and cut to their width.

constexpr int idWidth = 7;
constexpr int nameWidth = 9;
/// Of a symbol in the place of the name.
constexpr int symbolWidth = 7;
constexpr int coordinateWidth = 10;
constexpr int typeWidth = 5;
constexpr int substructureWidth = 4;

constexpr int aromatic = 4;

template <class Value>
void writeField(writer& out, Value value, int width) {
    out.writeColumns(value, 1, width, 1);
}

} // namespace

CountsLine CountsLine::read(tokenizer& scanner) {
    CountsLine line;
    line.numAtoms = std::max(scanner.getInt(), 0);
    line.numBonds = std::max(scanner.getInt(), 0);
    line.numSubstructures = std::max(scanner.getInt(), 0);
    return line;
}

void CountsLine::write(writer& out) const {
    out.write(numAtoms);
    out.write(" ");
    out.write(numBonds);
    out.write(" ");
    out.write(numSubstructures);
    out.write(" 0 0\n");
}

TypeLines TypeLines::read(tokenizer& scanner) {
    TypeLines lines;
    scanner.nextLine();
    scanner.getToken();
    lines.molecule = scanner.equals("SMALL") ? SMALL : OTHER;
    scanner.nextLine();
    scanner.getToken();
    lines.hasCharges = !scanner.equals("NO_CHARGES");
    return lines;
}

void TypeLines::write(writer& out) const {
    if (molecule != OTHER) out.write(molecule == SMALL ? "SMALL" : "PROTEIN");
    out.write(hasCharges ? "\nUSER_CHARGES\n\n" : "\nNO_CHARGES\n\n");
}

AtomLine AtomLine::read(tokenizer& scanner, AtomColumns columns, Texts& texts) {
    AtomLine line;
    LineTokens tokens(scanner, 6 + (columns.substructure || columns.charge ? 2 : 0) + (columns.charge ? 1 : 0));
    line.id = tokens.nextInt();
    line.name = tokens.nextText(texts.name);
    line.position.x = tokens.nextFloat();
    line.position.y = tokens.nextFloat();
    line.position.z = tokens.nextFloat();
    std::string_view const type = tokens.nextText(texts.element);
    line.element = {type.data(), static_cast<std::size_t>(std::find(type.begin(), type.end(), '.') - type.begin())};
    if (columns.substructure) {
        line.substructure = tokens.nextInt();
        line.substructureName = tokens.nextText(texts.substructure);
    } else if (columns.charge) {
        tokens.next();
        tokens.next();
    }
    if (columns.charge) line.charge = tokens.nextFloat();
    return line;
}

void AtomLine::write(writer& out, AtomColumns columns) const {
    writeField(out, id, idWidth);
    out.write(" ", 1);
    if (name.empty())
        writeField(out, element, symbolWidth);
    else
        writeField(out, name, nameWidth);
    for (float const coordinate : {position.x, position.y, position.z}) {
        out.write(" ", 1);
        writeField(out, coordinate, coordinateWidth);
    }
    out.write(" ", 1);
    writeField(out, type.empty() ? element : type, typeWidth);
    if (columns.substructure) {
        out.write(" ", 1);
        writeField(out, substructure, substructureWidth);
        out.write(" ", 1);
        out.write(substructureName.data(), substructureName.size());
    } else {
        out.write(" 1 UNK");
    }
    if (columns.charge) {
        out.write(" ", 1);
        out.write(charge);
    }
    out.write("\n", 1);
}

void BondLine::readType(LineTokens& tokens) {
    std::string_view const token = tokens.next();
    if (token.size() == 2 && token[0] == 'a') {
        type = token[1] == 'r' ? aromatic : 1;
        return;
    }
    int const number = LineTokens::toInt(token);
    type = number >= 1 && number <= aromatic ? number : 1;
}

void BondLine::write(writer& out, bool withType) const {
    writeField(out, id, idWidth);
    out.write(" ", 1);
    out.write(std::min(firstAtom, secondAtom));
    out.write(" ", 1);
    out.write(std::max(firstAtom, secondAtom));
    out.write(" ", 1);
    if (withType && type == aromatic)
        out.write("ar", 2);
    else if (withType)
        out.write(type);
    out.write("\n", 1);
}

} // namespace tarnex::tripos
