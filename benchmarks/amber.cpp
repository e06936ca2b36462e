/// AMBER: trajectory text of 200 frames of 30,000 atoms and the topology that goes with it.

#include "amber/AMBERread.h"
#include "amber/MolTrajectoryAMBER.h"
#include "bareLoop.h"
#include "scratch.h"

#include <benchmark/benchmark.h>

namespace {

constexpr int numAtoms = 30000;
constexpr int numFrames = 200;
constexpr int width = 8;
constexpr int perLine = 10;

/// Atoms alone, without residues and bonds.
std::string const& topologyFile() {
    static std::string const name =
        scratch::generate("frames.top", [](FILE* file) { std::fprintf(file, "\n%6d\n\n\n", numAtoms); });
    return name;
}

std::string const& framesFile() {
    static std::string const name = scratch::generate("frames.mdcrd", [](FILE* file) {
        std::fputs("frames\n", file);
        unsigned random = 1;
        for (int frame = 0; frame < numFrames; ++frame) {
            for (int i = 0; i < 3 * numAtoms; ++i) {
                random = random * 1664525U + 1013904223U;
                std::fprintf(file, "%8.3f%s", static_cast<double>(random >> 12U) / 4096.0 - 100.0,
                             i % perLine == perLine - 1 ? "\n" : "");
            }
        }
    });
    return name;
}

void AmberLinesLimit(benchmark::State& state) {
    char const* name = framesFile().c_str();
    for (auto _ : state) {
        long lines = 0;
        bare::forEachLine(name, [&](char const*, char const*) { ++lines; });
        if (lines != 1 + numFrames * 3L * numAtoms / perLine) state.SkipWithError("wrong lines");
    }
}
BENCHMARK(AmberLinesLimit)->Unit(benchmark::kMillisecond);

void AmberScan(benchmark::State& state) {
    char const* name = framesFile().c_str();
    McDArray<long> positions;
    for (auto _ : state) {
        if (AMBERread(nullptr, nullptr).readAmber_TrajCoords(positions, numAtoms, name) != numFrames + 1)
            state.SkipWithError("wrong frames");
    }
}
BENCHMARK(AmberScan)->Unit(benchmark::kMillisecond);

void AmberFramesLimit(benchmark::State& state) {
    char const* name = framesFile().c_str();
    for (auto _ : state) {
        double sum = 0.0;
        bare::forEachLine(name, [&](char const* begin, char const* end) {
            for (; end - begin >= width; begin += width)
                sum += static_cast<double>(bare::coordinate(begin, begin + width));
        });
        benchmark::DoNotOptimize(sum);
    }
}
BENCHMARK(AmberFramesLimit)->Unit(benchmark::kMillisecond);

void AmberFrames(benchmark::State& state) {
    McHandle<MolTrajectory> const trajectory(
        AMBERread(nullptr, nullptr).readAmberMolTrajectory(framesFile().c_str(), topologyFile().c_str(), nullptr));
    Molecule molecule(trajectory->getTopology(), false);
    if (molecule.getNumAtoms() != numAtoms) state.SkipWithError("wrong topology");
    for (auto _ : state) {
        for (int frame = 1; frame <= numFrames; ++frame) {
            trajectory->getTimeStep(frame, &molecule);
            benchmark::DoNotOptimize(molecule.coords.data);
        }
    }
}
BENCHMARK(AmberFrames)->Unit(benchmark::kMillisecond);

} // namespace
