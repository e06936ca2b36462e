#include "formats/UniChemIO.h"
#include "formats/uniChemRecords.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "model/NumberedBond.h"

namespace {

using tarnex::Progress;

/// Writes the blocks of one molecule.
class FileWriter {
public:
    FileWriter(Molecule& fileMolecule, writer& fileOut, Progress const& fileProgress)
        : topology(*fileMolecule.getTopology()), coords(fileMolecule.coords), out(fileOut), progress(fileProgress),
          numAtoms(static_cast<int>(topology.levels[0]->groups.size)),
          numBonds(static_cast<int>(topology.levels[1]->groups.size)),
          atomicNumbers(topology.getLevel(0)->integerAttribute("atomic_number", MtGroupingLevel::FIND, true)),
          bondTypes(topology.getLevel(1)->integerAttribute("type", MtGroupingLevel::FIND, true)) {}

    /// False if the user stopped the work.
    bool write(char const* name) {
        out.write("VERSION UNICHEM^TYPE 1\n");
        tarnex::unichem::CountLine{numAtoms}.write(out, "STRUCTURE", name, " \n\n");
        if (!writeAtoms() || !writeBonds()) return false;
        out.write("\nEND\n");
        return true;
    }

private:
    bool writeAtoms();
    bool writeBonds();

    bool interruptedAt(int line, int linesOfBlocksBefore) const {
        if (!progress || line % tarnex::unichem::linesPerProgress != 0) return false;
        return progress.interruptedAt(static_cast<float>(linesOfBlocksBefore + line) /
                                      static_cast<float>(std::int64_t{numAtoms} + numBonds));
    }

    MolTopology& topology;
    McDArray<McVec3f> const& coords;
    writer& out;
    Progress const& progress;
    int numAtoms;
    int numBonds;
    MtIntegerAttribute const* atomicNumbers;
    MtIntegerAttribute const* bondTypes;
};

bool FileWriter::writeAtoms() {
    progress.info("Writing coordinates block.");
    out.write("GEOMETRY\nCOORDINATES 1\n");
    for (int i = 0; i < numAtoms; ++i) {
        if (interruptedAt(i, 0)) return false;
        tarnex::unichem::AtomLine line;
        line.atomicNumber = atomicNumbers ? atomicNumbers->getValue(i) : 1;
        if (i < coords.size) line.position = coords[i];
        line.write(out);
    }
    return true;
}

bool FileWriter::writeBonds() {
    out.write("BONDS\n");
    tarnex::unichem::CountLine{numBonds}.write(out, "MOLECULE", "unnamed", "\n");
    progress.info("Writing bonds block.");
    McDArray<MtGroup*> const& bonds = topology.getLevel(1)->groups;
    for (int i = 0; i < numBonds; ++i) {
        if (interruptedAt(i, numAtoms)) return false;
        tarnex::NumberedBond const bond(topology, bonds[i]);
        int const type = bondTypes ? bondTypes->getValue(i) : 0;
        tarnex::unichem::BondLine{bond.firstAtom, bond.secondAtom, type}.write(out, bondTypes != nullptr);
    }
    return true;
}

} // namespace

bool UniChemIO::writeUniChemMolecule(Molecule* molecule, char const* name, writer& out) {
    if (!molecule || !molecule->getTopology()) {
        tarnex::report(messages, "Empty molecule !\n");
        return false;
    }
    Progress const fileProgress(progress);
    tarnex::WorkingPhase const phase(fileProgress, "");
    return FileWriter(*molecule, out, fileProgress).write(name);
}

bool UniChemIO::writeUniChemMolecule(Molecule* molecule, char const* filename) {
    if (!molecule || !molecule->getTopology()) {
        tarnex::report(messages, "Empty molecule !\n");
        return false;
    }
    writer out(filename);
    if (!out.isOpen()) {
        tarnex::report(messages, "Could not create file !\n");
        return false;
    }
    return writeUniChemMolecule(molecule, filename, out);
}
