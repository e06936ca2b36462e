#pragma once

#include "foundation/McDArray.h"
#include "model/Molecule.h"
#include "model/MtListGroups.h"
#include "pdb/records.h"

#include <cstdint>

namespace tarnex::pdb {

/// The atom of each serial number, the last one if several atoms have the same.
class SerialTable {
public:
    void set(int serial, int atom);
    /// -1 for a serial that no atom has.
    int atomOf(int serial) const;

private:
    // What fits in five columns.
    static constexpr int lowest = -9999;

    McDArray<int> atoms;
};

/// Makes atoms, residues, chains and bonds of the records of one model, in the order of the file. The topology must be
/// empty.
class MoleculeBuilder {
public:
    /// Makes the levels and the attributes.
    explicit MoleculeBuilder(Molecule& moleculeToFill);

    /// Reserves room.
    void expectAtoms(std::int64_t numAtoms);

    void addAtom(AtomLine const& line, bool isHet);
    /// Notes a TER record: the next ATOM starts a new chain.
    void endChain() { terSeen = true; }
    /// Makes the bonds that are not there yet.
    void addBonds(ConectLine const& line);

private:
    /// Enough for all texts that are put together from a line.
    static constexpr std::size_t nameRoom = 64;

    /// What the id of a residue is made from.
    struct ResidueKey {
        FieldText chainName;
        int number;
        FieldText insertionCode;
        bool isHet;
        bool operator==(ResidueKey const&) const = default;
    };

    void makeAtomAttributes();
    void makeResidueAttributes();
    void enterChain(FieldText const& name, bool isHet);
    void setAtomAttributes(AtomLine const& line, int atom, FieldText const& nameOfChain);
    void enterResidue(AtomLine const& line, int atom, FieldText const& nameOfChain, bool isHet);
    void startResidue(AtomLine const& line, int atom, bool hasChain);

    Molecule& molecule;
    MolTopology& topology;
    int residuesIx;
    int chainsIx;

    MtStringAttribute* atomNames;
    MtStringAttribute* atomTypes;
    MtIntegerAttribute* atomicNumbers;
    MtFloatAttribute* radii;
    MtFloatAttribute* charges;
    MtFloatAttribute* temperatures;
    MtFloatAttribute* occupancies;
    MtIntegerAttribute* bondTypes;
    MtStringAttribute* residueNames;
    MtStringAttribute* residueTypes;
    MtIntegerAttribute* residueNumbers;
    MtStringAttribute* chainNames;

    SerialTable atomOfSerial;

    // The newest residue and chain, which are those of the last atom unless that is in no chain.
    MtIntraLevelRange* residue = nullptr;
    ResidueKey residueKey{};
    char residueId[nameRoom] = "";
    MtIntraLevelRange* chain = nullptr;
    FieldText chainName;
    bool lastAtomHasChain = false;
    /// The newest chain has no residue of its own yet.
    bool newChainPending = false;
    bool terSeen = false;
};

} // namespace tarnex::pdb
