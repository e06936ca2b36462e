#pragma once

#include "amber/amberSamples.h"
#include "charmm/charmmSamples.h"
#include "gromacs/samples.h"

namespace tarnex::test {

/// A water whose oxygen has a place of its own.
inline std::string gro(std::string const& x = "   0.000") {
    return "water\n    3\n    1HOH     OW    1" + x +
           "   0.000   0.000\n    1HOH    HW1    2   0.100   0.000   0.000\n" +
           "    1HOH    HW2    3   0.000   0.100   0.000\n   1.00000   1.00000   1.00000\n";
}

constexpr char const* waterBonds = "[ bonds ]\n    1     2     1\n    1     3     1\n\n";

/// A frame of three atoms for each position, that of the first x.
template <class Real>
std::string trr(std::initializer_list<int> positions) {
    std::string bytes;
    for (int const position : positions) bytes += Frame<Real>{.numAtoms = 3, .position = Real(position)}.bytes();
    return bytes;
}

inline std::string const amberTopology =
    AmberText{.symbols = {"CT", "OH"}, .pointers = {1}, .bondsWithout = {0, 3, 1}}.text();
inline std::string const amberFrames = "title\n   1.000   0.000   0.000   2.000   0.000   0.000\n"
                                       "   3.000   0.000   0.000   4.000   0.000   0.000\n";

inline std::string const methanolAtoms =
    "@<TRIPOS>MOLECULE\nmethanol\n3 2 1\nSMALL\nUSER_CHARGES\n\n@<TRIPOS>ATOM\n"
    "1 C1 1.5 0 0 C.3 1 MOH 0.25\n2 O1 0 0.5 0 O.3 1 MOH -0.5\n3 H1 0 0 1 H 1 MOH 0.25\n";
inline std::string const methanol = methanolAtoms + "@<TRIPOS>BOND\n1 1 2 1\n2 2 3 1\n";

/// A model of an iron atom for each x.
inline std::string pdbModels(std::initializer_list<char const*> places) {
    std::string models;
    for (std::string const x : places) {
        models += "MODEL 1\nHETATM    1 FE   HEM A   1    " + x + "   2.000   3.000  1.00 10.00          FE\nENDMDL\n";
    }
    return models;
}

constexpr char const* vdePicture = "2\n0 0 0 0 1 0 1\n0 0 1.25 1 1 1 1\n1\n0 0 0 0 0 1.25\n";

} // namespace tarnex::test
