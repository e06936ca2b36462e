#include "charmm/charmmSamples.h"

#include <cstdio>
#include <cstdlib>

namespace {

using namespace tarnex::test;

std::string const python = "/usr/bin/python3 -W ignore -c ";

/// Every coordinate that MDAnalysis finds in a DCD file, frame by frame.
std::vector<float> coordinatesOf(std::string const& dcd) {
    std::string const script = "from MDAnalysis.lib.formats.libdcd import DCDFile; "
                               "[print(float(v).hex()) for f in DCDFile('" +
                               dcd + "') for v in f.xyz.flatten()]";
    std::vector<float> values;
    FILE* pipe = popen((python + "\"" + script + "\" 2>/dev/null").c_str(), "r");
    for (char line[100]; std::fgets(line, sizeof line, pipe);) values.push_back(std::strtof(line, nullptr));
    pclose(pipe);
    return values;
}

TEST(MDAnalysis, ReadsTheSameCoordinatesFromDcd) {
    if (std::system((python + "'import MDAnalysis' 2>/dev/null").c_str()) != 0) GTEST_SKIP() << "not installed";
    for (bool const swapped : {false, true}) {
        OpenedTrajectory const opened(PsfText(), DcdBytes{.numFrames = 3, .swapped = swapped});
        std::vector<float> const expected = coordinatesOf(scratchPath("in.dcd"));
        std::vector<float> ours;
        Molecule molecule(opened.trajectory->getTopology(), false);
        for (int step = 0; step < 3; ++step) {
            ASSERT_TRUE(opened.trajectory->getTimeStep(step, &molecule));
            for (McVec3f const& place : molecule.coords) ours.insert(ours.end(), {place.x, place.y, place.z});
        }
        EXPECT_EQ(ours, expected);
    }
}

} // namespace
