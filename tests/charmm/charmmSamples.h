#pragma once

#include "charmm/MolTrajectoryDCD.h"
#include "support/Bytes.h"
#include "support/model.h"
#include "support/testing.h"

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

    /// A file of atoms that are all alike.
    static PsfText ofAtoms(int count) {
        std::string atoms = std::to_string(count) + " !NATOM\n";
        for (int i = 1; i <= count; ++i) atoms += std::to_string(i) + " S 1 R C C 0 12 0\n";
        return {.atoms = atoms};
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

    static float coordinate(int frame, int atom, int axis) {
        return static_cast<float>(frame + 100 * axis) + static_cast<float>(atom) / 8 + 0.5F;
    }

    operator std::string() const {
        Bytes all{.isBig = swapped};
        auto const putRecord = [&](int length, auto const& putValues) {
            all.put(length);
            putValues();
            all.put(length);
        };
        putRecord(84, [&] { all.raw("CORD").put(numFrames).put(0, 9).put(unitCell).put(fourthDimension).put(0, 8); });
        putRecord(4 + 80 * numTitleLines, [&] { all.put(numTitleLines).put(0, 20 * numTitleLines); });
        putRecord(4, [&] { all.put(numAtoms); });
        for (int frame = 0; frame < numFrames; ++frame) {
            if (unitCell == 1) putRecord(48, [&] { all.put(7, 12); });
            for (int axis = 0; axis < 3; ++axis) {
                putRecord(4 * numAtoms, [&] {
                    for (int i = 0; i < numAtoms; ++i) all.put(coordinate(frame, i, axis));
                });
            }
            if (fourthDimension == 1) putRecord(4 * numAtoms, [&] { all.put(9, numAtoms); });
        }
        return all.bytes;
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
        for (McVec3f& place : molecule.coords) place = McVec3f(-1, -1, -1);
        try {
            if (!trajectory->getTimeStep(step, &molecule)) return "false";
        } catch (DCDException const& exception) {
            for (McVec3f const& place : molecule.coords) EXPECT_EQ(place, McVec3f(-1, -1, -1));
            return static_cast<char const*>(exception.message);
        }
        for (int i = 0; i < 3 * molecule.coords.size; ++i) {
            if (molecule.coords[i / 3][i % 3] != DcdBytes::coordinate(step, i / 3, i % 3)) return "other coordinates";
        }
        return "right";
    }
};

} // namespace tarnex::test
