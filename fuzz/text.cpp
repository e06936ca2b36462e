// Reads text formats: the first byte of the input chooses one, the rest is the file. What has been read is written in
// each format that can be written, and must be readable again where the format holds it.

#include "amber/AMBERread.h"
#include "chemistry/Resource.h"
#include "formats/UniChemIO.h"
#include "mdl/MDLIO.h"
#include "model/MolTrajectoryMem.h"
#include "pdb/PDBread.h"
#include "pdb/PDBwrite.h"
#include "qlt/MolTrajectoryVRK.h"
#include "tripos/TriposIO.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <string>
#include <unistd.h>

namespace {

using Bundle = McDArray<McHandle<MolTrajectory>>;

std::string nameOf(char const* purpose) {
    static std::string const folder = std::filesystem::temp_directory_path().string() + "/fuzz_text_";
    return folder + std::to_string(getpid()) + purpose;
}

enum Format : unsigned char { SDF, PDB, AMBER, MOL2, UNICHEM, numFormats };

/// The file is topology, restart file and trajectory in one.
void readAmber(char const* file, Bundle& bundle) {
    AMBERread amber(nullptr, nullptr);
    McHandle<MolTrajectory> const trajectory(amber.readAmberMolTrajectory(file, file, file));
    Molecule molecule(trajectory->getTopology(), false);
    amber.readAmberCoords(&molecule, file);
    bundle.append(trajectory);
}

Bundle readUniChem(char const* file) {
    Bundle bundle;
    McHandle<Molecule> const molecule(UniChemIO(nullptr, nullptr).readUniChemMolecule(file));
    if (molecule) bundle.append(new MolTrajectoryMem(molecule, 1));
    return bundle;
}

Bundle read(std::string const& file, unsigned format) {
    Bundle bundle;
    try {
        switch (format % numFormats) {
        case SDF:
            return MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(file.c_str());
        case AMBER:
            readAmber(file.c_str(), bundle);
            break;
        case PDB:
            PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(file.c_str(), bundle);
            break;
        case MOL2:
            TriposIO(nullptr, nullptr).readTriposBundle(file.c_str(), bundle);
            break;
        default:
            return readUniChem(file.c_str());
        }
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
    try {
        if (MDLIO(nullptr, nullptr).writeMDLMolTrajectory(&steps, file.c_str())) read(file, SDF);
        McDArray<MolObject*> objects;
        objects.append(&steps);
        if (TriposIO(nullptr, nullptr).writeTriposBundle(objects, file.c_str())) read(file, MOL2);
        Molecule molecule(steps.getTopology(), false);
        steps.getTimeStep(0, &molecule);
        if (UniChemIO(nullptr, nullptr).writeUniChemMolecule(&molecule, file.c_str())) read(file, UNICHEM);
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
    std::filesystem::remove(output);
    return 0;
}
