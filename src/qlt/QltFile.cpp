#include "qlt/QltFile.h"

#include "qlt/section.h"
#include "qlt/topologyCodec.h"

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstring>
#include <fcntl.h>
#include <memory>
#include <sys/stat.h>
#include <unistd.h>

namespace tarnex {

namespace {

/// A byte above 127, both kinds of line end and a control-Z: a transfer as text does not leave these alone.
constexpr char magic[] = {'\x89', 'Q', 'L', 'T', '\r', '\n', '\x1a', '\n'};
constexpr std::uint64_t version = 1;
constexpr std::uint64_t entryLength = 40;

/// The fields of the header behind the magic bytes, ahead of the header's own checksum.
struct HeaderFields {
    std::uint64_t formatVersion = version;
    std::uint64_t numTrajectories = 0;
    std::uint64_t fileLength = 0;
    std::uint64_t indexChecksum = 0;
};

constexpr std::size_t headerFieldsOffset = sizeof magic;
constexpr std::size_t headerChecksumOffset = headerFieldsOffset + 4 * 8;
static_assert(headerChecksumOffset + 8 == sizeof(QltHeader));

QltHeader encodeHeader(HeaderFields const& fields) {
    QltHeader header;
    std::memcpy(header.data(), magic, sizeof magic);
    char* place = header.data() + headerFieldsOffset;
    storeLittle(place, fields.formatVersion);
    storeLittle(place + 8, fields.numTrajectories);
    storeLittle(place + 16, fields.fileLength);
    storeLittle(place + 24, fields.indexChecksum);
    storeLittle(place + 32, checksumOf(header.data(), headerChecksumOffset));
    return header;
}

HeaderFields decodeHeader(QltHeader const& header) {
    char const* place = header.data() + headerFieldsOffset;
    return {loadLittle<std::uint64_t>(place), loadLittle<std::uint64_t>(place + 8),
            loadLittle<std::uint64_t>(place + 16), loadLittle<std::uint64_t>(place + 24)};
}

void putEntry(QltEntry const& entry, SectionWriter& out) {
    out.put(entry.topologyLength);
    out.put(entry.topologyChecksum);
    out.put(entry.numAtoms);
    out.put(entry.numSteps);
    out.put(entry.stepsChecksum);
}

QltEntry getEntry(SectionReader& in) {
    QltEntry entry;
    entry.topologyLength = in.get<std::uint64_t>();
    entry.topologyChecksum = in.get<std::uint64_t>();
    entry.numAtoms = in.get<std::uint64_t>();
    entry.numSteps = in.get<std::uint64_t>();
    entry.stepsChecksum = in.get<std::uint64_t>();
    return entry;
}

/// Takes the bytes of a trajectory off `bytesLeft`; false if they are not there.
bool takeBytesOf(QltEntry const& entry, std::uint64_t& bytesLeft) {
    if (entry.numAtoms > INT_MAX || entry.numSteps > INT_MAX || entry.topologyLength > bytesLeft) return false;
    bytesLeft -= entry.topologyLength;
    if (entry.numSteps > bytesLeft / entry.stepLength()) return false;
    bytesLeft -= entry.numSteps * entry.stepLength();
    return true;
}

} // namespace

// Writing

QltOutput::QltOutput(char const* name) : file(name), atomsLeft(atomsWithoutBytes) {
    constexpr QltHeader unfinished{};
    file.append(unfinished.data(), unfinished.size());
}

bool QltOutput::addTrajectory(MolTopology const& topology) {
    SectionWriter section;
    if (file.failed() || !encodeTopology(topology, atomsLeft, section)) return false;
    auto const length = static_cast<std::size_t>(section.bytes.size);
    file.append(section.bytes.data, length);

    QltEntry entry;
    entry.topologyLength = length;
    entry.topologyChecksum = checksumOf(section.bytes.data, length);
    entry.numAtoms = static_cast<std::uint64_t>(topology.levels[0]->groups.size);
    stepsChecksum = Checksum();
    entry.stepsChecksum = stepsChecksum.value();
    entries.append(entry);
    return !file.failed();
}

bool QltOutput::addStep(McDArray<McVec3f> const& coords) {
    QltEntry& entry = entries[entries.size - 1];
    if (file.failed() || static_cast<std::uint64_t>(coords.size) != entry.numAtoms) return false;
    auto const* bytes = reinterpret_cast<char const*>(coords.data);
    Checksum checksum;
    for (std::uint64_t left = entry.numAtoms * sizeof(McVec3f); left > 0 && !file.failed();) {
        std::uint64_t const part = std::min<std::uint64_t>(left, ReplacingFile::blockSize);
        char* room = file.room(part);
        copyWords(room, bytes, part / 4);
        checksum.add(room, part);
        file.appendRoom(part);
        bytes += part;
        left -= part;
    }
    char checksumBytes[8];
    storeLittle(checksumBytes, checksum.value());
    file.append(checksumBytes, sizeof checksumBytes);

    stepsChecksum.add(checksumBytes, sizeof checksumBytes);
    entry.stepsChecksum = stepsChecksum.value();
    ++entry.numSteps;
    return !file.failed();
}

bool QltOutput::commit() {
    if (entries.size == 0 || file.failed()) return false;
    SectionWriter index;
    for (QltEntry const& entry : entries) putEntry(entry, index);
    auto const length = static_cast<std::size_t>(index.bytes.size);
    file.append(index.bytes.data, length);

    HeaderFields fields;
    fields.numTrajectories = static_cast<std::uint64_t>(entries.size);
    fields.fileLength = file.length();
    fields.indexChecksum = checksumOf(index.bytes.data, length);
    QltHeader const header = encodeHeader(fields);
    return file.commit(header.data(), header.size());
}

// Reading

QltInput::QltInput(char const* name)
    // A pipe without a writer would hold up the opening.
    : descriptor(name ? ::open(name, O_RDONLY | O_NONBLOCK | O_CLOEXEC) : -1) {
    struct stat status;
    if (descriptor < 0 || fstat(descriptor, &status) != 0 || !S_ISREG(status.st_mode)) return;
    fileLength = static_cast<std::uint64_t>(status.st_size);
    open = read(0, header.data(), header.size()) && checkHeader();
}

QltInput::~QltInput() {
    if (descriptor >= 0) close(descriptor);
}

bool QltInput::checkHeader() const {
    HeaderFields const fields = decodeHeader(header);
    return std::memcmp(header.data(), magic, sizeof magic) == 0 && fields.formatVersion == version &&
           fields.fileLength == fileLength &&
           checksumOf(header.data(), headerChecksumOffset) ==
               loadLittle<std::uint64_t>(header.data() + headerChecksumOffset);
}

bool QltInput::read(std::uint64_t offset, void* bytes, std::uint64_t count) const {
    auto* place = static_cast<char*>(bytes);
    while (count > 0) {
        ssize_t const got = pread(descriptor, place, count, static_cast<off_t>(offset));
        if (got < 0 && errno == EINTR) continue;
        if (got <= 0) return false;
        place += got;
        offset += static_cast<std::uint64_t>(got);
        count -= static_cast<std::uint64_t>(got);
    }
    return true;
}

McDArray<QltEntry> QltInput::readIndex() const {
    if (!open) return {};
    HeaderFields const fields = decodeHeader(header);
    std::uint64_t bytesLeft = fileLength - sizeof(QltHeader);
    if (fields.numTrajectories > bytesLeft / entryLength) return {};
    std::uint64_t const indexLength = fields.numTrajectories * entryLength;
    bytesLeft -= indexLength;

    McDArray<char> bytes(static_cast<std::int64_t>(indexLength));
    if (!read(fileLength - indexLength, bytes.data, indexLength)) return {};
    if (checksumOf(bytes.data, indexLength) != fields.indexChecksum) return {};
    SectionReader in(bytes.data, indexLength);
    McDArray<QltEntry> entries(static_cast<std::int64_t>(fields.numTrajectories));
    for (QltEntry& entry : entries) {
        entry = getEntry(in);
        if (!takeBytesOf(entry, bytesLeft)) return {};
    }
    return bytesLeft == 0 ? entries : McDArray<QltEntry>();
}

McHandle<MolTopology> QltInput::readTopology(std::uint64_t offset, QltEntry const& entry,
                                             std::uint64_t& atomsLeft) const {
    McDArray<char> section(static_cast<std::int64_t>(entry.topologyLength));
    if (!read(offset, section.data, entry.topologyLength)) return {};
    if (checksumOf(section.data, entry.topologyLength) != entry.topologyChecksum) return {};
    McHandle<MolTopology> topology = decodeTopology({section.data, entry.topologyLength}, atomsLeft);
    bool const good = topology && static_cast<std::uint64_t>(topology->levels[0]->groups.size) == entry.numAtoms;
    return good ? topology : McHandle<MolTopology>();
}

namespace {

/// Follows the bytes of consecutive steps, which come in blocks of any size.
class StepsVerifier {
public:
    explicit StepsVerifier(QltEntry const& verifiedEntry) : entry(verifiedEntry) {}

    /// False at the first step that is wrong.
    bool add(char const* bytes, std::uint64_t count) {
        std::uint64_t const coordsLength = entry.stepLength() - 8;
        while (count > 0) {
            bool const inCoords = inStep < coordsLength;
            std::uint64_t const part = std::min(count, (inCoords ? coordsLength : entry.stepLength()) - inStep);
            if (inCoords)
                checksum.add(bytes, part);
            else
                std::memcpy(stored + (inStep - coordsLength), bytes, part);
            inStep += part;
            bytes += part;
            count -= part;
            if (inStep == entry.stepLength() && !endStep()) return false;
        }
        return true;
    }

    bool allRight() const { return inStep == 0 && stepsChecksum.value() == entry.stepsChecksum; }

private:
    bool endStep() {
        bool const right = checksum.value() == loadLittle<std::uint64_t>(stored);
        stepsChecksum.add(stored, sizeof stored);
        checksum = Checksum();
        inStep = 0;
        return right;
    }

    QltEntry const& entry;
    Checksum checksum;
    Checksum stepsChecksum;
    /// Bytes of the present step so far.
    std::uint64_t inStep = 0;
    char stored[8] = {};
};

} // namespace

bool QltInput::verifySteps(std::uint64_t offset, QltEntry const& entry) const {
    StepsVerifier verifier(entry);
    std::uint64_t left = entry.numSteps * entry.stepLength();
    std::uint64_t const blockSize = std::min<std::uint64_t>(left, ReplacingFile::blockSize);
    auto const block = std::make_unique_for_overwrite<char[]>(blockSize);
    while (left > 0) {
        std::uint64_t const part = std::min(left, blockSize);
        if (!read(offset, block.get(), part) || !verifier.add(block.get(), part)) return false;
        offset += part;
        left -= part;
    }
    return verifier.allRight();
}

bool QltInput::readStep(std::uint64_t offset, McDArray<McVec3f>& coords) const {
    auto* place = reinterpret_cast<char*>(coords.data);
    Checksum checksum;
    for (std::uint64_t left = static_cast<std::uint64_t>(coords.size) * sizeof(McVec3f); left > 0;) {
        std::uint64_t const part = std::min<std::uint64_t>(left, ReplacingFile::blockSize);
        if (!read(offset, place, part)) return false;
        checksum.add(place, part);
        copyWords(place, place, part / 4);
        place += part;
        offset += part;
        left -= part;
    }
    char stored[8];
    return read(offset, stored, sizeof stored) && checksum.value() == loadLittle<std::uint64_t>(stored);
}

} // namespace tarnex
