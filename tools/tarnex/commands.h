#pragma once

#include "Console.h"
#include "Failure.h"
#include "Format.h"
#include "Frames.h"

#include <string>

/// The work of the subcommands. They throw `Failure`, `WrongUse` or `Interrupted` if it cannot go on.
namespace tarnex::tool {

struct InfoOptions {
    FileNames files;
    std::string from;
    bool json = false;
    bool single = false;
    bool all = false;
};

/// Tells about each file; one that cannot be read is told on standard error and does not keep the others back.
ExitStatus runInfo(InfoOptions const& options, Console& console);

struct ConvertOptions {
    FileNames inputs;
    std::string output;
    std::string from;
    std::string to;
    FrameRange frames;
    bool keepGoing = false;
    bool single = false;
};

ExitStatus runConvert(ConvertOptions const& options, Console& console);

/// The table of formats.
ExitStatus runFormats();

} // namespace tarnex::tool
