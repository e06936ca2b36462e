/// PDB: a protein in water of 300,000 atoms.

#include "pdb/PDBwrite.h"

#include "bareLoop.h"
#include "chemistry/BondCalc.h"
#include "chemistry/Resource.h"
#include "scratch.h"
#include "solvatedProtein.h"

#include <benchmark/benchmark.h>
#include <cstring>

namespace {

constexpr int numAtoms = 300000;
constexpr int coordinateColumn = 30;
constexpr int coordinateWidth = 8;
constexpr int coordinateDigits = 3;

bool isAtomLine(char const* begin, char const*) {
    return std::memcmp(begin, "ATOM  ", 6) == 0 || std::memcmp(begin, "HETATM", 6) == 0;
}

Molecule& protein() {
    static std::unique_ptr<Molecule> const molecule = [] {
        auto made = generated::SolvatedProtein(numAtoms).takeMolecule();
        McBitfield all(static_cast<unsigned long>(made->getNumAtoms()), McBitfield::CLEARED);
        all.setAll();
        BondCalc::standardConnectSelection(made.get(), all);
        return made;
    }();
    return *molecule;
}

bool write(char const* name) {
    PDBwrite pdb(molchem::Resource::getInstance()->residueDatabase, nullptr, nullptr);
    return pdb.writePDBMolecule(&protein(), name, false);
}

void PdbWriteLimit(benchmark::State& state) {
    std::string const written = scratch::file("written.pdb");
    write(written.c_str());
    auto const lines = bare::load(written.c_str(), coordinateColumn, coordinateWidth, isAtomLine);
    for (auto _ : state) {
        bare::writeLines(lines, written.c_str(), coordinateColumn, coordinateWidth, coordinateDigits);
    }
}
BENCHMARK(PdbWriteLimit)->Unit(benchmark::kMillisecond);

void PdbWrite(benchmark::State& state) {
    std::string const written = scratch::file("written.pdb");
    for (auto _ : state) {
        if (!write(written.c_str())) state.SkipWithError("not written");
    }
}
BENCHMARK(PdbWrite)->Unit(benchmark::kMillisecond);

} // namespace
