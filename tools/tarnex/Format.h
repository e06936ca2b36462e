#pragma once

#include "Console.h"
#include "Failure.h"
#include "OutputFile.h"
#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "model/MolTrajectory.h"

#include <functional>
#include <string>
#include <string_view>
#include <vector>

namespace tarnex::tool {

using Bundle = McDArray<McHandle<MolTrajectory>>;
using FileNames = std::vector<std::string>;

/// What was read from a file, or from several that belong together.
struct Document {
    Bundle bundle;
    /// What of damaged files could not be read.
    std::vector<Failure> damage;
};

/// What a format has room for, to tell what gets lost. The position of the atoms goes without saying.
struct Capacity {
    bool everything;
    std::vector<std::string_view> levels;
    std::vector<std::string_view> atomAttributes;
    std::vector<std::string_view> bondAttributes;
    bool dataItems;
    bool bonds = true;
    /// Those that are kept where others are not.
    std::vector<std::string_view> dataNames = {};
};

/// A row of the table of formats. A new format is a row in formatTable.cpp and the two functions it names.
struct Format {
    std::string_view name;
    /// With their points and in lower case.
    std::vector<std::string_view> extensions;
    /// Extensions of the further files that may stand behind one of this format and are read together with it.
    std::vector<std::string_view> companions;
    std::string_view description;
    std::string_view keeps;
    std::string_view loses;
    Capacity capacity;
    /// Appends what the files hold. Null if the format is only written.
    void (*read)(FileNames const& files, Document& document, Console& console);
    /// Writes the temporary file of the output and of those beside it. Empty if the format is only read.
    std::function<void(Bundle const& bundle, OutputFile& output, Console& console)> write;
    /// Extensions of the further files that are written beside one of this format.
    std::vector<std::string_view> writtenBeside = {};
    /// The format of the same files in single precision, if no file states its precision.
    std::string_view inSinglePrecision = {};
};

std::vector<Format> const& formats();

/// With its point and in lower case.
std::string extensionOf(std::string const& file);

/// Whether the file holds anything but blanks and line ends from an offset on.
bool hasTextFrom(std::string const& file, long offset);

/// The names of all formats, as a list for people.
std::string formatNames();

/// Throws `WrongUse` for an unknown name.
Format const& formatByName(std::string const& name);

/// Throws `WrongUse` for an unknown extension, which is matched without regard to case.
Format const& formatOfFile(std::string const& file);

/// The format of a file by the user's choice: by name or, if that is empty, by extension, and in single precision if it
/// is wanted and makes a difference. Throws `WrongUse` as above.
Format const& chosenFormat(std::string const& file, std::string const& name, bool single);

/// Files that are read together, and how.
struct Input {
    Format const* format;
    FileNames files;
};

/// Sorts the files of a command line into inputs, by formats as they are chosen above. Throws `WrongUse` for a format
/// that is unknown or not read.
std::vector<Input> groupInputs(FileNames const& files, std::string const& formatName, bool single);

/// The trajectory of an output that has room for one and at least one step. Throws `Failure` if there are more or none;
/// `subject` is its beginning, such as "an XYZ file holds".
MolTrajectory& onlyTrajectory(Bundle const& bundle, OutputFile const& output, char const* subject);

/// Throws `Failure` if a file cannot be read or has nothing in it, `Interrupted` if the user asked to stop.
Document readInput(Input const& input, Console& console);

} // namespace tarnex::tool
