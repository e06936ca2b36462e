#include "formatSamples.h"
#include "program.h"

namespace {

using namespace tarnex::test;
using Messages = ToolTest;

std::string const cutDcd = std::string(DcdBytes()).substr(0, std::string(DcdBytes()).size() - 20);

/// Files that are sound, damaged, or of something else.
std::pair<char const*, std::string> const files[] = {
    {"a.top", amberTopology},
    {"a.crd", restartText(2)},
    {"a.mdcrd", amberFrames},
    {"alone.top", amberTopology},
    {"new.parm7", "%VERSION  VERSION_STAMP = V0001.000\n%FLAG TITLE\n"},
    {"not.top", "[ moleculetype ]\n"},
    {"other.rst7", restartText(3)},
    {"box.mdcrd", amberFrames + "  10.000  10.000  10.000\n"},
    {"cut.mdcrd", amberFrames.substr(0, 101)},
    {"empty.mdcrd", ""},
    {"a.psf", PsfText()},
    {"gaps.psf", PsfText{.atoms = "6 !NATOM\n1 S 1 R C C 0 12 0\n2 S 1 R C C 0 12 0\n9 S 1 R C C 0 12 0\n"
                                  "4 S 1 R C C 0 12 0\n5 S 1 R C C 0 12 0\n6 S 1 R C C 0 12 0\n"}},
    {"ext.psf", PsfText{.title = "PSF EXT\n0 !NTITLE\n"}},
    {"a.dcd", DcdBytes()},
    {"seven.dcd", DcdBytes{.numAtoms = 7}},
    {"cut.dcd", cutDcd},
    {"a.gro", gro()},
    {"water.top", waterBonds},
    {"two.gro", gro() + gro()},
    {"cut.gro", gro().substr(0, 70)},
    {"many.gro", "t\n100000\n"},
    {"a.trr", trr<double>({1, 2})},
    {"one.trr", trr<double>({1})},
    {"four.trr", Frame<double>{.numAtoms = 4}.bytes()},
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
    {"atoms.vde", "1\n0 0 0 0 1 0 1\n"},
    {"text.vde", "text"},
    {"run-2.vde", "mine"},
    {"bad.bundle", "MoleculeBundle\nligands.sdf absent.sdf bad.bundle\n"},
    {"ill.bundle", "MoleculeBundle\ngarbage.sdf ligands.sdf\n"},
    {"open.bundle", "MoleculeBundle\nlost.qlt ligands.sdf lost.sdf"},
    {"all.bundle", "MoleculeBundle\nno.sdf no.pdb\n"},
    {"text.bundle", "some.sdf\n"},
    {"empty.bundle", "MoleculeBundle\n"},
    {"a.mol2", methanol},
    {"names.mol2", "@<TRIPOS>MOLECULE\nx\n1 0 1\nSMALL\nX\n@<TRIPOS>ATOM\n1 Carbon 0 0 0 C 1 LIG 0\n"},
    {"cut.mol2", methanol + methanolAtoms},
    {"far.mol2", "@<TRIPOS>MOLECULE\nx\n1 0 0\n\nX\n@<TRIPOS>ATOM\n1 A 1e12 0 0 C\n"},
    {"nan.mol2", "@<TRIPOS>MOLECULE\nn\n1 0 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n1 C nan 0 0 C\n"},
    {"cut.uni", "STRUCTURE 3 x\n\n"},
    {"empty.sdf", ""},
    {"garbage.sdf", "no connection table\nat all\n"},
    {"garbage.qlt", "not of this format"},
    {"old.sdf", "old"},
    {"old.qlt", "old"},
};

TEST_F(Messages, AreToldAndFailuresLeaveAllFilesAsTheyWere) {
    for (auto const& [name, text] : files) writeFile(name, text);
    for (char const* name : {"folder.sdf", "folder.top"}) std::filesystem::create_directory(scratchPath(name));
    std::size_t const numFiles = filesLeft().size();
    // Cases such as "$1 300 convert a.trr a.gro out.trr", with what is told in the lines behind.
    std::ifstream cases(TARNEX_TEST_DATA "/messages.txt");
    std::string each;
    ASSERT_TRUE(std::getline(cases, each, '$'));
    while (std::getline(cases, each, '$')) {
        std::size_t const command = each.find_first_not_of("0123456789 "), told = each.find('\n') + 1;
        rlim_t const fileLimit = std::strtoul(each.c_str() + 1, nullptr, 10);
        EXPECT_EQ(notesOf(each.substr(command, told - command), each[0] - '0', fileLimit), each.substr(told)) << each;
        EXPECT_EQ(filesLeft().size(), numFiles) << each;
    }
    for (auto const& [name, text] : files) EXPECT_EQ(content(name), text);
}

} // namespace
