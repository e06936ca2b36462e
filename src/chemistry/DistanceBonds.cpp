#include "chemistry/DistanceBonds.h"

#include "chemistry/CellGrid.h"
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

constexpr int notHydrogen = -1;

/// The nearest partner seen so far.
struct Nearest {
    float squaredDistance = std::numeric_limits<float>::infinity();
    int point = -1;
};

struct HydrogenPartners {
    Nearest heavy, hydrogen;

    bool prefersHydrogen() const { return hydrogen.squaredDistance < heavy.squaredDistance; }
};

class DistanceBonds {
public:
    DistanceBonds(BondableAtoms const& bondableAtoms, ResidueKnowledge const& knowledge,
                  McDArray<PerceivedBond>& result)
        : atoms(bondableAtoms), residues(knowledge), bonds(result), grid(atoms, longestReach(), mostInCell()),
          numPartners(atoms.elements.size) {
        std::fill(numPartners.begin(), numPartners.end(), 0);
    }

    void find() {
        countHydrogens();
        std::int64_t const numBefore = bonds.size;
        grid.forEachClosePair(
            [this](std::int64_t i, std::int64_t j) { lookAt(static_cast<int>(i), static_cast<int>(j)); });
        dropCrowded(numBefore);
        for (int i = 0; i < grid.size(); ++i) {
            if (grid[i].element == hydrogen) bindHydrogen(i);
        }
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
    double longestReach() const {
        std::array<bool, numElements> isThere{};
        for (unsigned char const element : atoms.elements) isThere[element] = true;
        float largestRadius = 0.0F;
        for (std::size_t i = 1; i < numElements; ++i) {
            if (isThere[i]) largestRadius = std::max(largestRadius, radii[i]);
        }
        return 2.0 * largestRadius + tolerance;
    }

    /// More would be denser than matter.
    std::int64_t mostInCell() const {
        double const edge = longestReach();
        return static_cast<std::int64_t>(std::max(mostInSmallCell, densestMatter * edge * edge * edge));
    }

    /// In the order of the grid, so that hydrogens close in space are close in memory.
    void countHydrogens() {
        hydrogenAt.resize(grid.size());
        hydrogens.reserve(grid.size());
        bonds.reserve(bonds.size + grid.size()); // most atoms end one bond
        for (std::int64_t i = 0; i < grid.size(); ++i) {
            bool const isHydrogen = grid[i].element == hydrogen;
            hydrogenAt[i] = isHydrogen ? static_cast<int>(hydrogens.size) : notHydrogen;
            if (isHydrogen) hydrogens.append({});
        }
    }

    void lookAt(int i, int j) {
        CellGrid::Point const& a = grid[i];
        CellGrid::Point const& b = grid[j];
        float const dx = a.position.x - b.position.x;
        float const dy = a.position.y - b.position.y;
        float const dz = a.position.z - b.position.z;
        float const squared = dx * dx + dy * dy + dz * dz;
        float const reach = radii[a.element] + radii[b.element] + tolerance;
        if (!(squared < reach * reach && squared > shortestBond * shortestBond)) return;
        int const order = residues.orderWithinDistance(a.atom, b.atom);
        if (order == 0) return;
        bool const isHydrogenA = a.element == hydrogen;
        bool const isHydrogenB = b.element == hydrogen;
        if (!isHydrogenA && !isHydrogenB) return bindHeavy(a.atom, b.atom, order);
        if (isHydrogenA) offer(j, isHydrogenB, i, squared);
        if (isHydrogenB) offer(i, isHydrogenA, j, squared);
    }

    void bindHeavy(int atomA, int atomB, int order) {
        bool const crowdedA = isCrowdedWithOneMore(atomA);
        bool const crowdedB = isCrowdedWithOneMore(atomB);
        if (!crowdedA && !crowdedB) bonds.append(PerceivedBond(atomA, atomB, order));
    }

    /// Of several partners at the same distance, the lowest atom is taken.
    void offer(int partner, bool isHydrogen, int toHydrogen, float squared) {
        HydrogenPartners& partners = hydrogens[hydrogenAt[toHydrogen]];
        Nearest& nearest = isHydrogen ? partners.hydrogen : partners.heavy;
        if (squared > nearest.squaredDistance) return;
        if (squared == nearest.squaredDistance && grid[partner].atom > grid[nearest.point].atom) return;
        nearest = {squared, partner};
    }

    bool isCrowded(int atom) const { return numPartners[atom] > mostPartners; }

    bool isCrowdedWithOneMore(int atom) {
        if (!isCrowded(atom)) ++numPartners[atom];
        return isCrowded(atom);
    }

    void dropCrowded(std::int64_t firstBond) {
        auto* const end = std::remove_if(bonds.begin() + firstBond, bonds.end(), [&](PerceivedBond const& bond) {
            return isCrowded(bond.atomA()) || isCrowded(bond.atomB());
        });
        bonds.resize(end - bonds.begin());
    }

    /// To a hydrogen only if each is the other's nearest partner, which leaves H2 a bond and clashes none.
    void bindHydrogen(int point) {
        HydrogenPartners const& partners = hydrogens[hydrogenAt[point]];
        int const atom = grid[point].atom;
        if (partners.prefersHydrogen()) {
            int const other = partners.hydrogen.point;
            HydrogenPartners const& ofOther = hydrogens[hydrogenAt[other]];
            if (ofOther.prefersHydrogen() && ofOther.hydrogen.point == point) {
                if (atom < grid[other].atom) bonds.append(PerceivedBond(atom, grid[other].atom, 1));
                return;
            }
        }
        if (partners.heavy.point >= 0) bonds.append(PerceivedBond(atom, grid[partners.heavy.point].atom, 1));
    }

    BondableAtoms const& atoms;
    ResidueKnowledge const& residues;
    McDArray<PerceivedBond>& bonds;
    Radii const radii = covalentRadii(); // of each element
    CellGrid grid;
    McDArray<int> hydrogenAt; // counts the hydrogens
    McDArray<HydrogenPartners> hydrogens;
    McDArray<unsigned char> numPartners; // heavy ones of each atom, up to one more than the most
};

} // namespace

void findDistanceBonds(BondableAtoms const& atoms, ResidueKnowledge const& residues, McDArray<PerceivedBond>& bonds) {
    DistanceBonds(atoms, residues, bonds).find();
}

} // namespace tarnex
