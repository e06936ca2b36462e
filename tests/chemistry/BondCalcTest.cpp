#include "chemistry/BondCalc.h"

#include "chemistry/ElementTable.h"
#include "model/members.h"
#include "support/model.h"
#include "support/testing.h"

#include <array>
#include <cmath>
#include <limits>
#include <random>

namespace {

using namespace tarnex::test;

using Method = bool (*)(MolObject*, McBitfield const&);

constexpr auto create = MtGroupingLevel::CREATE;
constexpr Method byLength = &BondCalc::bondLengthConnectSelection;
constexpr Method standard = &BondCalc::standardConnectSelection;

/// Histidine, proline and tryptophan, charged at both ends; deoxycytidine and deoxyguanosine, joined by a phosphate;
/// and a molecule that is no residue of a chain. All have ideal geometry.
std::string const tripeptide = readFile(TARNEX_TEST_DATA "/tripeptide.txt");
std::string const dinucleotide = readFile(TARNEX_TEST_DATA "/dinucleotide.txt");
std::string const aspirin = readFile(TARNEX_TEST_DATA "/aspirin.txt");

/// A molecule with residues, as a reader of PDB files makes it.
struct Sample {
    McHandle<Molecule> molecule = new Molecule(new MolTopology, true);
    MolTopology& topology = *molecule->getTopology();
    int residuesIx = topology.addLevel("residues", 0, 12, -1);
    MtIntegerAttribute& elements = *topology.levels[0]->integerAttribute("atomic_number", create, true);
    MtStringAttribute& atomTypes = *topology.levels[0]->stringAttribute("type", create, true);
    MtStringAttribute& residueTypes = *topology.levels[residuesIx]->stringAttribute("type", create, true);
    MtIntraLevelRange* residue = nullptr;

    /// The text holds "residue TYPE" and atoms "NAME x y z"; the element is the first letter of the name, or stands
    /// behind it, as in "ZN:Zn".
    explicit Sample(std::string const& text = "") {
        std::istringstream in(text);
        std::string name;
        McVec3f p;
        while (in >> name) {
            std::size_t const colon = name.find(':');
            if (name == "residue" && in >> name) {
                residue = new MtIntraLevelRange(0, numAtoms(), numAtoms() - 1);
                residueTypes.setValue(topology.addGroup(residuesIx, residue).groupIx, name.c_str());
            } else if (in >> p.x >> p.y >> p.z) {
                addAtom(name.substr(0, colon), colon < name.size() ? name.substr(colon + 1) : name.substr(0, 1), p);
            }
        }
    }

    void addAtom(std::string const& name, std::string const& symbol, McVec3f place) {
        int const atom = topology.addGroup(0, new MtAtom).groupIx;
        atomTypes.setValue(atom, name.c_str());
        elements.setValue(atom, tarnex::elementTable().getElement(symbol.c_str(), false)->getAtomicNumber());
        molecule->coords.append(place);
        if (residue) residue->last = atom;
    }

    int numAtoms() const { return static_cast<int>(topology.levels[0]->groups.size); }
    std::int64_t numBonds() const { return topology.levels[1]->groups.size; }

    /// "1CA-1CB 1C=1O": the residue, counted from 1, and the name of each atom.
    std::string bonds(Method method) {
        McBitfield atoms(static_cast<unsigned long>(numAtoms()), McBitfield::UNINITIALIZED);
        atoms.setAll();
        EXPECT_TRUE(method(molecule, atoms));
        McDArray<int> const owners = tarnex::ownersOfMembers(topology, residuesIx, 0);
        auto const nameOf = [&](int atom) { return std::to_string(owners[atom] + 1) + atomTypes.getValue(atom); };
        auto const* orders = topology.levels[1]->integerAttribute("type", MtGroupingLevel::FIND, true);
        return joined(numBonds(), " ", [&](int i) {
            int a = -1, b = -1;
            EXPECT_TRUE(tarnex::getBondAtoms(topology.levels[1]->groups[i], a, b));
            return nameOf(a) + "?-="[orders->getValue(i)] + nameOf(b);
        });
    }
};

std::string bondsOf(std::string const& text, Method method) {
    return Sample(text).bonds(method);
}

TEST(BondCalc, NamesAndDistancesTellTheSameBondsOfGoodGeometry) {
    for (auto const& [text, numBonds, ordersOfBonds] :
         {std::tuple{tripeptide, 61,
                     std::vector{"1C=1O ", "1CG=1CD2 ", "1ND1=1CE1 ", "1C-2N ", "2N-2CD ", "3CG=3CD1 ", "3CZ2=3CH2 "}},
          {dinucleotide, 66, {"1O3'-2P ", "2P=2OP1 ", "2P-2OP2 ", "1N3=1C4 ", "2C6=2O6 ", "2C8=2N7 ", "2N1-2H1 "}}}) {
        Sample sample(text);
        std::string byName = sample.bonds(standard);
        EXPECT_EQ(sample.numBonds(), numBonds);
        for (char const* bond : ordersOfBonds) EXPECT_THAT(byName, HasSubstr(bond));
        std::replace(byName.begin(), byName.end(), '=', '-');
        EXPECT_EQ(byName, bondsOf(text, byLength));
    }
}

TEST(BondCalc, TemplatesAndDistances) {
    std::string const cysteines = "residue CYS CA 0 0 0 CB 1.5 0 0 SG 2.0 1.7 0 residue CYS CA 9 3.3 0 CB 7.5 3.3 0 ";
    std::array<std::string, 3> const cases[] = {
        {"residues of a chain are linked", "residue GLY C 0 0 0 O -1 0.7 0 residue ALA N 1.9 0 0", "1C=1O 1C-2N"},
        {"but not beyond the length of a bond", "residue GLY C 0 0 0 O -1 0.7 0 residue ALA N 1.93 0 0", "1C=1O"},
        {"template bonds hold at any distance but not at one place", "residue GLY N 0 0 0 CA 40 0 0 C 80 0 0 O 80 0 0",
         "1N-1CA 1CA-1C"},
        {"atoms of known names take the template's element: calcium would reach the oxygen",
         "residue GLY N 0 0 0 CA:Ca 1.4 0 0 residue SER OG 1.4 2.4 0", "1N-1CA"},
        {"known residues bond by distance to each other", cysteines + "SG 3.0 3.48 0",
         "1CA-1CB 1CB-1SG 1SG-2SG 2CA-2CB 2CB-2SG"},
        {"but not beyond it", cysteines + "SG 4.0 3.48 0", "1CA-1CB 1CB-1SG 2CA-2CB 2CB-2SG"},
        {"known names of a squashed residue bond only as the template says",
         "residue SER CA 0 0 0 CB 1.5 0 0 OG 0.9 1.3 0", "1CA-1CB 1CB-1OG"},
        {"a name that the template does not know goes by distance", "residue SER CA 0 0 0 CB 1.5 0 0 OX 0.9 1.3 0",
         "1CA-1CB 1CA-1OX 1CB-1OX"},
        {"alternate locations bond their common neighbours, and neither each other nor what their name does not bond",
         "residue SER CA 0 0 0 CB 1.5 0 0 OG 2.9 0 0 CB 0.2 1.4 0 OG -0.9 1 0", "1CA-1CB 1CA-1CB 1CB-1OG 1CB-1OG"},
        {"hydrogens without names of their own",
         "residue ALA N -1.4 0 0 CA 0 0 0 CB 1.5 0 0 H -1.7 0.9 0 H 0 1.1 0 H 1.8 1 0 H 1.8 -1 0",
         "1N-1CA 1N-1H 1CA-1CB 1CA-1H 1CB-1H 1CB-1H"},
        {"waters stay alone", "residue HOH O 0 0 0 H1 0.96 0 0 H2 -0.24 0.93 0 residue HOH O 1.5 0 0 H1 1.3 0.9 0",
         "1O-1H1 1O-1H2 2O-2H1"},
        {"near known residues as well", "residue SER CB 0 0 0 OG 1.4 0 0 residue HOH O 2.6 0.6 0", "1CB-1OG"},
        {"so do ions", "residue ASP OD1 0 0 0 residue NA NA:Na 2.3 0 0 residue HOH O 2.3 2.3 0", ""},
        {"the fourth site of a water model is no tungsten",
         "residue SOL OW 0 0 0 HW1 0.96 0 0 MW:W 0.1 0.1 0 residue SOL OW 2.6 0 0 MW:W 2.5 0.1 0", "1OW-1HW1"},
        {"but metals that no template knows are coordinated",
         "residue ZN ZN:Zn 0 0 0 residue HIS NE2 2.1 0 0 residue HOH O 0 2.1 0", "1ZN-2NE2 1ZN-3O"},
        {"a hydrogen that has a bond from a template gets no other",
         "residue HOH O 0 0 0 H1 1.1 0 0 residue LIG O1 2.1 0 0", "1O-1H1"},
    };
    for (auto const& [fact, atoms, bonds] : cases) EXPECT_EQ(bondsOf(atoms, standard), bonds) << fact;
}

TEST(BondCalc, LengthsAlone) {
    std::array<std::string, 3> const cases[] = {
        {"unknown molecules", aspirin,
         "1C1-1C2 1C1-1H1 1C1-1H2 1C1-1H3 1C2-1O1 1C2-1O2 1O2-1C3 1C3-1C4 1C3-1C8 1C4-1C5 1C4-1H4 1C5-1C6 1C5-1H5 "
         "1C6-1C7 1C6-1H6 1C7-1C8 1C7-1H7 1C8-1C9 1C9-1O3 1C9-1O4 1O4-1H8"},
        {"a hydrogen keeps the nearest partner", "O1 0 0 0 H1 1.1 0 0 O2 2.3 0 0", "0O1-0H1"},
        {"which may be a hydrogen", "H1 0 0 0 H2 0.74 0 0", "0H1-0H2"},
        {"only the nearest one", "H1 0 0 0 H2 0.8 0 0 H3 1.5 0 0", "0H2-0H3"},
        {"but neither one that clashes nor one that is nearest to another's",
         "C1 0 0 0 H1 1 0 0 H2 2.05 0 0 C2 3 0 0 C3 9 0 0 H3 9 0.8 0 H4 9 1.7 0", "0C1-0H1 0H2-0C2 0C3-0H3"},
        {"an unknown element has no bonds", "C1 0 0 0 X1 1.5 0 0 C2 3 0 0", ""},
        {"the shortest and the longest bond", "C1 0 0 0 C2 0.4 0 0 C3 20 0 0 C4 20.41 0 0 C5 40 0 0 C6 41.98 0 0",
         "0C3-0C4"},
    };
    for (auto const& [fact, atoms, bonds] : cases) EXPECT_EQ(bondsOf(atoms, byLength), bonds) << fact;
    Sample sample("O1 0 0 0 H1 1.1 0 0 O2 2.3 0 0"); // a hydrogen that has a bond from the file
    sample.topology.addBond(new MtBond(2, 1));
    EXPECT_EQ(sample.bonds(byLength), "0O2?0H1");
}

TEST(BondCalc, AChainWithoutResidueNumbersGoesByDistance) {
    std::string const names[] = {"N ", "CA ", "C "};
    std::string chain = "residue GLY ";
    for (int i = 0; i < 60; ++i) {
        chain += names[i % 3] + std::to_string(1.2 * i) + (i % 2 ? " 0.8 0 " : " 0 0 ");
    }
    Sample sample(chain);
    EXPECT_THAT(sample.bonds(standard), StartsWith("1N-1CA 1CA-1C 1C-1N 1N-1CA "));
    EXPECT_EQ(sample.numBonds(), 59);
}

TEST(BondCalc, NewBondsStandInOrderBehindThoseOfTheFile) {
    Sample sample("residue SER CA 0 0 0 OX 0.9 1.3 0 CB 1.5 0 0 OG 2.1 1.2 0 C -0.8 -1.2 0 O -2 -1.2 0");
    sample.topology.addBond(new MtBond(5, 4)); // which the template has as a double bond
    sample.topology.addBond(new MtBond(0, 3));
    for (int i = 0; i < 2; ++i) setInteger(&sample.topology, 1, "type", i, 1);
    // Those by name and by distance in one order. A second call finds nothing new.
    for (int i = 0; i < 2; ++i) {
        EXPECT_EQ(sample.bonds(standard), "1O-1C 1CA-1OG 1CA-1OX 1CA-1CB 1CA-1C 1OX-1CB 1OX-1OG 1CB-1OG");
    }
}

TEST(BondCalc, OnlySelectedAtomsWithPlaceAndElementTakePart) {
    std::string const chain = "C1 0 0 0 C2 1.5 0 0 C3 3 0 0 C4 4.5 0 0";
    McBitfield selected(3, McBitfield::CLEARED); // C4 lies beyond its end
    selected.set(1);
    selected.set(2);
    Sample part(chain), cut(chain);
    EXPECT_TRUE(BondCalc::bondLengthConnectSelection(part.molecule, selected));
    EXPECT_EQ(groupsOf(part.topology.levels[1]), "1,2");
    cut.molecule->coords.resize(2);
    EXPECT_EQ(cut.bonds(byLength), "0C1-0C2");
    for (float const bad : {std::numeric_limits<float>::quiet_NaN(), std::numeric_limits<float>::infinity()}) {
        Sample sample("residue GLY N 0 0 0 CA 1.5 0 0 C 3 0 0");
        sample.molecule->coords[0].y = bad;
        EXPECT_EQ(sample.bonds(standard), "1CA-1C");
    }
    Molecule empty(nullptr, true);
    EXPECT_FALSE(BondCalc::standardConnectSelection(nullptr, McBitfield()));
    EXPECT_FALSE(BondCalc::standardConnectSelection(&empty, McBitfield()));
    EXPECT_EQ(bondsOf("", standard), "");
}

TEST(BondCalc, TheGridFindsWhatAllPairsTell) {
    std::mt19937 random(7);
    std::uniform_real_distribution<float> place(-16.0F, 16.0F);
    Sample sample;
    for (int i = 0; i < 1500; ++i) {
        char const* symbol = std::vector<char const*>{"C", "O", "S", "Zn"}[random() % 4];
        sample.addAtom("", symbol, McVec3f(place(random), place(random), place(random)));
    }
    auto const radius = [&](int atom) {
        return tarnex::elementTable().getElement(sample.elements.getValue(atom))->getCovalentRadius();
    };
    sample.bonds(byLength);
    std::int64_t found = 0;
    for (int i = 0; i < sample.numAtoms(); ++i) {
        for (int j = 0; j < i; ++j) {
            McVec3f const &p = sample.molecule->coords[i], &q = sample.molecule->coords[j];
            float const distance = std::hypot(p.x - q.x, p.y - q.y, p.z - q.z);
            bool const bonded = distance > 0.4F && distance < radius(i) + radius(j) + 0.45F;
            EXPECT_EQ(sample.topology.findBond(i, j) >= 0, bonded) << i << ' ' << j << ' ' << distance;
            found += bonded;
        }
    }
    EXPECT_EQ(sample.numBonds(), found);
}

TEST(BondCalc, MetalsHaveAllTheirNeighbours) {
    Sample sample; // body-centred cubic tungsten: 8 neighbours at 2.74 and 6 at 3.165 Angstrom
    for (int i = 0; i < 5 * 5 * 5; ++i) {
        McVec3f const corner(3.165F * float(i % 5), 3.165F * float(i / 5 % 5), 3.165F * float(i / 25));
        sample.addAtom("W", "W", corner);
        sample.addAtom("W", "W", McVec3f(corner.x + 1.5825F, corner.y + 1.5825F, corner.z + 1.5825F));
    }
    sample.bonds(byLength);
    EXPECT_EQ(sample.numBonds(), 9 * 9 * 9 + 2 * 3 * 4 * 25);
}

TEST(BondCalc, GarbageEndsInLinearTime) {
    constexpr int numAtoms = 300000;
    std::mt19937 random(1);
    // All at one place; crowded in a box; crowded along a line; so far out that floats have no fractions.
    for (float const width : {0.0F, 20.0F, 1e9F, 3e38F}) {
        Sample sample(aspirin);
        for (int i = 0; i < numAtoms; ++i) {
            auto const coordinate = [&] { return 100.0F + width * static_cast<float>(random() % 4096) / 4096.0F; };
            sample.addAtom("C", i % 2 ? "C" : "H", McVec3f(coordinate(), coordinate(), coordinate()));
        }
        EXPECT_TRUE(sample.bonds(standard).starts_with(bondsOf(aspirin, standard))) << "elsewhere all is well";
        EXPECT_LE(sample.numBonds(), 8 * numAtoms);
    }
}

} // namespace
