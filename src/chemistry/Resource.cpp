#include "chemistry/Resource.h"

#include <dlfcn.h>
#include <filesystem>
#include <string>
#include <system_error>

namespace {

/// The file that this code was loaded from; empty if the loader does not know.
char const* ownFile() {
    Dl_info info;
    static char const insideLibrary = 0;
    return dladdr(&insideLibrary, &info) != 0 && info.dli_fname ? info.dli_fname : "";
}

} // namespace

namespace molchem {

Resource::Resource() : residueDatabase(tarnex::findResidueDatabase(ownFile())) {}

Resource* Resource::getInstance() {
    static Resource resource;
    return &resource;
}

} // namespace molchem

namespace tarnex {

McFilename findResidueDatabase(char const* libraryFile) {
    namespace fs = std::filesystem;
    std::error_code error; // of no interest: a path that cannot be resolved is taken as it is
    fs::path library = fs::canonical(libraryFile, error);
    if (error) library = libraryFile;

    McFilename firstChoice;
    for (char const* place : {"../share/tarnex/residues.qlt", "../../share/tarnex/residues.qlt"}) {
        std::string const path = (library.parent_path() / place).lexically_normal().string();
        if (fs::is_regular_file(path, error)) return path.c_str();
        if (firstChoice.length() == 0) firstChoice = McFilename(path.c_str());
    }
    return firstChoice;
}

} // namespace tarnex
