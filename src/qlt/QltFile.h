#pragma once

#include "foundation/McDArray.h"
#include "foundation/McHandle.h"
#include "foundation/McVec3f.h"
#include "model/MolTopology.h"
#include "qlt/ReplacingFile.h"
#include "qlt/checksum.h"

#include <array>
#include <cstddef>
#include <cstdint>

namespace tarnex {

/// The first bytes of a house format file. Through the checksums in it they depend on every byte of the file.
using QltHeader = std::array<char, 48>;

/// What the index of a file says about one trajectory. Its topology stands first, its steps follow.
struct QltEntry {
    std::uint64_t topologyLength = 0;
    std::uint64_t topologyChecksum = 0;
    std::uint64_t numAtoms = 0;
    std::uint64_t numSteps = 0;
    /// Of the checksums of the steps.
    std::uint64_t stepsChecksum = 0;

    /// Bytes of a step: its coordinates and their checksum.
    std::uint64_t stepLength() const { return numAtoms * sizeof(McVec3f) + 8; }
};

/// Writes a house format file, trajectory by trajectory and step by step, in the order of the file. The file appears
/// under its name when `commit` succeeds.
class QltOutput {
public:
    explicit QltOutput(char const* name);

    /// False for a topology that cannot be stored, and if writing failed.
    bool addTrajectory(MolTopology const& topology);
    /// A step of the trajectory that was added last. False if there is not one place for each of its atoms, and if
    /// writing failed.
    bool addStep(McDArray<McVec3f> const& coords);
    bool commit();

private:
    ReplacingFile file;
    std::uint64_t atomsLeft;
    McDArray<QltEntry> entries;
    /// Of the checksums of the steps of the last trajectory.
    Checksum stepsChecksum;
};

/// An open house format file.
class QltInput {
public:
    /// An index is empty unless the file is open and has a right header.
    explicit QltInput(char const* name);
    ~QltInput();
    QltInput(QltInput const&) = delete;
    QltInput& operator=(QltInput const&) = delete;

    /// Whether the file is open and begins with a right header.
    bool isOpen() const { return open; }
    QltHeader const& getHeader() const { return header; }

    /// One entry for each trajectory; together they account for all bytes of the file. Empty on failure.
    McDArray<QltEntry> readIndex() const;
    /// The topology that stands at `offset`, empty on failure. `atomsLeft` is that of `decodeTopology`.
    McHandle<MolTopology> readTopology(std::uint64_t offset, QltEntry const& entry, std::uint64_t& atomsLeft) const;
    /// Whether the steps that begin at `offset` have their right checksums. Reads them block by block.
    bool verifySteps(std::uint64_t offset, QltEntry const& entry) const;
    /// Reads the step that stands at `offset` into all of `coords`. False, with undefined coordinates, on failure.
    bool readStep(std::uint64_t offset, McDArray<McVec3f>& coords) const;

    std::uint64_t length() const { return fileLength; }

private:
    bool read(std::uint64_t offset, void* bytes, std::uint64_t count) const;
    bool checkHeader() const;

    int descriptor;
    std::uint64_t fileLength = 0;
    QltHeader header;
    bool open = false;
};

} // namespace tarnex
