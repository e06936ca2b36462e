#include "chemistry/DistanceBonds.h"

#include "chemistry/CellGrid.h"
#include "chemistry/ElementTable.h"

#include <algorithm>
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
constexpr int uncounted = -2;

struct Site {
    float x, y, z;
    float radius;
    int atom;
    int hydrogenIx; // counts the hydrogens
};

/// The nearest partner seen so far; of several at the same distance, the lowest atom.
struct Nearest {
    float squaredDistance = std::numeric_limits<float>::infinity();
    int atom = -1;
    int hydrogenIx = notHydrogen;

    void meet(Site const& partner, float squared) {
        if (squared > squaredDistance || (squared == squaredDistance && partner.atom > atom)) return;
        *this = {squared, partner.atom, partner.hydrogenIx};
    }
};

struct HydrogenPartners {
    int atom = -1; // the hydrogen's own index
    Nearest heavy, hydrogen;

    bool prefersHydrogen() const { return hydrogen.squaredDistance < heavy.squaredDistance; }
};

class DistanceBonds {
public:
    DistanceBonds(BondableAtoms const& bondableAtoms, ResidueKnowledge const& knowledge,
                  McDArray<PerceivedBond>& result)
        : atoms(bondableAtoms), residues(knowledge), bonds(result), numPartners(atoms.elements.size) {
        std::fill(numPartners.begin(), numPartners.end(), 0);
    }

    void find() {
        McDArray<Site> const sites = collectSites();
        double const edge = 2.0 * largestRadius + tolerance;
        double const mostInCell = std::max(mostInSmallCell, densestMatter * edge * edge * edge);
        CellGrid<Site> grid(sites, edge, static_cast<std::int64_t>(mostInCell));
        countHydrogens(grid);
        std::int64_t const numBefore = bonds.size;
        grid.forEachClosePair([&](std::int64_t i, std::int64_t j) { lookAt(grid[i], grid[j]); });
        dropCrowded(numBefore);
        for (HydrogenPartners const& partners : hydrogens) bindHydrogen(partners);
    }

private:
    McDArray<Site> collectSites() {
        McDArray<Site> sites;
        sites.reserve(atoms.elements.size);
        for (int i = 0; i < atoms.elements.size; ++i) {
            int const element = atoms.elements[i];
            if (element == 0) continue;
            float const radius = elementTable().getElement(element)->getCovalentRadius();
            largestRadius = std::max(largestRadius, radius);
            McVec3f const& p = atoms.coords[i];
            sites.append({p.x, p.y, p.z, radius, i, element == hydrogen ? uncounted : notHydrogen});
        }
        return sites;
    }

    /// In the order of the grid, so that hydrogens close in space are close in memory.
    void countHydrogens(CellGrid<Site>& grid) {
        for (Site& site : grid) {
            if (site.hydrogenIx == notHydrogen) continue;
            site.hydrogenIx = static_cast<int>(hydrogens.size);
            hydrogens.append({site.atom, {}, {}});
        }
    }

    void lookAt(Site const& a, Site const& b) {
        float const dx = a.x - b.x;
        float const dy = a.y - b.y;
        float const dz = a.z - b.z;
        float const squared = dx * dx + dy * dy + dz * dz;
        float const reach = a.radius + b.radius + tolerance;
        if (!(squared < reach * reach && squared > shortestBond * shortestBond)) return;
        int const order = residues.orderWithinDistance(a.atom, b.atom);
        if (order == 0) return;
        if (a.hydrogenIx == notHydrogen && b.hydrogenIx == notHydrogen) return bindHeavy(a.atom, b.atom, order);
        if (a.hydrogenIx != notHydrogen) offer(b, a, squared);
        if (b.hydrogenIx != notHydrogen) offer(a, b, squared);
    }

    void bindHeavy(int atomA, int atomB, int order) {
        bool const crowdedA = isCrowdedWithOneMore(atomA);
        bool const crowdedB = isCrowdedWithOneMore(atomB);
        if (!crowdedA && !crowdedB) bonds.append(makeBond(atomA, atomB, order));
    }

    void offer(Site const& partner, Site const& hydrogenSite, float squared) {
        HydrogenPartners& partners = hydrogens[hydrogenSite.hydrogenIx];
        (partner.hydrogenIx == notHydrogen ? partners.heavy : partners.hydrogen).meet(partner, squared);
    }

    bool isCrowded(int atom) const { return numPartners[atom] > mostPartners; }

    bool isCrowdedWithOneMore(int atom) {
        if (!isCrowded(atom)) ++numPartners[atom];
        return isCrowded(atom);
    }

    void dropCrowded(std::int64_t firstBond) {
        auto* const end = std::remove_if(bonds.begin() + firstBond, bonds.end(), [&](PerceivedBond const& bond) {
            return isCrowded(bond.atomA) || isCrowded(bond.atomB);
        });
        bonds.resize(end - bonds.begin());
    }

    /// To a hydrogen only if each is the other's nearest partner, which leaves H2 a bond and clashes none.
    void bindHydrogen(HydrogenPartners const& partners) {
        if (partners.prefersHydrogen()) {
            HydrogenPartners const& other = hydrogens[partners.hydrogen.hydrogenIx];
            if (other.prefersHydrogen() && other.hydrogen.atom == partners.atom) {
                if (partners.atom < other.atom) bonds.append({partners.atom, other.atom, 1});
                return;
            }
        }
        if (partners.heavy.atom >= 0) bonds.append(makeBond(partners.atom, partners.heavy.atom, 1));
    }

    BondableAtoms const& atoms;
    ResidueKnowledge const& residues;
    McDArray<PerceivedBond>& bonds;
    McDArray<unsigned char> numPartners; // heavy ones of each atom, up to one more than the most
    McDArray<HydrogenPartners> hydrogens;
    float largestRadius = 0.0F;
};

} // namespace

void findDistanceBonds(BondableAtoms const& atoms, ResidueKnowledge const& residues, McDArray<PerceivedBond>& bonds) {
    DistanceBonds(atoms, residues, bonds).find();
}

} // namespace tarnex
