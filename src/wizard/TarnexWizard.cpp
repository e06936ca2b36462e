#include "wizard/TarnexWizard.h"

#include "amber/AMBERread.h"
#include "charmm/MolTrajectoryDCD.h"
#include "chemistry/Resource.h"
#include "formats/UniChemIO.h"
#include "gromacs/GROMACSread.h"
#include "gromacs/GROMACSread_SINGLE.h"
#include "gromacs/GROMACSwrite.h"
#include "gromacs/GROMACSwrite_SINGLE.h"
#include "mdl/MDLIO.h"
#include "model/MolTrajectoryMem.h"
#include "pdb/PDBread.h"
#include "pdb/PDBwrite.h"
#include "qlt/MolTrajectoryVRK.h"
#include "tripos/TriposIO.h"

#include <cstdio>
#include <cstring>

namespace {

using Bundle = McDArray<McHandle<MolTrajectory>>;

// ---- Failure messages ----

constexpr char const* moleculeNotRead = "Unable to read Molecule of type: %d\nNot saving molecule to %s\n\n";
constexpr char const* trajectoryNotRead = "Unable to read Trajectory of type: %d\nNot saving Trajectory to %s\n\n";
constexpr char const* bundleNotRead = "Unable to read Bundle of type: %d\nNot loading Bundle to %s\n\n";
constexpr char const* moleculeNotWritten = "Unable to write Molecule of type: %d\nNot saving molecule to %s\n\n";
constexpr char const* trajectoryNotWritten = "Unable to write MolTrajectory of type: %d\nNot saving molecule to %s\n\n";
constexpr char const* bundleNotWritten = "Unable to write Bundle of type: %d\nNot saving Bundle to %s\n\n";

/// Unknown values are told twice by most operations.
template <class Selector>
void printFailure(char const* message, Selector type, char const* name, int times) {
    for (int i = 0; i < times; ++i) std::printf(message, static_cast<int>(type), name);
}

// ---- Choice of a format ----

bool hasExtension(char const* name, char const* extension) {
    if (!name) return false;
    std::size_t const nameLength = std::strlen(name);
    std::size_t const length = std::strlen(extension);
    return nameLength >= length && std::strcmp(name + nameLength - length, extension) == 0;
}

/// One test of an automatic choice: which of the names are looked at, and what a match selects.
template <class Selector>
struct ExtensionRule {
    char const* extension;
    bool testsFirst;
    bool testsSecond;
    bool testsThird;
    Selector chosen;

    bool matches(char const* first, char const* second, char const* third) const {
        return (testsFirst && hasExtension(first, extension)) || (testsSecond && hasExtension(second, extension)) ||
               (testsThird && hasExtension(third, extension));
    }
};

template <class Entry, std::size_t N, class Selector>
Entry const* findEntry(Entry const (&table)[N], Selector type) {
    for (Entry const& entry : table) {
        if (entry.type == type) return &entry;
    }
    return nullptr;
}

// ---- Reading ----

/// The first step of the first trajectory. The bundle goes; the molecule keeps the topology alive.
Molecule* firstMolecule(Bundle const& bundle) {
    if (bundle.size == 0) return nullptr;
    auto* molecule = new Molecule(bundle[0]->getTopology(), false);
    bundle[0]->getTimeStep(0, molecule);
    return molecule;
}

Molecule* readAmberMolecule(char const* name, char const*) {
    return AMBERread(nullptr, nullptr).readAmberMolecule(name);
}

Molecule* readGroMolecule(char const* name, char const* second) {
    return GROMACSread(nullptr, nullptr).readGROMACSMolecule(name, second);
}

Molecule* readGroSingleMolecule(char const* name, char const* second) {
    return GROMACSread_SINGLE(nullptr, nullptr).readGROMACS_SINGLEMolecule(name, second);
}

Molecule* readMdlMolecule(char const* name, char const*) {
    return firstMolecule(MDLIO(nullptr, nullptr).readMDLMolTrajectoryBundle(name));
}

void readPdbBundle(char const* name, Bundle& bundle) {
    PDBread(nullptr, nullptr).readPDBMolTrajectoryBundle(name, bundle);
}

Molecule* readPdbMolecule(char const* name, char const*) {
    Bundle bundle;
    readPdbBundle(name, bundle);
    return firstMolecule(bundle);
}

Molecule* readTriposMolecule(char const* name, char const*) {
    return TriposIO(nullptr, nullptr).readTriposMolecule(name);
}

Molecule* readUniChemMolecule(char const* name, char const*) {
    return UniChemIO(nullptr, nullptr).readUniChemMolecule(name);
}

Molecule* readQltMolecule(char const* name, char const*) {
    Bundle bundle;
    MolTrajectoryVRK::readBundle(name, bundle);
    return firstMolecule(bundle);
}

MolTrajectory* readAmberTrajectory(char const* name, char const* second, char const* third) {
    return AMBERread(nullptr, nullptr).readAmberMolTrajectory(name, second, third);
}

MolTrajectory* readGroTrajectory(char const* name, char const* second, char const* third) {
    return GROMACSread(nullptr, nullptr).readGROMACSMolTrajectory(name, second, third);
}

MolTrajectory* readGroSingleTrajectory(char const* name, char const* second, char const* third) {
    return GROMACSread_SINGLE(nullptr, nullptr).readGROMACS_SINGLEMolTrajectory(name, second, third);
}

MolTrajectory* readMdlTrajectory(char const* name, char const*, char const*) {
    return MDLIO(nullptr, nullptr).readMDLMolTrajectory(name);
}

MolTrajectory* readPdbTrajectory(char const* name, char const*, char const*) {
    Bundle bundle;
    readPdbBundle(name, bundle);
    return bundle.size == 0 ? nullptr : new MolTrajectoryMem(bundle[0]);
}

/// The first trajectory outlives its bundle.
MolTrajectory* readQltTrajectory(char const* name, char const*, char const*) {
    Bundle bundle;
    MolTrajectoryVRK::readBundle(name, bundle);
    if (bundle.size == 0) return nullptr;
    McHandle<MolTrajectory> first = bundle[0];
    bundle.clear();
    return first.handOut();
}

MolTrajectory* readDcdTrajectory(char const* name, char const* second, char const*) {
    char const* names[] = {name, second};
    auto* reader = new MolTrajectoryDCD(nullptr);
    MolTrajectory* trajectory = reader->readDCDMolTrajectory(2, names);
    if (!trajectory) delete reader;
    return trajectory;
}

void readTriposBundle(char const* name, Bundle& bundle) {
    TriposIO(nullptr, nullptr).readTriposBundle(name, bundle);
}

void readQltBundle(char const* name, Bundle& bundle) {
    MolTrajectoryVRK::readBundle(name, bundle);
}

using Molecules = TarnexWizard::ReadMolecules;
using Trajectories = TarnexWizard::ReadTrajectories;
using Bundles = TarnexWizard::ReadBundles;

/// A format of the tables below: a new one is one line there.
struct MoleculeReader {
    Molecules type;
    Molecule* (*read)(char const* name, char const* second);
};

constexpr MoleculeReader moleculeReaders[] = {
    {Molecules::READ_AMBER, readAmberMolecule},
    {Molecules::READ_GRO, readGroMolecule},
    {Molecules::READ_GRO_SINGLE, readGroSingleMolecule},
    {Molecules::READ_MDL, readMdlMolecule},
    {Molecules::READ_PDB, readPdbMolecule},
    {Molecules::READ_TRIPOS, readTriposMolecule},
    {Molecules::READ_UNICHEM, readUniChemMolecule},
    {Molecules::READ_QLT, readQltMolecule},
};

constexpr ExtensionRule<Molecules> moleculeRules[] = {
    {".qlt", true, false, false, Molecules::READ_QLT},     {".gro", true, false, false, Molecules::READ_GRO},
    {".gro", false, true, false, Molecules::READ_GRO},     {".pdb", true, false, false, Molecules::READ_PDB},
    {".uni", true, false, false, Molecules::READ_UNICHEM}, {".mol2", true, false, false, Molecules::READ_TRIPOS},
    {".sdf", true, false, false, Molecules::READ_MDL},     {".top", true, false, false, Molecules::READ_AMBER},
};

struct TrajectoryReader {
    Trajectories type;
    /// 0 for a reader that needs no second name.
    int messagesWithoutSecond;
    /// Null for a value that is known and has no reader.
    MolTrajectory* (*read)(char const* name, char const* second, char const* third);
};

constexpr auto xyzTrajectory = static_cast<Trajectories>(7);

constexpr TrajectoryReader trajectoryReaders[] = {
    {Trajectories::READ_AMBER, 1, readAmberTrajectory},
    {Trajectories::READ_DCD, 2, readDcdTrajectory},
    {Trajectories::READ_GRO, 1, readGroTrajectory},
    {Trajectories::READ_GRO_SINGLE, 1, readGroSingleTrajectory},
    {Trajectories::READ_MDL, 0, readMdlTrajectory},
    {Trajectories::READ_PDB, 0, readPdbTrajectory},
    {xyzTrajectory, 0, nullptr},
    {Trajectories::READ_QLT, 0, readQltTrajectory},
};

constexpr ExtensionRule<Trajectories> trajectoryRules[] = {
    {".qlt", true, false, false, Trajectories::READ_QLT}, {".trr", true, true, true, Trajectories::READ_GRO},
    {".top", true, true, true, Trajectories::READ_AMBER}, {".vde", true, false, false, Trajectories::READ_PDB},
    {".sdf", true, false, false, Trajectories::READ_MDL}, {".dcd", true, true, false, Trajectories::READ_DCD},
    {".xyz", true, false, false, xyzTrajectory},
};

struct BundleReader {
    Bundles type;
    void (*read)(char const* name, Bundle& bundle);
};

constexpr BundleReader bundleReaders[] = {
    {Bundles::READ_PDB, readPdbBundle},
    {Bundles::READ_QLT, readQltBundle},
    {Bundles::READ_TRIPOS, readTriposBundle},
};

constexpr ExtensionRule<Bundles> bundleRules[] = {
    {".qlt", true, false, false, Bundles::READ_QLT},
    {".pdb", true, false, false, Bundles::READ_PDB},
};

// ---- Writing ----

bool writeGroMolecule(Molecule* molecule, char const* name) {
    return GROMACSwrite(nullptr, nullptr).writeGROMACSMolecule(molecule, name) != 0;
}

bool writeGroSingleMolecule(Molecule* molecule, char const* name) {
    return GROMACSwrite_SINGLE(nullptr, nullptr).writeGROMACS_SINGLEMolecule(molecule, name) != 0;
}

/// The -1 of a trajectory that could not be written is no 0 and passes as well.
bool writeGroTrajectory(MolTrajectory* trajectory, char const* name) {
    return GROMACSwrite(nullptr, nullptr).writeGROMACSMolTrajectory(trajectory, name) != 0;
}

bool writeGroSingleTrajectory(MolTrajectory* trajectory, char const* name) {
    return GROMACSwrite_SINGLE(nullptr, nullptr).writeGROMACS_SINGLEMolTrajectory(trajectory, name) != 0;
}

bool writeMdlMolecule(Molecule* molecule, char const* name) {
    return MDLIO(nullptr, nullptr).writeMDLMolecule(molecule, name);
}

bool writeMdlTrajectory(MolTrajectory* trajectory, char const* name) {
    return MDLIO(nullptr, nullptr).writeMDLMolTrajectory(trajectory, name);
}

PDBwrite pdbWriter() {
    return {molchem::Resource::getInstance()->residueDatabase, nullptr, nullptr};
}

bool writePdbMolecule(Molecule* molecule, char const* name) {
    return pdbWriter().writePDBMolecule(molecule, name, false);
}

bool writePdbTrajectory(MolTrajectory* trajectory, char const* name) {
    return pdbWriter().writePDBMolTrajectory(trajectory, name, false);
}

/// Only the first trajectory has room in the file.
bool writePdbBundle(Bundle const& bundle, char const* name) {
    return writePdbTrajectory(bundle.size > 0 ? static_cast<MolTrajectory*>(bundle[0]) : nullptr, name);
}

bool writeTriposMolecule(Molecule* molecule, char const* name) {
    return TriposIO(nullptr, nullptr).writeTriposMolecule(molecule, name);
}

/// Trajectories that are no objects with coordinates at hand are passed over.
bool writeTriposBundle(Bundle const& bundle, char const* name) {
    McDArray<MolObject*> objects;
    for (MolTrajectory* trajectory : bundle) {
        if (auto* object = dynamic_cast<MolObject*>(trajectory)) objects.append(object);
    }
    return TriposIO(nullptr, nullptr).writeTriposBundle(objects, name);
}

bool writeUniChemMolecule(Molecule* molecule, char const* name) {
    return UniChemIO(nullptr, nullptr).writeUniChemMolecule(molecule, name);
}

bool writeNoBundle(Bundle const&, char const*) {
    return false;
}

template <class Selector, class Object>
struct WriterEntry {
    Selector type;
    bool (*write)(Object object, char const* name);
};

constexpr WriterEntry<TarnexWizard::WriteMolecules, Molecule*> moleculeWriters[] = {
    {TarnexWizard::WriteMolecules::WRITE_GRO, writeGroMolecule},
    {TarnexWizard::WriteMolecules::WRITE_GRO_SINGLE, writeGroSingleMolecule},
    {TarnexWizard::WriteMolecules::WRITE_MDL, writeMdlMolecule},
    {TarnexWizard::WriteMolecules::WRITE_PDB, writePdbMolecule},
    {TarnexWizard::WriteMolecules::WRITE_TRIPOS, writeTriposMolecule},
    {TarnexWizard::WriteMolecules::WRITE_UNICHEM, writeUniChemMolecule},
    {TarnexWizard::WriteMolecules::WRITE_QLT, MolTrajectoryVRK::writeQLTMolecule},
};

constexpr WriterEntry<TarnexWizard::WriteTrajectories, MolTrajectory*> trajectoryWriters[] = {
    {TarnexWizard::WriteTrajectories::WRITE_GRO, writeGroTrajectory},
    {TarnexWizard::WriteTrajectories::WRITE_GRO_SINGLE, writeGroSingleTrajectory},
    {TarnexWizard::WriteTrajectories::WRITE_MDL, writeMdlTrajectory},
    {TarnexWizard::WriteTrajectories::WRITE_PDB, writePdbTrajectory},
    {TarnexWizard::WriteTrajectories::WRITE_QLT, MolTrajectoryVRK::writeQLTMolTrajectory},
};

constexpr WriterEntry<TarnexWizard::WriteBundles, Bundle const&> bundleWriters[] = {
    {TarnexWizard::WriteBundles::WRITE_PDB, writePdbBundle},
    {TarnexWizard::WriteBundles::WRITE_QLT, writeNoBundle},
    {TarnexWizard::WriteBundles::WRITE_TRIPOS, writeTriposBundle},
};

} // namespace

Molecule* TarnexWizard::readMolecule(char const* name, ReadMolecules type, char const* second) {
    if (type == ReadMolecules::READ_AUTO) {
        for (auto const& rule : moleculeRules) {
            if (rule.matches(name, second, nullptr)) return readMolecule(name, rule.chosen, second);
        }
    }
    MoleculeReader const* entry = findEntry(moleculeReaders, type);
    Molecule* molecule = entry ? entry->read(name, second) : nullptr;
    if (!molecule) printFailure(moleculeNotRead, type, name, entry ? 1 : 2);
    return molecule;
}

MolTrajectory* TarnexWizard::readMolTrajectory(char const* name, ReadTrajectories type, char const* second,
                                               char const* third) {
    if (type == ReadTrajectories::READ_AUTO) {
        for (auto const& rule : trajectoryRules) {
            if (rule.matches(name, second, third)) return readMolTrajectory(name, rule.chosen, second, third);
        }
        printFailure(bundleNotRead, type, name, 1);
        printFailure(trajectoryNotRead, type, name, 1);
        return nullptr;
    }
    TrajectoryReader const* entry = findEntry(trajectoryReaders, type);
    if (entry && entry->messagesWithoutSecond > 0 && !second) {
        printFailure(trajectoryNotRead, type, name, entry->messagesWithoutSecond);
        return nullptr;
    }
    MolTrajectory* trajectory = entry && entry->read ? entry->read(name, second, third) : nullptr;
    if (!trajectory) printFailure(trajectoryNotRead, type, name, entry ? 1 : 2);
    return trajectory;
}

McDArray<McHandle<MolTrajectory>> TarnexWizard::readBundle(char const* name, ReadBundles type) {
    Bundle bundle;
    ReadBundles chosen = type;
    if (type == ReadBundles::READ_AUTO) {
        for (auto const& rule : bundleRules) {
            if (!rule.matches(name, nullptr, nullptr)) continue;
            chosen = rule.chosen;
            break;
        }
    }
    if (BundleReader const* entry = findEntry(bundleReaders, chosen))
        entry->read(name, bundle);
    else
        printFailure(bundleNotRead, chosen, name, 1);
    return bundle;
}

int TarnexWizard::writeMolecule(char const* name, Molecule* molecule, WriteMolecules type) {
    auto const* entry = findEntry(moleculeWriters, type);
    bool const written = entry && entry->write(molecule, name);
    if (!written) printFailure(moleculeNotWritten, type, name, entry ? 1 : 2);
    return written ? 1 : 0;
}

int TarnexWizard::writeMolTrajectory(char const* name, MolTrajectory* trajectory, WriteTrajectories type) {
    auto const* entry = findEntry(trajectoryWriters, type);
    bool const written = entry && entry->write(trajectory, name);
    if (!written) printFailure(trajectoryNotWritten, type, name, entry ? 1 : 2);
    return written ? 1 : 0;
}

// NOLINTNEXTLINE(performance-unnecessary-value-param): the array comes by value, as from every host
int TarnexWizard::writeBundle(char const* name, McDArray<McHandle<MolTrajectory>> bundle, WriteBundles type) {
    auto const* entry = findEntry(bundleWriters, type);
    if (!entry) printFailure(bundleNotWritten, type, name, 1);
    return entry && entry->write(bundle, name) ? 1 : 0;
}
