#pragma once

#include "OutputFile.h"
#include "textio/writer.h"

namespace tarnex::tool {

/// A writer on the temporary file of an output. The writer itself tells of no failure; this does.
class TextOutput {
public:
    explicit TextOutput(OutputFile const& outputFile);

    writer& text() { return out; }
    /// Throws `Failure` if something has not reached the file, as on a full disk.
    void requireWritten() const;
    /// The same for all that is still held.
    void finish();
    /// The last part of the output's name.
    std::string title() const;

private:
    OutputFile const& output;
    writer out;
};

} // namespace tarnex::tool
