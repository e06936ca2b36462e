#include "Console.h"

#include "Failure.h"
#include "text.h"

#include <algorithm>
#include <csignal>
#include <cstdio>
#include <unistd.h>

namespace tarnex::tool {

namespace {

volatile std::sig_atomic_t stopRequested = 0;

extern "C" void noteStopRequest(int) {
    stopRequested = 1;
}

/// Calls that wait, as for the other end of a pipe, are not restarted, so that they end as well.
void noteStopSignals() {
    for (int const signal : {SIGINT, SIGTERM, SIGHUP}) {
        struct sigaction previous = {};
        sigaction(signal, nullptr, &previous);
        if (previous.sa_handler == SIG_IGN) continue; // nohup
        struct sigaction action = {};
        action.sa_handler = noteStopRequest;
        action.sa_flags = static_cast<int>(SA_RESETHAND);
        sigaction(signal, &action, nullptr);
    }
}

constexpr std::chrono::milliseconds firstDrawingAfter(300);
constexpr std::chrono::milliseconds drawingInterval(100);
constexpr int barWidth = 30;
constexpr std::size_t labelWidth = 38;

} // namespace

void printMessage(std::string const& message) {
    std::fprintf(stderr, "tarnex: %s\n", message.c_str());
}

Console::Console(bool isQuiet)
    : quiet(isQuiet), hasBar(!isQuiet && isatty(STDERR_FILENO) == 1), nextDrawing(Clock::now() + firstDrawingAfter) {
    noteStopSignals();
}

Console::~Console() {
    eraseBar();
}

void Console::error(std::string const& message) {
    eraseBar();
    printMessage(message);
}

void Console::note(std::string const& message) {
    if (!quiet) error("note: " + message);
}

void Console::startPart(std::string const& label) {
    eraseBar();
    part = shortened(printable(label), labelWidth);
}

void Console::setProgressValue(float fraction) {
    if (!hasBar || Clock::now() < nextDrawing) return;
    nextDrawing = Clock::now() + drawingInterval;
    float const part01 = fraction > 0.0F ? std::min(fraction, 1.0F) : 0.0F;
    auto const filled = static_cast<std::size_t>(part01 * barWidth);
    std::string const bar = std::string(filled, '#') + std::string(barWidth - filled, '.');
    std::fprintf(stderr, "\r%s [%s] %3d %%\033[K", part.c_str(), bar.c_str(), static_cast<int>(part01 * 100));
    std::fflush(stderr);
    barIsShown = true;
}

void Console::eraseBar() {
    if (!barIsShown) return;
    std::fputs("\r\033[K", stderr);
    std::fflush(stderr);
    barIsShown = false;
}

int Console::wasInterrupted(int) {
    return stopRequested;
}

void Console::throwIfInterrupted() {
    if (stopRequested) throw Interrupted{};
}

} // namespace tarnex::tool
