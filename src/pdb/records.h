#pragma once

#include "foundation/McVec3f.h"
#include "pdb/CardReader.h"

/// The lines of a PDB file that tell of atoms and bonds ("Protein Data Bank Contents Guide", wwPDB). Each stands here
/// with its columns and a function that reads it. Blank and missing fields are 0 or empty.
namespace tarnex::pdb {

/// An ATOM or HETATM line. The segment id in columns 73-76 is left out.
struct AtomLine {
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

    int serial;
    /// The two halves of the atom name. The first one holds the symbol of the element, right-aligned.
    FieldText nameStart;
    FieldText nameEnd;
    /// Of an atom with alternate locations.
    FieldText location;
    FieldText residueType;
    FieldText chain;
    int residueNumber;
    FieldText insertionCode;
    McVec3f position;
    float occupancy;
    float temperature;
    FieldText element;
    /// A digit and a sign.
    FieldText charge;

    static AtomLine read(CardReader& in);
    /// Reads the coordinates alone. False for an atom at any alternate location but "A".
    static bool readPosition(lengthizer& in, McVec3f& position);
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
