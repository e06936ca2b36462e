#include "model/molInfo.h"

#include <type_traits>

// Routines that add a level make a fresh one and copy it over the old one bytewise.
static_assert(std::is_trivially_copyable_v<molInfo> && std::is_standard_layout_v<molInfo>);

namespace {

MtStringAttribute* stringAttribute(MtGroupingLevel* level, char const* name) {
    return level ? level->stringAttribute(name, MtGroupingLevel::FIND, true) : nullptr;
}

MtIntegerAttribute* integerAttribute(MtGroupingLevel* level, char const* name) {
    return level->integerAttribute(name, MtGroupingLevel::FIND, true);
}

MtFloatAttribute* floatAttribute(MtGroupingLevel* level, char const* name) {
    return level->floatAttribute(name, MtGroupingLevel::FIND, true);
}

} // namespace

molInfo::molInfo(MolTopology* topology)
    : atomsIx(0), bondsIx(1), residuesIx(topology->getLevelIx("residues")), chainsIx(topology->getLevelIx("chains")),
      strandsIx(topology->getLevelIx("strands")), secondaryStructureIx(topology->getLevelIx("secondary_structure")),
      sitesIx(topology->getLevelIx("sites")), atoms(topology->getLevel(0)), bonds(topology->getLevel(1)),
      residues(topology->getLevel(residuesIx)), chains(topology->getLevel(chainsIx)),
      strands(topology->getLevel(strandsIx)), secondaryStructure(topology->getLevel(secondaryStructureIx)),
      sites(topology->getLevel(sitesIx)) {
    secStructType = stringAttribute(secondaryStructure, "type");
    secStructName = stringAttribute(secondaryStructure, "name");
    residueType = stringAttribute(residues, "type");
    residueName = stringAttribute(residues, "name");
    atomicNumber = integerAttribute(atoms, "atomic_number");
    radius = floatAttribute(atoms, "radius");
    temperature = floatAttribute(atoms, "temperature");
    occupancy = floatAttribute(atoms, "occupancy");
    charge = floatAttribute(atoms, "charge");
    atomType = stringAttribute(atoms, "type");
    atomName = stringAttribute(atoms, "name");
    chainName = stringAttribute(chains, "name");
    siteName = stringAttribute(sites, "name");
    strandName = stringAttribute(strands, "name");
    bondType = integerAttribute(bonds, "type");
    bondName = stringAttribute(bonds, "name");
    hasChains = chains != nullptr;
    hasResidues = residues != nullptr;
    hasSecondaryStructure = secondaryStructure && secStructType;
    hasStrands = strands != nullptr;
    hasSites = sites != nullptr;
}
