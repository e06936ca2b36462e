#include "formats/MolTrajBundleIO.h"

#include "foundation/McFilename.h"
#include "foundation/report.h"
#include "model/MolTrajectoryMem.h"
#include "wizard/TarnexWizard.h"

#include <cstring>
#include <memory>

char const* MOLECULE_BUNDLE_HEADER = "MoleculeBundle";

namespace {

using Bundle = McDArray<McHandle<MolTrajectory>>;

struct CloseFile {
    void operator()(FILE* file) const { std::fclose(file); }
};

constexpr int firstLineSize = 256;

/// As in the "C" locale.
bool isWhiteSpace(int c) {
    return c == ' ' || (c >= '\t' && c <= '\r');
}

/// The first character of the next word, or EOF. Comments and white space ahead of it are passed.
int firstOfWord(FILE* file) {
    int c = std::getc(file);
    while (c == '#' || isWhiteSpace(c)) {
        if (c == '#') {
            while (c != '\n' && c != EOF) c = std::getc(file);
        }
        if (c != EOF) c = std::getc(file);
    }
    return c;
}

/// Tries a file as a bundle, as a trajectory and as a molecule. Empty if it is none of them.
Bundle load(char const* path) {
    Bundle bundle = TarnexWizard::readBundle(path, TarnexWizard::ReadBundles::READ_AUTO);
    if (bundle.size > 0) return bundle;
    if (auto* trajectory =
            TarnexWizard::readMolTrajectory(path, TarnexWizard::ReadTrajectories::READ_AUTO, nullptr, nullptr)) {
        bundle.append(trajectory);
        return bundle;
    }
    std::unique_ptr<Molecule> const molecule(
        TarnexWizard::readMolecule(path, TarnexWizard::ReadMolecules::READ_AUTO, nullptr));
    if (molecule) bundle.append(new MolTrajectoryMem(molecule.get(), 1));
    return bundle;
}

} // namespace

MolTrajBundleIO::MolTrajBundleIO(std::ostream* messageStream, McProgressInterface* progressInterface)
    : messages(messageStream), progress(progressInterface) {}

Bundle MolTrajBundleIO::readMolTrajectoryBundle(char const* filename) {
    Bundle result;
    for (McString const& path : tarnex::readNamesInBundleList(filename, messages).paths) {
        for (McHandle<MolTrajectory> const& trajectory : tarnex::readFileOfBundleList(path)) result.append(trajectory);
    }
    return result;
}

int MolTrajBundleIO::nextWord(FILE* file, McString& word) {
    word = "";
    int c = firstOfWord(file);
    bool const quoted = c == '"';
    if (quoted) c = std::getc(file);
    for (; c != EOF; c = std::getc(file)) {
        if (quoted ? c == '"' : isWhiteSpace(c)) return 1;
        word.append(static_cast<char>(c));
    }
    return 0;
}

tarnex::BundleListNames tarnex::readNamesInBundleList(char const* filename, std::ostream* messages) {
    BundleListNames names;
    std::unique_ptr<FILE, CloseFile> const list(std::fopen(filename, "rb"));
    if (!list) {
        report(messages, "Could not open file: ", filename);
        return names;
    }
    char line[firstLineSize] = "";
    if (!std::fgets(line, sizeof line, list.get()) || !std::strstr(line, MOLECULE_BUNDLE_HEADER)) {
        report(messages, "Invalid header in ", filename, " (expecting ", line, ")");
        return names;
    }
    McString folder;
    McFilename(filename).dirname(folder);
    McString word;
    while (MolTrajBundleIO::nextWord(list.get(), word)) names.paths.append(folder + word);
    names.unfinished = word;
    return names;
}

Bundle tarnex::readFileOfBundleList(char const* path) {
    Bundle bundle = load(path);
    McFilename name(path);
    name.fixSlashes();
    for (McHandle<MolTrajectory> const& trajectory : bundle) trajectory->getTopology()->setName(name.basename());
    return bundle;
}
