#include "chemistry/DistanceBonds.h"

#include "chemistry/CellGrid.h"
#include "chemistry/CellWalk.h"
#include "chemistry/ElementTable.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <limits>

namespace tarnex {

namespace {

constexpr float shortestBond = 0.4F;
constexpr float tolerance = 0.45F;

// Nothing has more bonds than a large metal atom in an intermetallic phase.
constexpr int mostPartners = 16;

// Matter has up to 0.2 atoms in a cubic Angstrom; alternate locations make it more.
constexpr double densestMatter = 0.5;
constexpr double mostInSmallCell = 32.0;

/// The nearest partner seen so far.
struct Nearest {
    float squaredDistance = std::numeric_limits<float>::infinity();
    int atom = -1;
};

/// An atom on the walk, and its partners if it is a hydrogen.
struct Point {
    McVec3f position;
    int atom = -1;
    Nearest heavy{}, hydrogen{};

    bool prefersHydrogen() const { return hydrogen.squaredDistance < heavy.squaredDistance; }
};

/// A hydrogen whose nearest partner is another one.
struct HydrogenOfPair {
    int atom;
    int hydrogen;
    int heavy; ///< the nearest of the others, or -1
};

class DistanceBonds {
public:
    DistanceBonds(BondableAtoms const& bondableAtoms, ResidueKnowledge const& knowledge,
                  McDArray<PerceivedBond>& result)
        : atoms(bondableAtoms), residues(knowledge), bonds(result), numPartners(atoms.elements.size) {
        std::fill(numPartners.begin(), numPartners.end(), static_cast<unsigned char>(0));
    }

    void find() {
        CellGrid const grid(atoms, longestReach, mostInCell());
        std::int64_t const numBefore = bonds.size;
        bonds.reserve(numBefore + grid.numAtoms()); // most atoms end one bond
        CellWalk<Point>(grid, atoms.coords)
            .run([this](Point& a, Point& b) { lookAt(a, b); },
                 [this](Point const& point) {
                     if (isHydrogen(point.atom)) bindHydrogen(point);
                 });
        dropCrowded(numBefore);
        bindPairedHydrogens();
    }

private:
    static constexpr std::size_t numElements = 256;
    using Radii = std::array<float, numElements>;

    static Radii covalentRadii() {
        Radii radii{};
        for (int i = 0; i < static_cast<int>(numElements); ++i) {
            radii[static_cast<std::size_t>(i)] = elementTable().getElement(i)->getCovalentRadius();
        }
        return radii;
    }

    /// No two of the atoms bond at a larger distance.
    float findLongestReach() const {
        std::array<bool, numElements> isThere{};
        for (unsigned char const element : atoms.elements) isThere[element] = true;
        float largestRadius = 0.0F;
        for (std::size_t i = 1; i < numElements; ++i) {
            if (isThere[i]) largestRadius = std::max(largestRadius, radii[i]);
        }
        return largestRadius + largestRadius + tolerance;
    }

    /// More would be denser than matter.
    std::int64_t mostInCell() const {
        double const edge = longestReach;
        return static_cast<std::int64_t>(std::max(mostInSmallCell, densestMatter * edge * edge * edge));
    }

    bool isHydrogen(int atom) const { return atoms.elements[atom] == hydrogen; }

    void lookAt(Point& a, Point& b) {
        float const dx = a.position.x - b.position.x;
        float const dy = a.position.y - b.position.y;
        float const dz = a.position.z - b.position.z;
        float const squared = dx * dx + dy * dy + dz * dz;
        if (!(squared < longestReach * longestReach && squared > shortestBond * shortestBond)) return;
        unsigned char const elementA = atoms.elements[a.atom];
        unsigned char const elementB = atoms.elements[b.atom];
        float const reach = radii[elementA] + radii[elementB] + tolerance;
        if (squared >= reach * reach) return;
        int const order = residues.orderWithinDistance(a.atom, b.atom);
        if (order == 0) return;
        bool const isHydrogenA = elementA == hydrogen;
        bool const isHydrogenB = elementB == hydrogen;
        if (!isHydrogenA && !isHydrogenB) return bindHeavy(a.atom, b.atom, order);
        if (isHydrogenA) offer(b.atom, isHydrogenB ? a.hydrogen : a.heavy, squared);
        if (isHydrogenB) offer(a.atom, isHydrogenA ? b.hydrogen : b.heavy, squared);
    }

    /// Of several partners at the same distance, the lowest atom is taken.
    static void offer(int partner, Nearest& nearest, float squared) {
        if (squared > nearest.squaredDistance) return;
        if (squared == nearest.squaredDistance && partner > nearest.atom) return;
        nearest = {squared, partner};
    }

    void bindHeavy(int atomA, int atomB, int order) {
        bool const crowdedA = isCrowdedWithOneMore(atomA);
        bool const crowdedB = isCrowdedWithOneMore(atomB);
        if (!crowdedA && !crowdedB) bonds.append(PerceivedBond(atomA, atomB, order));
    }

    bool isCrowded(int atom) const { return numPartners[atom] > mostPartners; }

    bool isCrowdedWithOneMore(int atom) {
        if (!isCrowded(atom)) ++numPartners[atom];
        return isCrowded(atom);
    }

    /// Bonds of hydrogens stay.
    void dropCrowded(std::int64_t firstBond) {
        auto* const end = std::remove_if(bonds.begin() + firstBond, bonds.end(), [&](PerceivedBond const& bond) {
            return (isCrowded(bond.atomA()) || isCrowded(bond.atomB())) && !isHydrogen(bond.atomA()) &&
                   !isHydrogen(bond.atomB());
        });
        bonds.resize(end - bonds.begin());
    }

    void bindHydrogen(Point const& point) {
        if (point.prefersHydrogen())
            pairedHydrogens.append({point.atom, point.hydrogen.atom, point.heavy.atom});
        else
            bindToHeavy(point.atom, point.heavy.atom);
    }

    void bindToHeavy(int atom, int heavy) {
        if (heavy >= 0) bonds.append(PerceivedBond(atom, heavy, 1));
    }

    /// To each other only if each is the other's nearest partner, which leaves H2 a bond and clashes none.
    void bindPairedHydrogens() {
        auto const isAhead = [](HydrogenOfPair const& a, HydrogenOfPair const& b) { return a.atom < b.atom; };
        std::sort(pairedHydrogens.begin(), pairedHydrogens.end(), isAhead);
        for (HydrogenOfPair const& one : pairedHydrogens) {
            auto const* const other = std::lower_bound(pairedHydrogens.begin(), pairedHydrogens.end(),
                                                       HydrogenOfPair{one.hydrogen, -1, -1}, isAhead);
            bool const isMutual =
                other != pairedHydrogens.end() && other->atom == one.hydrogen && other->hydrogen == one.atom;
            if (!isMutual)
                bindToHeavy(one.atom, one.heavy);
            else if (one.atom < other->atom)
                bonds.append(PerceivedBond(one.atom, other->atom, 1));
        }
    }

    BondableAtoms const& atoms;
    ResidueKnowledge const& residues;
    McDArray<PerceivedBond>& bonds;
    Radii const radii = covalentRadii(); // of each element
    float const longestReach = findLongestReach();
    McDArray<HydrogenOfPair> pairedHydrogens;
    McDArray<unsigned char> numPartners; // heavy ones of each atom, up to one more than the most
};

} // namespace

void findDistanceBonds(BondableAtoms const& atoms, ResidueKnowledge const& residues, McDArray<PerceivedBond>& bonds) {
    DistanceBonds(atoms, residues, bonds).find();
}

} // namespace tarnex
