#pragma once

#include "foundation/McDArray.h"
#include "foundation/McVec3f.h"
#include "foundation/export.h"

class MolTopology;

/// Abstract base of what holds a topology together with coordinates.
class TARNEX_API MolObject {
public:
    virtual ~MolObject();
    /// Not given to the caller.
    virtual MolTopology* getTopology() = 0;
    /// Fills `out` with the coordinates of a step, one element per atom, in Angstrom; empty if there is no such step.
    virtual void getCoordinates(int step, McDArray<McVec3f>& out) const = 0;
    /// 0 for an object without content.
    virtual int getNumTimeSteps() const = 0;
};
