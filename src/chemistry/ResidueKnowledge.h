#pragma once

#include "chemistry/PerceivedBonds.h"
#include "chemistry/ResidueTemplates.h"
#include "foundation/McDArray.h"
#include "model/FirstOwners.h"
#include "model/MolTopology.h"

#include <cstdint>

namespace tarnex {

/// What the residue templates tell of the bonds in a topology. A new one knows nothing.
class ResidueKnowledge {
public:
    /// Finds the templates of residues and atoms and appends the bonds that the names of atoms tell. The element of a
    /// known atom becomes that of the template; known ions, massless sites of water models and hydrogens with a bond
    /// take no further part.
    void findTemplateBonds(MolTopology& topology, BondableAtoms& atoms, McDArray<PerceivedBond>& bonds);

    /// The order of the bond that two atoms have if they are within bonding distance; 0 if they have none all the same.
    int orderWithinDistance(int atomA, int atomB) const;

private:
    static constexpr unsigned unknownName = 0x3fff;

    /// What an atom's name means in its residue. In two bytes, since there are millions of them.
    struct NameInResidue {
        std::uint16_t templateAtom : 14 = unknownName;
        bool occursTwice : 1 = false;
        bool isInWater : 1 = false;
    };

    void identify(int atom, int templateAtom, ResidueTemplate const& residue, BondableAtoms& atoms);
    void noteSecondOfName(int atom, BondableAtoms const& atoms);
    void appendBonds(ResidueTemplate const& residue, BondableAtoms& atoms, McDArray<PerceivedBond>& bonds) const;

    FirstOwners residueOfAtom;
    MtStringAttribute const* residueTypes = nullptr;
    McDArray<NameInResidue> names; // of each atom

    // Of the residue at hand.
    McDArray<int> atomOfName; // by template atom
    bool hasAlternates = false;
};

} // namespace tarnex
