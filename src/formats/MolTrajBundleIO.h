#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/McString.h"
#include "foundation/export.h"
#include "model/MolTrajectory.h"

#include <cstdio>
#include <iosfwd>

class McProgressInterface;

/// What the first line of a bundle list holds: "MoleculeBundle".
extern TARNEX_API char const* MOLECULE_BUNDLE_HEADER;

/// Reads bundle lists: small text files that name other molecule files, which are loaded as one bundle.
///
/// Behind the first line stand the names, separated by white space, each relative to the folder of the list. A name in
/// double quotes may hold blanks and "#"; elsewhere a "#" in front of a name starts a comment up to the line end. The
/// code stands in wizard/, since `TarnexWizard` loads the files.
class TARNEX_API MolTrajBundleIO {
public:
    /// Both may be null; neither is owned. Messages go to the stream; the interface is kept and not used.
    MolTrajBundleIO(std::ostream* messageStream, McProgressInterface* progressInterface);

    /// Everything in the files of a list, in its order. The extensions choose the formats; topologies are named by
    /// their files. A file that cannot be read is skipped with the lines of `TarnexWizard` on standard output. Empty,
    /// with a message, if the list cannot be opened or has no header. What `TarnexWizard` throws passes through.
    McDArray<McHandle<MolTrajectory>> readMolTrajectoryBundle(char const* filename);

    /// The next name of a list. 0 at the end of the file; a name that runs into it, without white space or closing
    /// quote behind it, does not count.
    static int nextWord(FILE* file, McString& word);

    std::ostream* messages;
    McProgressInterface* progress;
};

namespace tarnex {

/// The names in a bundle list.
struct BundleListNames {
    /// With the folder of the list ahead of each.
    McDArray<McString> paths;
    /// A last name that does not count, since neither white space nor a closing quote stands behind it.
    McString unfinished;
};

/// Empty, with a message, if the list cannot be opened or has no header.
TARNEX_API BundleListNames readNamesInBundleList(char const* filename, std::ostream* messages);

/// Reads a file as those in lists are read. Empty, with the lines of `TarnexWizard` on standard output, if it cannot be
/// read. What `TarnexWizard` throws passes through.
TARNEX_API McDArray<McHandle<MolTrajectory>> readFileOfBundleList(char const* path);

} // namespace tarnex
