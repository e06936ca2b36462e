/// The model filled with 1,000,000 atoms, 1,000,000 bonds and 300,000 residues, and bond perception.

#include "chemistry/BondCalc.h"
#include "solvatedProtein.h"

#include <benchmark/benchmark.h>
#include <malloc.h>

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

void Perception(benchmark::State& state, bool (*connect)(MolObject*, McBitfield const&)) {
    for (auto _ : state) {
        state.PauseTiming();
        generated::SolvatedProtein protein(static_cast<int>(state.range(0)));
        auto molecule = protein.takeMolecule();
        McBitfield all(static_cast<unsigned long>(molecule->getNumAtoms()), McBitfield::CLEARED);
        all.setAll();
        // Molecules of all sizes find a heap without pages left from the last one.
        malloc_trim(0);
        state.ResumeTiming();
        connect(molecule.get(), all);
        state.PauseTiming();
        if (molecule->getTopology()->getLevel(1)->groups.size != protein.numBonds) state.SkipWithError("other bonds");
        molecule.reset();
        state.ResumeTiming();
    }
}
BENCHMARK_CAPTURE(Perception, standard, BondCalc::standardConnectSelection)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);
BENCHMARK_CAPTURE(Perception, bondLength, BondCalc::bondLengthConnectSelection)
    ->Arg(100000)
    ->Arg(1000000)
    ->Unit(benchmark::kMillisecond);

} // namespace
