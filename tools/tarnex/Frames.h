#pragma once

#include "Console.h"
#include "Failure.h"
#include "Format.h"

#include <optional>
#include <string>

namespace tarnex::tool {

/// The steps that are taken from a trajectory, as in "first:last:step". They count from 0, negative ones from the end,
/// and `last` is one of them. What is not given means from the first, to the last, every one.
struct FrameRange {
    std::optional<int> first;
    std::optional<int> last;
    int step = 1;

    /// Throws `WrongUse` for a text that is no range.
    static FrameRange parse(std::string const& text);
};

/// The way of the steps from the input to a writer: counts them for the progress bar and keeps what went wrong.
struct Transfer {
    /// With `onlyFinite` a step with a coordinate that is no finite number counts as unreadable: a text has no word for
    /// it.
    Transfer(Console& theConsole, bool onlyFinite) : console(theConsole), finiteOnly(onlyFinite) {}

    /// Throws what ended the transfer, if anything did.
    void throwIfFailed() const;

    Console& console;
    bool finiteOnly;
    long long totalSteps = 0;
    long long stepsDone = 0;
    std::optional<Failure> failure;
};

/// Appends what a writer is to be given for a trajectory of the input: its selected steps, or the only one. The writer
/// sees a step as unreadable once the user asked to stop, so that writers that never ask stop as well. Throws `Failure`
/// if the range holds none of the steps.
void appendSelected(Bundle& selection, MolTrajectory* trajectory, FrameRange const& range, std::string const& file,
                    Transfer& transfer);

} // namespace tarnex::tool
