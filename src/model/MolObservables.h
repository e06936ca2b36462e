#pragma once

#include "foundation/McHandable.h"

/// Per-step store of a trajectory. A trajectory that knows its length creates one and states the length.
class TARNEX_API MolObservables : public virtual McHandable {
public:
    ~MolObservables() override;

    void setNumTimeSteps(int n) { numTimeSteps = n; }
    int getNumTimeSteps() const { return numTimeSteps; }

private:
    int numTimeSteps = 0;
};
