#pragma once

#include "chemistry/BondCalc.h"
#include "chemistry/ElementTable.h"
#include "model/Molecule.h"
#include "model/MtListGroups.h"
#include "pdb/PDBread.h"

#include <cctype>
#include <cstdlib>
#include <string>
#include <vector>

namespace tarnex::test {

/// Reads the atoms and CONECT records of a file of one model in small steps that look everything up in the levels, by
/// name and from the back. A reader that takes short cuts has to give the same topology.
class SlowPDBReader {
public:
    explicit SlowPDBReader(char const* filename) : molecule(new MolTopology, true), top(*molecule.getTopology()) {
        makeLevels();
        // Atoms are read from the whole file and CONECT records behind them, as their ranges reach at most that far.
        forEachLine(filename, [this](lengthizer& in) { readAtomOrTer(in); });
        neighbours.resize(static_cast<std::size_t>(molecule.getNumAtoms()));
        forEachLine(filename, [this](lengthizer& in) { readConect(in); });
        McBitfield all(static_cast<unsigned long>(molecule.getNumAtoms()), McBitfield::CLEARED);
        all.setAll();
        BondCalc::standardConnectSelection(&molecule, all);
        for (int i = 2; i < top.levels.size; ++i) top.levels[i]->updateSegmentationFlag(&top, i);
    }

    Molecule molecule;

private:
    template <class Visit>
    static void forEachLine(char const* filename, Visit visit) {
        for (lengthizer in(filename); !in.eof; in.nextLine()) {
            in.getString(6);
            visit(in);
        }
    }

    void makeLevels() {
        auto const create = MtGroupingLevel::CREATE;
        atoms = top.getLevel(0);
        for (char const* name : {"name", "type"}) atoms->stringAttribute(name, create, true);
        atoms->integerAttribute("atomic_number", create, true);
        for (char const* name : {"radius", "charge", "temperature", "occupancy"}) {
            atoms->floatAttribute(name, create, true);
        }
        top.getLevel(1)->integerAttribute("type", create, true);
        residuesIx = top.addLevel("residues", 0, 12, -1);
        residues = top.getLevel(residuesIx);
        for (char const* name : {"name", "type"}) residues->stringAttribute(name, create, true);
        residues->integerAttribute("pdb_index", create, true);
        chainsIx = top.addLevel("chains", residuesIx, 12, -1);
        chains = top.getLevel(chainsIx);
        chains->stringAttribute("name", create, true);
        for (MtGroupingLevel* level : {atoms, top.getLevel(1), residues, chains}) {
            level->clearFlag(MtGroupingLevel::flagBit5);
        }
        top.getLevel(1)->clearFlag(MtGroupingLevel::flagBit0);
    }

    void readAtomOrTer(lengthizer& in) {
        if (in.equals("TER")) terSeen = true;
        bool const isHet = in.equals("HETATM");
        if (!isHet && !in.equals("ATOM")) return;
        char front[3], location[2], type[4], id[2], insertion[2], element[3], charge[3];
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
        molecule.coords.append({x, y, z});
        setFloat("occupancy", in.getFloat(6));
        setFloat("temperature", in.getFloat(6));
        in.skipChars(10);
        in.getString(element, 2);
        in.getString(charge, 2);

        int const atom = top.addGroup(0, new MtAtom).groupIx;
        atomOfSerial[serial] = atom;
        set(atoms, "name", atom, chainName + std::to_string(serial));
        set(atoms, "type", atom, front + back);
        molchem::Element const* found = decideElement(element, front, back);
        atoms->integerAttribute("atomic_number", MtGroupingLevel::FIND, true)->setValue(atom, found->getAtomicNumber());
        setFloat("radius", found->getRadius());
        bool const isCharge = *charge && (charge[1] == '+' || charge[1] == '-');
        setFloat("charge", isCharge
                               ? static_cast<float>(std::strtod(charge, nullptr)) * (charge[1] == '-' ? -1.0F : 1.0F)
                               : 0.0F);
        for (auto const& [name, value] : pendingFloats) {
            atoms->floatAttribute(name, MtGroupingLevel::FIND, true)->setValue(atom, value);
        }
        pendingFloats.clear();

        std::string const residue = (isHet ? "HET" : "") + chainName + std::to_string(number) + insertion;
        lastResidue = decideResidue(residue, atom, chain);
        if (rangeOf(residues, lastResidue).first == atom) {
            set(residues, "type", lastResidue, type);
            residues->integerAttribute("pdb_index", MtGroupingLevel::FIND, true)->setValue(lastResidue, number);
        }
        lastChain = chain;
    }

    int decideChain(std::string const& name, bool isHet) {
        if (name.empty()) return -1;
        int const index = chains->findGroupBackward(name.c_str());
        if (index != -1 && index >= lastChain && lastChain != -1 && (isHet || !terSeen)) return index;
        int const chain = top.addGroup(chainsIx, new MtIntraLevelRange(residuesIx, 0, 0)).groupIx;
        set(chains, "name", chain, name);
        newChainPending = true;
        terSeen = false;
        return chain;
    }

    int decideResidue(std::string const& name, int atom, int chain) {
        int const index = residues->findGroupBackward(name.c_str());
        if (index >= 0 && index >= lastResidue) {
            rangeOf(residues, index).last = atom;
            return index;
        }
        auto* range = new MtIntraLevelRange(0, atom, atom);
        int const end = static_cast<int>(residues->groups.size);
        int place = end;
        if (chain < 0) {
            top.addGroup(residuesIx, range);
        } else if (newChainPending) {
            top.addGroup(residuesIx, range);
            rangeOf(chains, chain).first = rangeOf(chains, chain).last = end;
            newChainPending = false;
        } else if (rangeOf(chains, chain).last == end - 1) {
            top.addGroup(residuesIx, range);
            rangeOf(chains, chain).last = end;
        } else {
            place = rangeOf(chains, chain).last + 1;
            top.insertGroup(residuesIx, range, place);
            for (int i = chain + 1; i < chains->groups.size; ++i) {
                ++rangeOf(chains, i).first;
                ++rangeOf(chains, i).last;
            }
            rangeOf(chains, chain).last = place;
        }
        set(residues, "name", place, name);
        return place;
    }

    static molchem::Element const* decideElement(std::string s, std::string const& front, std::string const& back) {
        auto const look = [](std::string const& text) { return elementTable().getElement(text.c_str(), false); };
        auto const known = [](molchem::Element const* e) { return e->getAtomicNumber() > 0; };
        auto const behindFirst = [](std::string const& text) { return text.empty() ? text : text.substr(1); };
        bool const guessed = s.empty() || s[0] < 'A' || s[0] > 'Z';
        if (guessed) {
            s.clear();
            for (char const c : front) {
                if (c < '0' || c > '9') s += c;
            }
        }
        if (s == "A") s = "C";
        molchem::Element const* e = look(s);
        if (!known(e) && !s.empty()) e = look(behindFirst(s));
        if (guessed && (!known(e) || e->getAtomicNumber() > 53)) {
            molchem::Element const* second = look(behindFirst(s));
            if (known(second) && second->getAtomicNumber() <= 53) e = second;
        }
        return known(e) ? e : look(back.substr(0, 1));
    }

    void readConect(lengthizer& in) {
        if (!in.equals("CONECT")) return;
        int const i = atomOfSerial[in.getInt(5)];
        if (i < 0) return;
        for (int column = 12; column <= 27; column += 5) {
            int const b = in.getInt(5);
            if (b <= 0) continue;
            int const j = atomOfSerial[b];
            auto& known = neighbours[static_cast<std::size_t>(i)];
            if (j < 0 || std::find(known.begin(), known.end(), j) != known.end()) continue;
            auto* bond = new MtBond;
            bond->atomA() = i;
            bond->atomB() = j;
            int const ix = top.addBond(bond).groupIx;
            top.getLevel(1)->integerAttribute("type", MtGroupingLevel::FIND, true)->setValue(ix, 1);
            neighbours[static_cast<std::size_t>(j)].push_back(i);
            known.push_back(j);
        }
    }

    static MtIntraLevelRange& rangeOf(MtGroupingLevel* level, int group) {
        return static_cast<MtIntraLevelRange&>(*level->groups[group]);
    }
    static void set(MtGroupingLevel* level, char const* attribute, int group, std::string const& value) {
        level->stringAttribute(attribute, MtGroupingLevel::FIND, true)->setValue(group, value.c_str());
    }
    /// Of the atom that is about to be made.
    void setFloat(char const* attribute, float value) { pendingFloats.emplace_back(attribute, value); }

    MolTopology& top;
    MtGroupingLevel* atoms = nullptr;
    MtGroupingLevel* residues = nullptr;
    MtGroupingLevel* chains = nullptr;
    int residuesIx = -1;
    int chainsIx = -1;
    McHashTable<int, int> atomOfSerial{-1};
    std::vector<std::vector<int>> neighbours;
    std::vector<std::pair<char const*, float>> pendingFloats;
    int lastChain = -1;
    int lastResidue = -1;
    bool newChainPending = false;
    bool terSeen = false;
};

} // namespace tarnex::test
