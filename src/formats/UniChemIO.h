#pragma once

#include "foundation/export.h"
#include "model/Molecule.h"
#include "textio/writer.h"

#include <iosfwd>

class McProgressInterface;

/// Reads and writes UniChem files of one molecule: elements, coordinates in Angstrom, and bonds with their types.
/// Comments ahead of the molecule, attributes, internal coordinates and the job section are passed over.
class TARNEX_API UniChemIO {
public:
    /// Both may be null; neither is owned. Messages go to the stream; the interface hears of progress and can stop the
    /// work.
    UniChemIO(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// The molecule, owned by the caller; null if the file cannot be opened or is malformed, with a message, or the
    /// user stopped the work. Without a table of coordinates there are coordinates, all 0.0, and no atoms. Bonds that
    /// name unknown atoms are left out.
    Molecule* readUniChemMolecule(char const* filename);

    /// False if the molecule is null or the file cannot be made, with a message, or the user stopped the work, which
    /// leaves what was written until then. Throws `FloatConversion_Error` for a coordinate that does not fit; the file
    /// is incomplete then.
    bool writeUniChemMolecule(Molecule* molecule, char const* filename);

    /// The same to an open file; `name` stands in its header.
    bool writeUniChemMolecule(Molecule* molecule, char const* name, writer& out);

    std::ostream* messages;
    McProgressInterface* progress;
};
