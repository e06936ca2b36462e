#pragma once

#include "charmm/MolTrajectoryDCD.h"
#include "support/model.h"
#include "support/testing.h"

#include <bit>
#include <cstdint>

namespace tarnex::test {

/// A PSF file whose sections can be replaced one by one.
struct PsfText {
    std::string title = "PSF\n\n       1 !NTITLE\n REMARKS two waters\n";
    std::string atoms = "\n       6 !NATOM\n"
                        "       1 WAT  1    TIP3 OH2  OT    -0.834000       15.9994           0\n"
                        "       2 WAT  1    TIP3 H1   HT     0.417000        1.0080           0\n"
                        "       3 WAT  1    TIP3 H2   HT     0.417000        1.0080           0\n"
                        "       4 WAT  2    TIP3 OH2  OT    -0.834000       15.9994           0\n"
                        "       5 WAT  2    TIP3 H1   HT     0.417000        1.0080           0\n"
                        "       6 WAT  2    TIP3 H2   HT     0.417000        1.0080           0\n";
    std::string bonds = "\n       4 !NBOND: bonds\n       1       2       1       3       4       5       4       6\n";
    std::string angles = "\n       2 !NTHETA: angles\n       2       1       3       5       4       6\n";
    std::string dihedrals = "\n       1 !NPHI: dihedrals\n       1       2       3       4\n";
    std::string impropers = "\n       1 !NIMPHI: impropers\n       4       3       2       1\n";
    std::string donors = "\n       2 !NDON: donors\n       1       2       4       5\n";
    std::string acceptors = "\n       0 !NACC: acceptors\n\n";

    operator std::string() const { return title + atoms + bonds + angles + dihedrals + impropers + donors + acceptors; }

    /// A file of atoms alone.
    static PsfText ofAtoms(int count) {
        PsfText text{.title = "PSF 0 !NTITLE\n",
                     .atoms = std::to_string(count) + " !NATOM\n",
                     .bonds = "0 !NBOND: bonds\n",
                     .angles = "0 !NTHETA: angles\n",
                     .dihedrals = "0 !NPHI: dihedrals\n",
                     .impropers = "0 !NIMPHI: impropers\n",
                     .donors = "0 !NDON: donors\n"};
        for (int i = 1; i <= count; ++i) text.atoms += std::to_string(i) + " S 1 R C C 0 12 0\n";
        return text;
    }
};

/// Makes DCD files. The coordinates of atom `a` in frame `f` are f + a / 8 + 0.5, and 100 and 200 more for y and z.
struct DcdBytes {
    int numAtoms = 6;
    int numFrames = 4;
    int unitCell = 0;
    int fourthDimension = 0;
    bool swapped = false;
    int numTitleLines = 2;
    /// What the header says, if it is not `numFrames`.
    int statedFrames = -1;
    std::string bytes = {};

    static float coordinate(int frame, int atom, int axis) {
        return static_cast<float>(frame + 100 * axis) + static_cast<float>(atom) / 8 + 0.5F;
    }

    std::string header() {
        bytes.clear();
        std::vector<std::int32_t> control(21, 0);
        control[1] = statedFrames < 0 ? numFrames : statedFrames;
        control[11] = unitCell;
        control[12] = fourthDimension;
        addRecord(control);
        bytes.replace(4, 4, "CORD");
        std::vector<std::int32_t> title(1 + 20 * static_cast<std::size_t>(numTitleLines));
        title[0] = numTitleLines;
        addRecord(title);
        addRecord({numAtoms});
        return bytes;
    }

    operator std::string() {
        header();
        for (int frame = 0; frame < numFrames; ++frame) {
            if (unitCell == 1) addRecord(std::vector<std::int32_t>(12, 7));
            for (int axis = 0; axis < 3; ++axis) {
                std::vector<std::int32_t> row;
                for (int i = 0; i < numAtoms; ++i)
                    row.push_back(std::bit_cast<std::int32_t>(coordinate(frame, i, axis)));
                addRecord(row);
            }
            if (fourthDimension == 1) addRecord(std::vector<std::int32_t>(static_cast<std::size_t>(numAtoms), 9));
        }
        return bytes;
    }

    void addInt(std::int32_t value) {
        auto const word = swapped ? __builtin_bswap32(static_cast<std::uint32_t>(value)) : std::uint32_t(value);
        bytes.append(reinterpret_cast<char const*>(&word), sizeof word);
    }
    void addRecord(std::vector<std::int32_t> const& values) {
        auto const length = static_cast<std::int32_t>(4 * values.size());
        addInt(length);
        for (std::int32_t value : values) addInt(value);
        addInt(length);
    }
};

/// A trajectory over two files with these contents.
struct OpenedTrajectory {
    McHandle<MolTrajectoryDCD> trajectory;
    bool isOpen;
    std::string messages;
    std::string errors;

    OpenedTrajectory(std::string const& psf, std::string const& dcd)
        : OpenedTrajectory(std::vector{writeFile("in.dcd", dcd), writeFile("in.psf", psf)}) {}
    explicit OpenedTrajectory(std::vector<std::string> const& names) {
        std::ostringstream stream;
        trajectory = new MolTrajectoryDCD(&stream);
        std::vector<char const*> pointers;
        for (std::string const& name : names) pointers.push_back(name.c_str());
        testing::internal::CaptureStderr();
        isOpen = trajectory->readDCDMolTrajectory(static_cast<int>(names.size()), pointers.data()) == trajectory;
        errors = testing::internal::GetCapturedStderr();
        messages = stream.str();
        trajectory->messages = nullptr;
    }

    /// What getting a frame comes to.
    std::string frame(int step) const {
        Molecule molecule(trajectory->getTopology(), false);
        molecule.coords[0] = McVec3f(-1, -1, -1);
        try {
            if (!trajectory->getTimeStep(step, &molecule)) return "false";
        } catch (DCDException const& exception) {
            EXPECT_EQ(molecule.coords[0], McVec3f(-1, -1, -1));
            return static_cast<char const*>(exception.message);
        }
        for (int i = 0; i < 3 * molecule.coords.size; ++i) {
            if (molecule.coords[i / 3][i % 3] != DcdBytes::coordinate(step, i / 3, i % 3)) return "other coordinates";
        }
        return "right";
    }
};

} // namespace tarnex::test
