#include "OutputFile.h"

#include "Failure.h"

#include <cerrno>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <filesystem>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnex::tool {

namespace {

/// A file descriptor that is closed at the end of its scope.
class Descriptor {
public:
    explicit Descriptor(int openDescriptor) : descriptor(openDescriptor) {}
    ~Descriptor() {
        if (descriptor >= 0) close(descriptor);
    }
    Descriptor(Descriptor const&) = delete;
    Descriptor& operator=(Descriptor const&) = delete;

    explicit operator bool() const { return descriptor >= 0; }
    int get() const { return descriptor; }

private:
    int descriptor;
};

mode_t modeOfNewFiles() {
    mode_t const mask = umask(0);
    umask(mask);
    return 0666 & ~mask;
}

/// A call that a signal broke off means that the user asked to stop.
[[noreturn]] void throwSystemFailure(std::string const& file) {
    if (errno == EINTR) throw Interrupted{};
    throw Failure(file, errno);
}

} // namespace

OutputFile::OutputFile(std::string const& outputName, std::vector<std::string_view> const& extensionsBeside)
    : shownName(outputName == "-" ? "standard output" : outputName) {
    chooseTarget(outputName);
    for (std::string_view const extension : extensionsBeside) {
        if (isStream) break;
        std::string const other = std::filesystem::path(outputName).replace_extension(extension).string();
        if (other == outputName) throw Failure(shownName, "a further file of the output has the same name");
        beside.push_back(std::make_unique<OutputFile>(other));
    }
    makeTemporary();
}

OutputFile::~OutputFile() {
    if (!temporaryPath.empty()) unlink(temporaryPath.c_str());
}

void OutputFile::chooseTarget(std::string const& outputName) {
    isStream = outputName == "-";
    if (isStream) return;
    target = outputName;
    struct stat status = {};
    if (stat(outputName.c_str(), &status) != 0) {
        if (errno != ENOENT) throw Failure(shownName, errno);
        mode = modeOfNewFiles();
        return;
    }
    if (S_ISDIR(status.st_mode)) throw Failure(shownName, EISDIR);
    if (access(outputName.c_str(), W_OK) != 0) throw Failure(shownName, errno);
    isStream = !S_ISREG(status.st_mode);
    if (isStream) return;
    target = std::filesystem::canonical(outputName).string();
    mode = status.st_mode & 07777;
}

void OutputFile::makeTemporary() {
    std::filesystem::path const folder =
        isStream ? std::filesystem::temp_directory_path() : std::filesystem::path(target).parent_path();
    std::string path = (folder / ".tarnex-XXXXXX").string();
    Descriptor const made(mkstemp(path.data()));
    if (!made) throw Failure(shownName, errno);
    temporaryPath = path;
}

std::string OutputFile::temporaryBeside(std::string_view extension) const {
    for (auto const& file : beside) {
        if (std::string_view(file->shownName).ends_with(extension)) return file->temporaryPath;
    }
    return {};
}

std::vector<std::string> OutputFile::namesBeside() const {
    std::vector<std::string> names;
    for (auto const& file : beside) names.push_back(file->shownName);
    return names;
}

OutputFile const& OutputFile::addBeside(std::string const& otherName) {
    if (std::filesystem::exists(std::filesystem::symlink_status(otherName))) {
        throw Failure(shownName, "it comes with the file " + otherName + ", which exists already; choose another name");
    }
    return *beside.emplace_back(std::make_unique<OutputFile>(otherName));
}

void OutputFile::putInPlace() {
    if (isStream) {
        Descriptor const whole(open(temporaryPath.c_str(), O_RDONLY | O_CLOEXEC));
        if (!whole) throw Failure(shownName, errno);
        unlink(temporaryPath.c_str());
        temporaryPath.clear();
        copyToStream(whole.get());
        return;
    }
    for (auto const& file : beside) file->makeReady();
    makeReady();
    for (auto const& file : beside) file->moveToTarget();
    moveToTarget();
}

void OutputFile::makeReady() const {
    Descriptor const whole(open(temporaryPath.c_str(), O_RDONLY | O_CLOEXEC));
    if (!whole) throw Failure(shownName, errno);
    fchmod(whole.get(), mode); // some file systems know no modes
    // A disk that is full or gone may tell so only now.
    if (fsync(whole.get()) != 0) throw Failure(shownName, errno);
}

void OutputFile::moveToTarget() {
    if (std::rename(temporaryPath.c_str(), target.c_str()) != 0) throw Failure(shownName, errno);
    temporaryPath.clear();
}

void OutputFile::copyToStream(int whole) const {
    Descriptor const stream(target.empty() ? dup(STDOUT_FILENO) : open(target.c_str(), O_WRONLY | O_CLOEXEC));
    if (!stream) throwSystemFailure(shownName);
    char block[65536];
    while (true) {
        ssize_t const length = read(whole, block, sizeof block);
        if (length == 0) return;
        if (length < 0) throwSystemFailure(shownName);
        for (ssize_t done = 0; done < length;) {
            ssize_t const written = write(stream.get(), block + done, static_cast<std::size_t>(length - done));
            if (written < 0) throwSystemFailure(shownName);
            done += written;
        }
    }
}

} // namespace tarnex::tool
