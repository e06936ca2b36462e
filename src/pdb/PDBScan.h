#pragma once

#include "foundation/McString.h"
#include "pdb/CardReader.h"
#include "pdb/PDBread.h"

namespace tarnex::pdb {

/// What the scan of a whole PDB file finds: where records stand and where models begin and end. Nothing but header text
/// is kept of the lines themselves.
class PDBScan {
public:
    /// Reads to the end of the file: records behind an END count like all others. Throws `Parse_Error` for header text
    /// that is too long.
    explicit PDBScan(CardReader& in);

    /// Whether there is an ATOM, HETATM or MODEL line.
    bool hasModel() const { return modelStarts.size > 0; }
    /// The number of MODEL lines, which a file of one model need not have.
    int getNumModels() const { return numModels; }
    /// A model reaches from its MODEL line, if it has one, to its last atom line. Atom lines ahead of all MODEL lines
    /// are model 0.
    PDBread::streamPositions positionsOfModel(int model) const;
    /// Of as many models as there are MODEL lines.
    McDArray<PDBread::streamPositions> positionsOfModels() const;

    /// Stores the header text that is not empty as named data.
    void storeHeader(MolTopology& topology) const;

private:
    static constexpr int numHeaderRecords = 7;

    void noteLine(CardReader& in, std::uint64_t keyword, long lineStart);
    void noteAtom(long lineStart);
    void noteModel(long lineStart);
    void noteHeader(CardReader& in, std::uint64_t keyword);

    int numModels = 0;
    McDArray<long> modelStarts;
    McDArray<long> modelEnds;
    /// Without the atoms.
    PDBread::streamPositions sharedPositions;
    McString headers[numHeaderRecords];
};

} // namespace tarnex::pdb
