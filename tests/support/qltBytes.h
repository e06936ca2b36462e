#pragma once

#include "qlt/checksum.h"

#include <cstdint>
#include <string>
#include <vector>

namespace tarnex::test {

/// Bytes of a house format file, put together by hand: little-endian numbers and texts closed by a NUL.
class QltBytes {
public:
    template <class Integer>
    QltBytes& put(Integer value) {
        auto bits = static_cast<std::uint64_t>(value);
        for (std::size_t i = 0; i < sizeof(Integer); ++i, bits >>= 8U) bytes += static_cast<char>(bits & 0xffU);
        return *this;
    }
    QltBytes& u8(unsigned value) { return put(static_cast<std::uint8_t>(value)); }
    QltBytes& i32(int value) { return put(value); }
    QltBytes& u32(std::uint32_t value) { return put(value); }
    QltBytes& u64(std::uint64_t value) { return put(value); }
    QltBytes& text(std::string const& value) { return raw(value + '\0'); }
    QltBytes& raw(std::string const& value) {
        bytes += value;
        return *this;
    }
    std::string bytes;
};

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
        QltBytes body;
        QltBytes checksums;
        for (std::string const& step : steps) {
            body.raw(step).u64(checksumOfText(step));
            checksums.u64(checksumOfText(step));
        }
        QltBytes index;
        index.u64(claimedTopologyLength).u64(checksumOfText(topology)).u64(numAtoms).u64(claimedSteps);
        index.u64(checksumOfText(checksums.bytes));
        QltBytes header;
        header.raw(magic).u64(version).u64(claimedTrajectories);
        body.raw(gap).raw(index.bytes);
        header.u64(48 + topology.size() + body.bytes.size() + surplusLength).u64(checksumOfText(index.bytes));
        header.u64(checksumOfText(header.bytes));
        return header.bytes + topology + body.bytes;
    }
};

} // namespace tarnex::test
