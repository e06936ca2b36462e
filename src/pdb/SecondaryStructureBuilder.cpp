#include "pdb/SecondaryStructureBuilder.h"

#include "foundation/report.h"
#include "model/members.h"
#include "textio/numberText.h"

#include <algorithm>
#include <cstring>
#include <memory>
#include <typeinfo>
#include <utility>

namespace tarnex::pdb {

namespace {

constexpr int levelKind = 12;
constexpr char const* typeOfSheets = "sheet";

/// No real file names a residue in more than a few strands. Sheets stop growing at this many residues in all, or at a
/// million, whichever is more: a strand is a short line, but its residues are listed one by one.
constexpr std::int64_t mostStrandsOfResidue = 8;
constexpr std::int64_t membersAlwaysTaken = 1000000;

/// A range that more than these cut is tried against all others that are left, which is faster then.
constexpr int mostSearches = 100;

} // namespace

SecondaryStructureBuilder::SecondaryStructureBuilder(PDBread const& pdbReader, std::ostream* messageStream,
                                                     MolTopology& topologyToFill, molInfo& topologyInfo)
    : pdb(pdbReader), messages(messageStream), topology(topologyToFill), info(topologyInfo),
      makesAllStructures(topologyInfo.secondaryStructureIx < 0) {}

/// A reference never finds a residue of HETATM records, whose ids differ.
int SecondaryStructureBuilder::findResidue(ResidueReference const& reference) const {
    if (!info.hasResidues) return -1;
    char chain[8];
    char residueId[32];
    pdb.chainIDConversion(reference.chain, chain, false);
    pdb.resIDConversion(chain, reference.number, reference.insertionCode, residueId, false);
    return info.residues->findGroupBackward(residueId);
}

/// Finds the residues at both ends of a segment, and makes the levels for it if they exist.
template <class Line>
bool SecondaryStructureBuilder::findEnds(Line const& line, int& first, int& last) {
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
bool SecondaryStructureBuilder::findFreeRange(Line const& line, char const* kind, int& first, int& last) {
    if (!findEnds(line, first, last)) return false;
    if (first > last) {
        report(messages, line, " references residues in inverse order. The ", kind, " has been skipped.\n");
        return false;
    }
    int conflict = -1;
    bool adjustable = true;
    bool const isFree = makesAllStructures ? cutToFree(first, last, conflict, adjustable)
                                           : pdb.checkSecStructUniqueness(info, first, last, conflict, adjustable);
    if (isFree) return true;
    char const* other = info.secondaryStructure->getGroupName(conflict);
    if (adjustable) {
        report(messages, line, " overlaps with the secStruct ", other, ". Length adjusted.\n");
    } else {
        report(messages, line, " skipped due to non adjustable overlaps with the secStruct ", other, ".\n");
    }
    return adjustable;
}

/// `PDBread::checkSecStructUniqueness` by the ranges that have been added here.
bool SecondaryStructureBuilder::cutToFree(int& first, int& last, int& conflict, bool& adjustable) {
    conflict = -1;
    adjustable = true;
    StructureRanges::Range const* other = segments.firstOverlap(first, last);
    for (int searches = 1; other; ++searches) {
        conflict = other->structure;
        // What is left lies in what was there, so that ends of residues stay such.
        Remainder const rest = cut(first, last, other->first, other->last);
        auto const newFirst = static_cast<int>(rest.first);
        auto const newLast = static_cast<int>(rest.last);
        adjustable =
            rest.first <= rest.last && chainOf(first) == chainOf(newFirst) && chainOf(last) == chainOf(newLast);
        if (!adjustable) return false;
        first = newFirst;
        last = newLast;
        other = searches < mostSearches ? segments.firstOverlap(first, last) : segments.nextOverlap(other, first, last);
    }
    return conflict < 0;
}

int SecondaryStructureBuilder::chainOf(int residue) {
    if (!info.hasChains) return -1;
    if (chainOfResidue.size == 0) chainOfResidue = ownersOfMembers(topology, info.chainsIx, info.residuesIx);
    return chainOfResidue[residue];
}

/// A level of residues with names; a level that exists already, made by a host, is completed.
MtGroupingLevel& SecondaryStructureBuilder::makeLevel(char const* name) {
    int levelIx = topology.getLevelIx(name);
    if (levelIx < 0) levelIx = topology.addLevel(name, info.residuesIx, levelKind, -1);
    MtGroupingLevel& level = *topology.levels[levelIx];
    level.clearFlag(MtGroupingLevel::flagBit5);
    return level;
}

void SecondaryStructureBuilder::makeStructureLevels() {
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

void SecondaryStructureBuilder::makeSitesLevel() {
    if (info.hasSites) return;
    makeLevel("sites").stringAttribute("name", MtGroupingLevel::CREATE, true);
    info = molInfo(&topology);
}

void SecondaryStructureBuilder::addHelix(HelixLine const& line) {
    int first;
    int last;
    if (!findFreeRange(line, "helix", first, last)) return;
    addSegment(first, last, line.identifier, "helix");
}

void SecondaryStructureBuilder::addStrand(SheetLine const& line) {
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
    listedResidues += length;
}

bool SecondaryStructureBuilder::canListMore(std::int64_t residues) const {
    std::int64_t const numResidues = info.residues->groups.size;
    std::int64_t const limit = std::max(membersAlwaysTaken, mostStrandsOfResidue * numResidues);
    // No strand is longer than the level of residues, which spares nearly all files the count.
    if ((info.strands->groups.size + 1) * numResidues <= limit) return true;
    return residues + numListed() <= limit;
}

std::int64_t SecondaryStructureBuilder::numListed() const {
    if (makesAllStructures) return listedResidues;
    std::int64_t listed = 0;
    for (MtGroup const* group : info.secondaryStructure->groups) {
        if (group && typeid(*group) == typeid(MtDynamicGroup)) listed += group->size();
    }
    return listed;
}

/// The sheet that a strand belongs to; a new one unless the last structure of its name is a sheet.
MtDynamicGroup& SecondaryStructureBuilder::sheetOf(SheetLine const& line) {
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
void SecondaryStructureBuilder::addTurn(TurnLine const& line) {
    int first;
    int last;
    if (!findEnds(line, first, last)) return;
    if (first > last) {
        report(messages, line, " references residues in inverse order. The references have been swapped.\n");
        std::swap(first, last);
    }
    addSegment(first, last, itoa2(line.number), "turn");
}

void SecondaryStructureBuilder::addToSite(SiteLine const& line) {
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
bool SecondaryStructureBuilder::appendResidues(SiteLine const& line, MtDynamicGroup& site, int& found) const {
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

int SecondaryStructureBuilder::addGroup(int levelIx, MtGroup* group, char const* name) {
    int const groupIx = topology.addGroup(levelIx, group).groupIx;
    setText(levelIx, groupIx, "name", name);
    return groupIx;
}

int SecondaryStructureBuilder::addStructure(MtGroup* group, char const* name, char const* type) {
    int const groupIx = addGroup(info.secondaryStructureIx, group, name);
    setText(info.secondaryStructureIx, groupIx, "type", type);
    return groupIx;
}

/// A helix or turn.
void SecondaryStructureBuilder::addSegment(int first, int last, char const* name, char const* type) {
    auto* range = new (topology.groupPool) MtIntraLevelRange(info.residuesIx, first, last);
    int const structure = addStructure(range, name, type);
    if (makesAllStructures) segments.add({first, last, structure});
}

void SecondaryStructureBuilder::setText(int levelIx, int group, char const* attribute, char const* text) {
    topology.levels[levelIx]->stringAttribute(attribute, MtGroupingLevel::CREATE, true)->setValue(group, text);
}

} // namespace tarnex::pdb
