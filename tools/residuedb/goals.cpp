#include "goals.h"

#include "chemistry/ElementTable.h"

#include <algorithm>
#include <cmath>

namespace residuedb {

namespace {

using tarnex::ResidueTemplate;
using tarnex::TemplateAtom;
using tarnex::TemplateBond;

constexpr int hydrogen = 1;
constexpr int carbon = 6;
constexpr int nitrogen = 7;
constexpr int oxygen = 8;
constexpr int phosphorus = 15;
constexpr int sulfur = 16;
constexpr int selenium = 34;

constexpr double degree = 3.14159265358979 / 180.0;
constexpr double bondTolerance = 0.05;
constexpr double angleTolerance = 8.0 * degree;
constexpr double contactTolerance = 0.25;

// The volumes that neighbours span as seen from a centre, in real structures.
constexpr double chiralVolume = 2.5;
constexpr struct {
    char const* atoms[4]; // the centre first
    double volume;
    char const* marker; // an atom of the residues that are meant, if the names occur in others
} chiralCentres[] = {
    {{"CA", "N", "C", "CB"}, chiralVolume, "CB"},        {{"CB", "CA", "OG1", "CG2"}, chiralVolume, "OG1"},
    {{"CB", "CA", "CG1", "CG2"}, chiralVolume, "CD1"},   {{"CB", "CA", "CG1", "CG2"}, -chiralVolume, "HG11"},
    {{"CG", "CB", "CD1", "CD2"}, -chiralVolume, "HD11"}, {{"CG", "OD1", "CD", "CB"}, -chiralVolume, "OD1"},
    {{"C1'", "O4'", "C2'", "N9"}, chiralVolume, "N9"},   {{"C1'", "O4'", "C2'", "N1"}, chiralVolume, "N1"},
    {{"C1'", "O4'", "C2'", "C5"}, chiralVolume, "C5"},   {{"C2'", "C1'", "C3'", "O2'"}, -chiralVolume, "O2'"},
    {{"C3'", "C4'", "C2'", "O3'"}, chiralVolume, "O3'"}, {{"C4'", "C5'", "O4'", "C3'"}, -chiralVolume, "O4'"},
};

/// What is usual for the bonds of a residue, without its optional atoms.
class UsualGeometry {
public:
    explicit UsualGeometry(ResidueTemplate const& r) : residue(r), neighbours(r.atoms.size()), planar(r.atoms.size()) {
        findPlanarAtoms();
        for (TemplateBond const& bond : residue.bonds) {
            if (atom(bond.atomA).optional || atom(bond.atomB).optional) continue;
            double const length = bondLength(bond);
            goals.distances.push_back({bond.atomA, bond.atomB, length, bondTolerance, false});
            around(bond.atomA).push_back({bond.atomB, length});
            around(bond.atomB).push_back({bond.atomA, length});
        }
        for (int centre = 0; centre < size(); ++centre) addAngles(centre);
        for (int a = 0; a < size(); ++a) addContacts(a);
        addPlanes();
        addChirality();
    }

    Goals goals;

private:
    struct Neighbour {
        int atom;
        double length;
    };

    int size() const { return static_cast<int>(residue.atoms.size()); }
    TemplateAtom const& atom(int i) const { return residue.atoms[static_cast<std::size_t>(i)]; }
    int element(int i) const { return atom(i).atomicNumber; }
    std::vector<Neighbour>& around(int i) { return neighbours[static_cast<std::size_t>(i)]; }
    bool isPlanar(int i) const { return planar[static_cast<std::size_t>(i)]; }
    void setPlanar(int i) { planar[static_cast<std::size_t>(i)] = true; }

    /// Carbon and nitrogen with a double bond, nitrogen beside such a carbon, and the nitrogen of the peptide bond.
    void findPlanarAtoms() {
        auto const isCarbonOrNitrogen = [&](int i) { return element(i) == carbon || element(i) == nitrogen; };
        for (TemplateBond const& bond : residue.bonds) {
            if (bond.order != 2) continue;
            if (isCarbonOrNitrogen(bond.atomA)) setPlanar(bond.atomA);
            if (isCarbonOrNitrogen(bond.atomB)) setPlanar(bond.atomB);
        }
        for (TemplateBond const& bond : residue.bonds) {
            if (element(bond.atomA) == nitrogen && element(bond.atomB) == carbon && isPlanar(bond.atomB))
                setPlanar(bond.atomA);
            if (element(bond.atomB) == nitrogen && element(bond.atomA) == carbon && isPlanar(bond.atomA))
                setPlanar(bond.atomB);
        }
        if (residue.headAtom >= 0 && element(residue.headAtom) == nitrogen) setPlanar(residue.headAtom);
    }

    /// Of a carboxylate or phosphate, where all such oxygens share the double bond.
    bool isBareOxygen(int i) const {
        auto const holds = [&](TemplateBond const& bond) {
            return (bond.atomA == i || bond.atomB == i) && !atom(bond.atomA).optional && !atom(bond.atomB).optional;
        };
        return element(i) == oxygen && i != residue.tailAtom &&
               std::count_if(residue.bonds.begin(), residue.bonds.end(), holds) == 1;
    }

    /// As in proteins and nucleic acids (Engh and Huber 1991, Gelbin et al. 1996), to some 0.05 Angstrom.
    double bondLength(TemplateBond const& bond) const {
        auto const [low, high] = std::minmax({element(bond.atomA), element(bond.atomB)});
        bool const isDouble = bond.order == 2;
        if (isPlanar(bond.atomA) && isPlanar(bond.atomB)) {
            if (high == carbon) return 1.40;
            return isDouble ? 1.32 : 1.36;
        }
        if (low == hydrogen && high == carbon) return 1.09;
        if (isDouble || isBareOxygen(bond.atomA) || isBareOxygen(bond.atomB)) {
            if (low == carbon && high == oxygen) return 1.24;
            if (low == oxygen && high == phosphorus) return 1.49;
            if (low == oxygen && high == sulfur) return 1.45;
        }
        if (low == oxygen && high == phosphorus) return 1.60;
        if (low == oxygen && high == sulfur) return 1.58;
        auto const radius = [](int number) {
            return double(tarnex::elementTable().getElement(number)->getCovalentRadius());
        };
        return radius(low) + radius(high);
    }

    /// Whether a walk of that many bonds leads from one atom to another, without turning back and past `avoid`.
    bool reaches(int from, int to, int numBonds, int avoid, int previous = -1) {
        if (numBonds == 0) return from == to;
        return std::any_of(around(from).begin(), around(from).end(), [&](Neighbour const& next) {
            return next.atom != avoid && next.atom != previous && reaches(next.atom, to, numBonds - 1, avoid, from);
        });
    }

    double freeAngle(int centre) {
        if (isPlanar(centre)) return 120.0;
        if (around(centre).size() != 2) return 109.5;
        if (element(centre) == sulfur || element(centre) == selenium) return 100.0;
        bool const isEster = std::any_of(around(centre).begin(), around(centre).end(), [&](Neighbour const& n) {
            return element(n.atom) == phosphorus || element(n.atom) == sulfur;
        });
        return isEster ? 118.0 : 109.5;
    }

    /// Angles in rings follow from the size of the ring; in a plane, the others share what these leave of 360 degrees.
    void addAngles(int centre) {
        std::vector<Neighbour> const& n = around(centre);
        bool const isTrigonal = isPlanar(centre) && n.size() == 3;
        double rest = 360.0;
        int numFree = 0;
        auto const ringAngle = [&](Neighbour const& a, Neighbour const& b) {
            if (reaches(a.atom, b.atom, 3, centre)) return isPlanar(centre) ? 108.0 : 104.0;
            return reaches(a.atom, b.atom, 4, centre) ? freeAngle(centre) : 0.0;
        };
        forEachPair(n, [&](Neighbour const& a, Neighbour const& b) {
            double const angle = ringAngle(a, b);
            rest -= angle;
            if (angle == 0.0) ++numFree;
        });
        forEachPair(n, [&](Neighbour const& a, Neighbour const& b) {
            double angle = ringAngle(a, b);
            if (angle == 0.0) angle = isTrigonal ? rest / numFree : freeAngle(centre);
            addAngle(a, b, angle * degree);
        });
        if (isTrigonal) goals.volumes.push_back({{centre, n[0].atom, n[1].atom, n[2].atom}, 0.0});
    }

    template <class Visitor>
    static void forEachPair(std::vector<Neighbour> const& n, Visitor&& visit) {
        for (std::size_t i = 0; i < n.size(); ++i) {
            for (std::size_t j = 0; j < i; ++j) visit(n[i], n[j]);
        }
    }

    void addAngle(Neighbour const& a, Neighbour const& b, double angle) {
        double const product = a.length * b.length;
        double const distance = std::sqrt(a.length * a.length + b.length * b.length - 2 * product * std::cos(angle));
        double const perRadian = product * std::sin(angle) / distance;
        goals.distances.push_back({a.atom, b.atom, distance, perRadian * angleTolerance, false});
    }

    /// Atoms three bonds apart come closer than others.
    void addContacts(int a) {
        for (int b = 0; b < a; ++b) {
            if (atom(a).optional || atom(b).optional || reaches(a, b, 1, -1) || reaches(a, b, 2, -1)) continue;
            int const numHydrogens = (element(a) == hydrogen) + (element(b) == hydrogen);
            constexpr double near[] = {2.6, 2.4, 2.2};
            constexpr double far[] = {3.0, 2.6, 2.2};
            double const least = reaches(a, b, 3, -1) ? near[numHydrogens] : far[numHydrogens];
            goals.distances.push_back({a, b, least, contactTolerance, true});
        }
    }

    /// Nothing turns about a bond of two planar atoms.
    void addPlanes() {
        for (int b = 0; b < size(); ++b) {
            for (Neighbour const& c : around(b)) {
                if (c.atom < b || !isPlanar(b) || !isPlanar(c.atom)) continue;
                for (Neighbour const& a : around(b)) {
                    for (Neighbour const& d : around(c.atom)) {
                        if (a.atom == c.atom || d.atom == b || a.atom == d.atom) continue;
                        goals.volumes.push_back({{b, a.atom, c.atom, d.atom}, 0.0});
                    }
                }
            }
        }
    }

    /// Of an atom that has this name itself, not as an alias; -1 if there is none.
    int indexOf(char const* name) const {
        int const index = residue.atomIndex(name);
        return index >= 0 && atom(index).name == name ? index : -1;
    }

    void addChirality() {
        for (auto const& centre : chiralCentres) {
            VolumeGoal goal{{}, centre.volume};
            bool isHere = indexOf(centre.marker) >= 0;
            for (std::size_t i = 0; i < goal.atoms.size(); ++i) {
                goal.atoms[i] = indexOf(centre.atoms[i]);
                isHere = isHere && goal.atoms[i] >= 0 && (i == 0 || reaches(goal.atoms[0], goal.atoms[i], 1, -1));
            }
            if (isHere && !isPlanar(goal.atoms[0])) goals.volumes.push_back(goal);
        }
    }

    ResidueTemplate const& residue;
    std::vector<std::vector<Neighbour>> neighbours;
    std::vector<bool> planar;
};

} // namespace

Goals usualGoals(ResidueTemplate const& residue) {
    return UsualGeometry(residue).goals;
}

} // namespace residuedb
