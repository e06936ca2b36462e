#pragma once

#include "pdb/PDBread.h"

#include <algorithm>
#include <array>
#include <cctype>
#include <cstdio>
#include <map>
#include <string>
#include <vector>

namespace tarnex::test {

/// An atom as a text, with its position to the last bit.
inline std::string atomText(std::string const& name, std::string const& type, McVec3f const& p) {
    std::array<char, 200> text;
    std::snprintf(text.data(), text.size(), "%s %s %a %a %a\n", name.c_str(), type.c_str(), static_cast<double>(p.x),
                  static_cast<double>(p.y), static_cast<double>(p.z));
    return text.data();
}

inline std::string rangeText(std::string const& name, std::string const& type, int number, int first, int last) {
    return name + ' ' + type + ' ' + std::to_string(number) + ' ' + std::to_string(first) + '-' + std::to_string(last) +
           '\n';
}

/// Reads the atoms and CONECT records of a file of one model in small steps that look everything up by name and from
/// the back. A reader that takes short cuts has to give the same.
class SlowPDBReader {
public:
    explicit SlowPDBReader(char const* filename) {
        // Atoms are read from the whole file and CONECT records behind them, as their ranges reach at most that far.
        forEachLine(filename, [this](lengthizer& in) { readAtomOrTer(in); });
        forEachLine(filename, [this](lengthizer& in) { readConect(in); });
    }

    std::string text() const {
        std::string all = atoms;
        for (auto const& ranges : {residues, chains}) {
            for (Range const& r : ranges) all += rangeText(r.name, r.type, r.number, r.first, r.last);
        }
        for (auto const& [a, b] : bonds) all += std::to_string(a) + '-' + std::to_string(b) + '\n';
        return all;
    }

    int numAtoms = 0;
    std::vector<std::pair<int, int>> bonds;

private:
    struct Range {
        std::string name, type;
        int number, first, last;
    };

    template <class Visit>
    static void forEachLine(char const* filename, Visit visit) {
        for (lengthizer in(filename); !in.eof; in.nextLine()) {
            in.getString(6);
            visit(in);
        }
    }

    static int findBackward(std::vector<Range> const& ranges, std::string const& name) {
        auto const found = std::find_if(ranges.rbegin(), ranges.rend(), [&](Range const& r) { return r.name == name; });
        return static_cast<int>(ranges.rend() - found) - 1;
    }
    static Range& at(std::vector<Range>& ranges, int index) { return ranges[static_cast<std::size_t>(index)]; }

    void readAtomOrTer(lengthizer& in) {
        if (in.equals("TER")) terSeen = true;
        bool const isHet = in.equals("HETATM");
        if (!isHet && !in.equals("ATOM")) return;
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
        atoms += atomText(chainName + std::to_string(serial), front + back, {x, y, z});
        atomOfSerial[serial] = numAtoms;
        std::string const residue = (isHet ? "HET" : "") + chainName + std::to_string(number) + insertion;
        lastResidue = decideResidue({residue, type, number, numAtoms, numAtoms}, chain);
        lastChain = chain;
        ++numAtoms;
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

    void readConect(lengthizer& in) {
        auto const atomOf = [this](int serial) { return atomOfSerial.contains(serial) ? atomOfSerial[serial] : -1; };
        int const i = in.equals("CONECT") ? atomOf(in.getInt(5)) : -1;
        for (int column = 12; i >= 0 && column <= 27; column += 5) {
            int const b = in.getInt(5);
            int const j = b > 0 ? atomOf(b) : -1;
            auto const isKnown = [&](std::pair<int, int> p) { return p == std::pair(i, j) || p == std::pair(j, i); };
            if (j >= 0 && std::none_of(bonds.begin(), bonds.end(), isKnown)) bonds.emplace_back(i, j);
        }
    }

    std::string atoms;
    std::vector<Range> residues, chains;
    std::map<int, int> atomOfSerial;
    int lastChain = -1;
    int lastResidue = -1;
    bool newChainPending = false;
    bool terSeen = false;
};

} // namespace tarnex::test
