/// The house format: 100 steps of 100,000 atoms, beside plain copies of the same bytes through a file.

#include "model/MolTrajectoryMem.h"
#include "qlt/MolTrajectoryVRK.h"
#include "scratch.h"

#include <benchmark/benchmark.h>
#include <vector>

namespace {

constexpr int numAtoms = 100000;
constexpr int numSteps = 100;
constexpr std::size_t stepBytes = numAtoms * sizeof(McVec3f);

McHandle<MolTrajectory> makeTrajectory() {
    auto* topology = new MolTopology;
    for (int i = 0; i < numAtoms; ++i) topology->addGroup(0, new (topology->groupPool) MtAtom);
    Molecule molecule(topology, true);
    for (int i = 0; i < numAtoms; ++i) molecule.coords[i] = McVec3f(static_cast<float>(i), 0.5F, -0.25F);
    return new MolTrajectoryMem(&molecule, numSteps);
}

void countBytes(benchmark::State& state) {
    state.SetBytesProcessed(static_cast<std::int64_t>(state.iterations()) * numSteps *
                            static_cast<std::int64_t>(stepBytes));
}

void QltWriteLimit(benchmark::State& state) {
    std::string const name = scratch::file("plain.bin");
    std::vector<McVec3f> const coords(numAtoms, McVec3f(1.0F, 0.5F, -0.25F));
    for (auto _ : state) {
        FILE* file = std::fopen(name.c_str(), "wb");
        for (int i = 0; i < numSteps; ++i) std::fwrite(coords.data(), 1, stepBytes, file);
        std::fclose(file);
    }
    countBytes(state);
}
BENCHMARK(QltWriteLimit)->Unit(benchmark::kMillisecond)->UseRealTime();

void QltWrite(benchmark::State& state) {
    std::string const name = scratch::file("steps.qlt");
    McHandle<MolTrajectory> const trajectory = makeTrajectory();
    for (auto _ : state) {
        if (!MolTrajectoryVRK::writeQLTMolTrajectory(trajectory, name.c_str())) state.SkipWithError("not written");
    }
    countBytes(state);
}
BENCHMARK(QltWrite)->Unit(benchmark::kMillisecond)->UseRealTime();

void QltReadLimit(benchmark::State& state) {
    std::string const name = scratch::file("plain.bin");
    std::vector<McVec3f> coords(numAtoms);
    for (auto _ : state) {
        FILE* file = std::fopen(name.c_str(), "rb");
        for (int i = 0; i < numSteps; ++i) {
            if (std::fread(coords.data(), 1, stepBytes, file) != stepBytes) state.SkipWithError("cut");
        }
        std::fclose(file);
    }
    countBytes(state);
}
BENCHMARK(QltReadLimit)->Unit(benchmark::kMillisecond)->UseRealTime();

/// Opening checks the whole file.
void QltOpen(benchmark::State& state) {
    std::string const name = scratch::file("steps.qlt");
    for (auto _ : state) {
        McDArray<McHandle<MolTrajectory>> bundle;
        MolTrajectoryVRK::readBundle(name.c_str(), bundle);
        if (bundle.size != 1) state.SkipWithError("refused");
    }
    countBytes(state);
}
BENCHMARK(QltOpen)->Unit(benchmark::kMillisecond)->UseRealTime();

void QltReadSteps(benchmark::State& state) {
    McDArray<McHandle<MolTrajectory>> bundle;
    MolTrajectoryVRK::readBundle(scratch::file("steps.qlt").c_str(), bundle);
    if (bundle.size != 1) return state.SkipWithError("refused");
    Molecule molecule(bundle[0]->getTopology(), false);
    for (auto _ : state) {
        for (int i = 0; i < numSteps; ++i) {
            if (!bundle[0]->getTimeStep(i, &molecule)) state.SkipWithError("unreadable");
        }
    }
    countBytes(state);
}
BENCHMARK(QltReadSteps)->Unit(benchmark::kMillisecond)->UseRealTime();

} // namespace
