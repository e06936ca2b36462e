/// mol2: 20,000 molecules of 40 atoms with charges and a substructure each.

#include "bareLoop.h"
#include "scratch.h"
#include "tripos/TriposIO.h"

#include <benchmark/benchmark.h>
#include <random>

namespace {

constexpr int numMolecules = 20000;
constexpr int numAtoms = 40;

/// Where the coordinates stand in the input and in what the library writes.
struct Columns {
    int first;
    int width;
};
constexpr Columns inputColumns{16, 10};
constexpr Columns writtenColumns{17, 11};
constexpr int writtenDigits = 6;

bool isAtomLine(char const* begin, char const* end) {
    return end - begin > 50;
}

void writeMolecule(FILE* file, int number, std::mt19937& random) {
    std::uniform_real_distribution<double> coordinate(-40.0, 40.0);
    static char const* const types[] = {"C.3", "C.ar", "C.2", "N.am", "O.3", "H", "H", "H", "S.3", "Cl"};
    static char const* const bondTypes[] = {"1", "2", "ar", "am", "1"};
    std::fprintf(file, "@<TRIPOS>MOLECULE\nmolecule %d\n%5d%6d%6d     0     0\nSMALL\nUSER_CHARGES\n\n@<TRIPOS>ATOM\n",
                 number, numAtoms, numAtoms, 1);
    for (int i = 0; i < numAtoms; ++i) {
        char const* const type = types[random() % 10];
        char name[8];
        std::snprintf(name, sizeof name, "%c%d", type[0], i + 1);
        std::fprintf(file, "%7d %-8s%10.4f%10.4f%10.4f %-5s %5d %-7s %9.4f\n", i + 1, name, coordinate(random),
                     coordinate(random), coordinate(random), type, 1, "LIG", coordinate(random) / 100.0);
    }
    std::fprintf(file, "@<TRIPOS>BOND\n");
    for (int i = 0; i < numAtoms; ++i) {
        std::fprintf(file, "%6d %4d %4d %s\n", i + 1, i + 1, (i + 1) % numAtoms + 1, bondTypes[random() % 5]);
    }
    std::fprintf(file, "\n");
}

char const* inputFile() {
    static std::string const name = scratch::generate("molecules.mol2", [](FILE* file) {
        std::mt19937 random(20000);
        for (int i = 0; i < numMolecules; ++i) writeMolecule(file, i + 1, random);
    });
    return name.c_str();
}

using Bundle = McDArray<McHandle<MolTrajectory>>;

Bundle readInput() {
    Bundle bundle;
    TriposIO(nullptr, nullptr).readTriposBundle(inputFile(), bundle);
    return bundle;
}

bool writeBundle(Bundle const& bundle, char const* filename) {
    McDArray<MolObject*> objects;
    for (auto const& trajectory : bundle)
        objects.append(dynamic_cast<MolObject*>(static_cast<MolTrajectory*>(trajectory)));
    return TriposIO(nullptr, nullptr).writeTriposBundle(objects, filename);
}

void TriposReadLimit(benchmark::State& state) {
    char const* name = inputFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare::readCoordinates(name, inputColumns.first, inputColumns.width, isAtomLine));
    }
}
BENCHMARK(TriposReadLimit)->Unit(benchmark::kMillisecond);

void TriposRead(benchmark::State& state) {
    inputFile();
    for (auto _ : state) {
        Bundle bundle = readInput();
        if (bundle.size != numMolecules) state.SkipWithError("molecules are missing");
        state.PauseTiming();
        bundle.clear();
        state.ResumeTiming();
    }
}
BENCHMARK(TriposRead)->Unit(benchmark::kMillisecond);

void TriposWriteLimit(benchmark::State& state) {
    std::string const written = scratch::file("written.mol2");
    writeBundle(readInput(), written.c_str());
    auto const lines = bare::load(written.c_str(), writtenColumns.first, writtenColumns.width, isAtomLine);
    for (auto _ : state) {
        bare::writeLines(lines, written.c_str(), writtenColumns.first, writtenColumns.width, writtenDigits);
    }
}
BENCHMARK(TriposWriteLimit)->Unit(benchmark::kMillisecond);

void TriposWrite(benchmark::State& state) {
    std::string const written = scratch::file("written.mol2");
    Bundle const bundle = readInput();
    for (auto _ : state) {
        if (!writeBundle(bundle, written.c_str())) state.SkipWithError("not written");
    }
}
BENCHMARK(TriposWrite)->Unit(benchmark::kMillisecond);

} // namespace
