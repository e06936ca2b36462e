#include "infoReport.h"
#include "text.h"

#include <algorithm>
#include <cstdio>

namespace tarnex::tool {

namespace {

constexpr std::size_t shownMolecules = 10;
constexpr std::size_t shownItems = 12;
constexpr std::size_t shownCharges = 8;
constexpr std::size_t textWidth = 60;

void printLine(char const* title, std::string const& text) {
    std::printf("   %-10s %s\n", title, text.c_str());
}

std::string signedNumber(long long value) {
    std::string const number = std::to_string(value);
    return value > 0 ? "+" + number : number;
}

/// The bond types that chemical file formats share.
std::string bondTypeName(int type) {
    static constexpr char const* names[] = {nullptr, "single", "double", "triple", "aromatic"};
    return type >= 1 && type <= 4 ? names[type] : "of type " + std::to_string(type);
}

std::string describeBonds(MoleculeFacts const& facts) {
    std::vector<std::string> kinds;
    kinds.reserve(facts.bondTypes.size());
    for (auto const& [type, count] : facts.bondTypes) kinds.push_back(std::to_string(count) + " " + bondTypeName(type));
    return std::to_string(facts.bonds) + (kinds.empty() ? "" : " (" + joined(kinds) + ")");
}

std::string describeCharge(MoleculeFacts const& facts, bool all) {
    std::vector<std::string> atoms;
    for (auto const& [atom, charge] : facts.chargedAtoms) {
        if (!all && atoms.size() == shownCharges) {
            atoms.emplace_back("...");
            break;
        }
        atoms.push_back(signedNumber(charge) + " on atom " + std::to_string(atom));
    }
    return signedNumber(*facts.netCharge) + (atoms.empty() ? "" : " (" + joined(atoms) + ")");
}

std::string describeBox(BoundingBox const& box) {
    auto const range = [&box](int axis) { return decimal(box.low[axis], 3) + " to " + decimal(box.high[axis], 3); };
    return joined({range(0), range(1), range(2)}) + " Angstrom";
}

std::string describeLevel(LevelFacts const& level, bool all) {
    std::vector<std::string> details;
    for (auto const& [kind, count] : level.kinds) details.push_back(std::to_string(count) + " " + printable(kind));
    for (std::string const& name : level.names) {
        if (!all && details.size() == shownItems) {
            details.emplace_back("...");
            break;
        }
        details.push_back(printable(name));
    }
    std::string const text = std::to_string(level.groups) + " " + printable(level.name);
    return details.empty() ? text : text + " (" + joined(details) + ")";
}

void printData(std::vector<DataItem> const& data, bool all) {
    char const* title = "data";
    for (std::size_t i = 0; i < data.size(); ++i) {
        if (!all && i == shownItems) {
            printLine("", "and " + counted(static_cast<long long>(data.size() - i), "more item"));
            return;
        }
        std::string const value = printable(data[i].value);
        printLine(title, printable(data[i].name) + " = " + (all ? value : shortened(value, textWidth)));
        title = "";
    }
}

void printMolecule(std::size_t number, MoleculeFacts const& facts, bool all) {
    std::printf("\n%zu. %s\n", number, facts.name.empty() ? "(no name)" : printable(facts.name).c_str());
    if (facts.steps != 1) printLine("steps", std::to_string(facts.steps));
    if (!facts.formula.empty()) printLine("formula", facts.formula);
    printLine("atoms", std::to_string(facts.atoms));
    printLine("bonds", describeBonds(facts));
    if (facts.netCharge) printLine("charge", describeCharge(facts, all));
    if (facts.partialCharge) printLine("partial", "charges add up to " + decimal(*facts.partialCharge, 4));
    if (facts.implicitHydrogens) printLine("implicit", counted(*facts.implicitHydrogens, "hydrogen"));
    for (std::size_t i = 2; i < facts.levels.size(); ++i) {
        printLine(i == 2 ? "levels" : "", describeLevel(facts.levels[i], all));
    }
    if (facts.box) printLine("extent", describeBox(*facts.box));
    printData(facts.data, all);
}

} // namespace

void printReport(FileReport const& report, bool all) {
    if (report.molecules.empty()) return;
    bool const haveSteps = std::any_of(report.molecules.begin(), report.molecules.end(),
                                       [](MoleculeFacts const& facts) { return facts.steps != 1; });
    long long steps = 0;
    for (MoleculeFacts const& facts : report.molecules) steps += facts.steps;
    auto const count = static_cast<long long>(report.molecules.size());
    std::printf("%s\n", printable(joined(report.files, " ")).c_str());
    std::printf("   %s, %s: %s%s\n", report.formatDescription.c_str(),
                counted(static_cast<long long>(report.bytes), "byte").c_str(),
                counted(count, haveSteps ? "trajectory" : "molecule").c_str(),
                haveSteps ? (" of " + counted(steps, "step")).c_str() : "");
    for (std::size_t i = 0; i < report.molecules.size(); ++i) {
        if (!all && i == shownMolecules) {
            std::printf("\nand %lld more; --all shows everything\n", count - static_cast<long long>(i));
            break;
        }
        printMolecule(i + 1, report.molecules[i], all);
    }
    std::printf("\n");
}

} // namespace tarnex::tool
