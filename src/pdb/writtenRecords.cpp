#include "pdb/writtenRecords.h"

#include "pdb/CardWriter.h"
#include "pdb/records.h"
#include "pdb/secondaryStructureRecords.h"
#include "pdb/writeTables.h"

#include <cstring>

namespace tarnex::pdb {

namespace {

constexpr int chargeDigits = 3;
constexpr Columns decimalChargeColumns{71, 76};
/// Coordinates, occupancy, temperature factor and charge; and fields that are short.
constexpr std::size_t roomOfAtomRecord = 7 * numberTextRoom;

void putResidue(CardWriter& card, ResidueText const& residue, ResidueColumns const& columns, int distance = 0) {
    card.put(residue.type, columns.type.movedBy(distance));
    card.put(residue.chain, columns.chain.movedBy(distance));
    card.put(residue.number, columns.number.movedBy(distance));
}

char* putBlanks(char* out, std::ptrdiff_t count) {
    for (; count > 0; --count) *out++ = ' ';
    return out;
}

char* putText(char* out, char const* text, std::size_t length) {
    std::memcpy(out, text, length);
    return out + length;
}

/// As printf with "%*s".
char* alignRight(char* out, int width, char const* text, std::size_t length) {
    return putText(putBlanks(out, width - static_cast<std::ptrdiff_t>(length)), text, length);
}

char* alignRight(char* out, int width, char const* text) {
    return alignRight(out, width, text, std::strlen(text));
}

/// As printf with "%*d".
char* alignRight(char* out, int width, int number) {
    char text[numberTextRoom];
    return alignRight(out, width, text, static_cast<std::size_t>(putInt(text, number) - text));
}

} // namespace

void HelixRecord::write(writer& out) const {
    constexpr SegmentColumns columns = HelixLine::columns;
    CardWriter card(out, "HELIX");
    card.put(serial, columns.number).put(name, columns.identifier);
    putResidue(card, start, columns.start);
    putResidue(card, end, columns.end);
    card.put(1, {39, 40}).put(length, {72, 76}).end();
}

void TurnRecord::write(writer& out) const {
    constexpr SegmentColumns columns = TurnLine::columns;
    CardWriter card(out, "TURN");
    card.put(serial, columns.number).put(name, columns.identifier);
    putResidue(card, start, columns.start);
    if (isComplete) {
        putResidue(card, end, columns.end);
    } else {
        card.put(end.type, columns.end.type).put(0, columns.end.chain);
    }
    card.end();
}

void SheetRecord::write(writer& out) const {
    constexpr SegmentColumns columns = SheetLine::columns;
    CardWriter card(out, "SHEET");
    card.put(serial, columns.number).put(name, columns.identifier).put(0, {15, 16});
    putResidue(card, start, columns.start);
    if (isComplete) {
        if (!hasTypes) card.skipTo(columns.start.insertionCode.last + 1);
        putResidue(card, end, columns.end);
    } else {
        constexpr int blanksForChain = 5;
        card.put(end.type, columns.end.type).insertBlanks(blanksForChain).skipTo(columns.end.number.first);
        card.put(end.number, columns.end.number);
    }
    card.end();
}

void SiteRecord::write(writer& out) const {
    CardWriter card(out, "SITE");
    card.put(serial, {8, 10}).put(name, SiteLine::identifierColumns).put(residuesOfSite, {16, 17});
    for (int i = 0; i < numResidues; ++i) {
        putResidue(card, residues[i], SiteLine::residueColumns, i * SiteLine::residueDistance);
    }
    card.end();
}

void SsBondRecord::write(writer& out) const {
    constexpr ResidueColumns firstColumns{{12, 14}, {16, 16}, {18, 21}, {22, 22}};
    constexpr int distance = 14;
    CardWriter card(out, "SSBOND");
    card.put(serial, {8, 10});
    putResidue(card, first, firstColumns);
    putResidue(card, second, firstColumns, distance);
    card.end();
}

void SeqResRecord::write(writer& out) const {
    constexpr Columns firstType{20, 22};
    constexpr int distance = 4;
    CardWriter card(out, "SEQRES");
    card.put(serial, {9, 10}).put(chain, {12, 12}).put(residuesOfChain, {14, 17});
    for (int i = 0; i < numResidues; ++i) card.put(types[i], firstType.movedBy(i * distance));
    card.end();
}

ResidueField::ResidueField(ResidueText const& residue) {
    constexpr int typeWidth = AtomLine::residueTypeColumns.width();
    std::size_t const typeLength = ::strnlen(residue.type, typeWidth);
    char* c = text;
    *c++ = ' '; // no alternate location
    c = putText(c, residue.type, typeLength);
    c = putBlanks(c, typeWidth + 1 - static_cast<std::ptrdiff_t>(typeLength));
    c = alignRight(c, AtomLine::chainColumns.width(), residue.chain);
    c = alignRight(c, AtomLine::residueNumberColumns.width(), residue.number);
    // No insertion code.
    c = putBlanks(c, AtomLine::xColumns.first - AtomLine::insertionCodeColumns.first);
    length = static_cast<std::size_t>(c - text);
}

char* ResidueField::put(char* out) const {
    return putText(out, text, length);
}

void AtomRecord::setName(char const* type, char const* elementSymbol) {
    char* column = name;
    char* const nameEnd = name + sizeof name;
    auto const append = [&](char character) {
        if (column != nameEnd) *column++ = character;
    };
    bool const hasDigit = *type >= '0' && *type <= '9';
    column = putBlanks(column, AtomLine::nameStartColumns.width() - (hasDigit ? 1 : 0) -
                                   static_cast<std::ptrdiff_t>(std::strlen(elementSymbol)));
    if (hasDigit) append(*type++);
    for (char const* s = elementSymbol; *s; ++s) append(*s);
    for (; *type && *type == *elementSymbol; ++elementSymbol) ++type;
    for (; *type && column != nameEnd; ++type) append(*type);
    putBlanks(column, nameEnd - column);
}

void AtomRecord::write(writer& out, bool chargeColumn) const {
    char line[roomOfAtomRecord];
    char* c = putText(line, isHet ? "HETATM" : "ATOM  ", static_cast<std::size_t>(keywordColumns.width()));
    c = alignRight(c, AtomLine::serialColumns.width(), serial);
    *c++ = ' ';
    c = residue.put(putText(c, name, sizeof name));
    for (float const coordinate : {position.x, position.y, position.z}) {
        c = putDecimal(c, AtomLine::xColumns.width(), AtomLine::coordinateDecimals, coordinate);
    }
    c = putDecimal(c, AtomLine::occupancyColumns.width(), AtomLine::factorDecimals, occupancy);
    c = putDecimal(c, AtomLine::temperatureColumns.width(), AtomLine::factorDecimals, temperature);
    constexpr int column = AtomLine::temperatureColumns.last + 1;
    if (chargeColumn) {
        c = putBlanks(c, decimalChargeColumns.first - column);
        c = putDecimal(c, decimalChargeColumns.width(), chargeDigits, charge);
        c = putBlanks(c, CardWriter::lastColumn - decimalChargeColumns.last);
    } else {
        c = putBlanks(c, AtomLine::elementColumns.first - column);
        c = alignRight(c, AtomLine::elementColumns.width(), symbol);
        c = putText(c, chargeText, sizeof chargeText);
    }
    *c++ = '\n';
    out.write(line, static_cast<std::size_t>(c - line));
}

void TerRecord::write(writer& out) const {
    char text[numberTextRoom];
    std::size_t const typeLength = std::strlen(residue.type);
    char* c = putText(text, "TER   ", static_cast<std::size_t>(keywordColumns.width()));
    c = alignRight(c, AtomLine::serialColumns.width(), serial);
    c = putBlanks(c, AtomLine::residueTypeColumns.first - AtomLine::serialColumns.last - 1);
    c = putBlanks(c, AtomLine::residueTypeColumns.width() - static_cast<std::ptrdiff_t>(typeLength));
    out.write(text, static_cast<std::size_t>(c - text));
    out.write(residue.type, typeLength);
    c = text;
    *c++ = ' ';
    c = alignRight(c, AtomLine::chainColumns.width(), residue.chain);
    c = alignRight(c, AtomLine::residueNumberColumns.width(), residue.number);
    c = putBlanks(c, CardWriter::lastColumn - AtomLine::residueNumberColumns.last);
    *c++ = '\n';
    out.write(text, static_cast<std::size_t>(c - text));
}

void ConectRecord::write(writer& out, McDArray<int> const& serialOfAtom) const {
    constexpr Columns columns = ConectLine::partnerColumns;
    CardWriter card(out, "CONECT");
    card.put(serial, ConectLine::serialColumns);
    int distance = 0;
    for (int const partner : partners) {
        card.put(valueAt(serialOfAtom, partner, 0), columns.movedBy(distance));
        distance += columns.width();
    }
    card.end();
}

void MasterRecord::write(writer& out) const {
    constexpr Columns first{11, 15};
    CardWriter card(out, "MASTER");
    int distance = 0;
    for (int const count : {0, 0, 0, numHelix, numSheet, numTurn, numSite, 0, numAtom, numTer, numConect, numSeqRes}) {
        card.put(count, first.movedBy(distance));
        distance += first.width();
    }
    card.end();
}

void writeTextRecord(writer& out, char const* keyword, char const* text) {
    CardWriter(out, keyword).putLeftAligned(text, {keywordColumns.last + 1, CardWriter::lastColumn}).end();
}

} // namespace tarnex::pdb
