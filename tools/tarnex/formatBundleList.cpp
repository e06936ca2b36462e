#include "DivertedOutput.h"
#include "formatFunctions.h"
#include "formats/MolTrajBundleIO.h"
#include "text.h"

#include <sstream>

namespace tarnex::tool {

namespace {

/// A file that cannot be read is damage of the list.
void readListedFile(std::string const& list, char const* file, Document& document) {
    Bundle bundle;
    std::string reason;
    try {
        // The lines of the wizard tell no more than that.
        SilentOutput const silent(stdout);
        bundle = readFileOfBundleList(file);
    } catch (...) {
        reason = ": " + reasonOfCurrentException();
    }
    if (bundle.size == 0)
        document.damage.emplace_back(list, std::string("it names ") + file + ", which cannot be read" + reason);
    for (McHandle<MolTrajectory> const& trajectory : bundle) document.bundle.append(trajectory);
}

void readList(std::string const& list, Document& document, Console& console) {
    constexpr std::size_t shownWidth = 60;
    std::ostringstream messages;
    BundleListNames const names = readNamesInBundleList(list.c_str(), &messages);
    if (!messages.str().empty()) throw Failure(list, "the first line does not hold the word MoleculeBundle");
    if (names.unfinished.length() > 0) {
        console.note(list + ": its last name is not read, since no line end or closing quote stands behind it: " +
                     shortened(static_cast<char const*>(names.unfinished), shownWidth));
    }
    if (names.paths.size == 0) throw Failure(list, "it names no files");
    for (McString const& file : names.paths) {
        console.throwIfInterrupted();
        readListedFile(list, file, document);
    }
    if (document.bundle.size > 0) return;
    Failure const& first = document.damage.front();
    throw names.paths.size == 1 ? first : first.followedBy("; nor can the other files that it names");
}

} // namespace

void readBundleList(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) readList(file, document, console);
}

} // namespace tarnex::tool
