#include "charmm/charmmSamples.h"
#include "interop/programs.h"

namespace {

using namespace tarnex::test;

TEST(MDAnalysis, ReadsTheSameCoordinatesFromDcd) {
    std::string const python = "/usr/bin/python3 -W ignore -c ";
    if (!succeeds(python + "'import MDAnalysis'")) GTEST_SKIP() << "not installed";
    for (bool const swapped : {false, true}) {
        OpenedTrajectory const opened(PsfText(), DcdBytes{.numFrames = 3, .swapped = swapped});
        std::string const theirs = output(python +
                                          "\"from MDAnalysis.lib.formats.libdcd import DCDFile; "
                                          "[print(float(v).hex()) for f in DCDFile('" +
                                          scratchPath("in.dcd") + "') for v in f.xyz.flatten()]\"");
        std::istringstream values(theirs);
        Molecule molecule(opened.trajectory->getTopology(), false);
        for (int step = 0; step < 3; ++step) {
            ASSERT_TRUE(opened.trajectory->getTimeStep(step, &molecule));
            for (int i = 0; i < 3 * molecule.coords.size; ++i) {
                std::string value;
                values >> value;
                EXPECT_EQ(molecule.coords[i / 3][i % 3], std::strtof(value.c_str(), nullptr));
            }
        }
    }
}

} // namespace
