#pragma once

#include "foundation/McDArray.h"
#include "model/MoleculeBundle.h"
#include "textio/lengthizer.h"

#include <memory>

/// An SD file as a collection that stays on disk. The records are not indexed yet, so that every collection is empty;
/// `MDLIO` reads such files.
class TARNEX_API MoleculeBundleMDL : public virtual MoleculeBundle {
public:
    /// Opens the file and reads nothing. A file that cannot be opened is an empty collection as well.
    explicit MoleculeBundleMDL(char const* filename);
    ~MoleculeBundleMDL() override;

    /// Always 0.
    unsigned int getNumMolecules() const override;
    /// Always null.
    Molecule* getMolecule(unsigned int index) override;
    /// Always null.
    MolTopology* getTopology(unsigned int index) override;

    /// Where each record begins.
    std::unique_ptr<McDArray<long>> offsets;
    std::unique_ptr<lengthizer> scanner;

private:
    void moveTo(unsigned int index);
};
