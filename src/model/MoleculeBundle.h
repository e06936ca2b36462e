#pragma once

#include "foundation/McHandable.h"

class Molecule;
class MolTopology;

/// Abstract collection of molecules that stays on disk and is read one molecule at a time.
class TARNEX_API MoleculeBundle : public virtual McHandable {
public:
    ~MoleculeBundle() override;

    virtual unsigned int getNumMolecules() const = 0;
    /// The molecule at `index`, owned by the caller; null on failure.
    virtual Molecule* getMolecule(unsigned int index) = 0;
    /// The topology at `index`, owned by the caller; null on failure.
    virtual MolTopology* getTopology(unsigned int index) = 0;
};
