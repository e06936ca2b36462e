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

constexpr long long widthOfDouble = 8;

/// Both precisions read the arrays as elements of eight bytes and count eight for `t`; `Header` tells what they count
/// for `lambda` and the elements. So regular files in single precision do not pass.
template <class Header>
FirstFrame readFirstFrame(FILE* file) {
    constexpr long long countedWidth = sizeof(tarnex::gromacs::RealOf<Header>);
    std::rewind(file);
    Header header;
    HeaderExtent const extent = tarnex::gromacs::readHeader(header, file);
    long long length = 0;
    long long const elements = tarnex::gromacs::countElements(header, widthOfDouble, file, length);
    long long const reals = (extent.reals >= 1 ? widthOfDouble : 0) + (extent.reals >= 2 ? countedWidth : 0);
    return {header.magic, extent.bytes + reals + countedWidth * elements};
}

} // namespace

// NOLINTNEXTLINE(performance-unnecessary-value-param): names come by value, as from every host
int GROMACSread::checkFormat(McString trrFile) {
    tarnex::gromacs::File const file(std::fopen(trrFile, "rb"));
    if (!file) return -1;
    auto const asDouble = readFirstFrame<TrnHeader>(file.get());
    auto const asSingle = readFirstFrame<TrnHeader_SINGLE>(file.get());
    if (asDouble.size == 0) return -1;
    if (asSingle.isFollowed(file.get())) return 1;
    return asDouble.isFollowed(file.get()) ? 2 : -1;
}
