#include "foundation/Progress.h"
#include "model/members.h"
#include "pdb/PDBwrite.h"
#include "pdb/writeTables.h"
#include "pdb/writtenRecords.h"

#include <cstring>

namespace {

using tarnex::Progress;
using tarnex::pdb::isHet;
using tarnex::pdb::LevelMembers;
using tarnex::pdb::ResidueText;
using tarnex::pdb::SeqResRecord;
using tarnex::pdb::SiteRecord;
using tarnex::pdb::valueAt;

constexpr int atomsPerProgress = 20;

/// Finds the texts by which records name residues.
class ResidueTexts {
public:
    ResidueTexts(PDBwrite const& pdbWriter, molInfo const& topologyInfo, McDArray<int> const& pdbIndices,
                 McDArray<int> const& chains)
        : pdb(pdbWriter), info(topologyInfo), pdbIndexOfResidue(pdbIndices), chainOfResidue(chains) {}

    bool exists(int residue) const { return residue >= 0 && residue < pdbIndexOfResidue.size; }

    ResidueText of(int residue) const {
        ResidueText text;
        text.type = info.residueType ? info.residueType->getValue(residue) : "";
        text.number = valueAt(pdbIndexOfResidue, residue, 0);
        int const chain = valueAt(chainOfResidue, residue, -1);
        if (info.hasChains && chain >= 0) pdb.chainIdConversion(info, chain, text.chain);
        return text;
    }

private:
    PDBwrite const& pdb;
    molInfo const& info;
    McDArray<int> const& pdbIndexOfResidue;
    McDArray<int> const& chainOfResidue;
};

/// Writes the records of the elements of the secondary structure, and counts them.
class SecStructWriter {
public:
    SecStructWriter(writer& recordOut, molInfo const& topologyInfo, ResidueTexts const& texts)
        : out(recordOut), info(topologyInfo), residues(texts) {}

    void writeHelix(char const* name, PDBwrite::secInfo const& part, int& numHelix) {
        for (int i = 0; i < part.start.size && recordsLeft-- > 0; ++i) {
            tarnex::pdb::HelixRecord record;
            setEnds(record, ++numHelix, name, part, i);
            // One less than the number of residues.
            record.length = valueAt(part.end, i, -1) - part.start[i];
            record.write(out);
        }
    }

    /// Every segment writes the ends of the first one.
    void writeTurn(char const* name, PDBwrite::secInfo const& part, int& numTurn) {
        for (int i = 0; i < part.start.size && recordsLeft-- > 0; ++i) {
            tarnex::pdb::TurnRecord record;
            setEnds(record, ++numTurn, name, part, 0);
            record.write(out);
        }
    }

    /// Every part writes as many segments as the first one has.
    void writeSheet(char const* name, McDArray<PDBwrite::secInfo> const& parts, int& numSheet) {
        int strand = 0;
        for (PDBwrite::secInfo const& part : parts) {
            for (int i = 0; i < parts[0].start.size && recordsLeft-- > 0; ++i) {
                tarnex::pdb::SheetRecord record;
                setEnds(record, ++strand, name, part, i);
                record.hasTypes = info.residueType != nullptr;
                ++numSheet;
                record.write(out);
            }
        }
    }

private:
    void setEnds(tarnex::pdb::SegmentRecord& record, int serial, char const* name, PDBwrite::secInfo const& part,
                 int segment) const {
        record.serial = serial;
        record.name = name;
        int const start = valueAt(part.start, segment, -1);
        int const end = valueAt(part.end, segment, -1);
        if (!residues.exists(start) || !residues.exists(end)) return;
        record.isComplete = true;
        record.start = residues.of(start);
        record.end = residues.of(end);
    }

    writer& out;
    molInfo const& info;
    ResidueTexts const& residues;
    std::int64_t recordsLeft = tarnex::pdb::mostSegments;
};

} // namespace

bool PDBwrite::chainIdConversion(molInfo const& info, int chain, char* text) const {
    constexpr std::size_t mostCharacters = 3;
    char number[tarnex::numberTextRoom];
    char const* name = number;
    if (!info.hasChains)
        *tarnex::putInt(number, chain) = '\0';
    else
        name = info.chainName ? info.chainName->getValue(chain) : "";
    std::size_t const length = ::strnlen(name, mostCharacters);
    std::memcpy(text, name, length);
    text[length] = '\0';
    bool const isNoChain = std::strcmp(text, "HET") == 0;
    if (isNoChain || std::strcmp(text, "NIL") == 0) *text = '\0';
    return isNoChain;
}

void writeHeaderRecord(writer& out, char const* keyword, char const* text) {
    McString lines(text);
    char const* line = lines.data;
    for (char* c = lines.data; *c; ++c) {
        if (*c != '\n' && *c != '\r') continue;
        *c = '\0';
        tarnex::pdb::writeTextRecord(out, keyword, line);
        line = c + 1;
    }
}

void PDBwrite::writeHeaderRecords(writer& out) {
    struct Row {
        char const* datum;
        char const* keyword;
        bool isRequired;
    };
    // The reader keeps the journal as "PDB_JNRL": what it reads is not written again.
    static constexpr Row rows[] = {
        {"PDB_HEADER", "HEADER", true},  {"PDB_TITLE", "TITLE", true},    {"PDB_COMPND", "COMPND", true},
        {"PDB_SOURCE", "SOURCE", false}, {"PDB_AUTHOR", "AUTHOR", false}, {"PDB_JRNL", "JRNL", false},
        {"PDB_REMARK", "REMARK", false},
    };
    MolTopology const* topology = molecule ? molecule->getTopology() : nullptr;
    for (Row const& row : rows) {
        auto const* datum = dynamic_cast<MolDataString const*>(topology ? topology->getData(row.datum) : nullptr);
        if (datum)
            writeHeaderRecord(out, row.keyword, datum->getValue());
        else if (row.isRequired)
            tarnex::pdb::writeTextRecord(out, row.keyword, "");
    }
    tarnex::pdb::writeTextRecord(out, "REMARK", " Exported by velorMol");
}

void PDBwrite::writeSeqResRecords(writer& out, molInfo const& info, McBitfield const& hetResidue, int& numSeqRes) {
    Progress(progress).info("Writing SEQRES records");
    if (!info.hasResidues || !info.residueType || !info.hasChains) return;
    LevelMembers residues(info.residues, info.residuesIx);
    McDArray<int> standard;
    for (int chain = 0; chain < info.chains->groups.size; ++chain) {
        standard.resize(0);
        residues.forEach(info.chains->groups[chain], [&](int residue) {
            if (!isHet(hetResidue, residue)) standard.append(residue);
        });
        SeqResRecord record;
        chainIdConversion(info, chain, record.chain);
        record.residuesOfChain = static_cast<int>(standard.size);
        for (std::int64_t i = 0; i < standard.size; ++i) {
            record.types[record.numResidues++] = info.residueType->getValue(standard[i]);
            if (record.numResidues < SeqResRecord::mostResidues && i + 1 < standard.size) continue;
            ++record.serial;
            ++numSeqRes;
            record.write(out);
            record.numResidues = 0;
        }
    }
}

void PDBwrite::writeSecStructRecords(writer& out, molInfo const& info,
                                     McDArray<McDArray<secInfo>> const& secondaryStructure,
                                     McDArray<int> const& pdbIndexOfResidue, McDArray<int> const& chainOfResidue,
                                     int& numHelix, int& numSheet, int& numTurn) {
    Progress(progress).info("Writing HELIX and SHEET records");
    if (!info.hasSecondaryStructure || !info.hasResidues) return;
    ResidueTexts const residues(*this, info, pdbIndexOfResidue, chainOfResidue);
    SecStructWriter elements(out, info, residues);
    for (int i = 0; i < secondaryStructure.size; ++i) {
        McDArray<secInfo> const& parts = secondaryStructure[i];
        if (parts.size == 0) continue;
        char const* type = info.secStructType->getValue(i);
        char const* name = info.secondaryStructure->getGroupName(i);
        if (std::strcmp(type, "helix") == 0)
            elements.writeHelix(name, parts[0], numHelix);
        else if (std::strcmp(type, "turn") == 0)
            elements.writeTurn(name, parts[0], numTurn);
        else if (std::strcmp(type, "sheet") == 0)
            elements.writeSheet(name, parts, numSheet);
    }
}

void PDBwrite::writeSiteRecords(writer& out, molInfo const& info, McDArray<int> const& pdbIndexOfResidue,
                                McDArray<int> const& chainOfResidue, int& numSite) {
    if (!info.hasSites || !info.hasResidues) return;
    ResidueTexts const texts(*this, info, pdbIndexOfResidue, chainOfResidue);
    LevelMembers residues(info.residues, info.residuesIx);
    McDArray<int> members;
    for (int site = 0; site < info.sites->groups.size; ++site) {
        members.resize(0);
        residues.forEach(info.sites->groups[site], [&](int residue) { members.append(residue); });
        SiteRecord record;
        record.name = info.sites->getGroupName(site);
        record.residuesOfSite = static_cast<int>(members.size);
        for (std::int64_t i = 0; i < members.size; ++i) {
            record.residues[record.numResidues++] = texts.of(members[i]);
            if (record.numResidues < SiteRecord::mostResidues && i + 1 < members.size) continue;
            ++record.serial;
            ++numSite;
            record.write(out);
            record.numResidues = 0;
        }
    }
}

void PDBwrite::writeSSBondRecords(writer& out, molInfo const& info, McDArray<int> const& ssBonds,
                                  McDArray<int> const& residueOfAtom, McDArray<int> const& chainOfResidue,
                                  McDArray<int> const& pdbIndexOfResidue, int& numSsBond) {
    constexpr std::size_t typeLength = 3;
    ResidueTexts const texts(*this, info, pdbIndexOfResidue, chainOfResidue);
    for (int const bond : ssBonds) {
        int atoms[2] = {-1, -1};
        if (bond >= 0 && bond < info.bonds->groups.size) {
            tarnex::getBondAtoms(info.bonds->groups[bond], atoms[0], atoms[1]);
        }
        ResidueText ends[2];
        char types[2][typeLength + 1] = {};
        for (int i = 0; i < 2; ++i) {
            int const residue = valueAt(residueOfAtom, atoms[i], -1);
            if (residue >= 0) {
                ends[i] = texts.of(residue);
                ends[i].type = std::strncpy(types[i], ends[i].type, typeLength);
            } else {
                ends[i].number = valueAt(pdbIndexOfResidue, 0, 0);
            }
        }
        tarnex::pdb::SsBondRecord{++numSsBond, ends[0], ends[1]}.write(out);
    }
}

void PDBwrite::writeConectRecords(writer& out, McDArray<int> const& serialOfAtom,
                                  McDArray<McDArray<int>> const& bondedAtoms, int& numConect) {
    Progress const work(progress);
    work.info("Writing CONECT records");
    for (int i = 0; i < bondedAtoms.size; ++i) {
        if (work && i % atomsPerProgress == 0) {
            float const part = static_cast<float>(i) / static_cast<float>(bondedAtoms.size);
            if (work.interruptedAt(static_cast<float>(static_cast<double>(part) * (1.0 - 0.7) + 0.7))) {
                work.stop();
                return;
            }
        }
        if (bondedAtoms[i].size == 0) continue;
        ++numConect;
        tarnex::pdb::ConectRecord{valueAt(serialOfAtom, i, 0), bondedAtoms[i]}.write(out, serialOfAtom);
    }
}

// NOLINTNEXTLINE(readability-function-size): one argument for each count
void PDBwrite::writeMasterRecord(writer& out, int numHelix, int numSheet, int numTurn, int numSite, int numAtom,
                                 int numTer, int numConect, int numSeqRes) {
    tarnex::pdb::MasterRecord{.numHelix = numHelix,
                              .numSheet = numSheet,
                              .numTurn = numTurn,
                              .numSite = numSite,
                              .numAtom = numAtom,
                              .numTer = numTer,
                              .numConect = numConect,
                              .numSeqRes = numSeqRes}
        .write(out);
    tarnex::pdb::writeTextRecord(out, "END", "");
}
