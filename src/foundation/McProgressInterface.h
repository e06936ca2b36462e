#pragma once

#include "foundation/export.h"

/// Through this interface a long operation reports to its host and asks whether to go on. The library never owns one
/// and never makes one; a null pointer stands for "nobody listens, nothing can be stopped". Texts are in printf style.
class TARNEX_API McProgressInterface {
public:
    /// Not called by this library.
    virtual void reset() {}
    /// Opens a working phase with a title, which may be the empty string.
    virtual void startWorking(char const* format, ...) = 0;
    virtual void stopWorking() = 0;
    /// Reports a fraction from 0 to 1.
    virtual void setProgressValue(float fraction) = 0;
    /// Non-zero if the user asked to stop; the caller then cleans up and returns its failure. The argument is always 1.
    virtual int wasInterrupted(int check) = 0;
    /// Not called by this library.
    virtual void update() {}
    /// Sets the text of the current step.
    virtual void setProgressInfo(char const* format, ...) = 0;

    virtual ~McProgressInterface();
};
