#pragma once

namespace tarnex::tool {

/// For as long as it lives, what anyone prints on standard output goes nowhere.
class SilentOutput {
public:
    SilentOutput();
    ~SilentOutput();
    SilentOutput(SilentOutput const&) = delete;
    SilentOutput& operator=(SilentOutput const&) = delete;

private:
    /// The real standard output; negative if there is none.
    int kept;
};

} // namespace tarnex::tool
