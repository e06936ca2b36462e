#pragma once

#include "foundation/McBitfield.h"
#include "foundation/McDArray.h"
#include "foundation/McFilename.h"
#include "foundation/McHandle.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"
#include "model/Molecule.h"
#include "model/molInfo.h"
#include "textio/writer.h"

#include <iosfwd>

class McProgressInterface;

/// Writes a molecule or a trajectory as a Protein Data Bank file of 80 columns ("Protein Data Bank Contents Guide",
/// wwPDB). The topology may come from any format: what it lacks is derived or written as a default.
///
/// The tables between the `generate` and the `write` functions hold indices of the topology.
class TARNEX_API PDBwrite {
public:
    /// One part of an element of the secondary structure: a helix or turn has one, a sheet one for each strand.
    struct TARNEX_API secInfo {
        MtGroupRef group;
        /// The residues at the start and the end of each segment.
        McDArray<int> start;
        McDArray<int> end;
        /// All residues of the part, in the order of the group.
        McDArray<int> residues;
    };

    /// The message stream and the progress interface may be null; neither is owned.
    PDBwrite(McFilename residueDatabasePath, std::ostream* messageStream, McProgressInterface* progressInterface);

    /// Writes one set of coordinates. `chargeColumn` puts the charge as a decimal number in columns 71-76 instead of
    /// element and charge in columns 77-80. False, with a message, for a null molecule and a file that cannot be made.
    /// The molecule stays the caller's.
    bool writePDBMolecule(Molecule* moleculeToWrite, char const* filename, bool chargeColumn);
    /// Writes the steps as MODEL blocks, numbered from 0. False for a null trajectory, one without steps, and a file
    /// that cannot be made. The trajectory stays the caller's.
    bool writePDBMolTrajectory(MolTrajectory* trajectory, char const* filename, bool chargeColumn);

    /// Which residues are written as HETATM: all but those that the residue database knows as water.
    void generateResidueData1(molInfo const& info, McBitfield& hetResidue);
    /// The order, numbers and chains of residues, and the segments of the secondary structure.
    void generateResidueData2(molInfo const& info, MolTopology const* topology, McDArray<int>& residueOrder,
                              McDArray<int>& pdbIndexOfResidue, McDArray<int>& chainOfResidue,
                              McDArray<McDArray<secInfo>>& secondaryStructure);
    /// The order of atoms: by `residueOrder`, then those of no residue. An atom of two residues goes with the first.
    /// The three last arrays must have the size of level 0.
    void generateAtomData1(molInfo const& info, McDArray<int> const& residueOrder, McDArray<int>& atomOrder,
                           McDArray<int>& serialOfAtom, McDArray<int>& residueOfAtom);
    /// Which atoms lie in a residue of a chain.
    void generateAtomData2(molInfo const& info, McBitfield& atomInChain);
    /// The bonds that CONECT and SSBOND records name: those of HETATM residues, and those between two atoms of sulfur,
    /// by their types. `bondedAtoms` must have the size of level 0.
    void generateBondData(molInfo const& info, McDArray<int> const& residueOfAtom, McBitfield const& hetResidue,
                          McDArray<McDArray<int>>& bondedAtoms, McDArray<int>& ssBonds);

    /// The backbone atom "C" of a residue, or -1.
    int getCAtomOfResidue(molInfo const& info, int residue) const;
    /// The backbone atom "N" of a residue, or -1.
    int getNAtomOfResidue(molInfo const& info, int residue) const;
    /// Whether there is a peptide bond from C of the first to N of the second residue of `molecule`.
    bool areResiduesBonded(molInfo const& info, int residueA, int residueB) const;

    /// The text of a chain, at most three characters of its name, in `text`, which has room for four; without a level
    /// of chains those of the index. True for "HET", which is no chain; its text is empty, and so is that of "NIL".
    bool chainIdConversion(molInfo const& info, int chain, char* text) const;

    void writeHeaderRecords(writer& out);
    void writeSeqResRecords(writer& out, molInfo const& info, McBitfield const& hetResidue, int& numSeqRes);
    void writeSecStructRecords(writer& out, molInfo const& info, McDArray<McDArray<secInfo>> const& secondaryStructure,
                               McDArray<int> const& pdbIndexOfResidue, McDArray<int> const& chainOfResidue,
                               int& numHelix, int& numSheet, int& numTurn);
    void writeSiteRecords(writer& out, molInfo const& info, McDArray<int> const& pdbIndexOfResidue,
                          McDArray<int> const& chainOfResidue, int& numSite);
    void writeSSBondRecords(writer& out, molInfo const& info, McDArray<int> const& ssBonds,
                            McDArray<int> const& residueOfAtom, McDArray<int> const& chainOfResidue,
                            McDArray<int> const& pdbIndexOfResidue, int& numSsBond);
    void writeAtomRecords(writer& out, molInfo const& info, McVec3f const* coordinates, McBitfield const& atomInChain,
                          McBitfield const& hetResidue, McDArray<int> const& atomOrder,
                          McDArray<int> const& residueOfAtom, McDArray<int>& serialOfAtom,
                          McDArray<int> const& pdbIndexOfResidue, McDArray<int> const& chainOfResidue, int& numAtom,
                          int& numTer, bool chargeColumn);
    void writeConectRecords(writer& out, McDArray<int> const& serialOfAtom, McDArray<McDArray<int>> const& bondedAtoms,
                            int& numConect);
    void writeMasterRecord(writer& out, int numHelix, int numSheet, int numTurn, int numSite, int numAtom, int numTer,
                           int numConect, int numSeqRes);

    McFilename residueDatabase;
    /// May be null; not owned.
    std::ostream* messages;
    /// May be null; not owned.
    McProgressInterface* progress;
    /// What header data and peptide bonds are taken from. Set by the calls that write a whole file: the caller's
    /// molecule, or the first step of a trajectory, which the writer keeps.
    Molecule* molecule = nullptr;

private:
    McHandle<Molecule> firstStep;
};

/// Writes one record for each line of `text`; text behind the last line end is left out.
TARNEX_API void writeHeaderRecord(writer& out, char const* keyword, char const* text);
