#include "charmm/charmmSamples.h"
#include "program.h"

namespace {

using namespace tarnex::test;
using Charmm = ToolTest;

TEST_F(Charmm, TakesTheTwoFilesInEitherOrder) {
    std::string const psf = writeFile("topology.psf", PsfText());
    std::string const dcd = writeFile("run.dcd", DcdBytes{.swapped = true});
    for (auto const& files : {std::vector{psf, dcd}, std::vector{dcd, psf}}) {
        auto const report = nlohmann::json::parse(runSilently({"info", "--json", files[0], files[1]}))[0];
        EXPECT_EQ(report["format"], "charmm");
        EXPECT_EQ(report["molecules"][0]["name"], "run.dcd");
        EXPECT_EQ(report["molecules"][0]["steps"], 4);
        EXPECT_EQ(report["molecules"][0]["atoms"], 6);

        runSilently({"convert", "--quiet", "--frames", "1::2", files[0], files[1], "out.sdf"});
        std::string const text = readFile(scratchPath("out.sdf"));
        EXPECT_THAT(text, HasSubstr("    1.5000  101.5000  201.5000 O "));
        EXPECT_THAT(text, HasSubstr("    3.6250  103.6250  203.6250 H "));
        EXPECT_EQ(text.find("    2.5000"), std::string::npos);
    }
    // A topology serves several trajectories.
    std::string const two = writeFile("two.dcd", DcdBytes{.numFrames = 2});
    EXPECT_EQ(moleculesIn({dcd, psf, two})[1]["steps"], 2);
}

TEST_F(Charmm, FailuresAndWarningsAreLines) {
    std::string const psf = writeFile("in.psf", PsfText());
    std::string const dcd = writeFile("in.dcd", DcdBytes());
    auto const says = [](std::vector<std::string> const& arguments, std::string const& line) {
        EXPECT_EQ(failureOf(arguments), "tarnex: " + line + "\n");
    };
    std::string const pair = ": a PSF file and the DCD files for it are read together: FILE.psf FILE.dcd";
    says({"info", psf}, psf + pair);
    says({"info", psf, psf, dcd}, psf + pair);
    std::string const extended = writeFile("ext.psf", PsfText{.title = "PSF EXT\n0 !NTITLE\n"});
    says({"info", dcd, extended}, extended + ": Expected token !NTITLE not found in psf-file; words behind \"PSF\" in "
                                             "its first line are not read");
    std::string const seven = writeFile("seven.dcd", DcdBytes{.numAtoms = 7});
    std::string const wrong = "Found number of atoms ( : 7) is inconsistent with expected number ( : 6)";
    says({"info", psf, seven}, seven + ": " + wrong);

    std::string const whole = DcdBytes();
    std::string const cut = writeFile("cut.dcd", whole.substr(0, whole.size() - 20));
    says({"convert", "--quiet", psf, cut, scratchPath("out.qlt")},
         psf + ": step 3 of \"cut.dcd\" cannot be read: Found number of atoms ( : 2) is inconsistent with expected "
               "number ( : 6)");
    EXPECT_FALSE(std::filesystem::exists(scratchPath("out.qlt")));

    PsfText gaps = PsfText::ofAtoms(6);
    gaps.atoms.replace(gaps.atoms.find("3 S"), 1, "9");
    std::string const warned = writeFile("warned.psf", gaps);
    EXPECT_EQ(notesOf({"info", warned, dcd}), "tarnex: note: " + warned +
                                                  ": Warning: Expected atom nr. 3 but found nr. 9 !\n"
                                                  "tarnex: note: " +
                                                  warned + ": Warning: Expected atom nr. 10 but found nr. 4 !\n");
}

} // namespace
