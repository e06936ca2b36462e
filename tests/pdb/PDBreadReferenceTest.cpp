/// The reader decides what residue and chain an atom joins without a search, and takes the columns of a line as a
/// whole. Random files show that nothing differs from the plain way.

#include "PDBreadSamples.h"

#include <cctype>
#include <random>

namespace {

using namespace tarnex::test;

/// Reads the atoms of a file of one model in small steps that look everything up by name and from
/// the back.
class SlowPDBReader {
public:
    explicit SlowPDBReader(char const* filename) {
        for (lengthizer in(filename); !in.eof; in.nextLine()) {
            in.getString(6);
            if (in.equals("TER")) terSeen = true;
            if (in.equals("ATOM") || in.equals("HETATM")) readAtom(in, in.equals("HETATM"));
        }
    }

    /// As `textOf` tells of a trajectory.
    std::string text() const {
        std::string text = atoms + placesOf(coords);
        for (auto const& [name, type, number, first, last] : residues) {
            text += "\n" + name + " " + type + " " + std::to_string(number) + rangeText(first, last);
        }
        for (Range const& chain : chains) text += "\n" + chain.name + rangeText(chain.first, chain.last);
        return text;
    }

    McDArray<McVec3f> coords;

private:
    struct Range {
        std::string name, type;
        int number, first, last;
    };

    static std::string rangeText(int first, int last) {
        return " " + std::to_string(first) + "-" + std::to_string(last);
    }

    static int findBackward(std::vector<Range> const& ranges, std::string const& name) {
        auto const found = std::find_if(ranges.rbegin(), ranges.rend(), [&](Range const& r) { return r.name == name; });
        return static_cast<int>(ranges.rend() - found) - 1;
    }
    static Range& at(std::vector<Range>& ranges, int index) { return ranges[static_cast<std::size_t>(index)]; }

    void readAtom(lengthizer& in, bool isHet) {
        char front[3], location[2], type[4], id[2], insertion[2];
        int const serial = in.getInt(5);
        in.skipChars(1);
        in.getString(front, 2);
        std::string const back = in.getString(2);
        in.getString(location, 1);
        if (*location && *location != 'A' && std::isalpha(static_cast<unsigned char>(*location))) return;
        in.getString(type, 3);
        in.skipChars(1);
        in.getString(id, 1);
        std::string const chainName = *id ? id : isHet ? "" : "NIL";
        int const chain = decideChain(chainName, isHet);
        int const number = in.getInt(4);
        in.getString(insertion, 1);
        in.skipChars(3);
        float const x = in.getFloat(8), y = in.getFloat(8), z = in.getFloat(8);
        int const atom = static_cast<int>(coords.size);
        coords.append({x, y, z});
        atoms += chainName + std::to_string(serial) + " " + front + back + " \n";
        std::string const residue = (isHet ? "HET" : "") + chainName + std::to_string(number) + insertion;
        lastResidue = decideResidue({residue, type, number, atom, atom}, chain);
        lastChain = chain;
    }

    int decideChain(std::string const& name, bool isHet) {
        if (name.empty()) return -1;
        int const index = findBackward(chains, name);
        if (index != -1 && index >= lastChain && lastChain != -1 && (isHet || !terSeen)) return index;
        chains.push_back({name, "", 0, 0, 0});
        newChainPending = true;
        terSeen = false;
        return static_cast<int>(chains.size()) - 1;
    }

    int decideResidue(Range const& residue, int chain) {
        int const index = findBackward(residues, residue.name);
        if (index >= 0 && index >= lastResidue) {
            at(residues, index).last = residue.last;
            return index;
        }
        auto const end = static_cast<int>(residues.size());
        bool const isInside = chain >= 0 && !newChainPending && at(chains, chain).last != end - 1;
        int const place = isInside ? at(chains, chain).last + 1 : end;
        residues.insert(residues.begin() + place, residue);
        if (chain < 0) return place;
        for (std::size_t i = static_cast<std::size_t>(chain) + 1; isInside && i < chains.size(); ++i) {
            ++chains[i].first;
            ++chains[i].last;
        }
        if (newChainPending) at(chains, chain).first = place;
        at(chains, chain).last = place;
        newChainPending = false;
        return place;
    }

    std::string atoms;
    std::vector<Range> residues, chains;
    int lastChain = -1;
    int lastResidue = -1;
    bool newChainPending = false;
    bool terSeen = false;
};

/// Files with few chains and numbers, so that they come back and collide, and with lines of all lengths.
class RandomPDB {
public:
    explicit RandomPDB(unsigned seed) : random(seed) {}

    std::string file(std::size_t mostLines) {
        std::string text;
        for (auto i = upTo(mostLines) + 1; i > 0; --i) text += line() + lineEnd();
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

    std::mt19937 random;
};

std::string textOf(MolTrajectory* trajectory) {
    MolTopology const* topology = trajectory->getTopology();
    MtGroupingLevel *atoms = topology->getLevel(0), *residues = levelOf(topology, "residues"),
                    *chains = levelOf(topology, "chains");
    auto const attribute = [](MtGroupingLevel* level, char const* name, int group) {
        return level->stringAttribute(name, MtGroupingLevel::FIND, true)->getValue(group) + std::string(" ");
    };
    auto const* numbers = residues->integerAttribute("pdb_index", MtGroupingLevel::FIND, true);
    return joined(atoms->groups.size, "",
                  [&](int i) { return attribute(atoms, "name", i) + attribute(atoms, "type", i) + "\n"; }) +
           placesOf(trajectory, 0) +
           joined(residues->groups.size, "",
                  [&](int i) {
                      return "\n" + attribute(residues, "name", i) + attribute(residues, "type", i) +
                             std::to_string(numbers->getValue(i)) + " " + membersOf(residues->groups[i], 0);
                  }) +
           joined(chains->groups.size, "", [&](int i) {
               return "\n" + attribute(chains, "name", i) + membersOf(chains->groups[i], chains->getLowerLevelIx());
           });
}

TEST(PDBreadReference, RandomFiles) {
    std::int64_t numAtoms = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        // The first file is longer than a block of the scanner.
        auto const trajectory = readPDB(RandomPDB(seed).file(seed == 0 ? 9999 : 120));
        SlowPDBReader const slow(scratchPath("in.pdb").c_str());
        numAtoms += slow.coords.size;
        ASSERT_EQ(trajectory ? textOf(trajectory) : "", slow.text()) << seed;
    }
    EXPECT_GT(numAtoms, 10000);
}

} // namespace
