#include "chemistry/ResidueKnowledge.h"

#include <algorithm>

namespace tarnex {

namespace {

constexpr int oxygen = 8;

// In the place of the atom that has a name.
constexpr int noAtom = -1;
constexpr int severalAtoms = -2;

// Files without residue numbers make one residue of a whole chain. More locations than these are no alternates.
constexpr int mostLocations = 4;

/// The names of the massless sites of water models read as elements, MW as tungsten.
bool isMasslessSite(ResidueTemplate const& residue, int element) {
    return residue.kind == ResidueKind::water && element != hydrogen && element != oxygen;
}

/// Programs change the name of an ion, but not its element. Some larger molecules share a residue name with an ion.
bool isIon(ResidueTemplate const& residue, int templateAtom, int element) {
    return residue.kind == ResidueKind::ion && (templateAtom >= 0 || element == residue.atoms[0].atomicNumber);
}

/// 0 if the template has no such bond.
int bondOrder(ResidueTemplate const& residue, int templateAtomA, int templateAtomB) {
    for (TemplateBond const& bond : residue.bonds) {
        if (bond.atomA == templateAtomA && bond.atomB == templateAtomB) return bond.order;
        if (bond.atomA == templateAtomB && bond.atomB == templateAtomA) return bond.order;
    }
    return 0;
}

} // namespace

void ResidueKnowledge::findTemplateBonds(MolTopology& topology, BondableAtoms& atoms, McDArray<PerceivedBond>& bonds) {
    int const residuesIx = topology.getLevelIx("residues");
    if (residuesIx < 0) return;
    MtGroupingLevel& residues = *topology.levels[residuesIx];
    residueTypes = residues.stringAttribute("type", MtGroupingLevel::FIND, true);
    auto const* atomTypes = topology.levels[0]->stringAttribute("type", MtGroupingLevel::FIND, true);
    if (!residueTypes || !atomTypes) return;

    residueOfAtom = FirstOwners(topology, 0);
    names.resize(residueOfAtom.get().size);
    bonds.reserve(names.size); // most atoms end one new bond
    for (int r = 0; r < residues.groups.size; ++r) {
        ResidueTemplate const* residue = ResidueTemplates::instance().find(residueTypes->getValue(r));
        MtGroup const* group = residues.groups[r];
        if (!residue) {
            residueOfAtom.take(topology, group, r, [](int) {});
            continue;
        }
        atomOfName.resize(static_cast<std::int64_t>(residue->atoms.size()));
        hasAlternates = group && group->size() <= mostLocations * atomOfName.size;
        std::fill(atomOfName.begin(), atomOfName.end(), noAtom);
        residueOfAtom.take(topology, group, r, [&](int atom) {
            if (atoms.elements[atom] == 0) return;
            identify(atom, residue->atomIndex(atomTypes->getValue(atom)), *residue, atoms);
        });
        appendBonds(*residue, atoms, bonds);
    }
}

void ResidueKnowledge::identify(int atom, int templateAtom, ResidueTemplate const& residue, BondableAtoms& atoms) {
    unsigned char& element = atoms.elements[atom];
    if (isIon(residue, templateAtom, element) || (templateAtom < 0 && isMasslessSite(residue, element))) {
        element = 0;
        return;
    }
    if (templateAtom < 0) return;
    element = static_cast<unsigned char>(residue.atoms[static_cast<std::size_t>(templateAtom)].atomicNumber);
    names[atom].templateAtom = static_cast<unsigned>(templateAtom) & unknownName;
    names[atom].isInWater = residue.kind == ResidueKind::water;

    int& first = atomOfName[templateAtom];
    if (first == noAtom) {
        first = atom;
    } else if (first != atom) {
        if (first != severalAtoms) noteSecondOfName(first, atoms);
        noteSecondOfName(atom, atoms);
        first = severalAtoms;
    }
}

/// Heavy atoms that share a name are alternate locations, and bond only what that name bonds. Hydrogens that share one
/// may just as well be all those of the residue, as some programs write them; then the name tells nothing.
void ResidueKnowledge::noteSecondOfName(int atom, BondableAtoms const& atoms) {
    names[atom].occursTwice = true;
    if (!hasAlternates || atoms.elements[atom] == hydrogen) names[atom].templateAtom = unknownName;
}

void ResidueKnowledge::appendBonds(ResidueTemplate const& residue, BondableAtoms& atoms,
                                   McDArray<PerceivedBond>& bonds) const {
    std::int64_t const begin = bonds.size;
    for (TemplateBond const& bond : residue.bonds) {
        int const a = atomOfName[bond.atomA];
        int const b = atomOfName[bond.atomB];
        if (a < 0 || b < 0 || atoms.coords[a] == atoms.coords[b]) continue;
        bonds.append(PerceivedBond(a, b, bond.order));
        atoms.finishHydrogensOf(a, b);
    }
    // The atoms of most residues stand behind each other, so that all bonds are in order then.
    std::sort(bonds.begin() + begin, bonds.end());
}

int ResidueKnowledge::orderWithinDistance(int atomA, int atomB) const {
    if (names.size == 0) return 1;
    NameInResidue const& a = names[atomA];
    NameInResidue const& b = names[atomB];
    if (a.templateAtom == unknownName || b.templateAtom == unknownName) return 1;
    int const residue = residueOfAtom[atomA];
    if (residue != residueOfAtom[atomB]) return a.isInWater || b.isInWater ? 0 : 1;
    if (!a.occursTwice && !b.occursTwice) return 0;
    return bondOrder(*ResidueTemplates::instance().find(residueTypes->getValue(residue)), a.templateAtom,
                     b.templateAtom);
}

} // namespace tarnex
