/// The model filled with 1,000,000 atoms, 1,000,000 bonds and 300,000 residues, and bond perception.

#include "chemistry/BondCalc.h"
#include "solvatedProtein.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <cstddef>
#include <ctime>
#include <malloc.h>
#include <vector>

namespace {

double heapInUse() {
    struct mallinfo2 const info = mallinfo2();
    return static_cast<double>(info.uordblks + info.hblkhd);
}

void ModelFill(benchmark::State& state) {
    int const numAtoms = static_cast<int>(state.range(0));
    double bytes = 0.0;
    for (auto _ : state) {
        double const before = heapInUse();
        auto const molecule = generated::SolvatedProtein(numAtoms).takeMolecule();
        MolTopology* topology = molecule->getTopology();
        topology->prepLevelSize(1, numAtoms);
        auto* types = topology->getLevel(1)->integerAttribute("type", MtGroupingLevel::CREATE, true);
        for (int i = 0; i + 1 < molecule->getNumAtoms(); ++i) {
            types->setValue(topology->addBond(new (topology->groupPool) MtBond(i, i + 1)).groupIx, 1);
        }
        bytes = heapInUse() - before;
    }
    state.counters["bytes_per_atom"] = bytes / numAtoms;
    state.counters["atoms"] =
        benchmark::Counter(static_cast<double>(numAtoms), benchmark::Counter::kIsIterationInvariantRate);
}
BENCHMARK(ModelFill)->Arg(1000000)->Unit(benchmark::kMillisecond);

using Connect = bool (*)(MolObject*, McBitfield const&);

/// Processor seconds, with the molecule made before and released after.
double timeOfPerception(benchmark::State& state, int numAtoms, Connect connect) {
    generated::SolvatedProtein protein(numAtoms);
    auto const molecule = protein.takeMolecule();
    McBitfield all(static_cast<unsigned long>(molecule->getNumAtoms()), McBitfield::CLEARED);
    all.setAll();
    // Molecules of all sizes find a heap without pages left from the last one.
    malloc_trim(0);
    std::clock_t const begin = std::clock();
    connect(molecule.get(), all);
    std::clock_t const end = std::clock();
    if (molecule->getTopology()->getLevel(1)->groups.size != protein.numBonds) state.SkipWithError("other bonds");
    return static_cast<double>(end - begin) / CLOCKS_PER_SEC;
}

/// The time for 1,000,000 atoms. `ratio_to_100000_atoms` is the median of its ratios to the time for a tenth: the
/// two take turns, so that both meet the same load of the machine and the same speed of its processor.
void Perception(benchmark::State& state, Connect connect) {
    constexpr int numAtoms = 1000000;
    constexpr int turns = 10;
    std::vector<double> ratios;
    for (auto _ : state) {
        double tenth = 0.0;
        for (int i = 0; i < turns; ++i) tenth += timeOfPerception(state, numAtoms / 10, connect) / turns;
        double const whole = timeOfPerception(state, numAtoms, connect);
        state.SetIterationTime(whole);
        ratios.push_back(whole / tenth);
    }
    auto const middle = ratios.begin() + static_cast<std::ptrdiff_t>(ratios.size() / 2);
    std::nth_element(ratios.begin(), middle, ratios.end());
    state.counters["ratio_to_100000_atoms"] = *middle;
}
BENCHMARK_CAPTURE(Perception, standard, BondCalc::standardConnectSelection)
    ->Iterations(25)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Perception, bondLength, BondCalc::bondLengthConnectSelection)
    ->Iterations(25)
    ->UseManualTime()
    ->Unit(benchmark::kMillisecond);

} // namespace
