/// The reader decides what residue and chain an atom joins without a search, and takes the columns of a line as a
/// whole. Random files show that nothing differs from the plain way.

#include "PDBreadSamples.h"
#include "slowPDBReader.h"

#include <random>

namespace {

using namespace tarnex::test;

/// Files with few chains and numbers, so that they come back and collide, and with lines of all lengths.
class RandomPDB {
public:
    explicit RandomPDB(unsigned seed) : random(seed) {}

    std::string file(std::size_t mostLines) {
        std::string text;
        for (auto i = upTo(mostLines) + 1; i > 0; --i) text += line() + lineEnd();
        for (auto i = upTo(30) + 1; i > 0; --i) text += conect() + lineEnd();
        return text.substr(0, text.size() - upTo(3));
    }

private:
    std::size_t upTo(std::size_t largest) { return random() % (largest + 1); }
    bool rarely() { return upTo(20) == 0; }
    std::string oneOf(std::vector<std::string> const& texts) { return texts[upTo(texts.size() - 1)]; }
    std::string number(int width, std::size_t largest) {
        std::string const text = std::to_string(upTo(largest));
        return std::string(static_cast<std::size_t>(width) - text.size(), ' ') + text;
    }
    std::string real(int width, int decimals) {
        if (rarely())
            return oneOf({"        ", "   x    ", " -.5    ", "12345678", "-1.23e1 ", "       .", "+1.00000"})
                .substr(0, std::size_t(width));
        char text[32];
        std::snprintf(text, sizeof text, "%*.*f", width, decimals,
                      static_cast<double>(random() % 200000) / 1000.0 - 99.0);
        return text;
    }
    std::string lineEnd() { return rarely() ? oneOf({"\r\n", "\r", "\n\n", "\n\r"}) : "\n"; }

    std::string line() {
        if (upTo(8) == 0)
            return oneOf({"TER", "TER   ", "END", "REMARK 1", "ANISOU    1", "", "ENDMDL", "ATOMS", "   TER"});
        std::string text = oneOf({"ATOM  ", "ATOM  ", "HETATM", " ATOM "}) + number(5, 60) + " ";
        text += oneOf({" CA ", " N  ", "1HB2", "CA  ", "FE  ", "HG  ", " H 1", "    ", "CS  ", "9A  ", "Xx C", "A   ",
                       std::string("\0CB ", 4)});
        text += oneOf({" ", " ", " ", "A", "B", "1", "a"}) + oneOf({"ALA", "HOH", "  U", "G  ", "   "}) + " ";
        text += oneOf({"A", "A", "B", "1", "3", " "}) + (rarely() ? "1234" : number(4, 32)) +
                oneOf({" ", " ", " ", "A", "1"}) + "   ";
        text += real(8, 3) + real(8, 3) + real(8, 3) + real(6, 2) + real(6, 2) + "      SEGM";
        text += oneOf({" C", "FE", " A", "  ", "Cl", "XX", "QC", " 1", "h "}) +
                oneOf({"  ", "2+", "1-", "+1", "0-", " -", "2 "});
        if (rarely()) text.resize(upTo(text.size()));
        if (rarely() && !text.empty()) text[upTo(text.size() - 1)] = "\t\0x \n\x80"[upTo(5)];
        return rarely() ? text + std::string(upTo(2000), 'z') : text;
    }

    std::string conect() {
        std::string text = rarely() ? "HYDBND" : "CONECT";
        for (std::size_t i = upTo(6); i > 0; --i) text += rarely() ? "    -" : number(5, 70);
        return text;
    }

    std::mt19937 random;
};

/// What the slow reader tells of a file; bonds only as far as that has them, since perceived ones follow.
std::string wholeText(MolTrajectory* trajectory, std::size_t numBonds) {
    MolTopology const* topology = trajectory->getTopology();
    auto const text = [](MtGroupingLevel* level, char const* name, int group) {
        auto const* values = level->stringAttribute(name, MtGroupingLevel::FIND, true);
        return std::string(values ? values->getValue(group) : "");
    };
    McDArray<McVec3f> const coords = coordinates(trajectory, 0);
    std::string all;
    for (int i = 0; i < coords.size; ++i) {
        all += atomText(text(topology->getLevel(0), "name", i), text(topology->getLevel(0), "type", i), coords[i]);
    }
    for (char const* name : {"residues", "chains"}) {
        MtGroupingLevel* level = levelOf(topology, name);
        auto const* numbers = level->integerAttribute("pdb_index", MtGroupingLevel::FIND, true);
        for (int i = 0; i < level->groups.size; ++i) {
            auto const& range = dynamic_cast<MtIntraLevelRange const&>(*level->groups[i]);
            all += rangeText(text(level, "name", i), text(level, "type", i), numbers ? numbers->getValue(i) : 0,
                             range.first, range.last);
        }
    }
    for (int i = 0; i < static_cast<int>(numBonds); ++i) {
        auto const& bond = dynamic_cast<MtBond const&>(*topology->getLevel(1)->groups[i]);
        all += std::to_string(bond.atomA()) + '-' + std::to_string(bond.atomB()) + '\n';
    }
    return all;
}

TEST(PDBreadReference, RandomFiles) {
    int numAtoms = 0;
    std::size_t numBonds = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        // The first file is longer than a block of the scanner.
        std::string const file = RandomPDB(seed).file(seed == 0 ? 9999 : 120);
        SlowPDBReader const slow(writeFile("random.pdb", file).c_str());
        auto const trajectory = readPDB(file);
        numAtoms += slow.numAtoms;
        numBonds += slow.bonds.size();
        if (trajectory)
            ASSERT_EQ(wholeText(trajectory, slow.bonds.size()), slow.text()) << seed;
        else
            EXPECT_EQ(slow.numAtoms, 0) << seed;
    }
    EXPECT_GT(numAtoms, 10000);
    EXPECT_GT(numBonds, 1000U);
}

} // namespace
