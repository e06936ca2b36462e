#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/export.h"
#include "model/MolObject.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"
#include "textio/writer.h"

#include <iosfwd>

class McProgressInterface;

/// Reads and writes Tripos mol2 files: any number of molecules, each with the records "@<TRIPOS>MOLECULE",
/// "@<TRIPOS>ATOM" and "@<TRIPOS>BOND" ("Tripos Mol2 File Format", Tripos Inc.). All other records are passed over.
///
/// Coordinates are in Angstrom, charges in elementary charges. The atom name of the file is the attribute "type" of the
/// atoms and the atom id, as text, their "name". Of the atom type only the element is kept. Substructures become the
/// groups of the level "residues", by their ids: a new one begins where the id is above all that came before it in the
/// molecule, and each other atom with an id above 0 joins the last one. Their text is the "name" of a residue in a
/// molecule of type SMALL and its "type" in all others.
class TARNEX_API TriposIO {
public:
    /// Both may be null; neither is owned. Messages go to the stream; the interface hears of progress and can stop the
    /// work.
    TriposIO(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// Appends the molecules of a file to `result`, a trajectory of one step for each, named by the molecule. False if
    /// the file cannot be opened or is malformed, with a message, or the user stopped the work; molecules ahead of that
    /// stay in `result`. A file without any molecule is malformed, unless `result` held something before.
    bool readTriposBundle(char const* filename, McDArray<McHandle<MolTrajectory>>& result);

    /// The first molecule of a file, owned by the caller. All of them are read: null as well if a later one is
    /// malformed.
    Molecule* readTriposMolecule(char const* filename);

    /// Writes the first step of each object. Objects without content and null pointers are passed over. The attributes
    /// of the atoms named here give the charge (float), the atom name and the atom type (strings); where one is null or
    /// the atoms have no such attribute of that kind, there are no charges, or the element's symbol stands in. False if
    /// the file cannot be made, with a message, or the user stopped the work, which leaves what was written until then.
    /// Throws `FloatConversion_Error` for a coordinate that does not fit; the file is incomplete then.
    bool write(McDArray<MolObject*> const& objects, char const* filename, char const* chargeAttribute,
               char const* atomNameAttribute, char const* atomTypeAttribute);

    /// The same to an open file. `filename` is the name in its header, and that of molecules without a name.
    bool write(McDArray<MolObject*> const& objects, writer& out, char const* filename, char const* chargeAttribute,
               char const* atomNameAttribute, char const* atomTypeAttribute);

    /// `write` with the attributes "charge", "type" and "mol2_type".
    bool writeTriposBundle(McDArray<MolObject*> const& objects, char const* filename);

    /// A file of one molecule; of none for null.
    bool writeTriposMolecule(Molecule const* molecule, char const* filename);

    std::ostream* messages;
    McProgressInterface* progress;
};
