#include "charmm/charmmSamples.h"
#include "interop/programs.h"

namespace {

using namespace tarnex::test;

TEST(MDAnalysis, ReadsTheSameCoordinatesFromDcd) {
    std::string const python = "/usr/bin/python3 -W ignore -c ";
    if (!succeeds(python + "'import MDAnalysis'")) GTEST_SKIP() << "not installed";
    for (bool const swapped : {false, true}) {
        std::string const dcd = writeFile("in.dcd", DcdBytes{.numFrames = 3, .swapped = swapped});
        std::istringstream values(output(python +
                                         "\"from MDAnalysis.lib.formats.libdcd import DCDFile; "
                                         "[print(float(v)) for f in DCDFile('" +
                                         dcd + "') for v in f.xyz.flatten()]\""));
        for (int i = 0; i < 3 * 6 * 3; ++i) {
            float value = 0.0F;
            EXPECT_TRUE(values >> value);
            EXPECT_EQ(value, DcdBytes::coordinate(i / 18, i % 18 / 3, i % 3));
        }
    }
}

} // namespace
