#pragma once

#include "foundation/McFilename.h"
#include "model/Molecule.h"

namespace tarnex::gromacs {

/// The names of the files that a structure is written to.
struct StructureNames {
    explicit StructureNames(McFilename const& fileName);

    McFilename gro;
    McFilename top;
};

/// Whether there is anything that can be written: a topology with residues.
bool isWritable(Molecule* molecule);

/// Writes the two files. False if one of them cannot be written.
bool writeStructure(Molecule& molecule, StructureNames const& names);

} // namespace tarnex::gromacs
