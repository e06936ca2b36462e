#pragma once

#include "foundation/export.h"
#include "model/MolTopology.h"

/// Where the standard levels and attributes of a topology are, at the moment it was made. A plain value: nothing is
/// owned, and a level that is added later is not seen. Pointers are null where there is no such level or attribute.
struct TARNEX_API molInfo {
    explicit molInfo(MolTopology* topology);

    bool hasChains;
    bool hasResidues;
    /// The level exists and has its "type".
    bool hasSecondaryStructure;
    bool hasStrands;
    bool hasSites;

    int atomsIx;
    int bondsIx;
    int residuesIx;
    int chainsIx;
    int strandsIx;
    int secondaryStructureIx;
    int sitesIx;

    MtGroupingLevel* atoms;
    MtGroupingLevel* bonds;
    MtGroupingLevel* residues;
    MtGroupingLevel* chains;
    MtGroupingLevel* strands;
    MtGroupingLevel* secondaryStructure;
    MtGroupingLevel* sites;

    MtStringAttribute* secStructType;
    MtStringAttribute* secStructName;
    MtStringAttribute* residueType;
    MtStringAttribute* residueName;
    MtIntegerAttribute* atomicNumber;
    MtFloatAttribute* radius;
    MtFloatAttribute* temperature;
    MtFloatAttribute* occupancy;
    MtFloatAttribute* charge;
    MtStringAttribute* atomType;
    MtStringAttribute* atomName;
    MtStringAttribute* chainName;
    MtStringAttribute* siteName;
    MtStringAttribute* strandName;
    MtIntegerAttribute* bondType;
    MtStringAttribute* bondName;
};
