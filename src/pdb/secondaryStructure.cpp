#include "foundation/report.h"
#include "model/MtListGroups.h"
#include "pdb/PDBread.h"
#include "pdb/secondaryStructureRecords.h"
#include "textio/numberText.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <memory>
#include <typeinfo>
#include <utility>

namespace {

using tarnex::report;
using tarnex::pdb::HelixLine;
using tarnex::pdb::ResidueReference;
using tarnex::pdb::SheetLine;
using tarnex::pdb::SiteLine;
using tarnex::pdb::TurnLine;

constexpr int levelKind = 12;
constexpr char const* typeOfSheets = "sheet";

/// No real file names a residue in more than a few strands. Sheets stop growing at this many residues in all, or at a
/// million, whichever is more: a strand is a short line, but its residues are listed one by one.
constexpr std::int64_t mostStrandsOfResidue = 8;
constexpr std::int64_t membersAlwaysTaken = 1000000;

/// Turns one record into groups.
class RecordBuilder {
public:
    RecordBuilder(PDBread const& pdbReader, std::ostream* messageStream, MolTopology& recordTopology,
                  molInfo& recordInfo)
        : pdb(pdbReader), messages(messageStream), topology(recordTopology), info(recordInfo) {}

    void addHelix(HelixLine const& line);
    void addStrand(SheetLine const& line);
    void addTurn(TurnLine const& line);
    void addToSite(SiteLine const& line);

private:
    int findResidue(ResidueReference const& reference) const;
    template <class Line>
    bool findEnds(Line const& line, int& first, int& last);
    template <class Line>
    bool findFreeRange(Line const& line, char const* kind, int& first, int& last);

    MtGroupingLevel& makeLevel(char const* name);
    void makeStructureLevels();
    void makeSitesLevel();

    bool canListMore(std::int64_t residues) const;
    MtDynamicGroup& sheetOf(SheetLine const& line);
    bool appendResidues(SiteLine const& line, MtDynamicGroup& site, int& found) const;

    int addGroup(int levelIx, MtGroup* group, char const* name) {
        int const groupIx = topology.addGroup(levelIx, group).groupIx;
        setText(levelIx, groupIx, "name", name);
        return groupIx;
    }
    void addStructure(MtGroup* group, char const* name, char const* type) {
        int const groupIx = addGroup(info.secondaryStructureIx, group, name);
        setText(info.secondaryStructureIx, groupIx, "type", type);
    }
    void setText(int levelIx, int group, char const* attribute, char const* text) {
        topology.levels[levelIx]->stringAttribute(attribute, MtGroupingLevel::CREATE, true)->setValue(group, text);
    }

    PDBread const& pdb;
    std::ostream* messages;
    MolTopology& topology;
    molInfo& info;
};

/// A reference never finds a residue of HETATM records, whose ids differ.
int RecordBuilder::findResidue(ResidueReference const& reference) const {
    if (!info.hasResidues) return -1;
    char chain[8];
    char residueId[32];
    pdb.chainIDConversion(reference.chain, chain, false);
    pdb.resIDConversion(chain, reference.number, reference.insertionCode, residueId, false);
    return info.residues->findGroupBackward(residueId);
}

/// Finds the residues at both ends of a segment, and makes the levels for it if they exist.
template <class Line>
bool RecordBuilder::findEnds(Line const& line, int& first, int& last) {
    first = findResidue(line.start);
    last = findResidue(line.end);
    if (first < 0 || last < 0) {
        report(messages, line, " skipped due to references to nonexisting residues.\n");
        return false;
    }
    makeStructureLevels();
    return true;
}

/// The residues of a helix or strand that no helix or turn has yet. False if the record has to be dropped.
template <class Line>
bool RecordBuilder::findFreeRange(Line const& line, char const* kind, int& first, int& last) {
    if (!findEnds(line, first, last)) return false;
    if (first > last) {
        report(messages, line, " references residues in inverse order. The ", kind, " has been skipped.\n");
        return false;
    }
    int conflict = -1;
    bool adjustable = true;
    if (pdb.checkSecStructUniqueness(info, first, last, conflict, adjustable)) return true;
    char const* other = info.secondaryStructure->getGroupName(conflict);
    if (adjustable) {
        report(messages, line, " overlaps with the secStruct ", other, ". Length adjusted.\n");
    } else {
        report(messages, line, " skipped due to non adjustable overlaps with the secStruct ", other, ".\n");
    }
    return adjustable;
}

/// A level of residues with names; a level that exists already, made by a host, is completed.
MtGroupingLevel& RecordBuilder::makeLevel(char const* name) {
    int levelIx = topology.getLevelIx(name);
    if (levelIx < 0) levelIx = topology.addLevel(name, info.residuesIx, levelKind, -1);
    MtGroupingLevel& level = *topology.levels[levelIx];
    level.clearFlag(MtGroupingLevel::flagBit5);
    return level;
}

void RecordBuilder::makeStructureLevels() {
    if (info.hasStrands && info.hasSecondaryStructure) return;
    if (!info.hasStrands) {
        MtGroupingLevel& strands = makeLevel("strands");
        strands.clearFlag(MtGroupingLevel::flagBit1);
        strands.setFlag(MtGroupingLevel::segmentation);
        strands.stringAttribute("name", MtGroupingLevel::CREATE, true);
    }
    if (!info.hasSecondaryStructure) {
        MtGroupingLevel& structures = makeLevel("secondary_structure");
        structures.stringAttribute("type", MtGroupingLevel::CREATE, true);
        structures.stringAttribute("name", MtGroupingLevel::CREATE, true);
    }
    info = molInfo(&topology);
}

void RecordBuilder::makeSitesLevel() {
    if (info.hasSites) return;
    makeLevel("sites").stringAttribute("name", MtGroupingLevel::CREATE, true);
    info = molInfo(&topology);
}

void RecordBuilder::addHelix(HelixLine const& line) {
    int first;
    int last;
    if (!findFreeRange(line, "helix", first, last)) return;
    addStructure(new (topology.groupPool) MtIntraLevelRange(info.residuesIx, first, last), line.identifier, "helix");
}

void RecordBuilder::addStrand(SheetLine const& line) {
    int first;
    int last;
    if (!findFreeRange(line, "strand", first, last)) return;
    std::int64_t const length = std::int64_t{last} - first + 1;
    if (!canListMore(length)) {
        report(messages, line, " skipped since the sheets have too many residues.\n");
        return;
    }
    McDArray<MtGroupRef>& residues = sheetOf(line).members;
    // The number in the file starts again with each sheet, so that strands are named by their index instead.
    char const* name = itoa2(static_cast<int>(info.strands->groups.size));
    addGroup(info.strandsIx, new (topology.groupPool) MtIntraLevelRange(info.residuesIx, first, last), name);
    residues.reserve(residues.size + length);
    for (int i = first; i <= last; ++i) residues.append(MtGroupRef(info.residuesIx, i));
}

bool RecordBuilder::canListMore(std::int64_t residues) const {
    std::int64_t const numResidues = info.residues->groups.size;
    std::int64_t const limit = std::max(membersAlwaysTaken, mostStrandsOfResidue * numResidues);
    // No strand is longer than the level of residues, which spares nearly all files the walk.
    if ((info.strands->groups.size + 1) * numResidues <= limit) return true;
    std::int64_t listed = residues;
    for (MtGroup const* group : info.secondaryStructure->groups) {
        if (group && typeid(*group) == typeid(MtDynamicGroup)) listed += group->size();
    }
    return listed <= limit;
}

/// The sheet that a strand belongs to; a new one unless the last structure of its name is a sheet.
MtDynamicGroup& RecordBuilder::sheetOf(SheetLine const& line) {
    MtGroupingLevel const& structures = *info.secondaryStructure;
    int const index = structures.findGroupBackward(line.identifier);
    if (index >= 0 && std::strcmp(info.secStructType->getValue(index), typeOfSheets) == 0) {
        if (auto* sheet = dynamic_cast<MtDynamicGroup*>(structures.groups[index])) return *sheet;
    }
    auto* sheet = new MtDynamicGroup;
    addStructure(sheet, line.identifier, typeOfSheets);
    return *sheet;
}

/// A turn may lie on anything else. It has no name in the file that is of use, so that it gets its number.
void RecordBuilder::addTurn(TurnLine const& line) {
    int first;
    int last;
    if (!findEnds(line, first, last)) return;
    if (first > last) {
        report(messages, line, " references residues in inverse order. The references have been swapped.\n");
        std::swap(first, last);
    }
    addStructure(new (topology.groupPool) MtIntraLevelRange(info.residuesIx, first, last), itoa2(line.number), "turn");
}

void RecordBuilder::addToSite(SiteLine const& line) {
    makeSitesLevel();
    int const index = info.sites->findGroupBackward(line.identifier);
    auto* site = index >= 0 ? dynamic_cast<MtDynamicGroup*>(info.sites->groups[index]) : nullptr;
    std::unique_ptr<MtDynamicGroup> newSite;
    if (!site) {
        newSite = std::make_unique<MtDynamicGroup>();
        site = newSite.get();
    }
    int found = 0;
    bool const allFound = appendResidues(line, *site, found);
    if (newSite && found == 0) {
        report(messages, line, "references only non existing residues. Site skipped.\n");
        return;
    }
    if (newSite) addGroup(info.sitesIx, newSite.release(), line.identifier);
    if (!allFound) {
        report(messages, line, "references non existing residues. Respective references have been skipped.\n");
    }
}

/// False if a residue does not exist. Slots without a positive number are empty.
bool RecordBuilder::appendResidues(SiteLine const& line, MtDynamicGroup& site, int& found) const {
    bool allFound = true;
    for (ResidueReference const& reference : line.residues) {
        if (reference.number <= 0) continue;
        int const residue = findResidue(reference);
        if (residue < 0) {
            allFound = false;
            continue;
        }
        site.members.append(MtGroupRef(info.residuesIx, residue));
        ++found;
    }
    return allFound;
}

} // namespace

void PDBread::parseHelixRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    RecordBuilder(*this, messages, *topology, info).addHelix(HelixLine::read(in));
}

void PDBread::parseSheetRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    RecordBuilder(*this, messages, *topology, info).addStrand(SheetLine::read(in));
}

void PDBread::parseTurnRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    RecordBuilder(*this, messages, *topology, info).addTurn(TurnLine::read(in));
}

void PDBread::parseSiteRecord(lengthizer& in, MolTopology* topology, molInfo& info) {
    RecordBuilder(*this, messages, *topology, info).addToSite(SiteLine::read(in));
}
