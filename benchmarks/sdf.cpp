/// SDF: 20,000 molecules of 40 atoms with data items.

#include "bareLoop.h"
#include "mdl/MDLIO.h"
#include "scratch.h"

#include <benchmark/benchmark.h>
#include <random>

namespace {

constexpr int numMolecules = 20000;
constexpr int numAtoms = 40;
constexpr int coordinateColumn = 0;
constexpr int coordinateWidth = 10;
constexpr int coordinateDigits = 4;

bool isAtomLine(char const* begin, char const* end) {
    return end - begin > 40 && begin[5] == '.';
}

void writeMolecule(FILE* file, int number, std::mt19937& random) {
    std::uniform_real_distribution<double> coordinate(-40.0, 40.0);
    static char const* const symbols[] = {"C", "C", "C", "N", "O", "H", "H", "H", "S", "Cl"};
    std::fprintf(file, "molecule %d\n  generated\n\n%3d%3d  0  0  0  0  0  0  0  0999 V2000\n", number, numAtoms,
                 numAtoms);
    for (int i = 0; i < numAtoms; ++i) {
        std::fprintf(file, "%10.4f%10.4f%10.4f %-3s 0%3d  0  0  0  0  0  0  0  0  0  0\n", coordinate(random),
                     coordinate(random), coordinate(random), symbols[random() % 10], random() % 20 == 0 ? 3 : 0);
    }
    for (int i = 0; i < numAtoms; ++i) {
        std::fprintf(file, "%3d%3d%3d  0  0  0  0\n", i + 1, (i + 1) % numAtoms + 1, i % 5 == 0 ? 2 : 1);
    }
    std::fprintf(file, "M  END\n> <id>\n%d\n\n> <weight>\n%.3f\n\n> <source>\ngenerated for measuring\n\n$$$$\n",
                 number, coordinate(random) + 300.0);
}

char const* inputFile() {
    static std::string const name = scratch::generate("molecules.sdf", [](FILE* file) {
        std::mt19937 random(20000);
        for (int i = 0; i < numMolecules; ++i) writeMolecule(file, i + 1, random);
    });
    return name.c_str();
}

void SdfReadLimit(benchmark::State& state) {
    char const* name = inputFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare::readCoordinates(name, coordinateColumn, coordinateWidth, isAtomLine));
    }
}
BENCHMARK(SdfReadLimit)->Unit(benchmark::kMillisecond);

void SdfRead(benchmark::State& state) {
    char const* name = inputFile();
    for (auto _ : state) {
        auto bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(name);
        if (bundle.size != numMolecules) state.SkipWithError("molecules are missing");
        state.PauseTiming();
        bundle.clear();
        state.ResumeTiming();
    }
}
BENCHMARK(SdfRead)->Unit(benchmark::kMillisecond);

void SdfReadAndRelease(benchmark::State& state) {
    char const* name = inputFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(name).size);
    }
}
BENCHMARK(SdfReadAndRelease)->Unit(benchmark::kMillisecond);

void SdfWriteLimit(benchmark::State& state) {
    std::string const written = scratch::file("written.sdf");
    auto const bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(inputFile());
    McDArray<MolTrajectory*> trajectories;
    for (auto const& trajectory : bundle) trajectories.append(trajectory);
    MDLIO(nullptr, nullptr).writeMDLMolTrajectoryBundle(trajectories, written.c_str());
    auto const lines = bare::load(written.c_str(), coordinateColumn, coordinateWidth, isAtomLine);
    for (auto _ : state) {
        bare::writeLines(lines, written.c_str(), coordinateColumn, coordinateWidth, coordinateDigits);
    }
}
BENCHMARK(SdfWriteLimit)->Unit(benchmark::kMillisecond);

void SdfWrite(benchmark::State& state) {
    std::string const written = scratch::file("written.sdf");
    auto const bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(inputFile());
    McDArray<MolTrajectory*> trajectories;
    for (auto const& trajectory : bundle) trajectories.append(trajectory);
    for (auto _ : state) {
        if (!MDLIO(nullptr, nullptr).writeMDLMolTrajectoryBundle(trajectories, written.c_str())) {
            state.SkipWithError("not written");
        }
    }
}
BENCHMARK(SdfWrite)->Unit(benchmark::kMillisecond);

} // namespace
