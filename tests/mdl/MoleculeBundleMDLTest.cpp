#include "mdl/MoleculeBundleMDL.h"

#include "foundation/McHandle.h"

#include <gtest/gtest.h>

namespace {

TEST(MoleculeBundleMDL, HasNoMoleculesInAnyFile) {
    for (char const* const name : {TARNEX_EXAMPLES "/ligands.sdf", "/absent.sdf"}) {
        McHandle<MoleculeBundle> const bundle(new MoleculeBundleMDL(name));
        EXPECT_EQ(bundle->getNumMolecules(), 0U);
        EXPECT_EQ(bundle->getMolecule(0), nullptr);
        EXPECT_EQ(bundle->getTopology(0), nullptr);
    }
}

} // namespace
