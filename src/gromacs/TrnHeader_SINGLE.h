#pragma once

#include "foundation/export.h"
#include "gromacs/TrnHeaderFields.h"

/// The header of a .trr frame in single precision.
class TARNEX_API TrnHeader_SINGLE : public tarnex::gromacs::TrnHeaderFields<float> {
public:
    TrnHeader_SINGLE();
    ~TrnHeader_SINGLE() override;
};
