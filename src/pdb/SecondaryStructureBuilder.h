#pragma once

#include "pdb/PDBread.h"
#include "pdb/StructureRanges.h"
#include "pdb/secondaryStructureRecords.h"

#include <cstdint>

namespace tarnex::pdb {

/// Turns records into helices, sheets, turns and sites, and makes the levels for them, for which it renews `info`.
/// While it is in use, nobody else may change structures or chains.
class SecondaryStructureBuilder {
public:
    SecondaryStructureBuilder(PDBread const& pdbReader, std::ostream* messageStream, MolTopology& topologyToFill,
                              molInfo& topologyInfo);

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
    bool cutToFree(int& first, int& last, int& conflict, bool& adjustable);
    int chainOf(int residue);

    MtGroupingLevel& makeLevel(char const* name);
    void makeStructureLevels();
    void makeSitesLevel();

    bool canListMore(std::int64_t residues) const;
    std::int64_t numListed() const;
    MtDynamicGroup& sheetOf(SheetLine const& line);
    bool appendResidues(SiteLine const& line, MtDynamicGroup& site, int& found) const;

    int addGroup(int levelIx, MtGroup* group, char const* name);
    int addStructure(MtGroup* group, char const* name, char const* type);
    void addSegment(int first, int last, char const* name, char const* type);
    void setText(int levelIx, int group, char const* attribute, char const* text);

    PDBread const& pdb;
    std::ostream* messages;
    MolTopology& topology;
    molInfo& info;

    /// Whether all structures are made here. If not, only a walk over them tells what is below.
    bool const makesAllStructures;
    StructureRanges segments;        ///< the helices and turns
    std::int64_t listedResidues = 0; ///< of all sheets
    /// Empty until an overlap asks for it.
    McDArray<int> chainOfResidue;
};

} // namespace tarnex::pdb
