// Every pair of formats that can be read and written, through the program: what comes back is what docs/formats.md
// says.

#include "formatSamples.h"
#include "program.h"
#include "qlt/MolTrajectoryVRK.h"

#include <algorithm>
#include <array>

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
    /// Of all files of an output, the named one first. Formats of several files need residues.
    std::vector<std::string> extensions;
    float tolerance;
    Bonds bonds;
    bool residues;
    char const* readOptions = "";

    /// The words that name the files of an output when it is read again.
    std::string files(std::string const& stem) const {
        std::string words = readOptions;
        for (std::string const& extension : extensions) words += " " + stem + extension;
        return words;
    }
};

FormatFacts const writtenFormats[] = {
    {"sdf", {".sdf"}, 5.1e-5F, Bonds::kept, false},
    {"pdb", {".pdb"}, 5.1e-4F, Bonds::perceived, true},
    {"gro", {".gro", ".top"}, 5.1e-3F, Bonds::kept, true},
    {"trr", {".trr", ".gro", ".top"}, 1e-5F, Bonds::kept, true},
    {"trr-single", {".trr", ".gro", ".top"}, 1e-5F, Bonds::kept, true, "--from trr-single"},
    {"xyz", {".xyz"}, 0.0F, Bonds::lost, false},
    {"vde", {".vde"}, 0.0F, Bonds::withoutTypes, false},
    {"mol2", {".mol2"}, 1e-5F, Bonds::kept, true},
    {"unichem", {".uni"}, 1e-5F, Bonds::kept, false},
    {"qlt", {".qlt"}, 0.0F, Bonds::kept, true},
};

/// What the model holds of a molecule.
struct Content {
    std::string elements;
    std::vector<float> coordinates;
    std::vector<std::array<int, 3>> bonds; // atoms and type, sorted
    bool hasResidues;
};

Content read(std::string const& files) {
    runSilently("convert -q " + files + " read.qlt");
    Bundle bundle;
    MolTrajectoryVRK::readBundle(scratchPath("read.qlt").c_str(), bundle);
    if (bundle.size != 1) throw std::runtime_error(files + " hold " + std::to_string(bundle.size) + " molecules");
    MolTopology* topology = bundle[0]->getTopology();
    McHandle<Molecule> const molecule(new Molecule(topology, false));
    EXPECT_TRUE(bundle[0]->getTimeStep(0, molecule));
    Content content{valuesOf(topology, 0, "atomic_number"), {}, {}, topology->getLevelIx("residues") >= 0};
    for (McVec3f const& place : molecule->coords) {
        for (int axis = 0; axis < 3; ++axis) content.coordinates.push_back(place[axis]);
    }
    // A bond without a type is read as a single one from formats that have no other word for it.
    auto* types = topology->levels[1]->integerAttribute("type", MtGroupingLevel::FIND, true);
    for (int i = 0; i < topology->levels[1]->groups.size; ++i) {
        auto const& bond = static_cast<MtBond&>(*topology->levels[1]->groups[i]);
        auto const [first, second] = std::minmax(bond.atoms[0], bond.atoms[1]);
        content.bonds.push_back({first, second, types ? std::max(types->getValue(i), 1) : 1});
    }
    std::sort(content.bonds.begin(), content.bonds.end());
    return content;
}

/// `whole` has the bonds that are perceived, if they are known.
void expectBonds(Content const& back, Bonds bonds, Content const& source, Content const* whole) {
    auto expected = bonds == Bonds::perceived && whole ? whole->bonds : source.bonds, found = back.bonds;
    if (bonds == Bonds::lost) expected.clear();
    if (bonds != Bonds::kept) {
        for (auto& bond : expected) bond[2] = 1;
        for (auto& bond : found) bond[2] = 1;
    }
    if (bonds == Bonds::perceived && !whole)
        EXPECT_TRUE(std::includes(found.begin(), found.end(), expected.begin(), expected.end()));
    else
        EXPECT_EQ(found, expected);
}

/// Converts into each format that is written, and reads that again.
void expectConversions(std::string const& files, Content const* whole = nullptr) {
    Content const source = read(files);
    for (FormatFacts const& format : writtenFormats) {
        SCOPED_TRACE("from " + files + " to " + format.name);
        std::string const command = "convert -q " + files + " --to " + format.name + " out" + format.extensions[0];
        if (format.extensions.size() > 1 && !source.hasResidues) {
            EXPECT_THAT(notesOf(command, 1), HasSubstr("need residues"));
            continue;
        }
        runSilently(command);
        Content const back = read(format.files("out"));
        EXPECT_EQ(back.elements, source.elements);
        expectBonds(back, format.bonds, source, whole);
        EXPECT_TRUE(back.hasResidues || !(format.residues && source.hasResidues));
        EXPECT_THAT(back.coordinates, testing::Pointwise(testing::FloatNear(format.tolerance), source.coordinates));
    }
}

using Matrix = ToolTest;

TEST_F(Matrix, WrittenFormatsIntoEachOther) {
    writeFile("sample.mol2", sample);
    Content const whole = read("sample.mol2");
    ASSERT_EQ(whole.elements, "8|1|1|6|8|1|1");
    ASSERT_EQ(whole.bonds.size(), 5U);
    for (FormatFacts const& format : writtenFormats) {
        runSilently("convert -q sample.mol2 --to " + format.name + " in" + format.extensions[0]);
        expectConversions(format.files("in"), &whole);
    }
}

TEST_F(Matrix, FormatsThatAreOnlyReadIntoAllOthers) {
    std::string amber =
        AmberText{.symbols = {"CT", "OH", "HC"}, .pointers = {1, 2}, .bondsWithout = {0, 3, 1, 3, 6, 1}}.text();
    writeFile("a.top", amber.replace(amber.find("A1  A2  A3  "), 12, "C1  O1  H1  "));
    writeFile("a.crd", restartText(3));
    writeFile("sample.mol2", sample);
    writeFile("list.bundle", "# MoleculeBundle\nsample.mol2\n");
    writeFile("w.psf", PsfText());
    writeFile("w.dcd", DcdBytes{.numFrames = 1});
    for (char const* const files : {"a.top", "list.bundle", "w.psf w.dcd"}) expectConversions(files);
}

} // namespace
