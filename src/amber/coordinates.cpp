#include "amber/AMBERread.h"
#include "amber/MolTrajectoryAMBER.h"
#include "foundation/report.h"
#include "textio/lengthizer.h"

#include <algorithm>
#include <climits>

namespace {

// The widths of the fields of restart files.
constexpr unsigned char countWidth = 5;
constexpr unsigned char timeWidth = 15;
constexpr unsigned char restartWidth = 12;

// Trajectory text.
constexpr unsigned char trajectoryWidth = 8;
constexpr int trajectoryPerLine = 10;

/// Whether the scanner has a file; reports it if not.
bool isOpen(lengthizer const& scanner, McString const& name, std::ostream* messages) {
    if (!scanner.isOpen()) tarnex::report(messages, "Could not load \"", name.data, "\"\n");
    return scanner.isOpen();
}

McVec3f readPosition(lengthizer& scanner, unsigned char width) {
    float const x = scanner.getFloat(width);
    float const y = scanner.getFloat(width);
    return {x, y, scanner.getFloat(width)};
}

} // namespace

// NOLINTBEGIN(performance-unnecessary-value-param): names come by value, as from every host

bool AMBERread::readAmberCoords(Molecule* molecule, McString coordFile) {
    lengthizer scanner(coordFile);
    if (!isOpen(scanner, coordFile, messages)) return false;
    scanner.nextLine(); // the title
    int const natoms = scanner.getInt(countWidth);
    scanner.getToken(timeWidth);
    scanner.nextLine();
    if (natoms != molecule->getNumAtoms()) {
        tarnex::report(messages, "Number of Atoms not corresponding expected value\n");
        return false;
    }
    molecule->coords.resize(natoms);
    for (int i = 0; i < natoms; ++i) {
        molecule->coords[i] = readPosition(scanner, restartWidth);
        if (i % 2 == 1) scanner.nextLine();
    }
    return true;
}

int AMBERread::readAmber_TrajCoords(McDArray<long>& positions, int natoms, McString coordFile) {
    lengthizer scanner(coordFile);
    if (!isOpen(scanner, coordFile, messages)) return 0;
    std::int64_t const values = std::max<std::int64_t>(3 * std::int64_t{natoms}, 1);
    std::int64_t const linesPerFrame = (values + trajectoryPerLine - 1) / trajectoryPerLine;
    scanner.nextLine(); // the title
    positions.resize(1);
    positions[0] = scanner.tell();
    int count = 0;
    for (; !scanner.eof && count < INT_MAX; ++count) {
        positions.resize(count + 1);
        positions[count] = scanner.tell();
        scanner.skipLines(linesPerFrame);
    }
    return count;
}

int AMBERread::readAMBER_TrajVelocities(McDArray<long>& positions, int natoms, McString velocityFile) {
    return readAmber_TrajCoords(positions, natoms, velocityFile);
}

bool AMBERread::readCoordsAt(Molecule* molecule, int step, McDArray<long>& positions, McString coordFile) {
    lengthizer scanner(coordFile);
    if (!isOpen(scanner, coordFile, messages)) return false;
    if (step < 1 || step > positions.size) return false;
    scanner.setStreamPos(positions[step - 1]);
    int const natoms = molecule->getNumAtoms();
    molecule->coords.resize(natoms);
    auto* const values = reinterpret_cast<float*>(molecule->coords.data);
    for (std::int64_t i = 0; i < 3 * std::int64_t{natoms}; ++i) {
        values[i] = scanner.getFloat(trajectoryWidth);
        if (i % trajectoryPerLine == trajectoryPerLine - 1) scanner.nextLine();
    }
    return true;
}

// NOLINTEND(performance-unnecessary-value-param)

MolTrajectory* AMBERread::readAmberMolTrajectory(char const* coordFile, char const* topologyFile,
                                                 char const* velocityFile) {
    McHandle<Molecule> const molecule = read(topologyFile, 0, {}, {});
    if (!molecule) return nullptr;
    return new MolTrajectoryAMBER(molecule->getTopology(), coordFile, velocityFile, topologyFile);
}
