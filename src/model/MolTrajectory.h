#pragma once

#include "foundation/McHandable.h"
#include "foundation/McHandle.h"
#include "model/MolObservables.h"
#include "model/MolTopology.h"

class Molecule;

/// Abstract time series: one topology with many sets of coordinates. A new one has an empty topology, no observables
/// and the reference count 0.
class TARNEX_API MolTrajectory : public virtual McHandable {
public:
    MolTrajectory();

    virtual int getNumTimeSteps() const = 0;
    /// Puts the topology and the coordinates of a step into a molecule, which stays the caller's. False on failure.
    virtual bool getTimeStep(int step, Molecule* molecule) = 0;

    /// Fields over space that a step may carry; no trajectory of this library has any.
    virtual int getNumFields(int step) const;
    virtual void getFieldDims(int step, int field, int* dims) const;
    virtual void getFieldData(int step, int field, float* values) const;
    virtual void getFieldBbox(int step, int field, float* bbox) const;
    virtual void getFieldNames(char** names) const;

    /// Not given to the caller.
    virtual MolTopology* getTopology();
    virtual MolTopology const* getTopology() const;
    virtual char const* getInfoText() const;
    ~MolTrajectory() override;

protected:
    /// For a trajectory on an existing topology.
    explicit MolTrajectory(MolTopology* existing);

    McHandle<MolTopology> topology;
    McHandle<MolObservables> observables;
};
