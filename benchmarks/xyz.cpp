/// XYZ: 100 frames of 50,000 atoms.

#include "bareLoop.h"
#include "chemistry/ElementTable.h"
#include "formats/MolTrajectoryXYZ.h"
#include "model/Molecule.h"
#include "scratch.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>
#include <random>
#include <unistd.h>

namespace {

constexpr int numFrames = 100;
constexpr int numAtoms = 50000;
constexpr int coordinateColumn = 2;
constexpr int coordinateWidth = 12;

bool isAtomLine(char const* begin, char const* end) {
    return end - begin > 30 && begin[7] == '.';
}

char const* inputFile() {
    static std::string const name = scratch::generate("frames.xyz", [](FILE* file) {
        std::mt19937 random(50000);
        std::uniform_real_distribution<double> coordinate(-99.0, 99.0);
        for (int frame = 0; frame < numFrames; ++frame) {
            std::fprintf(file, "%d\nframe %d\n", numAtoms, frame);
            for (int i = 0; i < numAtoms; ++i) {
                std::fprintf(file, "%c %11.5f %11.5f %11.5f\n", "CHHO"[i % 4], coordinate(random), coordinate(random),
                             coordinate(random));
            }
        }
    });
    return name.c_str();
}

McHandle<MolTrajectory> openTrajectory(AtomDataBase& table) {
    auto* xyz = new MolTrajectoryXYZ(nullptr, &table);
    McHandle<MolTrajectory> const trajectory(xyz);
    int const standardError = dup(STDERR_FILENO);
    int const nothing = open("/dev/null", O_WRONLY);
    dup2(nothing, STDERR_FILENO);
    xyz->readXYZMolTrajectory(inputFile());
    dup2(standardError, STDERR_FILENO);
    close(standardError);
    close(nothing);
    return trajectory;
}

AtomDataBase elements() {
    AtomDataBase table;
    for (int number = 1; number <= 118; ++number) {
        molchem::Element const& element = *tarnex::elementTable().getElement(number);
        table.appendAtom(number, element.getRadius(), element.getSymbol());
    }
    return table;
}

/// Lines split, nothing else.
void XyzScanLimit(benchmark::State& state) {
    char const* name = inputFile();
    for (auto _ : state) {
        std::size_t lines = 0;
        bare::forEachLine(name, [&](char const*, char const*) { ++lines; });
        benchmark::DoNotOptimize(lines);
    }
}
BENCHMARK(XyzScanLimit)->Unit(benchmark::kMillisecond);

void XyzScan(benchmark::State& state) {
    AtomDataBase table = elements();
    inputFile();
    for (auto _ : state) {
        if (openTrajectory(table)->getNumTimeSteps() != numFrames) state.SkipWithError("frames are missing");
    }
}
BENCHMARK(XyzScan)->Unit(benchmark::kMillisecond);

void XyzFramesLimit(benchmark::State& state) {
    char const* name = inputFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare::readCoordinates(name, coordinateColumn, coordinateWidth, isAtomLine));
    }
}
BENCHMARK(XyzFramesLimit)->Unit(benchmark::kMillisecond);

void XyzFrames(benchmark::State& state) {
    AtomDataBase table = elements();
    McHandle<MolTrajectory> const trajectory = openTrajectory(table);
    Molecule molecule(trajectory->getTopology(), false);
    for (auto _ : state) {
        for (int step = 0; step < numFrames; ++step) trajectory->getTimeStep(step, &molecule);
        benchmark::DoNotOptimize(molecule.coords.data);
    }
}
BENCHMARK(XyzFrames)->Unit(benchmark::kMillisecond);

} // namespace
