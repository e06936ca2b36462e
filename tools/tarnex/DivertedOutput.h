#pragma once

#include <cstdio>
#include <string>

namespace tarnex::tool {

/// For as long as it lives, what anyone prints on standard output or standard error goes elsewhere.
class DivertedOutput {
public:
    DivertedOutput(DivertedOutput const&) = delete;
    DivertedOutput& operator=(DivertedOutput const&) = delete;

protected:
    /// Of `stdout` or `stderr`, to a descriptor. Nothing is diverted if that is negative.
    DivertedOutput(FILE* standardStream, int target);
    ~DivertedOutput();

    FILE* stream;

private:
    /// The real stream; negative if there is none.
    int kept;
};

/// Nobody sees it.
class SilentOutput : DivertedOutput {
public:
    explicit SilentOutput(FILE* standardStream);
};

/// It can be had as a text.
class CapturedOutput : DivertedOutput {
public:
    explicit CapturedOutput(FILE* standardStream) : CapturedOutput(standardStream, std::tmpfile()) {}
    ~CapturedOutput();

    /// What has been printed so far.
    std::string text() const;

private:
    CapturedOutput(FILE* standardStream, FILE* newStore);

    /// Null if there is no room for it.
    FILE* store;
};

} // namespace tarnex::tool
