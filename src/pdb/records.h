#pragma once

#include "foundation/McVec3f.h"
#include "pdb/CardReader.h"

/// The lines of a PDB file that tell of atoms and bonds ("Protein Data Bank Contents Guide", wwPDB). Each stands here
/// with its columns and a function that reads it. Blank and missing fields are 0 or empty.
namespace tarnex::pdb {

/// A number of up to seven columns that is often the same line after line.
class RepeatedReal {
public:
    float read(Card const& card, Columns columns, int usualDecimals) {
        std::uint64_t const newText = card.packed(columns);
        if (newText != text) value = card.real(columns, usualDecimals);
        text = newText;
        return value;
    }

private:
    std::uint64_t text = 0; // NULs, which are the number 0
    float value = 0.0F;
};

/// An ATOM or HETATM line, whose fields are read when they are asked for, as long as its card is in place. The segment
/// id in columns 73-76 is left out.
class AtomLine {
public:
    static constexpr Columns serialColumns{7, 11};
    static constexpr Columns nameStartColumns{13, 14};
    static constexpr Columns nameEndColumns{15, 16};
    static constexpr Columns locationColumns{17, 17};
    static constexpr Columns residueTypeColumns{18, 20};
    static constexpr Columns chainColumns{22, 22};
    static constexpr Columns residueNumberColumns{23, 26};
    static constexpr Columns insertionCodeColumns{27, 27};
    static constexpr Columns xColumns{31, 38};
    static constexpr Columns yColumns{39, 46};
    static constexpr Columns zColumns{47, 54};
    static constexpr Columns occupancyColumns{55, 60};
    static constexpr Columns temperatureColumns{61, 66};
    static constexpr Columns elementColumns{77, 78};
    static constexpr Columns chargeColumns{79, 80};
    static constexpr int coordinateDecimals = 3;
    static constexpr int factorDecimals = 2; ///< of occupancy and temperature factor

    explicit AtomLine(Card atomCard) : card(atomCard) {}

    int serial() const { return card.integer(serialColumns); }
    /// The two halves of the atom name. The first one holds the symbol of the element, right-aligned.
    FieldText nameStart() const { return card.field(nameStartColumns); }
    FieldText nameEnd() const { return card.field(nameEndColumns); }
    /// Both halves, each without the blanks around it.
    ShortText name() const { return nameStart().text() + nameEnd().text(); }
    /// Of an atom with alternate locations.
    FieldText location() const { return card.field(locationColumns); }
    FieldText residueType() const { return card.field(residueTypeColumns); }
    FieldText chain() const { return card.field(chainColumns); }
    int residueNumber() const { return card.integer(residueNumberColumns); }
    FieldText insertionCode() const { return card.field(insertionCodeColumns); }
    /// What tells residues apart: chain, number and insertion code, as they stand in the line.
    std::uint64_t residueText() const { return card.packed({chainColumns.first, insertionCodeColumns.last}); }
    McVec3f position() const {
        return {card.real(xColumns, coordinateDecimals), card.real(yColumns, coordinateDecimals),
                card.real(zColumns, coordinateDecimals)};
    }
    float occupancy(RepeatedReal& factor) const { return factor.read(card, occupancyColumns, factorDecimals); }
    float temperature(RepeatedReal& factor) const { return factor.read(card, temperatureColumns, factorDecimals); }
    FieldText element() const { return card.field(elementColumns); }
    bool hasCharge() const { return !card.isBlank(chargeColumns); }
    /// A digit and a sign.
    FieldText charge() const { return card.field(chargeColumns); }

    /// Reads the coordinates alone. False for an atom at any alternate location but "A".
    static bool readPosition(lengthizer& in, McVec3f& position);

private:
    Card card;
};

/// Bonds of one atom, by serial numbers; 0 where there is none. Hydrogen bonds and salt bridges, in columns 32-61 of
/// old files, are left out.
struct ConectLine {
    static constexpr int numPartners = 4;
    static constexpr Columns serialColumns{7, 11};
    /// Those of the first partner; the others follow without a gap.
    static constexpr Columns partnerColumns{12, 16};

    int serial;
    int partners[numPartners];

    static ConectLine read(CardReader& in);
};

} // namespace tarnex::pdb
