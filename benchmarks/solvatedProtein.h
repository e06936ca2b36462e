#pragma once

#include "model/Molecule.h"
#include "model/MtListGroups.h"

#include <memory>

/// Generated protein in water: straight chains of alanine beside each other, the rest of the atoms as waters on a grid.
namespace generated {

struct AtomPlace {
    char const* name;
    int atomicNumber;
    McVec3f place;
};

/// Extended alanine. The next residue stands `alanineLength` further along x, turned by half a turn around x.
inline constexpr AtomPlace alanine[] = {
    {"N", 7, {0.0F, -0.3F, 0.0F}},   {"CA", 6, {1.2F, 0.55F, 0.0F}},   {"C", 6, {2.42F, -0.25F, 0.0F}},
    {"O", 8, {2.52F, -1.47F, 0.0F}}, {"CB", 6, {1.2F, 1.15F, 1.4F}},   {"H", 1, {-0.35F, -1.25F, 0.0F}},
    {"HA", 1, {1.2F, 1.1F, -0.95F}}, {"HB1", 1, {2.1F, 1.35F, 1.95F}}, {"HB2", 1, {0.3F, 1.35F, 1.95F}},
    {"HB3", 1, {1.2F, 0.25F, 2.0F}},
};
inline constexpr int alanineAtoms = 10;
inline constexpr int alanineBonds = 9;
inline constexpr float alanineLength = 3.63F;

inline constexpr AtomPlace water[] = {
    {"O", 8, {0.0F, 0.0F, 0.0F}}, {"H1", 1, {0.757F, 0.586F, 0.0F}}, {"H2", 1, {-0.757F, 0.586F, 0.0F}}};
inline constexpr int waterAtoms = 3;
inline constexpr int waterBonds = 2;

inline constexpr int residuesPerChain = 300;

/// A molecule with residues, chains, names, types, elements and charges, and the number of bonds that it has by nature.
class SolvatedProtein {
public:
    /// One atom in ten belongs to the protein.
    explicit SolvatedProtein(int numAtoms) : topology(new MolTopology), molecule(new Molecule(topology, true)) {
        prepare(numAtoms);
        int const numChains = numAtoms / 10 / (residuesPerChain * alanineAtoms);
        for (int i = 0; i < numChains; ++i) addChain(i);
        int const numWaters = (numAtoms - molecule->getNumAtoms()) / waterAtoms;
        for (int i = 0; i < numWaters; ++i) addWater(i, numWaters);
    }

    std::unique_ptr<Molecule> takeMolecule() { return std::move(molecule); }
    int numBonds = 0;

private:
    void prepare(int numAtoms) {
        residuesIx = topology->addLevel("residues", 0, 12, -1);
        chainsIx = topology->addLevel("chains", residuesIx, 12, -1);
        topology->prepLevelSize(0, numAtoms);
        topology->prepLevelSize(residuesIx, numAtoms / waterAtoms);
        molecule->coords.reserve(numAtoms);
        auto const create = MtGroupingLevel::CREATE;
        MtGroupingLevel* atoms = topology->getLevel(0);
        names = atoms->stringAttribute("name", create, true);
        types = atoms->stringAttribute("type", create, true);
        numbers = atoms->integerAttribute("atomic_number", create, true);
        charges = atoms->floatAttribute("charge", create, true);
        residueTypes = topology->getLevel(residuesIx)->stringAttribute("type", create, true);
        residueNames = topology->getLevel(residuesIx)->stringAttribute("name", create, true);
    }

    void addChain(int chain) {
        auto* range = new MtIntraLevelRange(residuesIx, 0, 0);
        range->first = static_cast<int>(topology->getLevel(residuesIx)->groups.size);
        McVec3f const origin(0.0F, 8.0F * static_cast<float>(chain % 32), 8.0F * static_cast<float>(chain / 32));
        for (int i = 0; i < residuesPerChain; ++i) {
            float const x = alanineLength * static_cast<float>(i);
            addResidue("ALA", alanine, {origin.x + x, origin.y, origin.z}, i % 2 == 0 ? 1.0F : -1.0F);
            numBonds += alanineBonds + (i > 0 ? 1 : 0);
        }
        range->last = static_cast<int>(topology->getLevel(residuesIx)->groups.size) - 1;
        topology->addGroup(chainsIx, range);
    }

    void addWater(int water_, int numWaters) {
        constexpr float spacing = 3.1F;
        int side = 1;
        while (side * side * side < numWaters) ++side;
        McVec3f const origin(spacing * static_cast<float>(water_ % side),
                             spacing * static_cast<float>(water_ / side % side),
                             -spacing * static_cast<float>(water_ / side / side + 3));
        addResidue("HOH", water, origin, 1.0F);
        numBonds += waterBonds;
    }

    template <int N>
    void addResidue(char const* type, AtomPlace const (&places)[N], McVec3f origin, float turn) {
        int const first = molecule->getNumAtoms();
        for (AtomPlace const& atom : places) {
            int const ix = topology->addGroup(0, new (topology->groupPool) MtAtom).groupIx;
            types->setValue(ix, atom.name);
            text.printf("A%d", ix + 1);
            names->setValue(ix, text);
            numbers->setValue(ix, atom.atomicNumber);
            charges->setValue(ix, 0.1F);
            molecule->coords.append(
                {origin.x + atom.place.x, origin.y + turn * atom.place.y, origin.z + turn * atom.place.z});
        }
        auto* range = new (topology->groupPool) MtIntraLevelRange(0, first, first + N - 1);
        int const residue = topology->addGroup(residuesIx, range).groupIx;
        residueTypes->setValue(residue, type);
        text.printf("A%d", residue + 1);
        residueNames->setValue(residue, text);
    }

    MolTopology* topology;
    std::unique_ptr<Molecule> molecule;
    int residuesIx = -1;
    int chainsIx = -1;
    MtStringAttribute* names = nullptr;
    MtStringAttribute* types = nullptr;
    MtIntegerAttribute* numbers = nullptr;
    MtFloatAttribute* charges = nullptr;
    MtStringAttribute* residueTypes = nullptr;
    MtStringAttribute* residueNames = nullptr;
    McString text;
};

} // namespace generated
