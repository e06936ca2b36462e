/// PDB: generated proteins in water with helices, sheets and a few bonds, whose serial numbers start again behind
/// 99,999 and whose residue numbers do behind 9,999, and 200 models of 5,000 atoms.

#include "pdb/PDBread.h"

#include "bareLoop.h"
#include "chemistry/BondCalc.h"
#include "scratch.h"
#include "solvatedProtein.h"

#include <algorithm>
#include <benchmark/benchmark.h>
#include <ctime>
#include <map>

namespace {

using Bundle = McDArray<McHandle<MolTrajectory>>;

constexpr int coordinateColumn = 30;
constexpr int coordinateWidth = 8;
constexpr int numModels = 200;
constexpr int modelAtoms = 5000;

bool isAtomLine(char const* begin, char const* end) {
    return end - begin >= 54 && (std::memcmp(begin, "ATOM  ", 6) == 0 || std::memcmp(begin, "HETATM", 6) == 0);
}

struct AtomsInFile {
    std::string name;
    int numAtoms;
    int numResidues;
    int numBonds;
};

/// Chains are A to Z over and over, each with its TER; the waters are in chain W.
class PdbText {
public:
    PdbText(FILE* stream, Molecule& moleculeToWrite) : file(stream), molecule(moleculeToWrite) {}

    /// A helix and a strand at the start of each chain, as far as chains have names of their own.
    void writeStructures(int numChains) {
        for (int i = 0; i < std::min(numChains, numChainNames); ++i) {
            int const first = i * generated::residuesPerChain + 1;
            char const chain = nameOfChain(i);
            std::fprintf(file, "HELIX  %3d %3d ALA %c %4d  ALA %c %4d  1%31s%5d\n", i + 1, i + 1, chain, first + 9,
                         chain, first + 28, "", 20);
            std::fprintf(file, "SHEET    1 S%02d 1 ALA %c%4d  ALA %c%4d  0\n", i, chain, first + 39, chain, first + 48);
        }
    }

    /// Adds `shift` to all coordinates.
    void writeAtoms(float shift) {
        MolTopology* topology = molecule.getTopology();
        for (MtGroup* group : topology->getLevel(topology->getLevelIx("residues"))->groups) {
            auto const& residue = static_cast<MtIntraLevelRange const&>(*group);
            bool const isWater = residue.size() == generated::waterAtoms;
            for (int i = residue.first; i <= residue.last; ++i) writeAtom(i, isWater, shift);
            ++residues;
            if (!isWater && residues % generated::residuesPerChain == 0) std::fputs("TER\n", file);
        }
    }

    /// Those of the last waters, which have no namesakes behind them.
    void writeBonds() {
        constexpr int numWaters = 100;
        int const numAtoms = molecule.getNumAtoms();
        for (int atom = numAtoms - numWaters * generated::waterAtoms; atom < numAtoms; atom += generated::waterAtoms) {
            std::fprintf(file, "CONECT%5d%5d%5d\n", serial(atom), serial(atom + 1), serial(atom + 2));
        }
    }

private:
    static constexpr int numChainNames = 26;
    static char nameOfChain(int chain) { return static_cast<char>('A' + chain % numChainNames); }
    static int serial(int atom) { return (atom + 1) % 100000; }

    void writeAtom(int atom, bool isWater, float shift) {
        MtGroupingLevel* level = molecule.getTopology()->getLevel(0);
        char const* type = level->stringAttribute("type", MtGroupingLevel::FIND, true)->getValue(atom);
        McVec3f const& place = molecule.coords[atom];
        int const chain = residues / generated::residuesPerChain;
        double const temperature = 5.0 + 0.01 * (atom % 7919);
        std::fprintf(file, "%s%5d  %-3s %s %c%4d    %8.3f%8.3f%8.3f  1.00%6.2f          %2c  \n",
                     isWater ? "HETATM" : "ATOM  ", serial(atom), type, isWater ? "HOH" : "ALA",
                     isWater ? 'W' : nameOfChain(chain), (residues + 1) % 10000, static_cast<double>(place.x + shift),
                     static_cast<double>(place.y + shift), static_cast<double>(place.z + shift), temperature, *type);
    }

    FILE* file;
    Molecule& molecule;
    int residues = 0;
};

AtomsInFile const& inputFile(int numAtoms) {
    static std::map<int, AtomsInFile> files;
    auto const found = files.find(numAtoms);
    if (found != files.end()) return found->second;
    generated::SolvatedProtein protein(numAtoms);
    auto const molecule = protein.takeMolecule();
    MolTopology* topology = molecule->getTopology();
    std::string const name = scratch::generate("solvated" + std::to_string(numAtoms) + ".pdb", [&](FILE* file) {
        PdbText text(file, *molecule);
        text.writeStructures(static_cast<int>(topology->getLevel(topology->getLevelIx("chains"))->groups.size));
        text.writeAtoms(0.0F);
        text.writeBonds();
    });
    auto const numResidues = topology->getLevel(topology->getLevelIx("residues"))->groups.size;
    return files[numAtoms] = {name, molecule->getNumAtoms(), static_cast<int>(numResidues), protein.numBonds};
}

char const* modelsFile() {
    static std::string const name = scratch::generate("models.pdb", [](FILE* file) {
        auto const molecule = generated::SolvatedProtein(modelAtoms).takeMolecule();
        for (int i = 0; i < numModels; ++i) {
            std::fprintf(file, "MODEL     %4d\n", i + 1);
            PdbText(file, *molecule).writeAtoms(0.01F * static_cast<float>(i));
            std::fputs("ENDMDL\n", file);
        }
    });
    return name.c_str();
}

Bundle read(char const* name) {
    Bundle bundle;
    PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(name, bundle);
    return bundle;
}

/// Of the processor, in seconds.
double timeNow() {
    return static_cast<double>(std::clock()) / CLOCKS_PER_SEC;
}

/// That it takes to find the bonds once more.
double timeOfPerception(Bundle const& bundle) {
    Molecule molecule(bundle[0]->getTopology(), false);
    bundle[0]->getTimeStep(0, &molecule);
    McDArray<MtGroup*>& bonds = molecule.getTopology()->levels[1]->groups;
    for (MtGroup* bond : bonds) delete bond;
    bonds.resize(0);
    McBitfield allAtoms(static_cast<unsigned long>(molecule.getNumAtoms()), McBitfield::CLEARED);
    allAtoms.setAll();
    double const start = timeNow();
    BondCalc::standardConnectSelection(&molecule, allAtoms);
    return timeNow() - start;
}

void PdbReadLimit(benchmark::State& state) {
    AtomsInFile const& file = inputFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        benchmark::DoNotOptimize(
            bare::readCoordinates(file.name.c_str(), coordinateColumn, coordinateWidth, isAtomLine));
    }
}
BENCHMARK(PdbReadLimit)->Arg(100000)->Arg(300000)->Arg(1000000)->Unit(benchmark::kMillisecond);

void PdbReadWithPerception(benchmark::State& state) {
    AtomsInFile const& file = inputFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        Bundle const bundle = read(file.name.c_str());
        state.PauseTiming();
        if (bundle.size != 1) return state.SkipWithError("not read");
        auto const& levels = bundle[0]->getTopology()->levels;
        if (levels[0]->groups.size != file.numAtoms) state.SkipWithError("wrong atoms");
        if (levels[1]->groups.size != file.numBonds) state.SkipWithError("wrong bonds");
        if (levels[2]->groups.size != file.numResidues) state.SkipWithError("wrong residues");
        const_cast<Bundle&>(bundle).clear();
        state.ResumeTiming();
    }
}
BENCHMARK(PdbReadWithPerception)->Arg(100000)->Arg(300000)->Arg(1000000)->Unit(benchmark::kMillisecond);

/// The same without perception: each reading is followed by a second perception, whose time is taken off. To be
/// compared with the processor time of the limit.
void PdbScanAndParse(benchmark::State& state) {
    AtomsInFile const& file = inputFile(static_cast<int>(state.range(0)));
    for (auto _ : state) {
        double const start = timeNow();
        Bundle const bundle = read(file.name.c_str());
        double const reading = timeNow() - start;
        state.SetIterationTime(reading - timeOfPerception(bundle));
    }
}
BENCHMARK(PdbScanAndParse)->Arg(100000)->Arg(300000)->Arg(1000000)->UseManualTime()->Unit(benchmark::kMillisecond);

void PdbModelsLimit(benchmark::State& state) {
    char const* name = modelsFile();
    for (auto _ : state) {
        benchmark::DoNotOptimize(bare::readCoordinates(name, coordinateColumn, coordinateWidth, isAtomLine));
    }
}
BENCHMARK(PdbModelsLimit)->Unit(benchmark::kMillisecond);

void PdbOpenModels(benchmark::State& state) {
    char const* name = modelsFile();
    for (auto _ : state) {
        Bundle const bundle = read(name);
        if (bundle.size != 1 || bundle[0]->getNumTimeSteps() != numModels) state.SkipWithError("not read");
    }
}
BENCHMARK(PdbOpenModels)->Unit(benchmark::kMillisecond);

void PdbReadModels(benchmark::State& state) {
    Bundle const bundle = read(modelsFile());
    Molecule molecule(bundle[0]->getTopology(), false);
    for (auto _ : state) {
        for (int i = 0; i < numModels; ++i) {
            if (!bundle[0]->getTimeStep(i, &molecule)) state.SkipWithError("a model is missing");
        }
    }
}
BENCHMARK(PdbReadModels)->Unit(benchmark::kMillisecond);

} // namespace
