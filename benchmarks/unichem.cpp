/// UniChem: one molecule of 500,000 atoms and as many bonds, in the layout that the library writes.

#include "bareLoop.h"
#include "formats/UniChemIO.h"
#include "scratch.h"

#include <benchmark/benchmark.h>
#include <memory>
#include <random>

namespace {

constexpr int numAtoms = 500000;
constexpr int coordinateColumn = 1;
constexpr int coordinateWidth = 11;
constexpr int coordinateDigits = 6;

bool isAtomLine(char const* begin, char const* end) {
    return end - begin == 36;
}

char const* inputFile() {
    static std::string const name = scratch::generate("large.uni", [](FILE* file) {
        std::mt19937 random(500000);
        std::uniform_real_distribution<double> coordinate(-90.0, -10.0);
        std::fprintf(file, "VERSION UNICHEM^TYPE 1\nSTRUCTURE %d large \n\nGEOMETRY\nCOORDINATES 1\n", numAtoms);
        for (int i = 0; i < numAtoms; ++i) {
            std::fprintf(file, "%d %.6f %.6f %.6f 0\n", static_cast<int>(random() % 4) + 6, coordinate(random),
                         coordinate(random), coordinate(random));
        }
        std::fprintf(file, "BONDS\nMOLECULE %d unnamed\n", numAtoms);
        for (int i = 0; i < numAtoms; ++i) std::fprintf(file, "%d %d 1\n", i + 1, (i + 1) % numAtoms + 1);
        std::fprintf(file, "\nEND\n");
    });
    return name.c_str();
}

std::unique_ptr<Molecule> readInput() {
    return std::unique_ptr<Molecule>(UniChemIO(nullptr, nullptr).readUniChemMolecule(inputFile()));
}

void UniChemReadLimit(benchmark::State& state) {
    char const* name = inputFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare::readCoordinates(name, coordinateColumn, coordinateWidth, isAtomLine));
    }
}
BENCHMARK(UniChemReadLimit)->Unit(benchmark::kMillisecond);

void UniChemRead(benchmark::State& state) {
    inputFile();
    for (auto _ : state) {
        auto molecule = readInput();
        if (!molecule || molecule->getNumAtoms() != numAtoms) state.SkipWithError("atoms are missing");
        state.PauseTiming();
        molecule.reset();
        state.ResumeTiming();
    }
}
BENCHMARK(UniChemRead)->Unit(benchmark::kMillisecond);

void UniChemWriteLimit(benchmark::State& state) {
    std::string const written = scratch::file("written.uni");
    auto const lines = bare::load(inputFile(), coordinateColumn, coordinateWidth, isAtomLine);
    for (auto _ : state) {
        bare::writeLines(lines, written.c_str(), coordinateColumn, coordinateWidth, coordinateDigits);
    }
}
BENCHMARK(UniChemWriteLimit)->Unit(benchmark::kMillisecond);

void UniChemWrite(benchmark::State& state) {
    std::string const written = scratch::file("written.uni");
    auto const molecule = readInput();
    for (auto _ : state) {
        if (!UniChemIO(nullptr, nullptr).writeUniChemMolecule(molecule.get(), written.c_str())) {
            state.SkipWithError("not written");
        }
    }
}
BENCHMARK(UniChemWrite)->Unit(benchmark::kMillisecond);

} // namespace
