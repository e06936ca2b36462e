#include "pdb/PDBScan.h"

#include <cstring>

namespace tarnex::pdb {

namespace {

struct HeaderRecord {
    char const* keyword;
    char const* datumName;
};

/// In the order in which the topology gets them.
constexpr HeaderRecord headerRecords[] = {
    {"AUTHOR", "PDB_AUTHOR"}, {"COMPND", "PDB_COMPND"}, {"HEADER", "PDB_HEADER"},
    {"JRNL", "PDB_JNRL"}, // hosts know it by this spelling
    {"TITLE", "PDB_TITLE"},   {"REMARK", "PDB_REMARK"}, {"SOURCE", "PDB_SOURCE"},
};

// Of the remarks only those that give the transformations of the biological unit are kept.
constexpr char const* keptRemark = "BIOMT";

void note(long& first, long& last, long lineStart) {
    if (first < 0) first = lineStart;
    last = lineStart;
}

} // namespace

PDBScan::PDBScan(CardReader& in) {
    static_assert(sizeof headerRecords / sizeof *headerRecords == numHeaderRecords);
    while (!in.eof) {
        long const lineStart = in.tell();
        noteLine(in, in.readKeyword(), lineStart);
        in.nextLine();
    }
}

void PDBScan::noteLine(CardReader& in, std::uint64_t keyword, long lineStart) {
    switch (keyword) {
    case packed("ATOM"):
    case packed("HETATM"):
        in.passCard(); // faster than a search for the line end
        return noteAtom(lineStart);
    case packed("CONECT"):
        return note(sharedPositions.conectFirst, sharedPositions.conectLast, lineStart);
    case packed("HELIX"):
    case packed("SHEET"):
    case packed("TURN"):
    case packed("SITE"):
        return note(sharedPositions.secStructFirst, sharedPositions.secStructLast, lineStart);
    case packed("HYDBND"):
    case packed("SSBOND"):
    case packed("SLTBRG"):
        return note(sharedPositions.ssbondFirst, sharedPositions.ssbondLast, lineStart);
    case packed("MODEL"):
        return noteModel(lineStart);
    default:
        return noteHeader(in, keyword);
    }
}

void PDBScan::noteAtom(long lineStart) {
    if (modelStarts.size == 0) {
        modelStarts.append(lineStart);
        modelEnds.append(lineStart);
    } else {
        modelEnds[modelEnds.size - 1] = lineStart;
    }
}

void PDBScan::noteModel(long lineStart) {
    modelStarts.append(lineStart);
    modelEnds.append(lineStart);
    ++numModels;
}

void PDBScan::noteHeader(CardReader& in, std::uint64_t keyword) {
    for (int i = 0; i < numHeaderRecords; ++i) {
        if (keyword != packed(headerRecords[i].keyword)) continue;
        char const* text = in.getUntrimmedLineString();
        if (keyword == packed("REMARK") && !std::strstr(text, keptRemark)) return;
        headers[i].append(text);
        headers[i].append('\n');
        return;
    }
}

PDBread::streamPositions PDBScan::positionsOfModel(int model) const {
    PDBread::streamPositions positions = sharedPositions;
    positions.atomFirst = modelStarts[model];
    positions.atomLast = modelEnds[model];
    return positions;
}

McDArray<PDBread::streamPositions> PDBScan::positionsOfModels() const {
    McDArray<PDBread::streamPositions> models;
    models.reserve(numModels);
    for (int i = 0; i < numModels; ++i) models.append(positionsOfModel(i));
    return models;
}

void PDBScan::storeHeader(MolTopology& topology) const {
    for (int i = 0; i < numHeaderRecords; ++i) {
        if (headers[i].length() > 0) topology.setData(new MolDataString(headerRecords[i].datumName, headers[i]));
    }
}

} // namespace tarnex::pdb
