#pragma once

#include "foundation/McHandable.h"
#include "foundation/McHandle.h"
#include "model/MolObject.h"
#include "model/MolTopology.h"

/// One topology with one set of coordinates. Holds the topology through a handle and never duplicates it.
class TARNEX_API Molecule : public McHandable, public MolObject {
public:
    /// `coords` gets one element, 0.0, for each atom that the topology has. `fresh` says that the topology was made for
    /// this molecule; it has no effect here.
    Molecule(MolTopology* moleculeTopology, bool fresh);
    ~Molecule() override;

    MolTopology* getTopology() override;
    void getCoordinates(int step, McDArray<McVec3f>& out) const override;
    /// 1, or 0 for a molecule without topology.
    int getNumTimeSteps() const override;
    /// The number of groups in level 0.
    virtual int getNumAtoms();

    /// Replaces the topology and sizes `coords` for its atoms; new coordinates are 0.0. `fresh` has no effect here.
    void setTopology(MolTopology* moleculeTopology, bool fresh);

    /// One element per atom, in Angstrom. Readers resize it themselves before they fill it.
    McDArray<McVec3f> coords;

private:
    void sizeCoords();

    McHandle<MolTopology> topology;
};
