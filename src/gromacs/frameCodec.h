#pragma once

#include "foundation/McDArray.h"
#include "foundation/McRawData.h"
#include "foundation/McVec3f.h"
#include "foundation/bigEndian.h"
#include "gromacs/records.h"
#include "model/Molecule.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdio>
#include <memory>

/// Frames of .trr files in either precision ("trn" frames of the GROMACS Reference Manual): a header, and behind it the
/// arrays that it announces, all big-endian. The precision is the type of `t` in the header's class.
namespace tarnex::gromacs {

struct FileCloser {
    void operator()(FILE* file) const { std::fclose(file); }
};
using File = std::unique_ptr<FILE, FileCloser>;

template <class Header>
using RealOf = decltype(Header::t);

// ---- Header ----

/// The integers behind the version text, in the order of the file.
template <class Header>
inline constexpr std::array integerFields = {
    &Header::ir_size,  &Header::e_size,   &Header::box_size, &Header::vir_size, &Header::pres_size,
    &Header::top_size, &Header::sym_size, &Header::x_size,   &Header::v_size,   &Header::f_size,
    &Header::natoms,   &Header::step,     &Header::nre,
};

constexpr int frameMagic = 1993;
constexpr int writtenStrLen = 13;
/// A header with a longer version text is not read by those that hand it on.
constexpr unsigned longestStrLen = 20;

/// Bytes of a version text: its length, and its characters without terminator.
inline long long versionBytes(int strLen) {
    return std::max(static_cast<long long>(strLen) + 3, 0LL);
}

/// Reads elements and returns how many there are whole. The others are 0, also one that the end of the file cuts.
template <class Element>
unsigned long readElements(Element* elements, unsigned long count, FILE* file) {
    unsigned long const whole = McRawData::readBigEndian(elements, count, file);
    std::fill(elements + whole, elements + count, Element(0));
    return whole;
}

/// What there is of a header in the file.
struct HeaderExtent {
    /// Ahead of `t`.
    long long bytes = 0;
    /// 2 if `t` and `lambda` are there.
    unsigned long reals = 0;
};

/// Reads `magic` and `strLen`.
template <class Header>
void readMarks(Header& header, FILE* file, HeaderExtent& extent) {
    int marks[2];
    extent.bytes += 4 * static_cast<long long>(readElements(marks, 2, file));
    header.magic = marks[0];
    header.strLen = marks[1];
}

/// Reads a version text of usual length and passes over any other.
template <class Header>
void readVersion(Header& header, FILE* file, HeaderExtent& extent) {
    long long const length = versionBytes(header.strLen);
    if (static_cast<unsigned>(header.strLen) <= longestStrLen) {
        header.version = new char[static_cast<std::size_t>(length)];
        extent.bytes += static_cast<long long>(readElements(header.version, static_cast<unsigned long>(length), file));
        return;
    }
    long const begin = std::ftell(file);
    std::fseek(file, 0, SEEK_END);
    long long const passed = std::clamp(static_cast<long long>(std::ftell(file)) - begin, 0LL, length);
    std::fseek(file, begin + static_cast<long>(passed), SEEK_SET);
    extent.bytes += passed;
}

/// Reads what is behind `strLen`, up to the arrays.
template <class Header>
void readRest(Header& header, FILE* file, HeaderExtent& extent) {
    readVersion(header, file, extent);
    int integers[integerFields<Header>.size()];
    extent.bytes += 4 * static_cast<long long>(readElements(integers, integerFields<Header>.size(), file));
    for (std::size_t i = 0; i < integerFields<Header>.size(); ++i) header.*integerFields<Header>[i] = integers[i];
    RealOf<Header> reals[2];
    extent.reals = readElements(reals, 2, file);
    header.t = reals[0];
    header.lambda = reals[1];
}

template <class Header>
HeaderExtent readHeader(Header& header, FILE* file) {
    HeaderExtent extent;
    readMarks(header, file, extent);
    readRest(header, file, extent);
    return extent;
}

/// Gives a header the marks of all written frames.
template <class Header>
void setMarks(Header& header) {
    static constexpr char text[] = "\0\0\0\x0cGMX_trn_file";
    static_assert(sizeof text - 1 == writtenStrLen + 3);
    header.magic = frameMagic;
    header.strLen = writtenStrLen;
    header.version = new char[sizeof text - 1];
    std::copy_n(text, sizeof text - 1, header.version);
}

template <class Header>
void writeHeader(Header const& header, FILE* file) {
    int marks[] = {header.magic, header.strLen};
    McRawData::writeBigEndian(marks, 2, file);
    McRawData::writeBigEndian(header.version, static_cast<unsigned long>(versionBytes(header.strLen)), file);
    int integers[integerFields<Header>.size()];
    for (std::size_t i = 0; i < integerFields<Header>.size(); ++i) integers[i] = header.*integerFields<Header>[i];
    McRawData::writeBigEndian(integers, integerFields<Header>.size(), file);
    RealOf<Header> reals[] = {header.t, header.lambda};
    McRawData::writeBigEndian(reals, 2, file);
}

// ---- Arrays ----

/// The arrays of a frame, in the order of the file.
enum Array { box, virial, pressure, positions, velocities, forces, numArrays };

constexpr unsigned long boxElements = 9;
constexpr unsigned long tensorElements = 27;

/// How many elements each array has.
template <class Header>
std::array<unsigned long, numArrays> arrayElements(Header const& header) {
    auto const ofAtoms = 3 * static_cast<unsigned long>(std::max(header.natoms, 0));
    auto const ifPresent = [](int size, unsigned long elements) { return size != 0 ? elements : 0; };
    return {
        ifPresent(header.box_size, boxElements),     ifPresent(header.vir_size, tensorElements),
        ifPresent(header.pres_size, tensorElements), ifPresent(header.x_size, ofAtoms),
        ifPresent(header.v_size, ofAtoms),           ifPresent(header.f_size, ofAtoms),
    };
}

/// How many elements of this width the arrays have as far as the file goes. The next byte of the file is the first of
/// the arrays; it is the last one afterwards.
template <class Header>
long long countElements(Header const& header, long long width, FILE* file, long long& fileLength) {
    long long const begin = std::ftell(file);
    std::fseek(file, 0, SEEK_END);
    fileLength = std::ftell(file);
    long long left = std::max(fileLength - begin, 0LL);
    long long whole = 0;
    for (unsigned long const elements : arrayElements(header)) {
        long long const there = std::min(static_cast<long long>(elements), left / width);
        whole += there;
        // What is left of an element that the end of the file cuts makes none of the next array.
        left = there < static_cast<long long>(elements) ? 0 : left - there * width;
    }
    return whole;
}

/// The size of the first frame as far as it is in the file, and how many of that size the file has.
struct FrameTable {
    long long frameSize = 0;
    int numFrames = 0;
};

template <class Header>
FrameTable readFrameTable(char const* fileName) {
    FrameTable table;
    File const file(std::fopen(fileName, "rb"));
    if (!file) return table;
    Header header;
    HeaderExtent const extent = readHeader(header, file.get());
    constexpr long long width = sizeof(RealOf<Header>);
    long long length = 0;
    long long const elements = countElements(header, width, file.get(), length);
    table.frameSize = extent.bytes + width * (static_cast<long long>(extent.reals) + elements);
    if (table.frameSize > 0) table.numFrames = static_cast<int>(length / table.frameSize);
    return table;
}

/// Values are converted a block at a time, so that they are still in the processor's cache when the system copies them.
constexpr std::size_t realsPerBlock = 8192;

/// Reads the positions of atoms, in Angstrom, from the next bytes of the file. Those that the file lacks are 0.
template <class Real>
void readPositions(McVec3f* coords, std::size_t numAtoms, FILE* file) {
    alignas(Real) unsigned char block[realsPerBlock * sizeof(Real)];
    auto* values = reinterpret_cast<float*>(coords);
    for (std::size_t left = 3 * numAtoms; left > 0;) {
        std::size_t const wanted = std::min(left, realsPerBlock);
        std::size_t const whole = std::fread(block, sizeof(Real), wanted, file);
        for (std::size_t i = 0; i < whole; ++i) {
            values[i] = static_cast<float>(loadBig<Real>(block + i * sizeof(Real)) * Real(angstromPerNanometre));
        }
        if (whole < wanted) {
            std::fill_n(values + whole, left - whole, 0.0F);
            return;
        }
        values += wanted;
        left -= wanted;
    }
}

/// Reads the coordinates of a frame, of which the header has been read, into the atoms that it has.
template <class Header>
void readCoordinates(Header const& header, McDArray<McVec3f>& coords, FILE* file) {
    using Real = RealOf<Header>;
    auto const numAtoms = static_cast<std::size_t>(std::clamp<long long>(header.natoms, 0, coords.size));
    auto const elements = arrayElements(header);
    if (elements[positions] == 0) {
        std::fill_n(coords.data, numAtoms, McVec3f(0.0F, 0.0F, 0.0F));
        return;
    }
    Real passed[boxElements + 2 * tensorElements];
    McRawData::readBigEndian(passed, elements[box] + elements[virial] + elements[pressure], file);
    readPositions<Real>(coords.data, numAtoms, file);
}

/// Writes the positions of atoms, which are in Angstrom. Atoms without coordinates are at 0.
template <class Real>
void writePositions(McDArray<McVec3f> const& coords, std::size_t numAtoms, FILE* file) {
    alignas(Real) unsigned char block[realsPerBlock * sizeof(Real)];
    auto const* values = reinterpret_cast<float const*>(coords.data);
    std::size_t known = 3 * std::min(numAtoms, static_cast<std::size_t>(coords.size));
    for (std::size_t left = 3 * numAtoms; left > 0;) {
        std::size_t const count = std::min(left, realsPerBlock);
        std::size_t const converted = std::min(count, known);
        for (std::size_t i = 0; i < converted; ++i) {
            storeBig(block + i * sizeof(Real), static_cast<Real>(values[i] / angstromPerNanometre));
        }
        std::fill(block + converted * sizeof(Real), block + count * sizeof(Real), 0);
        if (std::fwrite(block, sizeof(Real), count, file) != count) return;
        values += converted;
        known -= converted;
        left -= count;
    }
}

/// Writes a frame with the box of all written files, a cube of 5 nanometres.
template <class Header>
void writeFrame(int step, McDArray<McVec3f> const& coords, int numAtoms, FILE* file) {
    using Real = RealOf<Header>;
    // The sizes are those of double precision in both; only 0 and other values are told apart.
    constexpr unsigned bytesPerAtom = 24;
    Header header;
    setMarks(header);
    header.box_size = 72;
    header.x_size = static_cast<int>(static_cast<unsigned>(numAtoms) * bytesPerAtom);
    header.natoms = numAtoms;
    header.step = step;
    writeHeader(header, file);
    Real edges[boxElements] = {5, 0, 0, 0, 5, 0, 0, 0, 5};
    McRawData::writeBigEndian(edges, boxElements, file);
    writePositions<Real>(coords, static_cast<std::size_t>(numAtoms), file);
}

// ---- Access of the readers ----

/// The work of `readCoordsAt`, for both precisions.
template <class Header>
Header* readFrameAt(Molecule* molecule, long position, char const* fileName) {
    auto header = std::make_unique<Header>();
    File const file(std::fopen(fileName, "rb"));
    if (!file || std::fseek(file.get(), position, SEEK_SET) != 0) return header.release();
    HeaderExtent extent;
    readMarks(*header, file.get(), extent);
    std::printf("magic = %d\nstrLen = %d\n", header->magic, header->strLen);
    if (static_cast<unsigned>(header->strLen) > longestStrLen) {
        std::printf("returning because strLen..\n");
        header->strLen = static_cast<int>(longestStrLen);
        return header.release();
    }
    readRest(*header, file.get(), extent);
    readCoordinates(*header, molecule->coords, file.get());
    return header.release();
}

} // namespace tarnex::gromacs
