#include "formatFunctions.h"
#include "qlt/MolTrajectoryVRK.h"

#include <cerrno>

namespace tarnex::tool {

void readQlt(FileNames const& files, Document& document, Console& console) {
    for (std::string const& file : files) {
        console.throwIfInterrupted();
        Bundle bundle;
        MolTrajectoryVRK::readBundle(file.c_str(), bundle);
        if (bundle.size == 0) throw Failure(file, "no qlt file, or cut or damaged; nothing can be read from it");
        for (McHandle<MolTrajectory> const& trajectory : bundle) document.bundle.append(trajectory);
    }
}

void writeQlt(Bundle const& bundle, OutputFile const& output, Console&) {
    errno = 0;
    if (writeQltBundle(bundle, output.temporary().c_str())) return;
    if (errno != 0) throw Failure(output.name(), errno);
    throw Failure(output.name(), "the molecules hold something that the format cannot keep");
}

} // namespace tarnex::tool
