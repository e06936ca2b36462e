// Reads text formats: the first byte of the input chooses one, the rest is the file. What has been read is written in
// each format that can be written, and must be readable again where the format holds it.

#include "amber/AMBERread.h"
#include "chemistry/Resource.h"
#include "formats/MolTrajectoryVDE.h"
#include "formats/MolTrajectoryXYZ.h"
#include "formats/UniChemIO.h"
#include "gromacs/GROMACSread.h"
#include "gromacs/GROMACSwrite.h"
#include "mdl/MDLIO.h"
#include "model/MolTrajectoryMem.h"
#include "pdb/PDBread.h"
#include "pdb/PDBwrite.h"
#include "qlt/MolTrajectoryVRK.h"
#include "tripos/TriposIO.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <string>
#include <unistd.h>

namespace {

using Bundle = McDArray<McHandle<MolTrajectory>>;

std::string nameOf(char const* purpose) {
    static std::string const folder = std::filesystem::temp_directory_path().string() + "/fuzz_text_";
    return folder + std::to_string(getpid()) + purpose;
}

/// The file is topology, restart file and trajectory in one.
void readAmber(char const* file, Bundle& bundle) {
    AMBERread amber(nullptr, nullptr);
    McHandle<MolTrajectory> const trajectory(amber.readAmberMolTrajectory(file, file, file));
    Molecule molecule(trajectory->getTopology(), false);
    amber.readAmberCoords(&molecule, file);
    bundle.append(trajectory);
}

/// The file serves as structure and as topology.
void readGro(char const* file, Bundle& bundle) {
    McHandle<Molecule> const molecule(GROMACSread(nullptr, nullptr).readGRO(file));
    if (!molecule) return;
    bundle.append(new MolTrajectoryMem(molecule, 1));
    GROMACSread(nullptr, nullptr).readTOP(file, molecule);
}

void readXyz(char const* file, Bundle& bundle) {
    AtomDataBase table;
    table.appendAtom(6, 1.7F, "C");
    auto* xyz = new MolTrajectoryXYZ(nullptr, &table);
    bundle.append(xyz);
    std::cerr.setstate(std::ios::failbit); // a point for each frame
    xyz->readXYZMolTrajectory(file);
    std::cerr.clear();
}

/// The file is two steps.
void readVde(char const* file, Bundle& bundle) {
    auto* vde = new MolTrajectoryVDE(nullptr, nullptr);
    bundle.append(vde);
    char const* names[] = {file, file};
    vde->readVDEMolTrajectory(2, names);
}

void readSdf(char const* file, Bundle& bundle) {
    bundle = MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(file);
}

void readPdb(char const* file, Bundle& bundle) {
    PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(file, bundle);
}

void readMol2(char const* file, Bundle& bundle) {
    TriposIO(nullptr, nullptr).readTriposBundle(file, bundle);
}

void readUniChem(char const* file, Bundle& bundle) {
    McHandle<Molecule> const molecule(UniChemIO(nullptr, nullptr).readUniChemMolecule(file));
    if (molecule) bundle.append(new MolTrajectoryMem(molecule, 1));
}

constexpr void (*readers[])(char const* file, Bundle& bundle) = {readSdf, readPdb, readAmber, readGro,
                                                                 readXyz, readVde, readMol2,  readUniChem};
enum Format : unsigned char { SDF, PDB, AMBER, GRO, XYZ, VDE, MOL2, UNICHEM };

Bundle read(std::string const& file, unsigned char format) {
    Bundle bundle;
    try {
        readers[format % std::size(readers)](file.c_str(), bundle);
    } catch (Parse_Error const&) {
        bundle.clear();
    }
    return bundle;
}

void write(MolTrajectory& trajectory, std::string const& file) {
    // A few bytes may count a million atoms, which would take their time.
    if (trajectory.getTopology()->levels[0]->groups.size >= 1000) return;
    MolTrajectoryMem steps(&trajectory);
    PDBwrite pdb(molchem::Resource::getInstance()->residueDatabase, nullptr, nullptr);
    if (pdb.writePDBMolTrajectory(&steps, file.c_str(), false)) read(file, PDB);
    McHandle<Molecule> const first(new Molecule(steps.getTopology(), false));
    steps.getTimeStep(0, first);
    if (GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(first, file.c_str()) == 1) read(file + ".gro", GRO);
    try {
        if (MDLIO(nullptr, nullptr).writeMDLMolTrajectory(&steps, file.c_str())) read(file, SDF);
        McDArray<MolObject*> objects;
        objects.append(&steps);
        if (TriposIO(nullptr, nullptr).writeTriposBundle(objects, file.c_str())) read(file, MOL2);
        if (UniChemIO(nullptr, nullptr).writeUniChemMolecule(first, file.c_str())) read(file, UNICHEM);
    } catch (FloatConversion_Error const&) {
        return;
    }
    if (!MolTrajectoryVRK::writeQLTMolTrajectory(&steps, file.c_str())) return;
    Bundle again;
    MolTrajectoryVRK::readBundle(file.c_str(), again);
    if (again.size != 1) std::abort();
}

} // namespace

extern "C" int LLVMFuzzerTestOneInput(unsigned char const* data, std::size_t size) {
    if (size < 1) return 0;
    std::string const input = nameOf(".in");
    std::string const output = nameOf(".out");
    std::ofstream(input, std::ios::binary).write(reinterpret_cast<char const*>(data) + 1, static_cast<long>(size) - 1);
    Bundle const bundle = read(input, data[0]);
    for (McHandle<MolTrajectory> const& trajectory : bundle) write(*trajectory, output);
    std::filesystem::remove(input);
    for (char const* extension : {"", ".gro", ".top"}) std::filesystem::remove(output + extension);
    return 0;
}
