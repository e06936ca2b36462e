#include "infoReport.h"

#include <charconv>
#include <cstdio>
#include <nlohmann/json.hpp>

namespace tarnex::tool {

namespace {

using Json = nlohmann::ordered_json;

/// The shortest decimal number that is the same float: 3.732, not 3.7320001125335693.
Json jsonOf(float value) {
    char text[64];
    char const* const end = std::to_chars(text, text + sizeof text, value).ptr;
    double number = value;
    std::from_chars(text, end, number);
    return number;
}

Json jsonOf(McVec3f const& position) {
    return Json::array({jsonOf(position.x), jsonOf(position.y), jsonOf(position.z)});
}

Json jsonOf(DataItem const& item) {
    Json json = {{"name", item.name}, {"type", item.type}, {"value", item.value}};
    if (item.type != "text") json["value"] = Json::parse(item.value, nullptr, false);
    return json;
}

Json jsonOf(MoleculeFacts const& facts) {
    Json json = {{"name", facts.name},   {"formula", facts.formula}, {"steps", facts.steps},
                 {"atoms", facts.atoms}, {"bonds", facts.bonds},     {"bondTypes", Json::object()}};
    for (auto const& [type, count] : facts.bondTypes) json["bondTypes"][std::to_string(type)] = count;
    if (facts.netCharge) {
        json["netCharge"] = *facts.netCharge;
        json["chargedAtoms"] = Json::array();
        for (auto const& [atom, charge] : facts.chargedAtoms) {
            json["chargedAtoms"].push_back({{"atom", atom}, {"charge", charge}});
        }
    }
    if (facts.partialCharge) json["partialCharge"] = *facts.partialCharge;
    if (facts.implicitHydrogens) json["implicitHydrogens"] = *facts.implicitHydrogens;
    if (facts.box) json["boundingBox"] = {{"low", jsonOf(facts.box->low)}, {"high", jsonOf(facts.box->high)}};
    json["levels"] = Json::array();
    for (LevelFacts const& level : facts.levels) {
        json["levels"].push_back({{"name", level.name},
                                  {"groups", level.groups},
                                  {"attributes", level.attributes},
                                  {"kinds", level.kinds},
                                  {"names", level.names}});
    }
    json["data"] = Json::array();
    for (DataItem const& item : facts.data) json["data"].push_back(jsonOf(item));
    return json;
}

Json jsonOf(FileReport const& report) {
    Json json = {{"files", report.files},
                 {"format", report.format},
                 {"bytes", report.bytes},
                 {"molecules", Json::array()},
                 {"errors", report.errors}};
    for (MoleculeFacts const& facts : report.molecules) json["molecules"].push_back(jsonOf(facts));
    return json;
}

} // namespace

void printJson(std::vector<FileReport> const& reports) {
    Json json = Json::array();
    for (FileReport const& report : reports) json.push_back(jsonOf(report));
    // Files may hold texts in any encoding; what is no UTF-8 is replaced.
    std::string const text = json.dump(2, ' ', false, Json::error_handler_t::replace);
    std::fwrite(text.data(), 1, text.size(), stdout);
    std::fputc('\n', stdout);
}

} // namespace tarnex::tool
