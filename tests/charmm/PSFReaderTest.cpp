#include "charmmSamples.h"

namespace {

using namespace tarnex::test;

/// All groups and values of a topology, or the message of the failure; and what is said to standard error.
std::string readTopology(std::string const& psf) {
    MolTrajectoryDCD trajectory(nullptr);
    std::ifstream stream(writeFile("in.psf", psf));
    trajectory.psfStream = &stream;
    testing::internal::CaptureStderr();
    std::string result;
    try {
        trajectory.readPSF();
        result = describe(trajectory.getTopology());
    } catch (DCDException const& exception) {
        result = static_cast<char const*>(exception.message);
    }
    return result + testing::internal::GetCapturedStderr();
}

std::string missing(std::string const& token) {
    return "Expected token " + token + " not found in psf-file";
}

std::string const waters = "DCD;\natoms(-1) flags 3: 6 atomic_number=8|1|1|8|1|1 radius=1.52|1.2|1.2|1.52|1.2|1.2 "
                           "charge=-0.834|0.417|0.417|-0.834|0.417|0.417 mass=15.9994|1.008|1.008|15.9994|1.008|1.008 "
                           "type=OH2|H1|H2|OH2|H1|H2 type_name=OT|HT|HT|OT|HT|HT\nbonds(0) flags 2: 0,1|0,2|3,4|3,5\n"
                           "residues(0) flags 35: 0-2|3-5 name=TIP3|TIP3\nangles(0) flags 3: 1,0,2|4,3,5\n"
                           "dihedrals(0) flags 3: 0,1,2,3\nimp_dihedrals(0) flags 3: 3,2,1,0\n"
                           "donors(0) flags 3: 0,1|3,4\nacceptors(0) flags 3: ";

TEST(PSFReader, FillsAllLevels) {
    EXPECT_EQ(readTopology(PsfText()), waters);
}

TEST(PSFReader, ElementsAndNumbersOfAtomsAndResidues) {
    PsfText psf = PsfText::ofAtoms(0);
    // An element has a second letter if that is a small one; numbers need no order.
    psf.atoms = "7 !NATOM\n1 S 0 A CA c 0 0 0 2 S 1 B Ca c 0 0 0 4 S 1 B HG11 c 0 0 0 5 S 2 C Fe2 c 0 0 0\n"
                "-2147483648 S 1 D C c 0 0 0 7 S 1 D 1H c 0 0 0 8 S 1 D QQ c 0 0 0\n";
    std::string const text = readTopology(psf);
    EXPECT_THAT(text, HasSubstr(" type=CA|Ca|HG11|Fe2|C|1H|QQ "));
    EXPECT_THAT(text, HasSubstr(" atomic_number=6|20|1|26|6|0|0 "));
    EXPECT_THAT(text, HasSubstr("\nresidues(0) flags 35: 1-2|3-3|4-6 name=B|C|D\n"));
    EXPECT_THAT(text, EndsWith("Warning: Expected atom nr. 3 but found nr. 4 !\n"
                               "Warning: Expected atom nr. 6 but found nr. -2147483648 !\n"
                               "Warning: Expected atom nr. -2147483647 but found nr. 7 !\n"));
}

TEST(PSFReader, SectionsAnnounceThemselves) {
    std::string const fourBonds = "\n1 2 1 3 4 5 4 6\n";
    std::pair<PsfText, std::string> const cases[] = {
        {{.title = "PSF 0 !NTITLE\n"}, waters},
        {{.title = "PSF\n2 !NTITLE and more\nx\n1 !NATOM\n"}, waters},
        {{.title = "PSF EXT\n0 !NTITLE\n"}, missing("!NTITLE")},
        {{.title = "PSFX\n0 !NTITLE\n"}, missing("PSF")},
        {{.title = "PSF\n0 !NTITLES\n"}, missing("!NTITLE")},
        {{.title = "PSF\n-5 !NTITLE\n"}, waters},
        {{.title = "PSF\n2000000000 !NTITLE\n"}, missing("!NATOM")},
        {{.title = "PSF\n9999999999 !NTITLE\n"}, missing("!NTITLE")},
        {{.bonds = "4\n\n !NBOND: bonds and more" + fourBonds}, waters},
        {{.bonds = "4 !NBOND:" + fourBonds}, missing("!NBOND: bonds")},
        {{.bonds = "four !NBOND: bonds" + fourBonds}, missing("!NBOND: bonds")},
        // A line that does not fit in the reader's buffer puts nothing out of step.
        {{.bonds = "4 !NBOND: bonds" + std::string(186, 'x') + fourBonds}, waters},
        {{.bonds = "4 !NBOND: bonds" + std::string(300, 'x') + fourBonds}, waters},
        {{.angles = ""}, missing("!NTHETA: angles")},
        {{.dihedrals = ""}, missing("!NPHI: dihedrals")},
        {{.impropers = ""}, missing("!NIMPHI: impropers")},
        {{.donors = ""}, missing("!NDON: donors")},
        {{.acceptors = ""}, missing("!NACC: acceptors")},
        {{.bonds = "2147483647 !NBOND: bonds\n1 2 3"}, missing("!NTHETA: angles")},
    };
    for (auto const& [psf, result] : cases) EXPECT_EQ(readTopology(psf), result);
}

TEST(PSFReader, CountsThatAreTooLargeOrNegative) {
    PsfText psf;
    psf.atoms.replace(psf.atoms.find("6 "), 2, "2000000000 ");
    EXPECT_EQ(readTopology(psf), missing("!NBOND: bonds"));
    EXPECT_THAT(readTopology(PsfText{.bonds = "-4 !NBOND: bonds\n"}), HasSubstr("bonds(0) flags 2: \nresidues"));
    EXPECT_THAT(readTopology(PsfText{.acceptors = "2000000000 !NACC: acceptors\n1 2 3"}),
                EndsWith("\nacceptors(0) flags 3: 0,1"));
    // Groups of atoms that do not exist are left out.
    EXPECT_THAT(readTopology(PsfText{.bonds = "3 !NBOND: bonds\n1 7 0 2 -2147483648 1\n"}),
                HasSubstr("bonds(0) flags 2: \nresidues"));
}

} // namespace
