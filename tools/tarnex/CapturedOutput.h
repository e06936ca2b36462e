#pragma once

#include <cstdio>
#include <string>

namespace tarnex::tool {

/// Takes what the library itself prints on standard output or standard error for as long as the object lives, since the
/// program has its own way to tell.
class CapturedOutput {
public:
    /// Of `stdout` or `stderr`.
    explicit CapturedOutput(FILE* standardStream);
    ~CapturedOutput();
    CapturedOutput(CapturedOutput const&) = delete;
    CapturedOutput& operator=(CapturedOutput const&) = delete;

    /// What has been printed so far.
    std::string text() const;

private:
    FILE* stream;
    /// Null if there is no room for it: then nothing is captured.
    FILE* store;
    int original;
};

} // namespace tarnex::tool
