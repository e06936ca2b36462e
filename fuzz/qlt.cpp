// Reads house format files. Most inputs are taken as the section of a topology, around which a file with right
// checksums is made; the others are whole files. What can be read must come back the same from a second file.

#include "../tests/support/compareTopologies.h"
#include "../tests/support/qltBytes.h"
#include "model/Molecule.h"
#include "qlt/MolTrajectoryVRK.h"

#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>
#include <vector>

namespace {

using namespace tarnex::test;

std::string nameOf(char const* purpose) {
    static std::string const folder = std::filesystem::temp_directory_path().string() + "/fuzz_qlt_";
    return folder + std::to_string(getpid()) + purpose;
}

void require(bool condition) {
    if (!condition) std::abort();
}

/// A mode, the number of atoms and the number of steps in a byte each, then the section or the file.
std::string fileFrom(std::string const& input) {
    auto const byte = [&](std::size_t i) { return static_cast<unsigned char>(input[i]); };
    if (byte(0) == 255) return input.substr(3);
    std::vector<std::string> const steps(byte(2) % 4U, std::string(byte(1) * 12U, 's'));
    return QltFile{input.substr(3), byte(1), steps}.bytes();
}

void walk(MolTopology& topology) {
    McDArray<int> atoms;
    for (int levelIx = 0; levelIx < topology.levels.size; ++levelIx) {
        MtGroupingLevel* level = topology.getLevel(levelIx);
        level->findGroupBackward("a");
        for (int i = 0; i < level->groups.size && i < 100; ++i) topology.getAtomsOfGroup({levelIx, i}, atoms);
    }
    topology.findBond(0, 1);
}

void requireEqual(MolTrajectory& a, MolTrajectory& b) {
    require(compareTopologies(*a.getTopology(), *b.getTopology()).empty());
    require(a.getNumTimeSteps() == b.getNumTimeSteps());
    Molecule left(nullptr, false);
    Molecule right(nullptr, false);
    for (int step = 0; step < a.getNumTimeSteps(); ++step) {
        require(a.getTimeStep(step, &left) && b.getTimeStep(step, &right));
        require(left.coords.size == left.getNumAtoms() && right.coords.size == left.coords.size);
        auto const bytes = static_cast<std::size_t>(left.coords.size) * sizeof(McVec3f);
        require(bytes == 0 || std::memcmp(left.coords.data, right.coords.data, bytes) == 0);
    }
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    if (size < 3) return 0;
    std::string const input = nameOf(".in");
    std::ofstream(input, std::ios::binary) << fileFrom({reinterpret_cast<char const*>(data), size});
    Bundle bundle;
    MolTrajectoryVRK::readBundle(input.c_str(), bundle);
    if (bundle.size > 0) {
        std::string const output = nameOf(".out");
        require(tarnex::writeQltBundle(bundle, output.c_str()));
        Bundle again;
        MolTrajectoryVRK::readBundle(output.c_str(), again);
        require(again.size == bundle.size);
        for (int i = 0; i < bundle.size; ++i) {
            requireEqual(*bundle[i], *again[i]);
            walk(*bundle[i]->getTopology());
        }
        std::filesystem::remove(output);
    }
    std::filesystem::remove(input);
    return 0;
}
