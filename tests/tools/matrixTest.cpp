// Every pair of formats that can be read and written, through the program: what comes back is what docs/formats.md
// says.

#include "amber/amberSamples.h"
#include "charmm/charmmSamples.h"
#include "program.h"
#include "qlt/MolTrajectoryVRK.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <tuple>

namespace {

using namespace tarnex::test;

/// Water and formaldehyde: elements that all formats know, geometry from which bonds can be perceived, a double bond.
constexpr char const* sample = "@<TRIPOS>MOLECULE\nsample\n7 5 2\nPROTEIN\nNO_CHARGES\n\n@<TRIPOS>ATOM\n"
                               "1 O   9.0000 1.0000  2.0000 O.3 1 HOH\n2 H1  9.9572 1.0000  2.0000 H 1 HOH\n"
                               "3 H2  8.7600 1.9266  2.0000 H 1 HOH\n4 C   0.1234 0.0000  0.0000 C.2 2 FOR\n"
                               "5 O   0.1234 0.0000  1.2050 O.2 2 FOR\n6 H1  1.0664 0.0000 -0.5870 H 2 FOR\n"
                               "7 H2 -0.8196 0.0000 -0.5870 H 2 FOR\n@<TRIPOS>BOND\n"
                               "1 1 2 1\n2 1 3 1\n3 4 5 2\n4 4 6 1\n5 4 7 1\n";

enum class Bonds { kept, withoutTypes, perceived, lost };

/// What comes back out of a file of a format.
struct FormatFacts {
    std::string name;
    /// All files of an output with the stem "x", the named one first.
    std::vector<std::string> files;
    float tolerance;
    Bonds bonds;
    bool residues;
    bool needsResidues;
    std::vector<std::string> readOptions = {};
};

std::vector<FormatFacts> const writtenFormats = {
    {"sdf", {".sdf"}, 5.1e-5F, Bonds::kept, false, false},
    {"pdb", {".pdb"}, 5.1e-4F, Bonds::perceived, true, false},
    {"gro", {".gro", ".top"}, 5.1e-3F, Bonds::kept, true, true},
    {"trr", {".trr", ".gro", ".top"}, 1e-5F, Bonds::kept, true, true},
    {"trr-single", {".trr", ".gro", ".top"}, 1e-5F, Bonds::kept, true, true, {"--from", "trr-single"}},
    {"xyz", {".xyz"}, 0.0F, Bonds::lost, false, false},
    {"vde", {".vde"}, 0.0F, Bonds::withoutTypes, false, false},
    {"mol2", {".mol2"}, 1e-5F, Bonds::kept, true, false},
    {"unichem", {".uni"}, 1e-5F, Bonds::kept, false, false},
    {"qlt", {".qlt"}, 0.0F, Bonds::kept, true, false},
};

/// What the model holds of a molecule.
struct Content {
    std::vector<int> elements;
    std::vector<McVec3f> positions;
    std::vector<std::array<int, 3>> bonds; // atoms and type, sorted
    bool hasResidues = false;
};

Content contentOf(std::string const& qlt) {
    McDArray<McHandle<MolTrajectory>> bundle;
    MolTrajectoryVRK::readBundle(qlt.c_str(), bundle);
    Content content;
    if (bundle.size != 1) {
        ADD_FAILURE() << qlt << " holds " << bundle.size << " molecules";
        return content;
    }
    MolTopology* topology = bundle[0]->getTopology();
    McHandle<Molecule> const molecule(new Molecule(topology, false));
    EXPECT_TRUE(bundle[0]->getTimeStep(0, molecule));
    auto* numbers = topology->levels[0]->integerAttribute("atomic_number", MtGroupingLevel::FIND, true);
    for (int i = 0; i < molecule->getNumAtoms(); ++i) {
        content.elements.push_back(numbers ? numbers->getValue(i) : 0);
        content.positions.push_back(molecule->coords[i]);
    }
    // A bond without a type is read as a single one from formats that have no other word for it.
    auto* types = topology->levels[1]->integerAttribute("type", MtGroupingLevel::FIND, true);
    for (int i = 0; i < topology->levels[1]->groups.size; ++i) {
        auto const& bond = static_cast<MtBond&>(*topology->levels[1]->groups[i]);
        auto const [first, second] = std::minmax(bond.atoms[0], bond.atoms[1]);
        content.bonds.push_back({first, second, types ? std::max(types->getValue(i), 1) : 1});
    }
    std::sort(content.bonds.begin(), content.bonds.end());
    content.hasResidues = topology->getLevelIx("residues") >= 0;
    return content;
}

using Arguments = std::vector<std::string>;

Arguments convertInto(Arguments inputs, std::string const& output, FormatFacts const* format = nullptr) {
    inputs.insert(inputs.begin(), {"convert", "--quiet"});
    if (format) inputs.insert(inputs.end(), {"--to", format->name});
    inputs.push_back(output);
    return inputs;
}

/// The command line that reads the files of an output again.
Arguments filesOf(FormatFacts const& format, std::string const& stem) {
    Arguments arguments = format.readOptions;
    for (std::string const& extension : format.files) arguments.push_back(stem + extension);
    return arguments;
}

Content read(Arguments const& inputs) {
    runSilently(convertInto(inputs, "read.qlt"));
    return contentOf(scratchPath("read.qlt"));
}

void expectBonds(Content const& back, Bonds bonds, Content const& source, Content const* whole) {
    auto expected = bonds == Bonds::perceived && whole ? whole->bonds : source.bonds;
    auto found = back.bonds;
    if (bonds == Bonds::lost) expected.clear();
    if (bonds != Bonds::kept) {
        for (auto* each : {&expected, &found}) {
            for (auto& bond : *each) bond[2] = 1;
        }
    }
    if (bonds == Bonds::perceived && !whole)
        EXPECT_TRUE(std::includes(found.begin(), found.end(), expected.begin(), expected.end()));
    else
        EXPECT_EQ(found, expected);
}

/// Converts into each format that is written, and reads that again. `whole` has the bonds that are perceived, if they
/// are known.
void expectConversions(Arguments const& inputs, Content const* whole = nullptr) {
    Content const source = read(inputs);
    for (FormatFacts const& format : writtenFormats) {
        SCOPED_TRACE("to " + format.name);
        Program program(convertInto(inputs, "out" + format.files[0], &format));
        if (format.needsResidues && !source.hasResidues) {
            EXPECT_EQ(program.status(), 1);
            EXPECT_THAT(program.err(), testing::HasSubstr("need residues"));
            continue;
        }
        ASSERT_EQ(program.status(), 0) << program.err();
        Content const back = read(filesOf(format, "out"));
        EXPECT_EQ(back.elements, source.elements);
        expectBonds(back, format.bonds, source, whole);
        EXPECT_TRUE(back.hasResidues || !(format.residues && source.hasResidues));
        ASSERT_EQ(back.positions.size(), source.positions.size());
        for (std::size_t i = 0; i < back.positions.size(); ++i) {
            for (int axis = 0; axis < 3; ++axis) {
                EXPECT_NEAR(back.positions[i][axis], source.positions[i][axis], format.tolerance) << "atom " << i;
            }
        }
    }
}

using Matrix = ToolTest;

TEST_F(Matrix, WrittenFormatsIntoEachOther) {
    writeFile("sample.mol2", sample);
    Content const whole = read({"sample.mol2"});
    ASSERT_EQ(whole.elements, (std::vector{8, 1, 1, 6, 8, 1, 1}));
    ASSERT_EQ(whole.bonds.size(), 5U);
    for (FormatFacts const& format : writtenFormats) {
        SCOPED_TRACE("from " + format.name);
        runSilently(convertInto({"sample.mol2"}, "in" + format.files[0], &format));
        expectConversions(filesOf(format, "in"), &whole);
    }
}

TEST_F(Matrix, FormatsThatAreOnlyReadIntoAllOthers) {
    std::string amber =
        AmberText{.symbols = {"CT", "OH", "HC"}, .pointers = {1, 2}, .bondsWithout = {0, 3, 1, 3, 6, 1}}.text();
    std::string const names = "A1  A2  A3  ";
    writeFile("a.top", amber.replace(amber.find(names), names.size(), "C1  O1  H1  "));
    writeFile("a.crd", restartText(3));
    writeFile("sample.mol2", sample);
    writeFile("list.bundle", "# MoleculeBundle\nsample.mol2\n");
    for (Arguments const& inputs : {Arguments{"a.top"}, Arguments{"list.bundle"}}) {
        SCOPED_TRACE("from " + inputs[0]);
        expectConversions(inputs);
    }
    std::string const psf = writeFile("w.psf", PsfText());
    std::string const dcd = writeFile("w.dcd", DcdBytes{.numFrames = 1});
    expectConversions({psf, dcd});
}

} // namespace
