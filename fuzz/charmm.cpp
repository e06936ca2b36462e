// Reads a PSF file and a DCD file, which are the input up to its first NUL and the rest, and then visits frames: all
// that the header tells of as far as they go, and some far behind the end.

#include "charmm/MolTrajectoryDCD.h"
#include "model/Molecule.h"

#include <algorithm>
#include <cstdlib>
#include <filesystem>
#include <string>
#include <string_view>
#include <unistd.h>

namespace {

std::string write(char const* extension, std::string_view content) {
    static std::string const folder = std::filesystem::temp_directory_path().string() + "/fuzz_charmm_";
    std::string name = folder + std::to_string(getpid()) + extension;
    std::ofstream(name, std::ios::binary) << content;
    return name;
}

void visit(MolTrajectory& trajectory, int step) {
    Molecule molecule(trajectory.getTopology(), false);
    try {
        if (!trajectory.getTimeStep(step, &molecule)) std::abort();
    } catch (WrongNumberOfAtoms const&) {
        return;
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    std::string_view const input(reinterpret_cast<char const*>(data), size);
    std::size_t const middle = std::min(input.find('\0'), size);
    std::string const psf = write(".psf", input.substr(0, middle));
    std::string const dcd = write(".dcd", input.substr(std::min(middle + 1, size)));
    char const* names[] = {dcd.c_str(), psf.c_str()};
    McHandle<MolTrajectoryDCD> const trajectory(new MolTrajectoryDCD(nullptr));
    if (trajectory->readDCDMolTrajectory(2, names)) {
        for (int step = std::min(trajectory->getNumTimeSteps(), 20); step >= -1; --step) visit(*trajectory, step);
        visit(*trajectory, 2000000000);
    }
    return 0;
}
