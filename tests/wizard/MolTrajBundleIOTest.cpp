#include "formats/MolTrajBundleIO.h"

#include "formats/UniChemIO.h"
#include "qlt/MolTrajectoryVRK.h"
#include "support/model.h"
#include "support/testing.h"
#include "wizard/TarnexWizard.h"

#include <memory>

namespace {

using namespace tarnex::test;
using Names = std::vector<std::string>;

std::string const sdfRecord = "\n\n\n  1  0  0  0  0  0  0  0  0  0999 V2000\n"
                              "    1.0000    2.0000    3.0000 C\nM  END\n$$$$\n";
std::string const pdbAtom = "HETATM    1  C   LIG A   1       1.000   2.000   3.000  1.00 10.00           C\n";

/// What the list reads, and what it says; the wizard's lines go to `printed`.
struct Loaded {
    Bundle bundle;
    std::string messages;
    std::string printed;

    explicit Loaded(std::string const& list) {
        std::ostringstream stream;
        printed = tarnex::test::printed(
            [&] { bundle = MolTrajBundleIO(&stream, nullptr).readMolTrajectoryBundle(list.c_str()); });
        messages = stream.str();
    }
    Names names() const {
        Names all;
        for (McHandle<MolTrajectory> const& trajectory : bundle) all.emplace_back(trajectory->getTopology()->getName());
        return all;
    }
};

Names wordsOf(std::string const& text) {
    std::unique_ptr<FILE, int (*)(FILE*)> const file(std::fopen(writeFile("words", text).c_str(), "rb"), std::fclose);
    Names words;
    McString word;
    while (MolTrajBundleIO::nextWord(file.get(), word)) words.emplace_back(word.data);
    return words;
}

TEST(MolTrajBundleIO, Words) {
    std::pair<char const*, Names> const cases[] = {
        {" a\tb\r\nc.sdf \v\f", {"a", "b", "c.sdf"}},
        {"a#b #c d\n#\n# \n  e\n", {"a#b", "e"}},
        {"\"a b#c\"d\n\"\" x\"y z\n", {"a b#c", "d", "", "x\"y", "z"}},
        {"a last", {"a"}},
        {"a \"open b\n", {"a"}},
        {"a #comment", {"a"}},
        {"", {}},
    };
    for (auto const& [text, words] : cases) EXPECT_EQ(wordsOf(text), words) << text;
    EXPECT_EQ(wordsOf(std::string(100000, 'x') + " "), Names{std::string(100000, 'x')});
}

TEST(MolTrajBundleIO, Headers) {
    std::string const absent = scratchPath("absent");
    EXPECT_EQ(Loaded(absent).messages, "Could not open file: " + absent);
    std::string const good = writeFile("good", "# MoleculeBundle v2\n");
    EXPECT_EQ(Loaded(good).messages, "");
    for (std::string const& line : {std::string("moleculebundle\n"), std::string(), std::string("\n"),
                                    std::string(242, ' ') + "MoleculeBundle\n"}) {
        std::string const list = writeFile("list", line + "a.sdf\n");
        std::string const shown = line.empty() ? "a.sdf\n" : line.substr(0, 255);
        Loaded const loaded(list);
        EXPECT_EQ(loaded.messages, "Invalid header in " + list + " (expecting " + shown + ")");
        EXPECT_EQ(loaded.bundle.size, 0);
        EXPECT_EQ(loaded.printed, "");
    }
}

TEST(MolTrajBundleIO, LoadsFilesOfSeveralFormatsAndSkipsTheRest) {
    writeFile("models.pdb", "MODEL        1\n" + pdbAtom + "ENDMDL\nMODEL        2\n" + pdbAtom + "ENDMDL\n");
    writeFile("m.mol2", "@<TRIPOS>MOLECULE\nm\n1 0\nSMALL\nNO_CHARGES\n\n@<TRIPOS>ATOM\n1 C 1.0 2.0 3.0 C.3\n");
    writeFile("in.sdf", sdfRecord + sdfRecord);
    std::filesystem::create_directory(scratchPath("sub"));
    writeFile("sub/my file.sdf", sdfRecord);
    writeFile("a\\b.sdf", sdfRecord);
    std::unique_ptr<Molecule> const molecule(
        TarnexWizard::readMolecule(scratchPath("in.sdf").c_str(), TarnexWizard::ReadMolecules::READ_AUTO, nullptr));
    ASSERT_TRUE(UniChemIO(nullptr, nullptr).writeUniChemMolecule(molecule.get(), scratchPath("u.uni").c_str()));
    ASSERT_TRUE(MolTrajectoryVRK::writeQLTMolecule(molecule.get(), scratchPath("q.qlt").c_str()));

    Loaded const loaded(writeFile("self.bundle",
                                  "MoleculeBundle\nmodels.pdb in.sdf # and more\n"
                                  "m.mol2\t\"sub/my file.sdf\" \"\" self.bundle no.qlt a\\b.sdf u.uni q.qlt lost.sdf"));
    EXPECT_EQ(loaded.messages, "");
    // Of an SD file only the first record is read.
    EXPECT_EQ(loaded.names(), (Names{"models.pdb", "in.sdf", "m.mol2", "my file.sdf", "b.sdf", "u.uni", "q.qlt"}));
    for (McHandle<MolTrajectory> const& trajectory : loaded.bundle) EXPECT_EQ(placesOf(trajectory, 0), "1,2,3");
    EXPECT_EQ(loaded.bundle[0]->getNumTimeSteps(), 2);
    EXPECT_THAT(loaded.printed, HasSubstr("type: 8\nNot saving molecule to " + scratchPath("self.bundle\n")));
    EXPECT_THAT(loaded.printed, HasSubstr("type: 7\nNot saving molecule to " + scratchPath("no.qlt\n")));
    for (char const* name : {"a\\b.sdf", "lost.sdf"}) {
        EXPECT_THAT(loaded.printed, testing::Not(HasSubstr("Not saving molecule to " + scratchPath(name))));
    }
}

} // namespace
