#pragma once

#include "foundation/McString.h"

/// A string that holds a path.
class TARNEX_API McFilename : public McString {
public:
    McFilename() = default;
    McFilename(char const* path) : McString(path) {}
    McFilename(McString const& path) : McString(path) {}
    McFilename(McFilename const&) = default;
    McFilename& operator=(McFilename const&) = default;
    ~McFilename() override;

    /// Turns backslashes into forward slashes.
    void fixSlashes();

    /// The last component, as a pointer into the path; empty behind a closing slash.
    char const* basename() const;

    /// Writes the directory part with its trailing slash to `out`; empty for a bare file name.
    void dirname(McString& out) const;

    /// The extension of the last component with its point (".gro"), as a pointer into the path. Empty if there is none;
    /// a point at the start of the component (".profile") begins no extension.
    char const* extension() const;
};
