#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"

/// The library's façade: reads and writes a file by a selector, or by its extension. Nothing else than the lines that
/// tell of a failure, on standard output, is reported; the format classes tell more to callers that use them directly.
///
/// Any integer may be cast to a selector; an unknown value fails like a file that cannot be read.
class TARNEX_API TarnexWizard {
public:
    enum class ReadMolecules : int {
        READ_AMBER = 0,
        READ_GRO = 1,
        READ_GRO_SINGLE = 2,
        READ_MDL = 3,
        READ_PDB = 4,
        READ_TRIPOS = 5,
        READ_UNICHEM = 6,
        READ_QLT = 7,
        READ_AUTO = 8
    };

    enum class ReadTrajectories : int {
        READ_AMBER = 0,
        READ_DCD = 1,
        READ_GRO = 2,
        READ_GRO_SINGLE = 3,
        READ_MDL = 4,
        READ_PDB = 5,
        READ_QLT = 8,
        READ_AUTO = 9
    };

    enum class ReadBundles : int { READ_PDB = 1, READ_QLT = 2, READ_TRIPOS = 3, READ_AUTO = 4 };

    enum class WriteMolecules : int {
        WRITE_GRO = 0,
        WRITE_GRO_SINGLE = 1,
        WRITE_MDL = 2,
        WRITE_PDB = 3,
        WRITE_TRIPOS = 4,
        WRITE_UNICHEM = 5,
        WRITE_QLT = 6
    };

    enum class WriteTrajectories : int {
        WRITE_GRO = 0,
        WRITE_GRO_SINGLE = 1,
        WRITE_MDL = 2,
        WRITE_PDB = 3,
        WRITE_QLT = 4
    };

    enum class WriteBundles : int { WRITE_PDB = 1, WRITE_QLT = 2, WRITE_TRIPOS = 3 };

    /// Reads the first molecule of a file. `second` names a further file for the formats that need one and may be null.
    /// The molecule belongs to the caller; null on failure. Like all operations here, it lets exceptions of a format
    /// pass: `Parse_Error` where one reads, `FloatConversion_Error` and `McException` where one writes.
    static Molecule* readMolecule(char const* name, ReadMolecules type, char const* second);

    /// Reads a trajectory. `second` and `third` name further files and may be null. The trajectory has reference count
    /// 0 and belongs to the caller; null on failure.
    static MolTrajectory* readMolTrajectory(char const* name, ReadTrajectories type, char const* second,
                                            char const* third);

    /// Reads all molecules or trajectories of a file; empty on failure.
    static McDArray<McHandle<MolTrajectory>> readBundle(char const* name, ReadBundles type);

    /// Writes a molecule, which stays the caller's. Non-zero on success.
    static int writeMolecule(char const* name, Molecule* molecule, WriteMolecules type);

    /// Writes a trajectory, which stays the caller's. Non-zero on success.
    static int writeMolTrajectory(char const* name, MolTrajectory* trajectory, WriteTrajectories type);

    /// Writes a bundle. Non-zero on success. The array must not be empty for `WRITE_PDB`.
    static int writeBundle(char const* name, McDArray<McHandle<MolTrajectory>> bundle, WriteBundles type);

    /// Reads a fixed set of sample files, one of each format, in "/share/molecules/MolWizardTest/Load/Molecules/".
    /// Tells on standard output which of them failed.
    static void readTestMolecule();
    /// Writes a molecule, which stays the caller's, in each format to "/share/molecules/MolWizardTest/Save/Molecules/".
    static void writeTestMolecule(Molecule* molecule);
    /// As `writeTestMolecule`, to "/share/molecules/MolWizardTest/Save/MolTrajectories/".
    static void writeTestMolTrajectory(MolTrajectory* trajectory);
    /// Does nothing.
    static void readTestMolTrajectory();
};

/// The entry of the package: the version as major*10000 + minor*100 + patch.
extern "C" TARNEX_API int velorpackage_tarnex();
