#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"
#include "model/MtListGroups.h"
#include "model/molInfo.h"
#include "textio/lengthizer.h"

#include <iosfwd>

class McProgressInterface;

/// Reads Protein Data Bank files by their fixed columns ("Protein Data Bank Contents Guide", wwPDB). A scan notes where
/// the records of each kind stand; the molecule is then read from there. Coordinates are in Angstrom, charges in
/// elementary charges.
class TARNEX_API PDBread {
public:
    /// File offsets of line starts; -1 where there is no such line. A range is valid if its first offset is not
    /// negative and not above its last one.
    struct TARNEX_API streamPositions {
        long atomFirst = -1, atomLast = -1;           ///< one model's atom lines
        long conectFirst = -1, conectLast = -1;       ///< CONECT lines of the file
        long ssbondFirst = -1, ssbondLast = -1;       ///< HYDBND, SSBOND and SLTBRG lines; nothing reads them
        long secStructFirst = -1, secStructLast = -1; ///< HELIX, SHEET, TURN and SITE lines
    };

    /// Both may be null; neither is owned.
    PDBread(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// Reads a file. On success the bundle has one more trajectory, of one step in memory for a file of one model, else
    /// file-backed with a step per model, and the result is 1. On failure the bundle is emptied and the result is 0.
    /// Throws `Parse_Error` for a line that is too long.
    int readPDBMolTrajectoryBundle(char const* filename, McDArray<McHandle<MolTrajectory>>& bundle);

    /// The first step of a file; a null handle on failure.
    McHandle<Molecule> readPDBMolecule(char const* filename);

    /// Fills a molecule, whose topology must be empty, from the lines of a range: atoms, residues, chains, bonds,
    /// secondary structure and sites. False if the file cannot be opened or the user stopped the work. `step` has no
    /// effect.
    bool readMolecule(Molecule* molecule, char const* filename, streamPositions const& positions, int step);

    /// Replaces the coordinates of a molecule by those of another model with the same atoms. False, with a message, if
    /// their number differs. `step` has no effect.
    bool readCoordinates(Molecule* molecule, char const* filename, streamPositions const& positions, int step);

    /// Writes the id of a residue, such as "A12B" or "HETA201", to `result`, which must have room for it.
    void resIDConversion(char const* chain, int sequence, char const* insertionCode, char* result, bool isHet) const;
    /// Writes the name of a chain to `result`: an empty id is "NIL" for ATOM records and stays empty for HETATM.
    void chainIDConversion(char const* chain, char* result, bool isHet) const;
    /// The same in place; `chain` must have room for four characters. Returns `chain`.
    char* chainIDConversion(char* chain, bool isHet) const;

    /// Read one record each, of which columns 1 to 6 have been read. They make the levels that they need and then renew
    /// `info`. A record that cannot be used is dropped or cut, with a message.
    void parseHelixRecord(lengthizer& in, MolTopology* topology, molInfo& info);
    void parseSheetRecord(lengthizer& in, MolTopology* topology, molInfo& info);
    void parseTurnRecord(lengthizer& in, MolTopology* topology, molInfo& info);
    void parseSiteRecord(lengthizer& in, MolTopology* topology, molInfo& info);

    /// Whether the residues `first` to `last` overlap with another range. If so, they are cut to what lies outside it,
    /// or `adjustable` is false and they stay.
    bool checkSecStructOverlap(molInfo const& info, MtIntraLevelRange const* other, int& first, int& last,
                               bool& adjustable) const;
    /// The same against all groups of the secondary structure; true if there is no overlap. `conflict` is the last
    /// group that overlaps, or -1.
    bool checkSecStructUniqueness(molInfo const& info, int& first, int& last, int& conflict, bool& adjustable) const;

    /// The index of the first chain that holds a residue, or -1.
    static int getChainIxOfRes(molInfo const& info, int residue);
    /// The index of the first residue that holds an atom, or -1.
    static int getResIxOfAtom(molInfo const& info, int atom);

    std::ostream* messages;
    McProgressInterface* progress;

private:
    McHandle<MolTrajectory> readTrajectory(char const* filename);
};
