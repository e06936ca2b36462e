#pragma once

#include "pdb/Columns.h"
#include "textio/lengthizer.h"

#include <iosfwd>

/// The lines of a PDB file that tell of secondary structure and sites. Each stands here with its columns, counted from
/// 1, and a function that reads it from column 7 on and leaves the scanner on the line. Blank and missing fields are 0
/// or empty; columns that are not named are passed over.
namespace tarnex::pdb {

struct ResidueColumns {
    /// Not read: the other fields say which residue it is.
    Columns type;
    Columns chain;
    Columns number;
    Columns insertionCode;
};

/// A residue as the file names it.
struct ResidueReference {
    char chain[2] = "";
    int number = 0;
    char insertionCode[2] = "";
};

/// What helices, strands and turns have in common.
struct SegmentColumns {
    Columns number;
    Columns identifier;
    ResidueColumns start;
    ResidueColumns end;
};

struct SegmentLine {
    int number = 0;
    char identifier[4] = "";
    ResidueReference start;
    ResidueReference end;
};

struct HelixLine : SegmentLine {
    static constexpr SegmentColumns columns{.number = {8, 10},
                                            .identifier = {12, 14},
                                            .start = {{16, 18}, {20, 20}, {22, 25}, {26, 26}},
                                            .end = {{28, 30}, {32, 32}, {34, 37}, {38, 38}}};
    static HelixLine read(lengthizer& in);
};

/// One strand of a sheet. Its number is that of the strand, its identifier that of the sheet.
struct SheetLine : SegmentLine {
    static constexpr SegmentColumns columns{.number = {8, 10},
                                            .identifier = {12, 14},
                                            .start = {{18, 20}, {22, 22}, {23, 26}, {27, 27}},
                                            .end = {{29, 31}, {33, 33}, {34, 37}, {38, 38}}};
    static SheetLine read(lengthizer& in);
};

struct TurnLine : SegmentLine {
    static constexpr SegmentColumns columns{.number = {8, 10},
                                            .identifier = {12, 14},
                                            .start = {{16, 18}, {20, 20}, {21, 24}, {25, 25}},
                                            .end = {{27, 29}, {31, 31}, {32, 35}, {36, 36}}};
    static TurnLine read(lengthizer& in);
};

/// Up to four residues of a site; further lines of the same identifier go on with it.
struct SiteLine {
    static constexpr int numResidues = 4;
    static constexpr Columns identifierColumns{12, 14};
    /// Those of the first residue; the others follow at this distance.
    static constexpr ResidueColumns residueColumns{{19, 21}, {23, 23}, {24, 27}, {28, 28}};
    static constexpr int residueDistance = 11;

    char identifier[4] = "";
    ResidueReference residues[numResidues];

    static SiteLine read(lengthizer& in);
};

/// The record as messages call it.
std::ostream& operator<<(std::ostream& out, HelixLine const& line);
std::ostream& operator<<(std::ostream& out, SheetLine const& line);
std::ostream& operator<<(std::ostream& out, TurnLine const& line);
std::ostream& operator<<(std::ostream& out, SiteLine const& line);

} // namespace tarnex::pdb
