#include "Format.h"
#include "formatFunctions.h"

namespace tarnex::tool {

namespace {

Capacity groCapacity() {
    return {.everything = false,
            .levels = {"residues"},
            .atomAttributes = {"type", "atomic_number", "radius"},
            .bondAttributes = {"type"},
            .dataItems = false};
}

Format sdfFormat() {
    return {
        .name = "sdf",
        .extensions = {".sdf", ".sd", ".mol"},
        .companions = {},
        .description = "MDL SD file, connection tables in the V2000 layout",
        .keeps = "elements, positions to 4 decimals, bonds and their types, formal charges of the atom lines, "
                 "implicit hydrogen counts, data items; each step becomes a record",
        .loses = "title lines, property lines (M  CHG, M  ISO), stereo marks, all but the first line of a data "
                 "item, residues; at most 999 atoms and 999 bonds",
        .capacity = {.everything = false,
                     .levels = {},
                     .atomAttributes = {"atomic_number", "radius", "formal_charge", "implicit_hnum"},
                     .bondAttributes = {"type"},
                     .dataItems = true},
        .read = readSdf,
        .write = writeSdf,
    };
}

Format pdbFormat() {
    return {
        .name = "pdb",
        .extensions = {".pdb", ".ent"},
        .companions = {},
        .description = "Protein Data Bank file",
        .keeps = "elements, positions to 3 decimals, atom names, residues, chains, occupancies, temperature factors, "
                 "whole charges, helices, sheets, turns, sites, header text; models as steps",
        .loses = "bond types, insertion codes, alternate locations other than A, the difference of ATOM and HETATM "
                 "but for water, journal and remark text; one molecule or trajectory to a file",
        .capacity = {.everything = false,
                     .levels = {"residues", "chains", "strands", "secondary_structure", "sites"},
                     .atomAttributes = {"name", "type", "atomic_number", "radius", "charge", "temperature",
                                        "occupancy"},
                     .bondAttributes = {},
                     .dataItems = true},
        .read = readPdb,
        .write = writePdb,
    };
}

Format amberFormat() {
    return {
        .name = "amber",
        .extensions = {".top", ".prmtop", ".parm7", ".crd", ".mdcrd"},
        .companions = {".top", ".prmtop", ".parm7", ".crd", ".mdcrd", ".rst7", ".inpcrd", ".restrt"},
        .description = "AMBER topology in the older layout, restart file, trajectory text",
        .keeps = "elements, positions, atom types, partial charges, masses, residue types, bonds; the restart file "
                 "as step 0, frames as the steps behind it",
        .loses = "angles, dihedrals, force field parameters, velocities, box sizes; the bounds of residues are off "
                 "by an atom, and atoms of types such as CA and NA become the elements of that symbol",
        .capacity = {.everything = false,
                     .levels = {"residues"},
                     .atomAttributes = {"type", "charge", "atom_mass", "atomic_number"},
                     .bondAttributes = {"type"},
                     .dataItems = false},
        .read = readAmber,
        .write = nullptr,
    };
}

Format charmmFormat() {
    return {
        .name = "charmm",
        .extensions = {".psf", ".dcd"},
        .companions = {".psf", ".dcd"},
        .description = "CHARMM topology and trajectory, a PSF file and its DCD files",
        .keeps = "atom names and types, charges, masses, residues, bonds, angles, dihedrals, impropers, donors, "
                 "acceptors, positions",
        .loses = "segments, residue numbers, fixed atoms, all sections behind the acceptors, unit cells, times; "
                 "PSF files with words behind \"PSF\" (EXT, CMAP) and DCD files with fixed atoms or numbers of 8 "
                 "bytes cannot be read",
        .capacity = {.everything = false,
                     .levels = {"residues", "angles", "dihedrals", "imp_dihedrals", "donors", "acceptors"},
                     .atomAttributes = {"type", "type_name", "atomic_number", "radius", "charge", "mass"},
                     .bondAttributes = {},
                     .dataItems = false},
        .read = readCharmm,
        .write = nullptr,
    };
}

Format groFormat() {
    return {
        .name = "gro",
        .extensions = {".gro"},
        .companions = {".top"},
        .description = "GROMACS structure, with the bonds in a .top file beside it",
        .keeps = "atom names, elements as far as names tell them, residues, positions to 2 decimals; from a .top file "
                 "charges, masses, bonds, pairs, angles and dihedrals with their function types, to a .top file bonds",
        .loses = "title, velocities, box, residue numbers; when written also charges, masses, pairs, angles and "
                 "dihedrals; one set of coordinates to a file",
        .capacity = groCapacity(),
        .read = readGro,
        .write = writeGro,
        .writtenBeside = {".top"},
    };
}

Format trrFormat() {
    return {
        .name = "trr",
        .extensions = {".trr"},
        .companions = {".gro", ".top"},
        .description = "GROMACS trajectory in double precision, with its structure as .gro and .top",
        .keeps = "positions of each frame; the structure as in gro",
        .loses = "times, velocities, forces, boxes; as gro",
        .capacity = groCapacity(),
        .read = readTrr,
        .write = writeTrr,
        .writtenBeside = {".gro", ".top"},
        .inSinglePrecision = "trr-single",
    };
}

Format trrSingleFormat() {
    return {
        .name = "trr-single",
        .extensions = {},
        .companions = {".gro", ".top"},
        .description = "the same in single precision, also chosen by --single; no file states which it is",
        .keeps = "positions of each frame; the structure as in gro",
        .loses = "as trr; what is written states sizes of double precision, which other programs go by",
        .capacity = groCapacity(),
        .read = readTrrSingle,
        .write = writeTrrSingle,
        .writtenBeside = {".gro", ".top"},
    };
}

Format xyzFormat() {
    return {
        .name = "xyz",
        .extensions = {".xyz"},
        .companions = {},
        .description = "XYZ file of one or more frames",
        .keeps = "elements by their symbols, words that are no symbols, positions bit by bit; frames as steps",
        .loses = "bonds, comment lines but for the name that is written, columns behind the third coordinate, the "
                 "words of all frames but the first, frames from the first of another size on; one molecule or "
                 "trajectory to a file",
        .capacity = {.everything = false,
                     .levels = {},
                     .atomAttributes = {"atomic_number", "radius", "atom_type_name"},
                     .bondAttributes = {},
                     .dataItems = false,
                     .bonds = false},
        .read = readXyz,
        .write = writeXyz,
    };
}

Format vdeFormat() {
    return {
        .name = "vde",
        .extensions = {".vde"},
        .companions = {".vde"},
        .description = "VDE pictures of spheres and segments, a file for each step",
        .keeps = "H, C, N, O, P and S by colour, positions bit by bit, bonds; files in a row are the steps of one "
                 "trajectory",
        .loses = "all other elements, names, types of bonds, bonds that only later steps have; of atoms at the same "
                 "place all bonds go to the first; one molecule or trajectory to an output",
        .capacity = {.everything = false,
                     .levels = {},
                     .atomAttributes = {"atomic_number", "radius"},
                     .bondAttributes = {},
                     .dataItems = false},
        .read = readVde,
        .write = writeVde,
    };
}

Format bundleFormat() {
    return {
        .name = "bundle",
        .extensions = {".bundle"},
        .companions = {},
        .description = "list that names other files, read as one bundle",
        .keeps = "what the formats of the named files keep; each molecule is named by its file",
        .loses = "records behind the first of SD and mol2 files, names of molecules, XYZ and VDE files, files whose "
                 "formats need a second one",
        .capacity = {.everything = true, .levels = {}, .atomAttributes = {}, .bondAttributes = {}, .dataItems = true},
        .read = readBundleList,
        .write = nullptr,
    };
}

Format mol2Format() {
    return {
        .name = "mol2",
        .extensions = {".mol2"},
        .companions = {},
        .description = "Tripos mol2 file",
        .keeps = "elements, positions to 10 characters, atom names to 9 characters, partial charges to 6 decimals, "
                 "bonds with types 1 to 4, residues that are ranges of atoms, molecule names; each step becomes a "
                 "molecule",
        .loses = "atom types beyond the element, amide bonds (which become single), the numbering of residues, "
                 "other records; residues beyond 9,999 run together; types that are not Tripos' may be read as "
                 "other elements",
        .capacity = {.everything = false,
                     .levels = {"residues"},
                     .atomAttributes = {"name", "type", "atomic_number", "radius", "charge"},
                     .bondAttributes = {"type"},
                     .dataItems = false,
                     .dataNames = {"name"}},
        .read = readMol2,
        .write = writeMol2,
    };
}

Format unichemFormat() {
    return {
        .name = "unichem",
        .extensions = {".uni"},
        .companions = {},
        .description = "UniChem file",
        .keeps = "elements, positions to 10 characters, bonds and their types; one molecule to a file",
        .loses = "names of atoms and of the molecule, charges, residues, attributes, internal coordinates, the job "
                 "section; of a trajectory all but one step",
        .capacity = {.everything = false,
                     .levels = {},
                     .atomAttributes = {"atomic_number", "radius"},
                     .bondAttributes = {"type"},
                     .dataItems = false},
        .read = readUniChem,
        .write = writeUniChem,
    };
}

Format qltFormat() {
    return {
        .name = "qlt",
        .extensions = {".qlt"},
        .companions = {},
        .description = "Tarnex's own format, binary",
        .keeps = "everything, bit by bit",
        .loses = "nothing",
        .capacity = {.everything = true, .levels = {}, .atomAttributes = {}, .bondAttributes = {}, .dataItems = true},
        .read = readQlt,
        .write = writeQlt,
    };
}

} // namespace

std::vector<Format> const& formats() {
    static std::vector<Format> const table = {
        sdfFormat(), pdbFormat(), amberFormat(),  charmmFormat(), groFormat(),     trrFormat(), trrSingleFormat(),
        xyzFormat(), vdeFormat(), bundleFormat(), mol2Format(),   unichemFormat(), qltFormat()};
    return table;
}

} // namespace tarnex::tool
