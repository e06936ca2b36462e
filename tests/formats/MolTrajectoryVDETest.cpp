#include "formats/MolTrajectoryVDE.h"

#include "formats/NearestAtom.h"
#include "support/model.h"
#include "support/testing.h"

#include <cmath>
#include <limits>
#include <locale>
#include <random>

namespace {

using namespace tarnex::test;

/// An empty text stands for a file that is absent.
McHandle<MolTrajectoryVDE> opened(std::vector<std::string> const& texts) {
    std::vector<std::string> files;
    for (std::string const& text : texts) {
        files.push_back(text.empty() ? "/absent" : writeFile(std::to_string(files.size()) + ".vde", text));
    }
    std::vector<char const*> names;
    for (std::string const& file : files) names.push_back(file.c_str());
    McHandle<MolTrajectoryVDE> vde(new MolTrajectoryVDE(nullptr, nullptr));
    EXPECT_STREQ(vde->getTopology()->getName(), "VDE");
    EXPECT_EQ(vde->readVDEMolTrajectory(static_cast<int>(names.size()), names.data()), vde);
    return vde;
}

std::string const threeAtoms = "3 atoms\n0 0 0 1 1 1 9\n1 0 0 0 1 0 9\n5 0 0 .5 .5 .5 9\n";

TEST(MolTrajectoryVDE, ColoursTellElements) {
    McHandle<MolTrajectoryVDE> const vde =
        opened({"8 x\n 0 0 0 1.0 1.0 1.0 1\n0 0 0 0 1 0 1 0 0 0 0 0 1 1\n0 0 0 1 0 0 1\n0 0 0 0.5 0.5 0.5 1\n"
                "0 0 0 1 1 0 1\n0 0 0 0.50001 0.5 0.5 1\n0 0 0 1 1 1.0000001 1\n0\n"});
    EXPECT_EQ(describe(vde->getTopology()),
              ";\natoms(-1) flags 3: 8 atomic_number=1|6|7|8|15|16|0|0 radius=1.2|1.85|1.54|1.4|1.9|1.85|0|0\n"
              "bonds(0) flags 35: ");
}

TEST(MolTrajectoryVDE, EachStepHasBondsOfItsOwn) {
    McHandle<MolTrajectoryVDE> const vde =
        opened({threeAtoms + "2 bonds\n0 0 0 1 0 0\n0.6 9 0 4 0 0\n", "", threeAtoms + "1\n3 0 0 -7 0 0\n",
                "2\n1 1 1 1 1 1 9\n2 2 2 0 1 0 9\n1\n0 0 0 1 0 0\n", threeAtoms + "0\n"});
    EXPECT_EQ(vde->getNumTimeSteps(), 5);
    Molecule molecule(new MolTopology, true);
    for (auto const& [step, bonds] : {std::pair{4, "flags 3: "},
                                      {0, "flags 3: 0,1|1,2 type=1|1"},
                                      {1, "flags 35: "},
                                      {3, "flags 3: 1,0 type=1"},
                                      {2, "flags 3: 1,0 type=1"},
                                      {7, "flags 35: "}}) {
        EXPECT_TRUE(vde->getTimeStep(step, &molecule));
        EXPECT_THAT(describe(molecule.getTopology()), EndsWith(std::string("\nbonds(0) ") + bonds)) << step;
        EXPECT_EQ(molecule.coords[2], McVec3f(5.0F, 0.0F, 0.0F)) << step;
    }
    EXPECT_FALSE(vde->getTimeStep(0, nullptr));
}

TEST(MolTrajectoryVDE, BadFilesGiveWhatCanBeRead) {
    for (auto const& [text, atoms, bonds] : {
             std::tuple{std::string(), 0, 0},
             {"three\n", 0, 0},
             {"2000000000\n0 0 0 1 1 1 1", 1, 0},
             {"2000000000\n0 0 0 1 1 1 1\n", 2, 0}, // the record that the file ends in
             {"-3\n1\n0 0 0 1 1 1\n", 0, 0},
             {threeAtoms + "2000000000\n0 0 0 1 0 0", 3, 1},
             {threeAtoms + "2000000000\n0 0 0 1 0 0\n", 3, 2},
             {threeAtoms + "2\nnan 0 0 1 0 0\n", 3, 1},
             {threeAtoms + "1\n1e30 0 0 1 0 0\n", 3, 0}, // no distance in single precision
             {threeAtoms + "1" + std::string(298, ' ') + "\n0 0 0\n1 0 0 5 0 0\n", 3,
              1}, // a line of 300 takes the next one
         }) {
        McHandle<MolTrajectoryVDE> const vde = opened({text});
        Molecule molecule(new MolTopology, true);
        EXPECT_TRUE(vde->getTimeStep(0, &molecule));
        EXPECT_EQ(molecule.getNumAtoms(), atoms) << text;
        EXPECT_EQ(molecule.getTopology()->levels[1]->groups.size, bonds) << text;
    }
}

/// Numbers such as 1.000,5.
struct DecimalComma : std::numpunct<char> {
    char do_decimal_point() const override { return ','; }
    char do_thousands_sep() const override { return '.'; }
    std::string do_grouping() const override { return "\3"; }
};

TEST(MolTrajectoryVDE, PartsAreReadFromAnyStreamWhateverItsLocale) {
    std::istringstream in(threeAtoms + "1" + std::string(299, 'x') + "\n\n0 0 0 1 0 0\n" + threeAtoms +
                          "1\n3.5 0 0 .25 0 0 rest");
    in.imbue(std::locale(in.getloc(), new DecimalComma));
    MolTrajectoryVDE vde(nullptr, nullptr);
    vde.readBaseTopo(in);
    EXPECT_TRUE(std::unique_ptr<std::ifstream>(vde.openStep(0))->fail());
    Molecule molecule(new MolTopology, true);
    EXPECT_TRUE(vde.getTimeStep(0, &molecule)); // no file: the atoms alone
    vde.readBonds(in, &molecule);               // all atoms lie at the origin
    vde.readAtomPositions(in, &molecule);
    vde.readBonds(in, &molecule);
    EXPECT_EQ(groupsOf(molecule.getTopology()->levels[1]), "0,0|2,0");
    std::string rest;
    EXPECT_TRUE(in >> rest && rest == "rest");
}

/// The nearest atom by a walk over all of them.
int nearestByWalk(McDArray<McVec3f> const& atoms, McVec3f const& end) {
    float best = std::numeric_limits<float>::max();
    int nearest = -1;
    for (int i = 0; i < atoms.size; ++i) {
        float const x = end.x - atoms[i].x, y = end.y - atoms[i].y, z = end.z - atoms[i].z;
        float const distance = std::sqrt(x * x + y * y + z * z);
        if (!(distance < best)) continue;
        best = distance;
        nearest = i;
    }
    return nearest;
}

TEST(NearestAtom, IsThatOfAWalkOverAll) {
    std::mt19937 random(11);
    float const odd[] = {0.0F,     -0.0F, 1e-23F, 2e-23F,   1e-30F,    1e-45F, 1e18F, 1.3e19F,
                         -1.3e19F, 3e38F, -3e38F, INFINITY, -INFINITY, NAN,    5.0F,  0.1F};
    auto const coordinate = [&](int kind) -> float {
        auto const number = static_cast<float>(random() % 1000);
        if (kind == 0) return std::floor(number / 125.0F); // a grid full of ties
        if (kind == 1) return odd[random() % std::size(odd)];
        // A cloud and what lies far from it, or distances that differ only before the square root is rounded.
        return kind == 2 ? number * (random() % 50 == 0 ? 1e6F : 0.01F) : 1000.0F + number * 0.0001F;
    };
    for (int round = 0; round < 400; ++round) {
        int const kind = round % 4;
        McDArray<McVec3f> atoms;
        for (auto n = random() % 200; n > 0; --n) atoms.append({coordinate(kind), coordinate(kind), coordinate(kind)});
        tarnex::NearestAtom const nearest(atoms);
        for (int i = 0; i < 50; ++i) {
            int const endKind = i % 8 == 0 ? 1 : kind;
            McVec3f const end(coordinate(endKind), coordinate(endKind), coordinate(endKind));
            ASSERT_EQ(nearest.find(end), nearestByWalk(atoms, end)) << "round " << round;
        }
    }
}

} // namespace
