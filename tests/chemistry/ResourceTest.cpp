#include "chemistry/Resource.h"

#include "chemistry/BondCalc.h"
#include "model/Molecule.h"
#include "model/members.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/testing.h"

#include <algorithm>
#include <set>
#include <utility>

namespace {

using namespace tarnex::test;

namespace fs = std::filesystem;

using AtomPairs = std::set<std::pair<int, int>>;

AtomPairs bondsOf(MolTopology const& topology) {
    AtomPairs bonds;
    for (MtGroup const* group : topology.levels[1]->groups) {
        int a = -1;
        int b = -1;
        EXPECT_TRUE(tarnex::getBondAtoms(group, a, b));
        bonds.insert(std::minmax(a, b));
    }
    return bonds;
}

/// The bonds that the coordinates tell.
AtomPairs perceivedBonds(Molecule& residue) {
    Molecule bare(new MolTopology, true);
    auto const* known =
        residue.getTopology()->levels[0]->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    auto* numbers = bare.getTopology()->levels[0]->integerAttribute("atomic_number", MtGroupingLevel::CREATE, true);
    for (int i = 0; i < residue.getNumAtoms(); ++i) {
        numbers->setValue(bare.getTopology()->addGroup(0, new MtAtom).groupIx, known->getValue(i));
    }
    bare.coords = residue.coords;
    McBitfield atoms(static_cast<unsigned long>(residue.getNumAtoms()), McBitfield::UNINITIALIZED);
    atoms.setAll();
    EXPECT_TRUE(BondCalc::bondLengthConnectSelection(&bare, atoms));
    return bondsOf(*bare.getTopology());
}

TEST(Resource, FindsTheDatabaseBesideTheLibrary) {
    fs::path const root = fs::canonical(testing::TempDir()) / "resource test";
    fs::create_directories(root / "lib" / "x86_64-linux-gnu");
    fs::create_directories(root / "share" / "tarnex");
    fs::path const database = root / "share" / "tarnex" / "residues.qlt";
    for (char const* folder : {"lib", "lib/x86_64-linux-gnu"})
        std::ofstream(root / folder / "libtarnex.so") << "library";
    auto const found = [&](char const* library) {
        return std::string(tarnex::findResidueDatabase((root / library).c_str()));
    };

    fs::remove(database);
    EXPECT_EQ(found("lib/libtarnex.so"), database) << "the first choice, though it is not there";
    std::ofstream(database) << "database";
    EXPECT_EQ(found("lib/libtarnex.so"), database);
    EXPECT_EQ(found("lib/x86_64-linux-gnu/libtarnex.so"), database);
    fs::remove(root / "libtarnex.so.0");
    fs::create_symlink("lib/libtarnex.so", root / "libtarnex.so.0");
    EXPECT_EQ(found("libtarnex.so.0"), database);
    EXPECT_EQ(std::string(tarnex::findResidueDatabase("/nowhere/lib/libtarnex.so")),
              "/nowhere/share/tarnex/residues.qlt");
}

TEST(Resource, TheDatabaseHoldsResiduesOfGoodGeometry) {
    ASSERT_EQ(molchem::Resource::getInstance(), molchem::Resource::getInstance());
    McDArray<McHandle<MolTrajectory>> bundle;
    MolTrajectoryVRK::readBundle(molchem::Resource::getInstance()->residueDatabase, bundle);
    std::set<std::string> names;
    for (McHandle<MolTrajectory> const& trajectory : bundle) {
        Molecule residue(new MolTopology, true);
        ASSERT_EQ(trajectory->getNumTimeSteps(), 1);
        ASSERT_TRUE(trajectory->getTimeStep(0, &residue));
        names.insert(residue.getTopology()->getName());
        EXPECT_EQ(bondsOf(*residue.getTopology()), perceivedBonds(residue)) << residue.getTopology()->getName();
    }
    for (char const* name : {"HOH", "ALA", "TRP", "HIP", "NGLY", "CVAL", "DA", "U", "C5"})
        EXPECT_EQ(names.count(name), 1U);
}

} // namespace
