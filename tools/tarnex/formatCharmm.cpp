#include "DivertedOutput.h"
#include "charmm/MolTrajectoryDCD.h"
#include "formatFunctions.h"
#include "foundation/McFilename.h"

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <sstream>

namespace tarnex::tool {

namespace {

/// The class tells of each gap in the numbers of the atoms; some of them are enough.
void noteWarnings(std::string const& file, std::string const& printed, Console& console) {
    constexpr int mostNotes = 5;
    std::istringstream lines(printed);
    int count = 0;
    for (std::string line; std::getline(lines, line);) {
        if (line.starts_with("This is ")) continue;
        if (++count <= mostNotes) console.note(line.insert(0, file + ": "));
    }
    if (count > mostNotes) console.note(file + ": so it is " + std::to_string(count - mostNotes) + " times more");
}

/// The first line of a message, without the frame that the class puts around the text of an exception.
Failure failureOf(std::string const& message, std::string const& psf, std::string const& dcd) {
    std::string reason = message.substr(0, message.find('\n'));
    std::string const frame = "CHARMM PSF/DCD  data exception >";
    if (reason.starts_with(frame)) reason = reason.substr(frame.size(), reason.size() - frame.size() - 1);
    std::string const& file = reason.find("psf-file") != std::string::npos ? psf : dcd;
    if (reason.find("!NTITLE") != std::string::npos) reason += "; words behind \"PSF\" in its first line are not read";
    return {file, reason};
}

void readPair(std::string const& psf, std::string const& dcd, Document& document, Console& console) {
    std::ostringstream messages;
    McHandle<MolTrajectory> const trajectory(new MolTrajectoryDCD(&messages));
    // The class finds a DCD file in the first place whatever the names are.
    char const* names[] = {dcd.c_str(), psf.c_str()};
    bool isRead = false;
    std::string warnings;
    {
        CapturedOutput const printed(stderr);
        isRead = static_cast<MolTrajectoryDCD&>(*trajectory).readDCDMolTrajectory(2, names) != nullptr;
        warnings = printed.text();
    }
    noteWarnings(psf, warnings, console);
    if (!isRead) throw failureOf(messages.str(), psf, dcd);
    trajectory->getTopology()->setName(McFilename(dcd.c_str()).basename());
    document.bundle.append(trajectory);
}

} // namespace

void readCharmm(FileNames const& files, Document& document, Console& console) {
    FileNames sorted = files;
    auto const isPsf = [](std::string const& file) { return std::filesystem::path(file).extension() == ".psf"; };
    auto const firstDcd = std::stable_partition(sorted.begin(), sorted.end(), isPsf);
    if (firstDcd - sorted.begin() != 1 || firstDcd == sorted.end()) {
        throw Failure(files.front(), "a PSF file and the DCD files for it are read together: FILE.psf FILE.dcd");
    }
    for (auto dcd = firstDcd; dcd != sorted.end(); ++dcd) readPair(sorted.front(), *dcd, document, console);
}

} // namespace tarnex::tool
