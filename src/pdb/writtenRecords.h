#pragma once

#include "foundation/McDArray.h"
#include "foundation/McVec3f.h"
#include "pdb/secondaryStructureRecords.h"
#include "textio/writer.h"

/// The records as they are written, lines of 80 columns: each with its fields and a function that writes it. Columns
/// that are read as well stand with the lines that the reader knows, the others in `writtenRecords.cpp`. What is too
/// wide for its field is cut as `writer::writeColumns` does; in ATOM, HETATM and TER records it widens the line.
namespace tarnex::pdb {

/// A residue as records name it.
struct ResidueText {
    char const* type = "UNK";
    char chain[4] = "";
    int number = 0;
};

/// Helices, turns and strands have a start and an end. Where one of them is missing, `isComplete` is false and both are
/// as a new `ResidueText`.
struct SegmentRecord {
    int serial = 0;
    char const* name = "";
    ResidueText start;
    ResidueText end;
    bool isComplete = false;
};

/// The helix class is always 1, right-handed alpha.
struct HelixRecord : SegmentRecord {
    int length = 0;
    void write(writer& out) const;
};

struct TurnRecord : SegmentRecord {
    void write(writer& out) const;
};

/// One strand. The number of strands of the sheet is always written as 0.
struct SheetRecord : SegmentRecord {
    /// Without types of residues the line is one column short.
    bool hasTypes = true;
    void write(writer& out) const;
};

/// Up to four residues of a site.
struct SiteRecord {
    static constexpr int mostResidues = SiteLine::numResidues;

    int serial = 0;
    char const* name = "";
    int residuesOfSite = 0;
    int numResidues = 0;
    ResidueText residues[mostResidues];

    void write(writer& out) const;
};

struct SsBondRecord {
    int serial = 0;
    ResidueText first;
    ResidueText second;

    void write(writer& out) const;
};

/// Up to thirteen residue types of a chain.
struct SeqResRecord {
    static constexpr int mostResidues = 13;

    int serial = 0;
    char chain[4] = "";
    int residuesOfChain = 0;
    int numResidues = 0;
    char const* types[mostResidues] = {};

    void write(writer& out) const;
};

/// Columns 17-30 of an ATOM record, which all atoms of a residue share.
class ResidueField {
public:
    /// The type is cut to three characters.
    explicit ResidueField(ResidueText const& residue);
    char* put(char* out) const;

private:
    char text[32];
    std::size_t length;
};

struct AtomRecord {
    bool isHet = false;
    int serial = 0;
    char name[4] = {' ', ' ', ' ', ' '};
    ResidueField const& residue;
    McVec3f position;
    float occupancy = 0.0F;
    float temperature = 0.0F;
    char const* symbol = "";
    char chargeText[2] = {' ', ' '};
    float charge = 0.0F;

    /// Columns 13-16: the element's symbol, behind a digit that `type` begins with, up to column 14; from column 15 on
    /// what `type` has beyond the symbol. It is cut to four characters.
    void setName(char const* type, char const* elementSymbol);
    /// With `chargeColumn` the charge as a decimal number in columns 71-76 instead of element and charge in 77-80.
    void write(writer& out, bool chargeColumn) const;
};

/// The end of a chain, behind its last residue.
struct TerRecord {
    int serial = 0;
    ResidueText residue;

    void write(writer& out) const;
};

/// All atoms bonded to one atom, on one line however long it gets.
struct ConectRecord {
    int serial = 0;
    McDArray<int> const& partners;

    /// `serialOfAtom` has the serials of the partners.
    void write(writer& out, McDArray<int> const& serialOfAtom) const;
};

struct MasterRecord {
    int numHelix = 0;
    int numSheet = 0;
    int numTurn = 0;
    int numSite = 0;
    int numAtom = 0;
    int numTer = 0;
    int numConect = 0;
    int numSeqRes = 0;

    void write(writer& out) const;
};

/// A keyword in columns 1-6 and a text from column 7 on.
void writeTextRecord(writer& out, char const* keyword, char const* text);

} // namespace tarnex::pdb
