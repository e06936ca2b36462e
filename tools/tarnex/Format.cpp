#include "Format.h"

#include "text.h"

#include <algorithm>
#include <cctype>
#include <cerrno>
#include <fcntl.h>
#include <filesystem>
#include <fstream>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnex::tool {

namespace {

bool contains(std::vector<std::string_view> const& texts, std::string_view text) {
    return std::find(texts.begin(), texts.end(), text) != texts.end();
}

std::string knownExtensions() {
    std::vector<std::string> all;
    for (Format const& format : formats()) all.insert(all.end(), format.extensions.begin(), format.extensions.end());
    return joined(all);
}

void requireReadableFile(std::string const& file) {
    struct stat status = {};
    if (stat(file.c_str(), &status) != 0) throw Failure(file, errno);
    if (S_ISDIR(status.st_mode)) throw Failure(file, EISDIR);
    if (!S_ISREG(status.st_mode)) throw Failure(file, "not a regular file; a pipe or device cannot be read");
    int const descriptor = open(file.c_str(), O_RDONLY | O_CLOEXEC);
    if (descriptor < 0) throw Failure(file, errno);
    close(descriptor);
}

} // namespace

std::string extensionOf(std::string const& file) {
    std::string extension = std::filesystem::path(file).extension().string();
    for (char& c : extension) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return extension;
}

bool hasTextFrom(std::string const& file, long offset) {
    std::ifstream stream(file, std::ios::binary);
    stream.seekg(offset);
    char text = 0;
    return static_cast<bool>(stream >> text);
}

std::string formatNames() {
    std::vector<std::string> names;
    for (Format const& format : formats()) names.emplace_back(format.name);
    return joined(names);
}

Format const& formatByName(std::string const& name) {
    for (Format const& format : formats()) {
        if (format.name == name) return format;
    }
    throw WrongUse{"unknown format \"" + printable(name) + "\"; known are " + formatNames()};
}

Format const& formatOfFile(std::string const& file) {
    std::string const extension = extensionOf(file);
    for (Format const& format : formats()) {
        if (contains(format.extensions, extension)) return format;
    }
    throw WrongUse{printable(file) + ": the extension names no known format (" + knownExtensions() +
                   "); name the format with --from or --to"};
}

Format const& chosenFormat(std::string const& file, std::string const& name, bool single) {
    Format const& format = name.empty() ? formatOfFile(file) : formatByName(name);
    return single && !format.inSinglePrecision.empty() ? formatByName(std::string(format.inSinglePrecision)) : format;
}

std::vector<Input> groupInputs(FileNames const& files, std::string const& formatName, bool single) {
    std::vector<Input> inputs;
    for (std::string const& file : files) {
        if (file == "-") throw WrongUse{"standard input cannot be read; name a file"};
        if (!inputs.empty() && contains(inputs.back().format->companions, extensionOf(file))) {
            inputs.back().files.push_back(file);
            continue;
        }
        Format const& format = chosenFormat(file, formatName, single);
        if (!format.read) throw WrongUse{"the format " + std::string(format.name) + " is only written"};
        inputs.push_back({&format, {file}});
    }
    return inputs;
}

MolTrajectory& onlyTrajectory(Bundle const& bundle, OutputFile const& output, char const* subject) {
    if (bundle.size != 1) {
        throw Failure(output.name(),
                      std::string(subject) + " one molecule or trajectory, here are " + std::to_string(bundle.size));
    }
    if (bundle[0]->getNumTimeSteps() < 1) throw Failure(output.name(), "there is no step to write");
    return *bundle[0];
}

Document readInput(Input const& input, Console& console) {
    std::string const& file = input.files.front();
    for (std::string const& each : input.files) requireReadableFile(each);
    console.startPart("reading " + file);
    Document document;
    workOn(file, [&] { input.format->read(input.files, document, console); });
    console.throwIfInterrupted();
    return document;
}

} // namespace tarnex::tool
