#include "charmm/MolTrajectoryDCD.h"

#include "foundation/report.h"
#include "model/Molecule.h"

#include <algorithm>
#include <cstdint>
#include <cstring>
#include <iostream>
#include <string>
#include <string_view>
#include <utility>

namespace {

// ---- Names ----

/// True if `text` is all that stands from `position` on.
bool endsAt(std::string_view name, std::ptrdiff_t position, std::string_view text) {
    return position >= 0 && position <= static_cast<std::ptrdiff_t>(name.size()) &&
           name.substr(static_cast<std::size_t>(position)) == text;
}

std::ptrdiff_t extensionPosition(std::string_view name) {
    return static_cast<std::ptrdiff_t>(name.size()) - 4;
}

// ---- Header ----

/// The header record with its closing length, by offsets in the file.
constexpr std::size_t headerSize = 92;
constexpr std::size_t numFramesOffset = 8;
constexpr std::size_t unitCellOffset = 48;
constexpr std::size_t fourthDimensionOffset = 52;
constexpr std::int32_t headerLength = 84;
/// The first number of the layout with 8 bytes for each number.
constexpr std::int64_t wideHeaderLength = 21;
constexpr int titleLineSize = 80;

template <class Int>
Int intAt(char const* bytes) {
    Int value;
    std::memcpy(&value, bytes, sizeof value);
    return value;
}

// ---- Byte order ----

/// Exchanges neighbouring pieces of `bits` bits each in a word.
constexpr std::uint64_t exchange(std::uint64_t word, unsigned bits, std::uint64_t lowerPieces) {
    return (word & lowerPieces) << bits | (word >> bits & lowerPieces);
}

/// Reverses the bytes of each item of `width` bytes in a word.
template <int width>
constexpr std::uint64_t reverseItems(std::uint64_t word) {
    word = exchange(word, 8, 0x00ff00ff00ff00ffU);
    if constexpr (width > 2) word = exchange(word, 16, 0x0000ffff0000ffffU);
    if constexpr (width > 4) word = exchange(word, 32, 0x00000000ffffffffU);
    return word;
}

template <int width>
void reverseItemsAt(char* at, std::size_t bytes) {
    std::uint64_t word = 0;
    std::memcpy(&word, at, bytes);
    word = reverseItems<width>(word);
    std::memcpy(at, &word, bytes);
}

template <int width>
void reverseAll(void* data, int count) {
    constexpr std::size_t wordSize = sizeof(std::uint64_t);
    auto* const bytes = static_cast<char*>(data);
    std::size_t const size = static_cast<std::size_t>(count) * width;
    std::size_t const numWords = size / wordSize;
    for (std::size_t i = 0; i < numWords; ++i) reverseItemsAt<width>(bytes + i * wordSize, wordSize);
    reverseItemsAt<width>(bytes + numWords * wordSize, size % wordSize);
}

} // namespace

MolTrajectoryDCD::MolTrajectoryDCD(std::ostream* messageStream) : messages(messageStream) {
    getTopology()->setName("DCD");
}

MolTrajectoryDCD::~MolTrajectoryDCD() = default;

void MolTrajectoryDCD::notifyDelete() {
    closeFiles();
}

MolTrajectory* MolTrajectoryDCD::readDCDMolTrajectory(int numFiles, char const** fileNames) {
    if (numFiles != 2) return nullptr;
    char const* dcdName = fileNames[0] ? fileNames[0] : "";
    char const* psfName = fileNames[1] ? fileNames[1] : "";
    std::ptrdiff_t const position = extensionPosition(dcdName);
    if (!endsAt(dcdName, position, ".dcd")) {
        // The place in the second name is taken from the first one, as hosts know it.
        if (!endsAt(psfName, position, ".dcd")) {
            tarnex::report(messages, "Need a dcd-file !\n");
            return nullptr;
        }
        std::swap(dcdName, psfName);
    }
    if (!endsAt(psfName, extensionPosition(psfName), ".psf")) {
        tarnex::report(messages, "Need a psf-file !\n");
        return nullptr;
    }
    std::cerr << std::string("This is MolTrajectoryDCD::read('") + psfName + "', '" + dcdName + "')\n";
    if (!openFiles(psfName, dcdName)) return nullptr;
    try {
        readPSF();
        readDCD();
    } catch (DCDException const& exception) {
        tarnex::report(messages, "CHARMM PSF/DCD  data exception >", exception.message, "<\n\n");
        closeFiles();
        return nullptr;
    }
    return this;
}

bool MolTrajectoryDCD::openFiles(char const* psfName, char const* dcdName) {
    closeFiles();
    auto const open = [this](char const* name) {
        auto* stream = new std::ifstream(name);
        if (*stream) return stream;
        tarnex::report(messages, "Could not load \"", name, "\"\n");
        delete stream;
        return static_cast<std::ifstream*>(nullptr);
    };
    psfStream = open(psfName);
    if (psfStream) dcdStream = open(dcdName);
    if (!dcdStream) closeFiles();
    return dcdStream != nullptr;
}

void MolTrajectoryDCD::closeFiles() {
    delete std::exchange(psfStream, nullptr);
    delete std::exchange(dcdStream, nullptr);
}

template <class Int>
Int MolTrajectoryDCD::toNative(Int value) {
    if (swapNeeded) swapBytes(&value, sizeof value, 1);
    return value;
}

/// 0 if the file ends here.
int MolTrajectoryDCD::readInt() {
    std::int32_t value = 0;
    dcdStream->read(reinterpret_cast<char*>(&value), sizeof value);
    return *dcdStream ? toNative(value) : 0;
}

void MolTrajectoryDCD::readDCD() {
    char header[headerSize] = {};
    dcdStream->read(header, sizeof header);
    auto const isNumber = [this, &header]<class Int>(Int expected) {
        auto const value = intAt<Int>(header);
        for (bool const swapped : {false, true}) {
            swapNeeded = swapped;
            if (toNative(value) == expected) return true;
        }
        return false;
    };
    if (!isNumber(headerLength)) {
        is64Bit = isNumber(wideHeaderLength);
        if (!is64Bit) throw UnknownEndian();
    }
    if (std::exchange(is64Bit, false)) throw Unability64();
    hasUnitCell = toNative(intAt<std::int32_t>(header + unitCellOffset)) == 1;
    has4thDimension = toNative(intAt<std::int32_t>(header + fourthDimensionOffset)) == 1;
    numTimeSteps = toNative(intAt<std::int32_t>(header + numFramesOffset));

    readInt();
    std::streamoff const numTitleLines = std::max(readInt(), 0);
    dcdStream->seekg(titleLineSize * numTitleLines + 4, std::ios::cur);
    readInt();
    int const dcdAtoms = readInt();
    readInt();
    if (dcdAtoms != numAtoms()) throw WrongNumberOfAtoms(dcdAtoms, numAtoms());
    framePositions.resize(1);
    framePositions[0] = dcdStream->tellg();
}

std::streamoff MolTrajectoryDCD::endOfRecord(std::streamoff start) {
    dcdStream->seekg(start);
    return start + readInt() + 8;
}

std::streamoff MolTrajectoryDCD::endOfFrame(std::streamoff start) {
    if (hasUnitCell) start = endOfRecord(start);
    start += coordinatesSize();
    if (has4thDimension) start = endOfRecord(start);
    return start;
}

void MolTrajectoryDCD::setDCDPosition(int step) {
    if (!dcdStream) return;
    dcdStream->clear();
    if (step >= framePositions.size && framePositions.size > 0) {
        dcdStream->seekg(0, std::ios::end);
        std::streamoff const end = dcdStream->tellg();
        while (step >= framePositions.size) {
            std::streamoff const last = framePositions[framePositions.size - 1];
            std::streamoff const next = last < end ? endOfFrame(last) : last;
            // Behind the end there are no frames; wrong record lengths lead in circles.
            if (next <= last || !*dcdStream) break;
            framePositions.append(next);
        }
    }
    if (step >= 0 && step < framePositions.size)
        dcdStream->seekg(framePositions[step]);
    else
        dcdStream->setstate(std::ios::failbit);
}

int MolTrajectoryDCD::getNumTimeSteps() const {
    return numTimeSteps;
}

void MolTrajectoryDCD::skipRecord() {
    dcdStream->seekg(readInt(), std::ios::cur);
    readInt();
}

bool MolTrajectoryDCD::getTimeStep(int step, Molecule* molecule) {
    if (!dcdStream) return false;
    setDCDPosition(step);
    if (hasUnitCell) skipRecord();
    McDArray<float> records;
    readCoordinates(records);
    if (!molecule) return false;
    molecule->setTopology(topology, false);
    interleave(records, molecule->coords.data);
    return true;
}

/// Reads the records of x, y and z with their lengths as a whole. The closing lengths are not looked at.
void MolTrajectoryDCD::readCoordinates(McDArray<float>& records) {
    int const expected = numAtoms();
    records.resize(coordinatesSize() / 4);
    auto* bytes = reinterpret_cast<char*>(records.data);
    dcdStream->read(bytes, coordinatesSize());
    std::streamoff left = dcdStream->gcount();
    for (int axis = 0; axis < 3; ++axis) {
        int const length = left < 4 ? 0 : toNative(intAt<std::int32_t>(bytes));
        if (left < 4 || length != 4 * std::int64_t{expected}) throw WrongNumberOfAtoms(length / 4, expected);
        if (left - 4 < length) throw WrongNumberOfAtoms(static_cast<int>((left - 4) / 4), expected);
        bytes += length + 8;
        left -= length + 8;
    }
}

/// Turns rows of x, y and z into points, a piece at a time that stays in the processor's cache.
void MolTrajectoryDCD::interleave(McDArray<float>& records, McVec3f* points) {
    constexpr int pieceSize = 2048;
    int const count = numAtoms();
    float* const x = records.data + 1;
    float* const y = x + count + 2;
    float* const z = y + count + 2;
    for (int start = 0; start < count; start += pieceSize) {
        int const size = std::min(count - start, pieceSize);
        if (swapNeeded) {
            for (float* row : {x, y, z}) swapBytes(row + start, sizeof(float), size);
        }
        for (int i = start; i < start + size; ++i) points[i] = {x[i], y[i], z[i]};
    }
}

void MolTrajectoryDCD::swapBytes(void* data, int width, int count) {
    if (count < 1) return;
    if (width == 2) reverseAll<2>(data, count);
    if (width == 4) reverseAll<4>(data, count);
    if (width == 8) reverseAll<8>(data, count);
}
