#pragma once

#include "foundation/McProgressInterface.h"

namespace tarnex {

/// A progress interface that may be null: every call on a null one does nothing and never asks to stop. The texts are
/// handed on as formats and must be free of conversions.
class Progress {
public:
    Progress(McProgressInterface* progressInterface) : interface(progressInterface) {}

    explicit operator bool() const { return interface != nullptr; }

    void start(char const* title) const {
        if (interface) interface->startWorking(title);
    }
    void stop() const {
        if (interface) interface->stopWorking();
    }
    void info(char const* text) const {
        if (interface) interface->setProgressInfo(text);
    }
    void value(float fraction) const {
        if (interface) interface->setProgressValue(fraction);
    }
    /// Reports the fraction and returns whether the user asked to stop.
    bool interruptedAt(float fraction) const {
        value(fraction);
        return interface && interface->wasInterrupted(1) != 0;
    }

private:
    McProgressInterface* interface;
};

/// A working phase that is open for as long as the object lives.
class WorkingPhase {
public:
    WorkingPhase(Progress const& workProgress, char const* title) : progress(workProgress) { progress.start(title); }
    ~WorkingPhase() { progress.stop(); }
    WorkingPhase(WorkingPhase const&) = delete;
    WorkingPhase& operator=(WorkingPhase const&) = delete;

private:
    Progress progress;
};

} // namespace tarnex
