#include "losses.h"

#include "text.h"

#include <algorithm>

namespace tarnex::tool {

namespace {

/// Different names in the order in which they were met.
class NameList {
public:
    void add(std::string const& name) {
        if (std::find(names.begin(), names.end(), name) == names.end()) names.push_back(name);
    }
    void describe(std::string const& kind, std::vector<std::string>& parts) const {
        if (!names.empty()) parts.push_back(kind + " " + joined(names));
    }

private:
    std::vector<std::string> names;
};

void addMissing(MtGroupingLevel const& level, std::vector<std::string_view> const& kept, NameList& missing) {
    if (level.groups.size == 0) return;
    for (MtGroupAttribute const* attribute : level.attributes) {
        if (std::find(kept.begin(), kept.end(), attribute->getName()) == kept.end()) missing.add(attribute->getName());
    }
}

bool hasOtherData(MolTopology const& topology, std::vector<std::string_view> const& kept) {
    for (int i = 0; i < topology.getNumData(); ++i) {
        if (std::find(kept.begin(), kept.end(), topology.getData(i)->getName()) == kept.end()) return true;
    }
    return false;
}

} // namespace

std::string lossesOf(Bundle const& bundle, Format const& format) {
    if (format.capacity.everything) return {};
    NameList levels;
    NameList atomAttributes;
    NameList bondAttributes;
    bool hasBonds = false;
    bool hasData = false;
    for (McHandle<MolTrajectory> const& trajectory : bundle) {
        MolTopology const& topology = *trajectory->getTopology();
        addMissing(*topology.levels[0], format.capacity.atomAttributes, atomAttributes);
        addMissing(*topology.levels[1], format.capacity.bondAttributes, bondAttributes);
        for (std::int64_t i = 2; i < topology.levels.size; ++i) {
            MtGroupingLevel const& level = *topology.levels[i];
            auto const& kept = format.capacity.levels;
            bool const isKept = std::find(kept.begin(), kept.end(), level.getName()) != kept.end();
            if (level.groups.size > 0 && !isKept) levels.add(level.getName());
        }
        hasBonds = hasBonds || topology.levels[1]->groups.size > 0;
        hasData = hasData || hasOtherData(topology, format.capacity.dataNames);
    }
    std::vector<std::string> parts;
    levels.describe("the levels", parts);
    atomAttributes.describe("of the atoms", parts);
    if (hasBonds && !format.capacity.bonds)
        parts.emplace_back("bonds");
    else
        bondAttributes.describe("of the bonds", parts);
    if (hasData && !format.capacity.dataItems) parts.emplace_back("data items");
    return joined(parts, "; ");
}

} // namespace tarnex::tool
