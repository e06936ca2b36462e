#include "TextOutput.h"

#include "Failure.h"
#include "foundation/McFilename.h"

#include <cerrno>
#include <cstdio>

namespace tarnex::tool {

TextOutput::TextOutput(OutputFile const& outputFile) : output(outputFile), out(outputFile.temporary().c_str()) {
    if (!out.isOpen()) throw Failure(output.name(), errno);
}

void TextOutput::requireWritten() const {
    if (std::ferror(out.file)) throw Failure(output.name(), errno);
}

void TextOutput::finish() {
    out.flush();
    requireWritten();
}

std::string TextOutput::title() const {
    return McFilename(output.name().c_str()).basename();
}

} // namespace tarnex::tool
