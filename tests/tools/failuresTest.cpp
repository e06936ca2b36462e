#include "formatSamples.h"
#include "program.h"

namespace {

using namespace tarnex::test;
using Failures = ToolTest;

std::string const cutDcd = std::string(DcdBytes()).substr(0, std::string(DcdBytes()).size() - 20);

/// Files that are sound, damaged, or of something else.
std::pair<char const*, std::string> const files[] = {
    {"a.top", amberTopology},
    {"a.crd", restartText(2)},
    {"a.mdcrd", amberFrames},
    {"new.parm7", "%VERSION  VERSION_STAMP = V0001.000\n%FLAG TITLE\n"},
    {"not.top", "[ moleculetype ]\n"},
    {"other.rst7", restartText(3)},
    {"box.mdcrd", amberFrames + "  10.000  10.000  10.000\n"},
    {"cut.mdcrd", amberFrames.substr(0, 101)},
    {"empty.mdcrd", ""},
    {"a.psf", PsfText()},
    {"ext.psf", PsfText{.title = "PSF EXT\n0 !NTITLE\n"}},
    {"a.dcd", DcdBytes()},
    {"seven.dcd", DcdBytes{.numAtoms = 7}},
    {"cut.dcd", cutDcd},
    {"a.gro", gro()},
    {"water.top", waterBonds},
    {"cut.gro", gro().substr(0, 70)},
    {"many.gro", "t\n100000\n"},
    {"a.trr", trr<double>({1, 2})},
    {"single.trr", trr<float>({1, 2, 3, 4, 5, 6})},
    {"text.trr", gro()},
    {"short.trr", trr<double>({1, 2}).substr(0, 200)},
    {"cut.trr", trr<double>({1, 2}).substr(0, 300)},
    {"sizes.trr", trr<double>({1, 2}) + Frame<double>{.numAtoms = 3, .hasForces = 1}.bytes() + trr<double>({1, 2})},
    {"long.trr", Frame<double>{.strLen = 21, .version = std::string(24, 'v')}.bytes()},
    {"empty.pdb", "REMARK nothing\n"},
    {"long.pdb", "HEADER" + std::string(2000, 'x') + "\n"},
    {"text.xyz", "some text\n"},
    {"word.xyz", "1\n\nC 0 0 0\n1\n\nC 0 x 0\n"},
    {"a.vde", vdePicture},
    {"one.vde", "1\n0 0 0 0 1 0 1\n0\n"},
    {"text.vde", "text"},
    {"run-2.vde", "mine"},
    {"bad.bundle", "MoleculeBundle\nligands.sdf absent.sdf bad.bundle\n"},
    {"ill.bundle", "MoleculeBundle\ngarbage.sdf ligands.sdf\n"},
    {"all.bundle", "MoleculeBundle\nno.sdf no.pdb\n"},
    {"text.bundle", "some.sdf\n"},
    {"empty.bundle", "MoleculeBundle\n"},
    {"a.mol2", methanol},
    {"cut.mol2", methanol + methanolAtoms},
    {"far.mol2", "@<TRIPOS>MOLECULE\nx\n1 0 0\n\nX\n@<TRIPOS>ATOM\n1 A 1e12 0 0 C\n"},
    {"nan.mol2", "@<TRIPOS>MOLECULE\nn\n1 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n1 C nan 0 0 C\n"},
    {"cut.uni", "STRUCTURE 3 x\n\n"},
    {"empty.sdf", ""},
    {"garbage.sdf", "no connection table\nat all\n"},
    {"garbage.qlt", "not of this format"},
};

struct Case {
    char const* command;
    char const* reason;
    rlim_t fileLimit = 0;
};
constexpr char const* notFinite = "has a coordinate that is not a finite number";
constexpr char const* ofDcd = "Found number of atoms ( : 7) is inconsistent with expected number ( : 6)\n";
constexpr char const* oneMolecule = "holds one molecule or trajectory, here are 3\n";

Case const cases[] = {
    {"info new.parm7", "tarnex: new.parm7: a topology in the newer layout with %FLAG sections; only the older layout, "
                       "without them, can be read\n"},
    {"info not.top", "no atoms in it, or no AMBER topology in the older layout\n"},
    {"info a.mdcrd", "has to be read together with its topology\n"},
    {"info a.top other.rst7", "it does not have the number of atoms of its topology\n"},
    {"info a.top box.mdcrd", "frame 3 lacks numbers or its last line end"},
    {"info a.top cut.mdcrd", "frame 2 lacks numbers or its last line end"},
    {"info a.top empty.mdcrd", "no frames in it\n"},
    {"info a.psf", "a.psf: a PSF file and the DCD files for it are read together: FILE.psf FILE.dcd\n"},
    {"info a.dcd ext.psf", "tarnex: ext.psf: Expected token !NTITLE not found in psf-file; words behind \"PSF\" in its "
                           "first line are not read\n"},
    {"info a.psf seven.dcd", ofDcd},
    {"convert -q a.psf cut.dcd out.qlt", "tarnex: a.psf: step 3 of \"cut.dcd\" cannot be read: Found number of atoms"},
    {"convert cut.gro out.pdb", "ends ahead of the last of its 3 atoms"},
    {"info many.gro", "its count, 100000, does not fit in five columns"},
    {"info a.gro absent.top", "absent.top: No such file"},
    {"info a.gro water.top water.top", "which has water.top already"},
    {"info a.trr", "name its .gro file behind it"},
    {"info text.trr a.gro", "no .trr file"},
    {"info short.trr a.gro", "ends within its first frame"},
    {"info cut.trr a.gro", "ends within a frame"},
    {"info sizes.trr a.gro", "has frames of different sizes"},
    {"convert -k sizes.trr a.gro out.pdb", "step 3 of \"sizes.trr\" cannot be read"},
    {"info long.trr a.gro", "too long"},
    {"convert single.trr a.gro out.pdb", notFinite},
    {"convert a.trr a.gro out.gro", "take one with --frames, or write a .trr"},
    {"convert a.trr a.gro out.trr", "tarnex: out.trr: File too large\n", 300},
    {"convert --to gro a.gro out.top", "has the same name"},
    {"convert a.gro water.top water.gro", "water.top, which is an input"},
    {"convert empty.pdb out.pdb", "no ATOM or HETATM records"},
    {"convert long.pdb out.pdb", "exceeds buffer"},
    {"convert ligands.sdf out.pdb", oneMolecule},
    {"convert text.xyz out.xyz", "no whole frame"},
    {"convert word.xyz out.sdf", "step 1 of \"word.xyz\" cannot be read"},
    {"convert text.vde out.vde", "no number of atoms"},
    {"convert a.vde one.vde out.vde", "one.vde: holds 1 atom, and a.vde holds 2;"},
    {"convert a.vde a.vde --to vde -", "a file for each step"},
    {"convert a.vde a.vde a.vde run.vde", "run.vde: it comes with the file run-2.vde"},
    {"convert bad.bundle out.qlt", "bad.bundle: it names absent.sdf, which cannot be read"},
    {"convert ill.bundle out.qlt", "it names garbage.sdf, which cannot be read: Could not "},
    {"convert -k all.bundle out.qlt", "no.sdf, which cannot be read; nor can the other"},
    {"convert text.bundle out.qlt", "the word MoleculeBundle"},
    {"convert empty.bundle out.qlt", "it names no files"},
    {"convert cut.mol2 out.mol2", "tarnex: cut.mol2: Could not find @<TRIPOS>BOND record in line 24; "},
    {"convert far.mol2 out.mol2", "tarnex: out.mol2: a number does not fit in its columns\n"},
    {"convert a.mol2 out.mol2", "File too large", 100},
    {"convert nan.mol2 out.mol2", notFinite},
    {"convert nan.mol2 out.xyz", notFinite},
    {"convert -q a.mol2 a.mol2 a.mol2 out.uni", oneMolecule},
    {"info cut.uni", "tarnex: cut.uni: Keyword END expected in line 3\n"},
    {"info garbage.sdf", "garbage.sdf: record 1, line 3: Could not find counts line by V2000 or V3000 token\n"},
    {"info empty.sdf", "empty.sdf: the file is empty\n"},
    {"info garbage.qlt", "garbage.qlt: no qlt file, or cut or damaged; nothing can be read from it\n"},
    {"info folder.sdf", "tarnex: folder.sdf: Is a directory\n"},
    {"convert ligands.sdf folder.sdf", "tarnex: folder.sdf: Is a directory\n"},
    {"convert a.gro folder.gro", "tarnex: folder.top: Is a directory\n"},
    {"convert ligands.sdf absent/out.sdf", "tarnex: absent/out.sdf: No such file or directory\n"},
    {"convert --to qlt ligands.sdf /dev/full", "tarnex: /dev/full: No space left on device\n"},
    {"convert ligands.sdf old.sdf", "tarnex: old.sdf: File too large\n", 1000},
    {"convert ligands.sdf old.qlt", "tarnex: old.qlt: File too large\n", 1000},
    {"info ligands.sdf", "tarnex: st", 10},
};

TEST_F(Failures, AreToldInOneLineAndLeaveAllFilesAsTheyWere) {
    for (auto const& [name, text] : files) writeFile(name, text);
    for (char const* name : {"old.sdf", "old.qlt"}) writeFile(name, "old");
    for (char const* name : {"folder.sdf", "folder.top"}) std::filesystem::create_directory(scratchPath(name));
    std::size_t const numFiles = filesLeft().size();
    for (Case const& c : cases) {
        std::string const told = notesOf(c.command, 1, c.fileLimit);
        EXPECT_THAT(told.substr(told.rfind('\n', told.size() - 2) + 1), HasSubstr(c.reason)) << c.command;
        EXPECT_EQ(filesLeft().size(), numFiles) << c.command;
    }
    for (auto const& [name, text] : files) EXPECT_EQ(content(name), text);
    EXPECT_EQ(content("old.sdf") + content("old.qlt"), "oldold");
}

} // namespace
