#include "charmmSamples.h"
#include "chemistry/ElementTable.h"

#include <gmock/gmock.h>
#include <sstream>

namespace {

using namespace tarnex::test;

/// The values of each atom, the bonds, and the members of the groups of all levels, a line each.
std::string describe(MolTopology& topology) {
    std::ostringstream text;
    for (int l = 0; l < topology.levels.size; ++l) {
        MtGroupingLevel& level = *topology.levels[l];
        text << (l == 0 ? "atoms" : l == 1 ? "bonds" : level.getName()) << '\n';
        for (int g = 0; g < level.groups.size; ++g) {
            MtGroup const& group = *level.groups[g];
            auto const string = [&](char const* name) {
                auto const* values = level.stringAttribute(name, MtGroupingLevel::FIND, true);
                if (values) text << values->getValue(g) << (l == 0 || group.size() > 0 ? " " : "");
            };
            string("type");
            string("type_name");
            string("name");
            if (l == 0) {
                text << level.integerAttribute("atomic_number", MtGroupingLevel::FIND, true)->getValue(g) << ' '
                     << level.floatAttribute("charge", MtGroupingLevel::FIND, true)->getValue(g) << ' '
                     << level.floatAttribute("mass", MtGroupingLevel::FIND, true)->getValue(g);
            }
            for (int i = 0; i < group.size(); ++i) text << (i > 0 ? " " : "") << group[i].groupIx;
            text << '\n';
        }
    }
    return text.str();
}

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
    return describe(*trajectory.getTopology());
}

std::string missing(std::string const& token) {
    return "Expected token " + token + " not found in psf-file";
}

TEST(PSFReader, FillsAllLevels) {
    testing::internal::CaptureStderr();
    EXPECT_EQ(readTopology(PsfText()), "atoms\n"
                                       "OH2 OT 8 -0.834 15.9994\nH1 HT 1 0.417 1.008\nH2 HT 1 0.417 1.008\n"
                                       "OH2 OT 8 -0.834 15.9994\nH1 HT 1 0.417 1.008\nH2 HT 1 0.417 1.008\n"
                                       "bonds\n0 1\n0 2\n3 4\n3 5\n"
                                       "residues\nTIP3 0 1 2\nTIP3 3 4 5\n"
                                       "angles\n1 0 2\n4 3 5\n"
                                       "dihedrals\n0 1 2 3\n"
                                       "imp_dihedrals\n3 2 1 0\n"
                                       "donors\n0 1\n3 4\n"
                                       "acceptors\n");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST(PSFReader, FlagsAndRadii) {
    OpenedTrajectory const opened(PsfText{}, DcdBytes{});
    MolTopology& topology = *opened.trajectory->getTopology();
    using Level = MtGroupingLevel;
    int const allFlags = Level::flagBit0 | Level::flagBit1 | Level::flagBit5;
    int const expected[] = {allFlags & ~Level::flagBit5, Level::flagBit1, allFlags};
    for (int level = 0; level < topology.levels.size; ++level) {
        EXPECT_EQ(topology.levels[level]->flags, expected[level > 2 ? 0 : level]) << level;
    }
    EXPECT_EQ(topology.levels[0]->floatAttribute("radius", Level::FIND, true)->getValue(0),
              tarnex::elementTable().getElement("O", false)->getRadius());
    EXPECT_EQ(topology.levels[1]->attributes.size, 0);
}

TEST(PSFReader, ElementsComeFromTheNames) {
    PsfText psf = PsfText::ofAtoms(0);
    psf.atoms = "8 !NATOM\n1 S 1 R CA c 0 0 0 2 S 1 R Ca c 0 0 0 3 S 1 R HG11 c 0 0 0 4 S 1 R Fe2 c 0 0 0\n"
                "5 S 1 R C c 0 0 0 6 S 1 R 1H c 0 0 0 7 S 1 R QQ c 0 0 0 8 S 1 R Zn c 0 0 0\n";
    std::string const text = readTopology(psf);
    EXPECT_THAT(text, testing::StartsWith("atoms\nCA c 6 0 0\nCa c 20 0 0\nHG11 c 1 0 0\nFe2 c 26 0 0\nC c 6 0 0\n"
                                          "1H c 0 0 0\nQQ c 0 0 0\nZn c 30 0 0\n"));
}

TEST(PSFReader, NumbersOfAtomsAndResiduesNeedNoOrder) {
    PsfText psf = PsfText::ofAtoms(0);
    psf.atoms = "5 !NATOM\n1 S 0 A C c 0 0 0\n2 S 1 B C c 0 0 0\n4 S 1 B C c 0 0 0\n5 S 2 C C c 0 0 0\n"
                "-2147483648 S 1 D C c 0 0 0\n";
    testing::internal::CaptureStderr();
    std::string const text = readTopology(psf);
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "Warning: Expected atom nr. 3 but found nr. 4 !\n"
                                                      "Warning: Expected atom nr. 6 but found nr. -2147483648 !\n");
    EXPECT_THAT(text, testing::HasSubstr("residues\nB 1 2\nC 3\nD 4\n"));
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
    EXPECT_THAT(readTopology(PsfText{.bonds = "-4 !NBOND: bonds\n"}), testing::HasSubstr("bonds\nresidues"));
    EXPECT_THAT(readTopology(PsfText{.acceptors = "2000000000 !NACC: acceptors\n1 2 3"}),
                testing::EndsWith("acceptors\n0 1\n"));
    // Groups of atoms that do not exist are left out.
    EXPECT_THAT(readTopology(PsfText{.bonds = "3 !NBOND: bonds\n1 7 0 2 -2147483648 1\n"}),
                testing::HasSubstr("bonds\nresidues"));
}

} // namespace
