#pragma once

#include "Bytes.h"
#include "qlt/checksum.h"

#include <vector>

namespace tarnex::test {

inline std::uint64_t checksumOfText(std::string const& bytes) {
    return checksumOf(bytes.data(), bytes.size());
}

/// A file of one trajectory in which all checksums are right, whatever the section holds and the counts claim.
struct QltFile {
    std::string topology;
    std::uint64_t numAtoms = 0;
    /// The coordinates of the steps in the file.
    std::vector<std::string> steps = {};

    std::uint64_t claimedSteps = steps.size();
    std::uint64_t claimedTopologyLength = topology.size();
    std::uint64_t claimedTrajectories = 1;
    /// Bytes ahead of the index that nothing accounts for.
    std::string gap = {};
    std::uint64_t surplusLength = 0;
    std::uint64_t version = 1;
    std::string magic = "\x89QLT\r\n\x1a\n";

    std::string bytes() const {
        Bytes body, checksums, index, header;
        for (std::string const& step : steps) {
            body.raw(step).u64(checksumOfText(step));
            checksums.u64(checksumOfText(step));
        }
        index.u64(claimedTopologyLength).u64(checksumOfText(topology)).u64(numAtoms).u64(claimedSteps);
        index.u64(checksumOfText(checksums.bytes));
        header.raw(magic).u64(version).u64(claimedTrajectories);
        body.raw(gap).raw(index.bytes);
        header.u64(48 + topology.size() + body.bytes.size() + surplusLength).u64(checksumOfText(index.bytes));
        header.u64(checksumOfText(header.bytes));
        return header.bytes + topology + body.bytes;
    }
};

} // namespace tarnex::test
