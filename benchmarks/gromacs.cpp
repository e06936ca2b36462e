/// GROMACS: 200 frames of 99,000 atoms in each precision, and a structure of as many atoms in water.

#include "bareLoop.h"
#include "foundation/bigEndian.h"
#include "gromacs/GROMACSwrite.h"
#include "gromacs/GROMACSwrite_SINGLE.h"
#include "gromacs/MolTrajectoryGROMACS.h"
#include "gromacs/MolTrajectoryGROMACS_SINGLE.h"
#include "scratch.h"
#include "solvatedProtein.h"

#include <benchmark/benchmark.h>
#include <fcntl.h>

namespace {

constexpr int numAtoms = 99000;
constexpr int numFrames = 200;
constexpr std::size_t numReals = 3 * std::size_t{numAtoms};
constexpr int coordinateColumn = 20;
constexpr int coordinateWidth = 8;
constexpr int coordinateDigits = 3;

Molecule& structure() {
    static std::unique_ptr<Molecule> const molecule = generated::SolvatedProtein(numAtoms).takeMolecule();
    return *molecule;
}

/// Steps that are at hand, so that only writing takes time.
class SteadyTrajectory : public MolTrajectory {
public:
    explicit SteadyTrajectory(int numSteps) : MolTrajectory(structure().getTopology()), steps(numSteps) {}
    int getNumTimeSteps() const override { return steps; }
    bool getTimeStep(int, Molecule* molecule) override {
        molecule->setTopology(topology, false);
        std::memcpy(static_cast<void*>(molecule->coords.data), structure().coords.data, numReals * sizeof(float));
        return true;
    }

private:
    int steps;
};

template <class Real>
constexpr bool isDouble = sizeof(Real) == 8;

template <class Real>
int write(std::string const& name, int steps) {
    McHandle<SteadyTrajectory> const trajectory(new SteadyTrajectory(steps));
    if constexpr (isDouble<Real>)
        return GROMACSwrite(nullptr, nullptr).writeGROMACSMolTrajectory(trajectory, name.c_str());
    else
        return GROMACSwrite_SINGLE(nullptr, nullptr).writeGROMACS_SINGLEMolTrajectory(trajectory, name.c_str());
}

/// A trajectory of as many steps, and what its readers need, in the scratch folder.
template <class Real>
std::string framesFile(int steps) {
    std::string const name = scratch::file((isDouble<Real> ? "double" : "single") + std::to_string(steps));
    static std::vector<std::string> made;
    if (std::find(made.begin(), made.end(), name) == made.end()) {
        if (write<Real>(name, steps) != 1) std::abort();
        made.push_back(name);
    }
    return name + ".trr";
}

template <class Real>
using TrajectoryOf = std::conditional_t<isDouble<Real>, MolTrajectoryGROMACS, MolTrajectoryGROMACS_SINGLE>;

/// The prints of the readers go nowhere, as they do in programs that keep their output clean.
class NoOutput {
public:
    NoOutput() : kept(dup(STDOUT_FILENO)) {
        std::fflush(stdout);
        int const nowhere = open("/dev/null", O_WRONLY);
        dup2(nowhere, STDOUT_FILENO);
        close(nowhere);
    }
    ~NoOutput() {
        std::fflush(stdout);
        dup2(kept, STDOUT_FILENO);
        close(kept);
    }
    NoOutput(NoOutput const&) = delete;
    NoOutput& operator=(NoOutput const&) = delete;

private:
    int kept;
};

constexpr std::size_t blockReals = 8192;

/// Reads the bytes in blocks, swaps and multiplies them, and stores all frames at the same place.
template <class Real>
void TrrReadLimit(benchmark::State& state) {
    std::string const name = framesFile<Real>(numFrames);
    std::vector<float> coordinates(numReals);
    std::vector<unsigned char> block(blockReals * sizeof(Real));
    constexpr std::size_t aheadOfPositions = 76 + 11 * sizeof(Real);
    for (auto _ : state) {
        FILE* file = std::fopen(name.c_str(), "rb");
        std::setvbuf(file, nullptr, _IONBF, 0);
        while (std::fread(block.data(), 1, aheadOfPositions, file) == aheadOfPositions) {
            for (std::size_t at = 0; at < numReals; at += blockReals) {
                std::size_t const wanted = std::min(blockReals, numReals - at);
                std::size_t const count = std::fread(block.data(), sizeof(Real), wanted, file);
                for (std::size_t i = 0; i < count; ++i) {
                    coordinates[at + i] =
                        static_cast<float>(tarnex::loadBig<Real>(block.data() + i * sizeof(Real)) * Real(10));
                }
            }
        }
        std::fclose(file);
        benchmark::DoNotOptimize(coordinates.data());
    }
}
BENCHMARK(TrrReadLimit<float>)->Unit(benchmark::kMillisecond);
BENCHMARK(TrrReadLimit<double>)->Unit(benchmark::kMillisecond);

template <class Real>
void TrrRead(benchmark::State& state) {
    std::string const name = framesFile<Real>(numFrames);
    Molecule molecule(structure().getTopology(), false);
    NoOutput const quiet;
    for (auto _ : state) {
        McHandle<MolTrajectory> const trajectory(new TrajectoryOf<Real>(&molecule, name.c_str()));
        if (trajectory->getNumTimeSteps() != numFrames) state.SkipWithError("frames are missing");
        for (int i = 0; i < numFrames; ++i) trajectory->getTimeStep(i, &molecule);
        if (molecule.coords[numAtoms - 1] == McVec3f(0.0F, 0.0F, 0.0F)) state.SkipWithError("not read");
    }
}
BENCHMARK(TrrRead<float>)->Unit(benchmark::kMillisecond);
BENCHMARK(TrrRead<double>)->Unit(benchmark::kMillisecond);

/// The time does not depend on the number of frames.
template <class Real>
void TrrOpen(benchmark::State& state) {
    auto const steps = static_cast<int>(state.range(0));
    std::string const name = framesFile<Real>(steps);
    for (auto _ : state) {
        McHandle<MolTrajectory> const trajectory(new TrajectoryOf<Real>(&structure(), name.c_str()));
        if (trajectory->getNumTimeSteps() != steps) state.SkipWithError("frames are missing");
    }
}
BENCHMARK(TrrOpen<float>)->Arg(1)->Arg(numFrames)->Unit(benchmark::kMicrosecond);
BENCHMARK(TrrOpen<double>)->Arg(1)->Arg(numFrames)->Unit(benchmark::kMicrosecond);

/// Swaps into a block and writes it.
template <class Real>
void TrrWriteLimit(benchmark::State& state) {
    std::string const name = scratch::file("written.trr");
    auto const* values = reinterpret_cast<float const*>(structure().coords.data);
    std::vector<unsigned char> block(blockReals * sizeof(Real));
    for (auto _ : state) {
        FILE* file = std::fopen(name.c_str(), "wb");
        std::setvbuf(file, nullptr, _IONBF, 0);
        for (int frame = 0; frame < numFrames; ++frame) {
            for (std::size_t at = 0; at < numReals; at += blockReals) {
                std::size_t const count = std::min(blockReals, numReals - at);
                for (std::size_t i = 0; i < count; ++i) {
                    tarnex::storeBig(block.data() + i * sizeof(Real), static_cast<Real>(values[at + i]));
                }
                std::fwrite(block.data(), sizeof(Real), count, file);
            }
        }
        std::fclose(file);
    }
}
BENCHMARK(TrrWriteLimit<float>)->Unit(benchmark::kMillisecond);
BENCHMARK(TrrWriteLimit<double>)->Unit(benchmark::kMillisecond);

/// With the structure files that are written beside the frames.
template <class Real>
void TrrWrite(benchmark::State& state) {
    for (auto _ : state) {
        if (write<Real>(scratch::file("written"), numFrames) != 1) state.SkipWithError("not written");
    }
}
BENCHMARK(TrrWrite<float>)->Unit(benchmark::kMillisecond);
BENCHMARK(TrrWrite<double>)->Unit(benchmark::kMillisecond);

bool isAtomLine(char const* begin, char const* end) {
    return end - begin == 68 && begin[24] == '.';
}

std::string groFile() {
    static std::string const name = [] {
        std::string const made = scratch::file("structure.gro");
        if (GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(&structure(), made.c_str()) != 1) std::abort();
        return made;
    }();
    return name;
}

void GroReadLimit(benchmark::State& state) {
    std::string const name = groFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare::readCoordinates(name.c_str(), coordinateColumn, coordinateWidth, isAtomLine));
    }
}
BENCHMARK(GroReadLimit)->Unit(benchmark::kMillisecond);

void GroRead(benchmark::State& state) {
    std::string const name = groFile();
    for (auto _ : state) {
        Molecule* molecule = GROMACSread(nullptr, nullptr).readGRO(name.c_str());
        state.PauseTiming();
        if (molecule->getNumAtoms() < numAtoms) state.SkipWithError("atoms are missing");
        delete molecule;
        state.ResumeTiming();
    }
}
BENCHMARK(GroRead)->Unit(benchmark::kMillisecond);

void GroWriteLimit(benchmark::State& state) {
    std::string const written = scratch::file("written.gro");
    auto const lines = bare::load(groFile().c_str(), coordinateColumn, coordinateWidth, isAtomLine);
    for (auto _ : state) {
        bare::writeLines(lines, written.c_str(), coordinateColumn, coordinateWidth, coordinateDigits);
    }
}
BENCHMARK(GroWriteLimit)->Unit(benchmark::kMillisecond);

/// With the .top file of the bonds.
void GroWrite(benchmark::State& state) {
    std::string const written = scratch::file("written.gro");
    for (auto _ : state) {
        if (GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(&structure(), written.c_str()) != 1) {
            state.SkipWithError("not written");
        }
    }
}
BENCHMARK(GroWrite)->Unit(benchmark::kMillisecond);

} // namespace
