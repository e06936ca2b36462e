#include "commands.h"
#include "infoReport.h"

#include <filesystem>

namespace tarnex::tool {

namespace {

/// What keeps the report from being complete goes to its errors.
void readReport(Input const& input, FileReport& report, Console& console) {
    Document const document = readInput(input, console);
    for (Failure const& damage : document.damage) report.errors.push_back(damage.message);
    std::string const& file = input.files.front();
    for (McHandle<MolTrajectory> const& trajectory : document.bundle) {
        console.throwIfInterrupted();
        bool readable = true;
        workOn(file, [&] { report.molecules.push_back(factsOf(*trajectory, readable)); });
        if (!readable) {
            report.errors.push_back(
                Failure(file, "step 0 of \"" + report.molecules.back().name + "\" cannot be read").message);
        }
    }
}

FileReport reportOf(Input const& input, Console& console) {
    FileReport report;
    report.files = input.files;
    report.format = input.format->name;
    report.formatDescription = input.format->description;
    try {
        readReport(input, report, console);
        for (std::string const& file : input.files) report.bytes += std::filesystem::file_size(file);
    } catch (Failure const& failure) {
        report.errors.push_back(failure.message);
    }
    return report;
}

} // namespace

ExitStatus runInfo(InfoOptions const& options, Console& console) {
    ExitStatus status = succeeded;
    std::vector<FileReport> reports;
    for (Input const& input : groupInputs(options.files, options.from, options.single)) {
        FileReport report = reportOf(input, console);
        for (std::string const& error : report.errors) console.error(error);
        if (!report.errors.empty()) status = failed;
        if (options.json)
            reports.push_back(std::move(report));
        else
            printReport(report, options.all);
    }
    if (options.json) printJson(reports);
    return status;
}

} // namespace tarnex::tool
