#pragma once

#include <initializer_list>
#include <string>
#include <vector>

namespace tarnex::gromacs {

/// The files that one call writes. Destroyed ahead of `keep`, none of them is left half-written.
class TargetFiles {
public:
    /// Tries whether all of them can be opened, which harms no file that is there; if not, none is made.
    explicit TargetFiles(std::initializer_list<char const*> names);
    ~TargetFiles();
    TargetFiles(TargetFiles const&) = delete;
    TargetFiles& operator=(TargetFiles const&) = delete;

    bool canBeWritten() const { return writable; }
    void keep() { toRemove.clear(); }

private:
    std::vector<std::string> toRemove;
    bool writable = true;
};

} // namespace tarnex::gromacs
