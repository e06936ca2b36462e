#pragma once

#include "foundation/McFilename.h"
#include "foundation/export.h"

namespace molchem {

/// Where the library's data files are.
class TARNEX_API Resource {
public:
    /// The one object of the process, made on first use and owned by the library.
    static Resource* getInstance();

    /// Path of the residue database "residues.qlt", as `tarnex::findResidueDatabase` finds it for the library's own
    /// file.
    McFilename residueDatabase;

private:
    Resource();
};

} // namespace molchem

namespace tarnex {

/// The residue database that belongs to a library file: "../share/tarnex/residues.qlt" from the library's folder, which
/// holds for an installed library and for one in its build tree; or "../../share/tarnex/residues.qlt", as for a library
/// in "lib/x86_64-linux-gnu". If there is no such file, the first of these paths, for a message to name.
TARNEX_API McFilename findResidueDatabase(char const* libraryFile);

} // namespace tarnex
