#include "facts.h"

#include "chemistry/ElementTable.h"
#include "chemistry/ResidueTemplates.h"
#include "model/Molecule.h"

#include <algorithm>
#include <cmath>
#include <set>

namespace tarnex::tool {

namespace {

std::string hillFormula(MolTopology& topology) {
    MtIntegerAttribute const* numbers =
        topology.levels[0]->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    std::map<std::string, long long> counts;
    for (int atom = 0; atom < topology.levels[0]->groups.size; ++atom) {
        ++counts[elementTable().getElement(numbers ? numbers->getValue(atom) : 0)->getSymbol()];
    }
    std::string formula;
    auto const take = [&](std::string const& symbol) {
        auto const found = counts.find(symbol);
        if (found == counts.end()) return;
        formula += symbol;
        if (found->second > 1) formula += std::to_string(found->second);
        counts.erase(found);
    };
    if (counts.contains("C")) {
        take("C");
        take("H");
    }
    while (!counts.empty()) take(counts.begin()->first);
    return formula;
}

void countBondTypes(MolTopology const& topology, MoleculeFacts& facts) {
    MtIntegerAttribute const* types = topology.levels[1]->integerAttribute("type", MtGroupingLevel::FIND, true);
    if (!types) return;
    for (int bond = 0; bond < facts.bonds; ++bond) ++facts.bondTypes[types->getValue(bond)];
}

void sumCharges(MolTopology& topology, MoleculeFacts& facts) {
    MtGroupingLevel& atoms = *topology.levels[0];
    if (MtIntegerAttribute const* charges = topology.getAtomFormalChargeAttribute(MolTopology::FIND)) {
        facts.netCharge = 0;
        for (int atom = 0; atom < atoms.groups.size; ++atom) {
            int const charge = charges->getValue(atom);
            *facts.netCharge += charge;
            if (charge != 0) facts.chargedAtoms.emplace_back(atom + 1, charge);
        }
    }
    if (MtFloatAttribute const* charges = atoms.floatAttribute("charge", MtGroupingLevel::FIND, true)) {
        facts.partialCharge = 0.0;
        for (int atom = 0; atom < atoms.groups.size; ++atom) *facts.partialCharge += charges->getValue(atom);
    }
    if (MtIntegerAttribute const* counts = atoms.integerAttribute("implicit_hnum", MtGroupingLevel::FIND, true)) {
        facts.implicitHydrogens = 0;
        for (int atom = 0; atom < atoms.groups.size; ++atom) *facts.implicitHydrogens += counts->getValue(atom);
    }
}

char const* nameOf(ResidueTemplate const* residue) {
    if (!residue) return "other";
    switch (residue->kind) {
    case ResidueKind::peptide:
        return "amino acid";
    case ResidueKind::nucleotide:
        return "nucleotide";
    case ResidueKind::water:
        return "water";
    case ResidueKind::ion:
        return "ion";
    default:
        return "other";
    }
}

void countKinds(MtGroupingLevel& level, LevelFacts& facts) {
    MtStringAttribute const* types = level.stringAttribute("type", MtGroupingLevel::FIND, true);
    bool const areResidues = facts.name == "residues";
    if (!types || (!areResidues && facts.name != "secondary_structure")) return;
    for (int group = 0; group < level.groups.size; ++group) {
        char const* type = types->getValue(group);
        ++facts.kinds[areResidues ? nameOf(ResidueTemplates::instance().find(type)) : type];
    }
}

void listNames(MtGroupingLevel const& level, LevelFacts& facts) {
    if (facts.name != "chains" && facts.name != "sites") return;
    std::set<std::string> listed;
    for (int group = 0; group < level.groups.size; ++group) {
        std::string const name = level.getGroupName(group);
        if (listed.insert(name).second) facts.names.push_back(name);
    }
}

void listLevels(MolTopology const& topology, MoleculeFacts& facts) {
    for (std::int64_t i = 0; i < topology.levels.size; ++i) {
        MtGroupingLevel& level = *topology.levels[i];
        LevelFacts& listed = facts.levels.emplace_back();
        listed.name = i == 0 ? "atoms" : i == 1 ? "bonds" : level.getName();
        listed.groups = level.groups.size;
        for (MtGroupAttribute const* attribute : level.attributes) listed.attributes.emplace_back(attribute->getName());
        countKinds(level, listed);
        listNames(level, listed);
    }
}

char const* typeOf(MolData const& datum) {
    if (dynamic_cast<MolDataInt const*>(&datum)) return "integer";
    if (dynamic_cast<MolDataFloat const*>(&datum)) return "number";
    return "text";
}

void listData(MolTopology const& topology, MoleculeFacts& facts) {
    McString value;
    for (int i = 0; i < topology.getNumData(); ++i) {
        MolData const& datum = *topology.getData(i);
        datum.getValueAsString(value);
        facts.data.push_back({datum.getName(), typeOf(datum), value.data});
    }
}

/// Coordinates that are no numbers are passed over.
std::optional<BoundingBox> boxAround(McDArray<McVec3f> const& coords) {
    if (coords.size == 0) return std::nullopt;
    BoundingBox box{{INFINITY, INFINITY, INFINITY}, {-INFINITY, -INFINITY, -INFINITY}};
    for (McVec3f const& position : coords) {
        for (int axis = 0; axis < 3; ++axis) {
            if (std::isnan(position[axis])) continue;
            box.low[axis] = std::min(box.low[axis], position[axis]);
            box.high[axis] = std::max(box.high[axis], position[axis]);
        }
    }
    return box;
}

} // namespace

MoleculeFacts factsOf(MolTrajectory& trajectory, bool& readable) {
    MolTopology& topology = *trajectory.getTopology();
    MoleculeFacts facts;
    facts.name = topology.getName();
    facts.steps = trajectory.getNumTimeSteps();
    facts.atoms = topology.levels[0]->groups.size;
    facts.bonds = topology.levels[1]->groups.size;
    facts.formula = hillFormula(topology);
    countBondTypes(topology, facts);
    sumCharges(topology, facts);
    listLevels(topology, facts);
    listData(topology, facts);
    McHandle<Molecule> const molecule(new Molecule(&topology, false));
    readable = facts.steps == 0 || trajectory.getTimeStep(0, molecule);
    if (facts.steps > 0 && readable) facts.box = boxAround(molecule->coords);
    return facts;
}

} // namespace tarnex::tool
