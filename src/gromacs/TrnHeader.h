#pragma once

#include "foundation/export.h"
#include "gromacs/TrnHeaderFields.h"

/// The header of a .trr frame in double precision.
class TARNEX_API TrnHeader : public tarnex::gromacs::TrnHeaderFields<double> {
public:
    TrnHeader();
    ~TrnHeader() override;
};
