#include "gromacs/GROMACSread.h"
#include "gromacs/TrnHeader_SINGLE.h"
#include "gromacs/frameCodec.h"

namespace {

using tarnex::gromacs::HeaderExtent;

/// What the first frame would be in one of the precisions.
struct FirstFrame {
    int magic;
    long long size;

    /// Whether the second frame begins where it should.
    bool isFollowed(FILE* file) const {
        int next = 0;
        std::fseek(file, static_cast<long>(size), SEEK_SET);
        return tarnex::gromacs::readElements(&next, 1, file) == 1 && next == magic;
    }
};

constexpr long long doubleWidth = 8;
constexpr long long singleWidth = 4;

/// Elements of the arrays have eight bytes in both precisions here.
template <class Header>
FirstFrame readFirstFrame(FILE* file, long long tWidth, long long lambdaWidth, long long countedWidth) {
    std::rewind(file);
    Header header;
    HeaderExtent const extent = tarnex::gromacs::readHeader(header, file);
    long long length = 0;
    long long const elements = tarnex::gromacs::countElements(header, doubleWidth, file, length);
    long long const reals = (extent.reals >= 1 ? tWidth : 0) + (extent.reals >= 2 ? lambdaWidth : 0);
    return {header.magic, extent.bytes + reals + countedWidth * elements};
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): names come by value, as from every host
int GROMACSread::checkFormat(McString trrFile) {
    tarnex::gromacs::File const file(std::fopen(trrFile, "rb"));
    if (!file) return -1;
    auto const asDouble = readFirstFrame<TrnHeader>(file.get(), doubleWidth, doubleWidth, doubleWidth);
    // `t` is counted with eight bytes, so that regular files in single precision do not pass.
    auto const asSingle = readFirstFrame<TrnHeader_SINGLE>(file.get(), doubleWidth, singleWidth, singleWidth);
    if (asDouble.size == 0) return -1;
    if (asSingle.isFollowed(file.get())) return 1;
    return asDouble.isFollowed(file.get()) ? 2 : -1;
}
