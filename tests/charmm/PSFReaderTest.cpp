#include "charmmSamples.h"

namespace {

using namespace tarnex::test;

/// All groups and values of a topology, or the message of the failure.
std::string readTopology(std::string const& psf) {
    MolTrajectoryDCD trajectory(nullptr);
    std::ifstream stream(writeFile("in.psf", psf));
    trajectory.psfStream = &stream;
    try {
        trajectory.readPSF();
    } catch (DCDException const& exception) {
        return static_cast<char const*>(exception.message);
    }
    return describe(trajectory.getTopology());
}

std::string missing(std::string const& token) {
    return "Expected token " + token + " not found in psf-file";
}

TEST(PSFReader, FillsAllLevels) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(readTopology(PsfText()),
              "DCD;\natoms(-1) flags 3: 6 atomic_number=8|1|1|8|1|1 radius=1.52|1.2|1.2|1.52|1.2|1.2 "
              "charge=-0.834|0.417|0.417|-0.834|0.417|0.417 mass=15.9994|1.008|1.008|15.9994|1.008|1.008 "
              "type=OH2|H1|H2|OH2|H1|H2 type_name=OT|HT|HT|OT|HT|HT\nbonds(0) flags 2: 0,1|0,2|3,4|3,5\n"
              "residues(0) flags 35: 0-2|3-5 name=TIP3|TIP3\nangles(0) flags 3: 1,0,2|4,3,5\n"
              "dihedrals(0) flags 3: 0,1,2,3\nimp_dihedrals(0) flags 3: 3,2,1,0\n"
              "donors(0) flags 3: 0,1|3,4\nacceptors(0) flags 3: ");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(PSFReader, ElementsComeFromTheNames) {
    PsfText psf = PsfText::ofAtoms(0);
    psf.atoms = "8 !NATOM\n1 S 1 R CA c 0 0 0 2 S 1 R Ca c 0 0 0 3 S 1 R HG11 c 0 0 0 4 S 1 R Fe2 c 0 0 0\n"
                "5 S 1 R C c 0 0 0 6 S 1 R 1H c 0 0 0 7 S 1 R QQ c 0 0 0 8 S 1 R Zn c 0 0 0\n";
    std::string const text = readTopology(psf);
    EXPECT_THAT(text, HasSubstr(" type=CA|Ca|HG11|Fe2|C|1H|QQ|Zn "));
    EXPECT_THAT(text, HasSubstr(" atomic_number=6|20|1|26|6|0|0|30 "));
}

TEST(PSFReader, NumbersOfAtomsAndResiduesNeedNoOrder) {
    PsfText psf = PsfText::ofAtoms(0);
    psf.atoms = "5 !NATOM\n1 S 0 A C c 0 0 0\n2 S 1 B C c 0 0 0\n4 S 1 B C c 0 0 0\n5 S 2 C C c 0 0 0\n"
                "-2147483648 S 1 D C c 0 0 0\n";
    testing::internal::CaptureStderr();
    std::string const text = readTopology(psf);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Warning: Expected atom nr. 3 but found nr. 4 !\n"
                                                      "Warning: Expected atom nr. 6 but found nr. -2147483648 !\n");
    EXPECT_THAT(text, HasSubstr("\nresidues(0) flags 35: 1-2|3-3|4-4 name=B|C|D\n"));
}

TEST(PSFReader, SectionsAnnounceThemselves) {
    std::string const right = readTopology(PsfText());
    auto const withTitle = [](char const* title) { return readTopology(PsfText{.title = title}); };
    auto const withBonds = [](std::string const& head) {
        return readTopology(PsfText{.bonds = head + "\n1 2 1 3 4 5 4 6\n"});
    };
    EXPECT_EQ(withTitle("PSF 0 !NTITLE\n"), right);
    EXPECT_EQ(withTitle("PSF\n2 !NTITLE and more\nx\n1 !NATOM\n"), right);
    EXPECT_EQ(withTitle("PSF EXT\n0 !NTITLE\n"), missing("!NTITLE"));
    EXPECT_EQ(withTitle("PSFX\n0 !NTITLE\n"), missing("PSF"));
    EXPECT_EQ(withTitle("PSF\n0 !NTITLES\n"), missing("!NTITLE"));
    EXPECT_EQ(withTitle("PSF\n-5 !NTITLE\n"), right);
    EXPECT_EQ(withTitle("PSF\n2000000000 !NTITLE\n"), missing("!NATOM"));
    EXPECT_EQ(withTitle("PSF\n9999999999 !NTITLE\n"), missing("!NTITLE"));

    EXPECT_EQ(withBonds("4\n\n !NBOND: bonds and more"), right);
    EXPECT_EQ(withBonds("4 !NBOND:"), missing("!NBOND: bonds"));
    EXPECT_EQ(withBonds("four !NBOND: bonds"), missing("!NBOND: bonds"));
    EXPECT_EQ(withBonds(""), missing("!NBOND: bonds"));
    // A line that does not fit in the reader's buffer puts nothing out of step.
    for (std::size_t length : {185U, 186U, 187U, 300U}) {
        EXPECT_EQ(withBonds("4 !NBOND: bonds" + std::string(length, 'x')), right) << length;
    }
    EXPECT_EQ(withBonds("4 " + std::string(300, 'x')), missing("!NBOND: bonds"));

    EXPECT_EQ(readTopology(PsfText{.angles = ""}), missing("!NTHETA: angles"));
    EXPECT_EQ(readTopology(PsfText{.dihedrals = ""}), missing("!NPHI: dihedrals"));
    EXPECT_EQ(readTopology(PsfText{.impropers = ""}), missing("!NIMPHI: impropers"));
    EXPECT_EQ(readTopology(PsfText{.donors = ""}), missing("!NDON: donors"));
    EXPECT_EQ(readTopology(PsfText{.acceptors = ""}), missing("!NACC: acceptors"));
}

TEST(PSFReader, CountsThatAreTooLargeOrNegative) {
    PsfText psf;
    psf.atoms.replace(psf.atoms.find("6 "), 2, "2000000000 ");
    EXPECT_EQ(readTopology(psf), missing("!NBOND: bonds"));
    EXPECT_EQ(readTopology(PsfText{.bonds = "2147483647 !NBOND: bonds\n1 2 3"}), missing("!NTHETA: angles"));
    EXPECT_THAT(readTopology(PsfText{.bonds = "-4 !NBOND: bonds\n"}), HasSubstr("bonds(0) flags 2: \nresidues"));
    EXPECT_THAT(readTopology(PsfText{.acceptors = "2000000000 !NACC: acceptors\n1 2 3"}),
                EndsWith("\nacceptors(0) flags 3: 0,1"));
    // Groups of atoms that do not exist are left out.
    EXPECT_THAT(readTopology(PsfText{.bonds = "3 !NBOND: bonds\n1 7 0 2 -2147483648 1\n"}),
                HasSubstr("bonds(0) flags 2: \nresidues"));
}

} // namespace
