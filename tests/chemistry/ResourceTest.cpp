#include "chemistry/Resource.h"

#include "chemistry/BondCalc.h"
#include "model/members.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"
#include "support/testing.h"

#include <set>

namespace {

using namespace tarnex::test;

namespace fs = std::filesystem;

TEST(Resource, FindsTheDatabaseBesideTheLibrary) {
    fs::path const root = fs::canonical(testing::TempDir()) / "resource test";
    fs::remove_all(root);
    fs::create_directories(root / "share" / "tarnex");
    fs::path const database = root / "share" / "tarnex" / "residues.qlt";
    for (char const* folder : {"lib", "lib/x86_64-linux-gnu"}) {
        fs::create_directories(root / folder);
        std::ofstream(root / folder / "libtarnex.so") << "library";
    }
    auto const found = [&](char const* library) {
        return std::string(tarnex::findResidueDatabase((root / library).c_str()));
    };

    EXPECT_EQ(found("lib/libtarnex.so"), database) << "the first choice, though it is not there";
    std::ofstream(database) << "database";
    EXPECT_EQ(found("lib/libtarnex.so"), database);
    EXPECT_EQ(found("lib/x86_64-linux-gnu/libtarnex.so"), database);
    fs::create_symlink("lib/libtarnex.so", root / "libtarnex.so.0");
    EXPECT_EQ(found("libtarnex.so.0"), database);
    EXPECT_EQ(found("/nowhere/lib/libtarnex.so"), "/nowhere/share/tarnex/residues.qlt");
}

TEST(Resource, TheDatabaseHoldsResiduesOfGoodGeometry) {
    ASSERT_EQ(molchem::Resource::getInstance(), molchem::Resource::getInstance());
    Bundle bundle;
    MolTrajectoryVRK::readBundle(molchem::Resource::getInstance()->residueDatabase, bundle);
    std::set<std::string> names;
    for (McHandle<MolTrajectory> const& trajectory : bundle) {
        Molecule residue(new MolTopology, true);
        ASSERT_EQ(trajectory->getNumTimeSteps(), 1);
        ASSERT_TRUE(trajectory->getTimeStep(0, &residue));
        names.insert(residue.getTopology()->getName());
        // Its atoms alone have the same bonds.
        MolTopology const& topology = *residue.getTopology();
        auto const* numbers = topology.levels[0]->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
        Molecule bare(newTopology(residue.getNumAtoms()), true);
        bare.coords = residue.coords;
        for (int i = 0; i < residue.getNumAtoms(); ++i) {
            setInteger(bare.getTopology(), 0, "atomic_number", i, numbers->getValue(i));
        }
        McBitfield atoms(static_cast<unsigned long>(residue.getNumAtoms()), McBitfield::UNINITIALIZED);
        atoms.setAll();
        EXPECT_TRUE(BondCalc::bondLengthConnectSelection(&bare, atoms));
        EXPECT_EQ(bare.getTopology()->levels[1]->groups.size, topology.levels[1]->groups.size);
        for (MtGroup const* group : topology.levels[1]->groups) {
            int a = -1, b = -1;
            EXPECT_TRUE(tarnex::getBondAtoms(group, a, b));
            EXPECT_GE(bare.getTopology()->findBond(a, b), 0) << topology.getName() << ' ' << a << ' ' << b;
        }
    }
    for (char const* name : {"HOH", "ALA", "TRP", "HIP", "NGLY", "CVAL", "DA", "U", "C5"})
        EXPECT_EQ(names.count(name), 1U);
}

} // namespace
