#include "chemistry/ElementTable.h"
#include "foundation/Progress.h"
#include "foundation/report.h"
#include "pdb/PDBwrite.h"
#include "pdb/writeTables.h"
#include "pdb/writtenRecords.h"

#include <cstdlib>
#include <cstring>

namespace {

using tarnex::Progress;
using tarnex::pdb::AtomRecord;
using tarnex::pdb::isHet;
using tarnex::pdb::ResidueText;
using tarnex::pdb::valueAt;

constexpr int atomsPerProgress = 50;
constexpr int none = -1;

struct AtomTables {
    McBitfield const& atomInChain;
    McBitfield const& hetResidue;
    McDArray<int> const& atomOrder;
    McDArray<int> const& residueOfAtom;
    McDArray<int>& serialOfAtom;
    McDArray<int> const& pdbIndexOfResidue;
    McDArray<int> const& chainOfResidue;
};

/// Writes the atoms of one model, and TER behind the chains.
class AtomWriter {
public:
    AtomWriter(PDBwrite const& pdbWriter, writer& recordOut, std::ostream* messageStream, Progress const& progress,
               molInfo const& topologyInfo, AtomTables const& atomTables, bool withChargeColumn)
        : pdb(pdbWriter), out(recordOut), messages(messageStream), work(progress), info(topologyInfo),
          tables(atomTables), chargeColumn(withChargeColumn), numAtoms(static_cast<int>(info.atoms->groups.size)) {}

    /// Writes the atoms in or outside the chains. False if the user stopped the work.
    bool writeAtoms(bool inChains, McVec3f const* coordinates, int& numAtom, int& numTer);

private:
    /// What the atoms of one residue have in common.
    struct Residue {
        int atomsResidue = none;
        /// The residue or, for atoms without one, the first of the molecule.
        int index = 0;
        int chain = none;
        bool isHetResidue = true;
        ResidueText text;
        tarnex::pdb::ResidueField field{text};
    };

    bool isInterrupted(int numAtom) const;
    Residue describe(int residue) const;
    void writeAtom(int atom, bool inChain, int serial, McVec3f position) const;
    void setCharge(AtomRecord& record, int atom) const;
    bool isLastOfChain(int atom) const;
    void writeTer(int serial) const;

    PDBwrite const& pdb;
    writer& out;
    std::ostream* messages;
    Progress work;
    molInfo const& info;
    AtomTables const& tables;
    bool chargeColumn;
    int numAtoms;
    molchem::ElementTable const& elements = tarnex::elementTable();
    Residue current = describe(none);
};

bool AtomWriter::writeAtoms(bool inChains, McVec3f const* coordinates, int& numAtom, int& numTer) {
    for (int const atom : tables.atomOrder) {
        if (tables.atomInChain[static_cast<unsigned long>(atom)] != inChains) continue;
        ++numAtom;
        if (isInterrupted(numAtom)) return false;
        int const residue = valueAt(tables.residueOfAtom, atom, none);
        if (residue != current.atomsResidue) current = describe(residue);
        int const serial = numAtom + numTer;
        tables.serialOfAtom[atom] = serial;
        writeAtom(atom, inChains, serial, coordinates[atom]);
        if (inChains && !current.isHetResidue && isLastOfChain(atom)) {
            ++numTer;
            writeTer(numAtom + numTer);
        }
    }
    return true;
}

bool AtomWriter::isInterrupted(int numAtom) const {
    if (!work || numAtom % atomsPerProgress != 0) return false;
    auto const part = static_cast<double>(static_cast<float>(numAtom) / static_cast<float>(numAtoms));
    return work.interruptedAt(static_cast<float>(part * (0.7 - 0.1) + 0.1));
}

AtomWriter::Residue AtomWriter::describe(int residue) const {
    Residue result;
    result.atomsResidue = residue;
    result.text.number = 1;
    if (info.hasResidues && residue >= 0) {
        result.index = residue;
        if (info.residueType) result.text.type = info.residueType->getValue(residue);
        result.text.number = valueAt(tables.pdbIndexOfResidue, residue, 1);
        if (info.hasChains) result.chain = valueAt(tables.chainOfResidue, residue, none);
        if (result.chain >= 0 && pdb.chainIdConversion(info, result.chain, result.text.chain)) result.chain = none;
    }
    result.isHetResidue = isHet(tables.hetResidue, result.index);
    result.field = tarnex::pdb::ResidueField(result.text);
    return result;
}

void AtomWriter::writeAtom(int atom, bool inChain, int serial, McVec3f position) const {
    char const* symbol = elements.getElement(info.atomicNumber ? info.atomicNumber->getValue(atom) : 1)->getSymbol();
    AtomRecord record{
        .isHet = !inChain || current.isHetResidue,
        .serial = serial,
        .residue = current.field,
        .position = position,
        .occupancy = info.occupancy ? info.occupancy->getValue(atom) : 0.0F,
        .temperature = info.temperature ? info.temperature->getValue(atom) : 0.0F,
        .symbol = symbol,
    };
    if (info.atomType) record.setName(info.atomType->getValue(atom), symbol);
    if (info.charge) setCharge(record, atom);
    record.write(out, chargeColumn);
}

/// The text has room for one digit.
void AtomWriter::setCharge(AtomRecord& record, int atom) const {
    constexpr float aboveAllInts = 2147483648.0F;
    record.charge = info.charge->getValue(atom);
    bool const fitsInt = record.charge >= -aboveAllInts && record.charge < aboveAllInts;
    auto charge = static_cast<int>(fitsInt ? record.charge : 0.0F);
    if (!fitsInt || charge < -9 || charge > 9) {
        tarnex::report(messages, "Error: Charge of atom ", atom, " is outside ",
                       "of [-9,+9] interval which can be written into a PDB file.");
        charge %= 10;
    }
    record.chargeText[0] = static_cast<char>('0' + std::abs(charge));
    record.chargeText[1] = charge < 0 ? '-' : '+';
}

/// Whether the atom of the next index, which is not always the next in the file, lies in another chain. The chain "HET"
/// is none for the atom, but one for the atom behind it.
bool AtomWriter::isLastOfChain(int atom) const {
    if (atom == numAtoms - 1) return true;
    int const residue = valueAt(tables.residueOfAtom, atom + 1, none);
    int const chain = info.hasChains ? valueAt(tables.chainOfResidue, residue, none) : none;
    return chain != current.chain;
}

void AtomWriter::writeTer(int serial) const {
    tarnex::pdb::TerRecord record{serial, current.text};
    record.residue.type = info.residueType ? info.residueType->getValue(current.index) : "";
    record.write(out);
}

} // namespace

// NOLINTNEXTLINE(readability-function-size): hosts may hand over tables of their own
void PDBwrite::writeAtomRecords(writer& out, molInfo const& info, McVec3f const* coordinates,
                                McBitfield const& atomInChain, McBitfield const& hetResidue,
                                McDArray<int> const& atomOrder, McDArray<int> const& residueOfAtom,
                                McDArray<int>& serialOfAtom, McDArray<int> const& pdbIndexOfResidue,
                                McDArray<int> const& chainOfResidue, int& numAtom, int& numTer, bool chargeColumn) {
    Progress const work(progress);
    work.info("Writing ATOM records");
    AtomTables const tables{atomInChain,  hetResidue,        atomOrder,     residueOfAtom,
                            serialOfAtom, pdbIndexOfResidue, chainOfResidue};
    AtomWriter atoms(*this, out, messages, work, info, tables, chargeColumn);
    bool const isComplete =
        atoms.writeAtoms(true, coordinates, numAtom, numTer) && atoms.writeAtoms(false, coordinates, numAtom, numTer);
    if (!isComplete) work.stop();
}
