/// The reader decides what residue and chain an atom joins without a search, and takes the columns of a line as a
/// whole. Random files show that nothing differs from the plain way.

#include "PDBreadSamples.h"

#include <cctype>
#include <random>

namespace {

using namespace tarnex::test;

/// Reads the atoms of a file of one model in small steps that look everything up by name and from the back.
class SlowPDBReader {
public:
    explicit SlowPDBReader(char const* filename) {
        for (lengthizer in(filename); !in.eof; in.nextLine()) {
            in.getString(6);
            if (in.equals("TER")) terSeen = true;
            if (in.equals("ATOM") || in.equals("HETATM")) readAtom(in, in.equals("HETATM"));
        }
    }

    MolTopology topology;
    McDArray<McVec3f> coords;

private:
    void readAtom(lengthizer& in, bool isHet) {
        char location[2], id[2], insertion[2];
        in.skipChars(10);
        in.getString(location, 1);
        if (*location && *location != 'A' && std::isalpha(static_cast<unsigned char>(*location))) return;
        std::string const type = in.getString(3);
        in.skipChars(1);
        in.getString(id, 1);
        std::string const chainName = *id ? id : isHet ? "" : "NIL";
        lastChain = decideChain(chainName, isHet);
        std::string const residue = (isHet ? "HET" : "") + chainName + std::to_string(in.getInt(4));
        in.getString(insertion, 1);
        in.skipChars(3);
        lastResidue = decideResidue(residue + insertion, type, static_cast<int>(coords.size));
        float const x = in.getFloat(8), y = in.getFloat(8), z = in.getFloat(8);
        coords.append({x, y, z});
    }

    int decideChain(std::string const& name, bool isHet) {
        if (name.empty()) return -1;
        int const index = topology.getLevel(chainsIx)->findGroupBackward(name.c_str());
        if (index != -1 && index >= lastChain && lastChain != -1 && (isHet || !terSeen)) return index;
        newChainPending = true;
        terSeen = false;
        return addRange(chainsIx, name, 0);
    }

    int decideResidue(std::string const& id, std::string const& type, int atom) {
        int const index = topology.getLevel(residuesIx)->findGroupBackward(id.c_str());
        if (index >= 0 && index >= lastResidue) {
            rangeAt(residuesIx, index).last = atom;
            return index;
        }
        int const residue = addRange(residuesIx, id, atom);
        setText(&topology, residuesIx, "type", residue, type.c_str());
        if (lastChain < 0) return residue;
        MtIntraLevelRange& chain = rangeAt(chainsIx, lastChain);
        EXPECT_TRUE(newChainPending || chain.last == residue - 1) << "a residue would go into the midst of others";
        if (newChainPending) chain.first = residue;
        chain.last = residue;
        newChainPending = false;
        return residue;
    }

    int addRange(int levelIx, std::string const& name, int member) {
        int const lowerIx = topology.getLevel(levelIx)->getLowerLevelIx();
        int const group = topology.addGroup(levelIx, new MtIntraLevelRange(lowerIx, member, member)).groupIx;
        setText(&topology, levelIx, "name", group, name.c_str());
        return group;
    }
    MtIntraLevelRange& rangeAt(int levelIx, int group) {
        return dynamic_cast<MtIntraLevelRange&>(*topology.getLevel(levelIx)->groups[group]);
    }

    int residuesIx = topology.addLevel("residues", 0, 12, -1);
    int chainsIx = topology.addLevel("chains", residuesIx, 12, -1);
    int lastChain = -1;
    int lastResidue = -1;
    bool newChainPending = false;
    bool terSeen = false;
};

/// A file with few chains and numbers, so that they come back and collide, and with lines of all lengths.
std::string randomFile(unsigned seed, std::size_t mostLines) {
    std::mt19937 random(seed);
    auto const upTo = [&](std::size_t largest) { return random() % (largest + 1); };
    auto const oneOf = [&](std::vector<char const*> const& texts) { return texts[upTo(texts.size() - 1)]; };
    auto const rarely = [&] { return upTo(20) == 0; };
    std::string text;
    for (std::size_t i = upTo(mostLines) + 1; i > 0; --i) {
        std::string line = atom({.record = oneOf({"ATOM", "ATOM", "HETATM", " ATOM"}),
                                 .location = oneOf({" ", " ", " ", "A", "B", "1", "a"}),
                                 .type = oneOf({"ALA", "HOH", "  U", "G  ", "   "}),
                                 .chain = oneOf({"A", "A", "B", "1", "3", " "}),
                                 .number = static_cast<int>(rarely() ? 1234 : upTo(32)),
                                 .insertion = oneOf({" ", " ", " ", "A", "1"}),
                                 .x = static_cast<double>(upTo(200000)) / 1000.0 - 99.0});
        if (upTo(8) == 0) line = oneOf({"TER\n", "TER   \n", "END\n", "ANISOU    1\n", "\n", "ENDMDL\n", "   TER\n"});
        line.pop_back();
        if (rarely()) line.resize(upTo(line.size()));
        if (rarely() && !line.empty()) line[upTo(line.size() - 1)] = "\t\0x \n\x80"[upTo(5)];
        if (rarely()) line += std::string(upTo(2000), 'z');
        text += line + (rarely() ? oneOf({"\r\n", "\r", "\n\n", "\n\r"}) : "\n");
    }
    return text.substr(0, text.size() - upTo(3));
}

TEST(PDBreadReference, RandomFiles) {
    auto const describeAll = [](MolTopology const& topology, std::string const& places) {
        return namedGroups(&topology, "residues") + namedGroups(&topology, "chains") + places;
    };
    std::int64_t numAtoms = 0;
    for (unsigned seed = 0; seed < 300; ++seed) {
        // The first file is longer than a block of the scanner.
        auto const trajectory = readPDB(randomFile(seed, seed == 0 ? 9999 : 120));
        SlowPDBReader const slow(scratchPath("in.pdb").c_str());
        numAtoms += slow.coords.size;
        ASSERT_EQ(trajectory ? describeAll(*trajectory->getTopology(), placesOf(trajectory, 0)) : "",
                  describeAll(slow.topology, placesOf(slow.coords)))
            << seed;
    }
    EXPECT_GT(numAtoms, 10000);
}

} // namespace
