#pragma once

#include "model/members.h"

namespace tarnex {

/// The atoms of a bond as files number them, from 1 on. What joins no two existing atoms has atoms 0: it still takes a
/// line, so that the count of bonds ahead of the lines holds.
struct NumberedBond {
    int firstAtom = 0;
    int secondAtom = 0;

    NumberedBond(MolTopology const& topology, MtGroup const* bond) {
        getExistingBondAtoms(topology, bond, firstAtom, secondAtom);
        ++firstAtom;
        ++secondAtom;
    }
};

} // namespace tarnex
