#pragma once

#include "foundation/McProgressInterface.h"

#include <chrono>
#include <string>

namespace tarnex::tool {

/// One line of the program on standard error.
void printMessage(std::string const& message);

/// Standard error and the keyboard: messages, the progress bar, and the question whether the user asked to stop. The
/// bar is drawn on a terminal only, and only if the work takes a while.
class Console : public McProgressInterface {
public:
    /// A quiet console has neither notes nor a bar. From now on Ctrl-C and the signals that ask the program to end are
    /// noted; a second one ends it at once.
    explicit Console(bool quiet);
    ~Console() override;
    Console(Console const&) = delete;
    Console& operator=(Console const&) = delete;

    void error(std::string const& message);
    /// For what is worth knowing and no error.
    void note(std::string const& message);

    /// Names what the next values of the bar belong to.
    void startPart(std::string const& label);
    void setProgressValue(float fraction) override;
    int wasInterrupted(int check) override;
    void throwIfInterrupted();

    /// The titles of the format classes do not tell the file; `startPart` does.
    void startWorking(char const*, ...) override {}
    void stopWorking() override {}
    void setProgressInfo(char const*, ...) override {}

private:
    void eraseBar();

    using Clock = std::chrono::steady_clock;

    bool quiet;
    bool hasBar;
    bool barIsShown = false;
    std::string part;
    Clock::time_point nextDrawing;
};

} // namespace tarnex::tool
