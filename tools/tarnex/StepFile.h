#pragma once

#include "Format.h"
#include "TextOutput.h"
#include "foundation/McVec3f.h"

#include <string>

namespace tarnex::tool {

/// A text file of the formats that the program writes itself, line by line.
class StepFile {
public:
    /// Throws `Failure` if the file cannot be made.
    explicit StepFile(OutputFile const& outputFile) : file(outputFile) {}

    /// The line that is put together.
    std::string line;

    /// Appends the three coordinates to the line.
    void addPlace(McVec3f const& place);
    /// Writes the line and begins the next one. A line whose length, with its end, is a multiple of 300 gets a blank:
    /// readers that pass over lines in pieces of 300 characters would take the next line with it.
    void endLine();
    /// Throws `Failure` if not everything has reached the file.
    void finish() { file.finish(); }

private:
    TextOutput file;
};

} // namespace tarnex::tool
