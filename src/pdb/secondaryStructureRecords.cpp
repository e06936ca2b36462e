#include "pdb/secondaryStructureRecords.h"

#include <ostream>

namespace tarnex::pdb {

namespace {

template <class Line>
constexpr bool hasRoomFor(Columns identifier, ResidueColumns const& residue) {
    return identifier.width() < int{sizeof Line::identifier} &&
           residue.chain.width() < int{sizeof ResidueReference::chain} &&
           residue.insertionCode.width() < int{sizeof ResidueReference::insertionCode};
}

constexpr bool isInOrder(ResidueColumns const& residue) {
    return residue.type.last < residue.chain.first && residue.chain.last < residue.number.first &&
           residue.number.last < residue.insertionCode.first;
}

constexpr bool isSound(SegmentColumns const& line) {
    return hasRoomFor<SegmentLine>(line.identifier, line.start) && hasRoomFor<SegmentLine>(line.identifier, line.end) &&
           keywordColumns.last < line.number.first && line.number.last < line.identifier.first &&
           line.identifier.last < line.start.type.first && isInOrder(line.start) &&
           line.start.insertionCode.last < line.end.type.first && isInOrder(line.end);
}

static_assert(isSound(HelixLine::columns) && isSound(SheetLine::columns) && isSound(TurnLine::columns));
static_assert(hasRoomFor<SiteLine>(SiteLine::identifierColumns, SiteLine::residueColumns) &&
              isInOrder(SiteLine::residueColumns));

/// Reads fields from left to right.
class FieldReader {
public:
    explicit FieldReader(lengthizer& scanner) : in(scanner) {}

    int number(Columns field) { return in.getInt(passTo(field)); }
    void text(Columns field, char* destination) { in.getString(destination, passTo(field)); }
    void residue(ResidueColumns const& fields, int distance, ResidueReference& reference) {
        text(fields.chain.movedBy(distance), reference.chain);
        reference.number = number(fields.number.movedBy(distance));
        text(fields.insertionCode.movedBy(distance), reference.insertionCode);
    }

private:
    /// Moves to a field; returns its width.
    unsigned char passTo(Columns field) {
        in.skipChars(static_cast<unsigned short>(field.first - nextColumn));
        nextColumn = field.last + 1;
        return static_cast<unsigned char>(field.width());
    }

    lengthizer& in;
    int nextColumn = keywordColumns.last + 1;
};

template <class Line>
Line readSegment(lengthizer& in) {
    Line line;
    FieldReader fields(in);
    line.number = fields.number(Line::columns.number);
    fields.text(Line::columns.identifier, line.identifier);
    fields.residue(Line::columns.start, 0, line.start);
    fields.residue(Line::columns.end, 0, line.end);
    return line;
}

} // namespace

HelixLine HelixLine::read(lengthizer& in) {
    return readSegment<HelixLine>(in);
}

SheetLine SheetLine::read(lengthizer& in) {
    return readSegment<SheetLine>(in);
}

TurnLine TurnLine::read(lengthizer& in) {
    return readSegment<TurnLine>(in);
}

SiteLine SiteLine::read(lengthizer& in) {
    SiteLine line;
    FieldReader fields(in);
    fields.text(identifierColumns, line.identifier);
    for (int i = 0; i < numResidues; ++i) fields.residue(residueColumns, i * residueDistance, line.residues[i]);
    return line;
}

std::ostream& operator<<(std::ostream& out, HelixLine const& line) {
    return out << "Helix number " << line.number;
}

std::ostream& operator<<(std::ostream& out, SheetLine const& line) {
    return out << "Sheet " << line.identifier << " strand number " << line.number;
}

std::ostream& operator<<(std::ostream& out, TurnLine const& line) {
    return out << "Turn " << line.number;
}

std::ostream& operator<<(std::ostream& out, SiteLine const& line) {
    return out << "Site " << line.identifier;
}

} // namespace tarnex::pdb
