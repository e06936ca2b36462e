#include "DivertedOutput.h"
#include "formatFunctions.h"
#include "wizard/MolTrajBundleIO.h"

#include <algorithm>
#include <cstdio>
#include <sstream>

namespace tarnex::tool {

namespace {

/// The files that no reader took, out of what the wizard printed: it tries each as a molecule last.
std::vector<std::string> filesNotRead(std::string const& printed) {
    std::string const start = "Not saving molecule to ";
    std::vector<std::string> files;
    std::istringstream lines(printed);
    for (std::string line; std::getline(lines, line);) {
        if (!line.starts_with(start)) continue;
        line.erase(0, start.size());
        if (std::find(files.begin(), files.end(), line) == files.end()) files.push_back(line);
    }
    return files;
}

void readList(std::string const& file, Document& document, Console& console) {
    std::ostringstream messages;
    Bundle bundle;
    std::vector<std::string> missing;
    {
        CapturedOutput const printed(stdout);
        bundle = MolTrajBundleIO(&messages, nullptr).readMolTrajectoryBundle(file.c_str());
        missing = filesNotRead(printed.text());
    }
    console.throwIfInterrupted();
    if (!messages.str().empty()) throw Failure(file, "the first line does not hold the word MoleculeBundle");
    for (std::string const& name : missing)
        document.damage.emplace_back(file, "it names " + name + ", which cannot be read");
    if (bundle.size == 0) {
        throw Failure(file, missing.empty() ? "it names no files" : "none of the files that it names can be read");
    }
    for (McHandle<MolTrajectory> const& trajectory : bundle) document.bundle.append(trajectory);
}

} // namespace

void readBundleList(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) readList(file, document, console);
}

} // namespace tarnex::tool
