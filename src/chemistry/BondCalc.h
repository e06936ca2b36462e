#pragma once

#include "foundation/McBitfield.h"
#include "foundation/export.h"
#include "model/MolObject.h"

/// Makes bonds from coordinates. Both operations look at the coordinates of step 0 and add bonds among the selected
/// atoms to the object's topology; atoms beyond the end of the bit set are not selected.
///
/// Two atoms are within bonding distance if it is above 0.4 Angstrom and below the sum of their covalent radii plus
/// 0.45 Angstrom. Hydrogens keep their nearest partner only, and get none if they have a bond already. An atom without
/// coordinates (none, infinite or not a number) or without element takes no part. Nor do atoms get bonds by distance
/// that stand closer together than in any matter: with more than 16 partners, or in a cell of the search grid with more
/// than 32 atoms and 0.5 atoms in a cubic Angstrom.
///
/// No bond is made that exists already, in either order, nor one between atoms at the same place. New bonds stand
/// behind those that exist, in ascending order of their two atoms, the lower one first. Their integer attribute "type"
/// is the bond order where residue knowledge tells it, else 1. The cost is linear in the number of atoms.
///
/// The result is false only for a null object and for one without topology.
class TARNEX_API BondCalc {
public:
    /// Goes by distances alone.
    static bool bondLengthConnectSelection(MolObject* object, McBitfield const& atoms);

    /// Inside residues of a known type (attribute "type" of the level "residues"), atoms of known names (attribute
    /// "type" of the atoms, as in PDB files) have the bonds that their names tell, whatever their distance. All other
    /// pairs go by distance: between residues, with unknown names, and with names that occur twice in a residue as
    /// alternate locations do. A known ion forms no bonds, and a water molecule none to known residues.
    static bool standardConnectSelection(MolObject* object, McBitfield const& atoms);
};
