#include "chemistry/ElementTable.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "mdl/MDLIO.h"
#include "mdl/records.h"
#include "model/NumberedBond.h"

#include <utility>

MDLIO::MDLIO(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

namespace {

using tarnex::Progress;

constexpr int recordsPerProgress = 10;

/// Writes the lines of one record from a molecule.
class RecordWriter {
public:
    RecordWriter(Molecule& recordMolecule, writer& recordOut, McProgressInterface* recordProgress)
        : topology(*recordMolecule.getTopology()), coords(recordMolecule.coords), out(recordOut),
          progress(recordProgress), numAtoms(static_cast<int>(topology.levels[0]->groups.size)),
          numBonds(static_cast<int>(topology.levels[1]->groups.size)) {
        MtGroupingLevel* atoms = topology.getLevel(0);
        atomicNumbers = atoms->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
        formalCharges = topology.getAtomFormalChargeAttribute(MolTopology::FIND);
        implicitHydrogens = atoms->integerAttribute("implicit_hnum", MtGroupingLevel::FIND, true);
        bondTypes = topology.getLevel(1)->integerAttribute("type", MtGroupingLevel::FIND, true);
    }

    /// False if the user stopped the work.
    bool write(char const* name) {
        writeHeader(name);
        tarnex::mdl::CountsLine{numAtoms, numBonds}.write(out);
        if (!writeAtoms() || !writeBonds()) return false;
        out.write("M END\n\n");
        writeDataItems();
        return true;
    }

private:
    void writeHeader(char const* name);
    bool writeAtoms();
    bool writeBonds();
    void writeDataItems();

    bool interruptedAt(int line, int linesOfBlocksBefore) const {
        if (!progress || line % tarnex::mdl::linesPerProgress != 0) return false;
        return progress.interruptedAt(static_cast<float>(linesOfBlocksBefore + line) /
                                      static_cast<float>(numAtoms + numBonds));
    }

    MolTopology& topology;
    McDArray<McVec3f> const& coords;
    writer& out;
    Progress progress;
    molchem::ElementTable const& elements = tarnex::elementTable();
    int numAtoms;
    int numBonds;
    MtIntegerAttribute* atomicNumbers;
    MtIntegerAttribute* formalCharges;
    MtIntegerAttribute* implicitHydrogens;
    MtIntegerAttribute* bondTypes;
};

/// Three lines: the name, the program, and an empty comment.
void RecordWriter::writeHeader(char const* name) {
    auto const* named = dynamic_cast<MolDataString const*>(topology.getData("name"));
    out.write(named ? named->getValue().data : name);
    out.write("\n -VelorNelst-\n\n");
}

bool RecordWriter::writeAtoms() {
    for (int i = 0; i < numAtoms; ++i) {
        if (interruptedAt(i, 0)) return false;
        tarnex::mdl::AtomLine line;
        if (i < coords.size) line.position = coords[i];
        int const atomicNumber = atomicNumbers ? atomicNumbers->getValue(i) : 0;
        line.symbol = tarnex::FieldText(tarnex::packed(elements.getElement(atomicNumber)->getSymbol()));
        if (formalCharges) line.chargeCode = tarnex::mdl::AtomLine::codeOfCharge(formalCharges->getValue(i));
        if (implicitHydrogens) {
            line.hydrogenCount = static_cast<int>(static_cast<unsigned>(implicitHydrogens->getValue(i)) + 1U);
        }
        line.write(out);
    }
    return true;
}

bool RecordWriter::writeBonds() {
    McDArray<MtGroup*> const& bonds = topology.getLevel(1)->groups;
    for (int i = 0; i < numBonds; ++i) {
        if (interruptedAt(i, numAtoms)) return false;
        tarnex::NumberedBond const bond(topology, bonds[i]);
        int const type = bondTypes ? bondTypes->getValue(i) : 0;
        tarnex::mdl::BondLine{bond.firstAtom, bond.secondAtom, type}.write(out, bondTypes != nullptr);
    }
    return true;
}

void RecordWriter::writeDataItems() {
    McString value;
    for (int i = 0; i < topology.getNumData(); ++i) {
        MolData const* datum = topology.getData(i);
        out.write("> <");
        out.write(datum->getName());
        out.write(">\n");
        datum->getValueAsString(value);
        out.write(value);
        out.write("\n\n");
    }
}

void writeRecordEnd(writer& out) {
    out.write(tarnex::mdl::recordEnd);
    out.write("\n");
}

/// Takes a pointer out of its place and puts it back at the end of the scope.
template <class T>
class TakenAway {
public:
    explicit TakenAway(T*& pointerPlace) : place(pointerPlace), taken(std::exchange(pointerPlace, nullptr)) {}
    ~TakenAway() { place = taken; }
    TakenAway(TakenAway const&) = delete;
    TakenAway& operator=(TakenAway const&) = delete;
    T* get() const { return taken; }

private:
    T*& place;
    T* taken;
};

} // namespace

bool MDLIO::checkNumAtomsBonds(MolTopology const* topology) {
    constexpr int limit = 999; // the counts have three columns
    if (topology->levels[0]->groups.size > limit) {
        tarnex::report(messages, "Molecule contains too many atoms for sdf format\n");
        return false;
    }
    if (topology->levels[1]->groups.size > limit) {
        tarnex::report(messages, "Molecule contains too many bonds for sdf format\n");
        return false;
    }
    return true;
}

bool MDLIO::writeMDLMolecule(Molecule* molecule, char const* name, writer& out) {
    if (!checkNumAtomsBonds(molecule->getTopology())) return false;
    tarnex::WorkingPhase const phase(progress, "");
    if (RecordWriter(*molecule, out, progress).write(name)) return true;
    // The molecule goes with the work, unless a handle holds it.
    McHandle<Molecule> const last(molecule);
    return false;
}

bool MDLIO::writeMDLMolecule(Molecule* molecule, char const* filename) {
    if (!molecule || !molecule->getTopology()) {
        tarnex::report(messages, "Empty molecule !\n");
        return false;
    }
    writer out(filename);
    if (!out.isOpen()) {
        tarnex::report(messages, "Could not create file !\n");
        return false;
    }
    try {
        writeMDLMolecule(molecule, filename, out);
    } catch (Parse_Error const& error) {
        tarnex::report(messages, "The file ", filename, " is not a valid sdf file. ", error.message, "\n");
        return false;
    }
    return true;
}

McHandle<Molecule> MDLIO::firstStep(MolTrajectory* trajectory) {
    if (trajectory && trajectory->getTopology()) {
        McHandle<Molecule> molecule(new Molecule(trajectory->getTopology(), false));
        if (trajectory->getTimeStep(0, molecule)) return molecule;
    }
    tarnex::report(messages, "First time step of trajectory corrupted!\n");
    return nullptr;
}

bool MDLIO::writeMDLMolTrajectory(MolTrajectory* trajectory, char const* filename) {
    McHandle<Molecule> const molecule = firstStep(trajectory);
    if (!molecule) return false;
    writer out(filename);
    if (!out.isOpen()) {
        tarnex::report(messages, "Could not create file !\n");
        return false;
    }
    for (int step = 0; step < trajectory->getNumTimeSteps(); ++step) {
        if (!trajectory->getTimeStep(step, molecule)) return false;
        if (!writeMDLMolecule(molecule, filename, out)) return false;
        writeRecordEnd(out);
    }
    return true;
}

bool MDLIO::writeMDLMolTrajectoryBundle(McDArray<MolTrajectory*> trajectories, char const* filename) {
    writer out(filename);
    if (!out.isOpen()) {
        tarnex::report(messages, "Could not create file !\n");
        return false;
    }
    // The records report nothing: progress goes by trajectories.
    TakenAway<McProgressInterface> const takenProgress(progress);
    Progress const bundleProgress(takenProgress.get());
    tarnex::WorkingPhase const phase(bundleProgress, "");
    for (int i = 0; i < trajectories.size; ++i) {
        float const part = static_cast<float>(i) / static_cast<float>(trajectories.size);
        if (i % recordsPerProgress == 0 && bundleProgress.interruptedAt(part)) return false;
        MolTrajectory* trajectory = trajectories[i];
        if (!trajectory || trajectory->getNumTimeSteps() == 0) continue;
        McHandle<Molecule> const molecule = firstStep(trajectory);
        if (!molecule) return false;
        if (!writeMDLMolecule(molecule, filename, out)) {
            tarnex::report(messages, "Failed writing.\n");
            return false;
        }
        writeRecordEnd(out);
    }
    return true;
}
