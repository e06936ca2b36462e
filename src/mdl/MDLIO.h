#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"
#include "textio/lengthizer.h"
#include "textio/writer.h"

#include <iosfwd>

class McProgressInterface;

/// Reads and writes MDL SD files: records of one connection table (V2000 layout, "CTfile Formats", MDL Information
/// Systems) followed by data items, each closed by a line that begins with "$$$$".
///
/// Reading takes atoms (element, position, charge code, hydrogen count), bonds and data items; the three header lines
/// and the property lines are passed over. Coordinates are in Angstrom, charges in whole elementary charges.
class TARNEX_API MDLIO {
public:
    /// Both may be null; neither is owned. Messages go to the stream; the interface hears of progress and can stop the
    /// work.
    MDLIO(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// All records of a file, one trajectory of one step for each. Its topology is named by the record's data item
    /// "name" or else by the file and the number of the record. Empty, with a message, if the file cannot be opened or
    /// has no record; empty if the user stopped the work. A malformed record ends the file: those ahead of it are kept.
    McDArray<McHandle<MolTrajectory>> readMDLMolTrajectoryBundle(char const* filename);

    /// The first record as a trajectory of one step, owned by the caller; null if the file cannot be opened, with a
    /// message, or the user stopped the work. Throws `Parse_Error` if the record is malformed.
    MolTrajectory* readMDLMolTrajectory(char const* filename);

    /// Reads one record, from the scanner's place up to and with its end, into an empty molecule on an empty topology.
    /// False if the user stopped the work. Throws `Parse_Error` for a malformed record. In both of these cases the
    /// molecule is deleted, unless a handle holds it. `filename` has no effect.
    bool readMolecule(Molecule* molecule, MolTopology* topology, lengthizer& scanner, char const* filename);

    /// Writes a file with one record, named by the file and without the closing "$$$$". False, with a message, if the
    /// molecule is null or the file cannot be made; true even if the record was refused or interrupted, which deletes
    /// the molecule. Like all that write records, it may throw what the next function throws; the file is incomplete
    /// then.
    bool writeMDLMolecule(Molecule* molecule, char const* filename);

    /// Writes one record, without the closing "$$$$". Its first line is the datum "name" of the topology, if that is a
    /// string, or else `name`. False with nothing written if the molecule is too large for the format. False as well if
    /// the user stopped the work: the molecule is deleted then, unless a handle holds it.
    /// Throws `FloatConversion_Error` for a coordinate that does not fit, `McException` for a datum without text.
    bool writeMDLMolecule(Molecule* molecule, char const* name, writer& out);

    /// Writes a record for each step. False if a step cannot be read or written, the file cannot be made or the user
    /// stopped the work.
    bool writeMDLMolTrajectory(MolTrajectory* trajectory, char const* filename);

    /// Writes a record for the first step of each trajectory; those without steps are passed over. False as above.
    bool writeMDLMolTrajectoryBundle(McDArray<MolTrajectory*> trajectories, char const* filename);

    /// Whether the topology keeps the limits of the format, 999 atoms and 999 bonds; a message tells if not.
    bool checkNumAtomsBonds(MolTopology const* topology);

    std::ostream* messages;
    McProgressInterface* progress;

private:
    /// The first step of a trajectory; null, with a message, if there is none.
    McHandle<Molecule> firstStep(MolTrajectory* trajectory);
};
