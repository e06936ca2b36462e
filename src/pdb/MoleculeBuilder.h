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
    /// How a line names its residue.
    struct ResidueKey {
        std::uint64_t text;
        bool isHet;
        bool operator==(ResidueKey const&) const = default;
    };

    void makeAtomAttributes();
    void makeResidueAttributes();
    void enterChain(ShortText name, bool isHet);
    void setAtomAttributes(AtomLine const& line, int atom, ShortText nameOfChain);
    void enterResidue(AtomLine const& line, int atom, ShortText nameOfChain, bool isHet);
    void startResidue(AtomLine const& line, int atom, bool hasChain);
    void setResidueName(int ix);

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
    RepeatedReal occupancy;
    RepeatedReal temperature;

    // The newest residue and chain, which are those of the last atom unless that is in no chain.
    MtIntraLevelRange* residue = nullptr;
    ResidueKey residueKey{};
    ShortText idOfResidue; ///< without the prefix of HETATM records
    MtIntraLevelRange* chain = nullptr;
    ShortText chainName;
    bool lastAtomHasChain = false;
    /// The newest chain has no residue of its own yet.
    bool newChainPending = false;
    bool terSeen = false;
};

} // namespace tarnex::pdb
