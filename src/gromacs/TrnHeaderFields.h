#pragma once

#include "foundation/McHandable.h"

namespace tarnex::gromacs {

/// What stands ahead of the arrays of a .trr frame, with `t` and `lambda` in the precision of the file. Everything is 0
/// until it is read or set.
template <class Real>
class TrnHeaderFields : public McHandable {
public:
    TrnHeaderFields() = default;
    TrnHeaderFields(TrnHeaderFields const&) = delete;
    TrnHeaderFields& operator=(TrnHeaderFields const&) = delete;
    ~TrnHeaderFields() override { delete[] version; }

    int ir_size = 0;
    int e_size = 0;
    /// Here and below: not 0 if the frame has the array. The values play no further part.
    int box_size = 0;
    int vir_size = 0;
    int pres_size = 0;
    int top_size = 0;
    int sym_size = 0;
    int x_size = 0;
    int v_size = 0;
    int f_size = 0;
    int natoms = 0;
    int step = 0;
    int nre = 0;
    Real t = 0;
    Real lambda = 0;
    /// Not of the frame: the number of frames of the file, where it is worked out.
    int numFrames = 0;
    int magic = 0;
    /// Of the version text with its terminator, though the file has none.
    int strLen = 0;
    /// `strLen` + 3 bytes, not terminated: a 32-bit length and the text. Owned, made by `new[]`; null if there are
    /// none.
    char* version = nullptr;
};

} // namespace tarnex::gromacs
