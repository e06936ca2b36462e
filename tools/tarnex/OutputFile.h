#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <sys/types.h>
#include <vector>

namespace tarnex::tool {

/// A file that appears under its name only when it is whole. It is written as a temporary file in the same folder,
/// which is removed again unless `putInPlace` is reached, so that an older file of the name stays as it was until then.
/// Standard output (name "-"), pipes and devices get a copy of the whole file at that moment.
///
/// Further files may belong to it. They are put in place together with it, as soon as all of them are whole. A stream
/// has none.
class OutputFile {
public:
    /// Makes the empty temporary files, also those beside it, which have its name and other extensions. Throws
    /// `Failure` if the output could not be put in place.
    explicit OutputFile(std::string const& outputName, std::vector<std::string_view> const& extensionsBeside = {});
    ~OutputFile();
    OutputFile(OutputFile const&) = delete;
    OutputFile& operator=(OutputFile const&) = delete;

    /// The name for people.
    std::string const& name() const { return shownName; }
    /// False for standard output, pipes and devices.
    bool isPlainFile() const { return !isStream; }
    /// The path to write to; the file may be replaced by another.
    std::string const& temporary() const { return temporaryPath; }
    /// The same for the file beside it that has this extension; empty if there is none.
    std::string temporaryBeside(std::string_view extension) const;
    std::vector<std::string> namesBeside() const;
    /// Makes the temporary file of one more beside it. Throws `Failure` as above, and if there is a file of the name,
    /// which nobody gave.
    OutputFile const& addBeside(std::string const& otherName);

    /// Throws `Failure` if the content does not reach its place, `Interrupted` if the user asked to stop meanwhile.
    void putInPlace();

private:
    void chooseTarget(std::string const& outputName);
    void makeTemporary();
    void makeReady() const;
    void moveToTarget();
    void copyToStream(int whole) const;

    std::string shownName;
    /// The path behind symbolic links; empty for standard output.
    std::string target;
    bool isStream = false;
    mode_t mode = 0;
    /// Empty once there is none any more.
    std::string temporaryPath;
    std::vector<std::unique_ptr<OutputFile>> beside;
};

} // namespace tarnex::tool
