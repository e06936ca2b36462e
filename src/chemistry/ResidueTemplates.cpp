#include "chemistry/ResidueTemplates.h"

#include "chemistry/ElementTable.h"

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <utility>

namespace tarnex {

namespace {

using Words = std::vector<std::string>;

// A residue type or a part of one while its block is read: atoms go by name, so that they can come and go.
struct Draft {
    struct Bond {
        std::string atomA, atomB;
        int order;
    };
    struct Alias {
        std::string alias, atom;
    };

    std::string name;
    std::string description;
    ResidueKind kind = ResidueKind::peptide;
    bool isPart = false;
    Words aliases;
    std::vector<TemplateAtom> atoms;
    std::vector<Bond> bonds;
    std::vector<Alias> atomAliases;
    std::string head, tail; // empty if there is none
};

[[noreturn]] void fail(std::string const& message) {
    throw std::runtime_error(message);
}

template <class List, class Predicate>
auto findIf(List& list, Predicate predicate) {
    return std::find_if(list.begin(), list.end(), predicate);
}

TemplateAtom& atomNamed(Draft& draft, std::string const& name) {
    auto const atom = findIf(draft.atoms, [&](TemplateAtom const& a) { return a.name == name; });
    if (atom == draft.atoms.end()) fail(draft.name + " has no atom " + name);
    return *atom;
}

void addAtom(Draft& draft, std::string const& word, bool optional) {
    static molchem::ElementTable const elements;
    std::size_t const colon = word.find(':');
    std::string const symbol = colon == std::string::npos ? word.substr(0, 1) : word.substr(colon + 1);
    int const atomicNumber = elements.getElement(symbol.c_str(), false)->getAtomicNumber();
    if (atomicNumber == 0) fail("no element " + symbol);
    draft.atoms.push_back({word.substr(0, colon), atomicNumber, optional});
}

void addBond(Draft& draft, std::string const& atomA, std::string const& atomB, int order) {
    auto const bond = findIf(draft.bonds, [&](Draft::Bond const& b) {
        return (b.atomA == atomA && b.atomB == atomB) || (b.atomA == atomB && b.atomB == atomA);
    });
    if (bond != draft.bonds.end())
        bond->order = order;
    else
        draft.bonds.push_back({atomA, atomB, order});
}

// ---- the lines of a block; `words` are those behind the first

void addNames(Draft& draft, Words const& words) {
    draft.aliases.insert(draft.aliases.end(), words.begin(), words.end());
}

void addAtoms(Draft& draft, Words const& words) {
    for (std::string const& word : words) addAtom(draft, word, false);
}

void addOptionalAtoms(Draft& draft, Words const& words) {
    for (std::string const& word : words) addAtom(draft, word, true);
}

void keepAtoms(Draft& draft, Words const& words) {
    for (std::string const& word : words) atomNamed(draft, word).optional = false;
}

void removeAtoms(Draft& draft, Words const& words) {
    for (std::string const& word : words) {
        draft.atoms.erase(draft.atoms.begin() + (&atomNamed(draft, word) - draft.atoms.data()));
        std::erase_if(draft.bonds, [&](Draft::Bond const& b) { return b.atomA == word || b.atomB == word; });
        std::erase_if(draft.atomAliases, [&](Draft::Alias const& a) { return a.atom == word; });
    }
}

void renameAtom(Draft& draft, Words const& words) {
    if (words.size() != 2) fail("rename takes two names");
    std::string const &oldName = words[0], &newName = words[1];
    atomNamed(draft, oldName).name = newName;
    auto const follow = [&](std::string& name) {
        if (name == oldName) name = newName;
    };
    for (Draft::Bond& bond : draft.bonds) {
        follow(bond.atomA);
        follow(bond.atomB);
    }
    for (Draft::Alias& alias : draft.atomAliases) follow(alias.atom);
    follow(draft.head);
    follow(draft.tail);
    draft.atomAliases.push_back({oldName, newName});
}

void addBonds(Draft& draft, Words const& words) {
    for (std::string const& word : words) {
        std::size_t const sign = word.find_first_of("-=");
        if (sign == std::string::npos) fail("no bond: " + word);
        std::istringstream partners(word.substr(sign + 1));
        for (std::string partner; std::getline(partners, partner, ',');)
            addBond(draft, word.substr(0, sign), partner, word[sign] == '=' ? 2 : 1);
    }
}

void addAtomAliases(Draft& draft, Words const& words) {
    if (words.size() < 2) fail("alias takes an atom and its other names");
    atomNamed(draft, words[0]);
    for (std::size_t i = 1; i < words.size(); ++i) draft.atomAliases.push_back({words[i], words[0]});
}

std::string linkAtom(Draft& draft, Words const& words) {
    if (words.size() != 1) fail("a link takes one atom, or none");
    return words[0] == "none" ? std::string() : atomNamed(draft, words[0]).name;
}

void setHead(Draft& draft, Words const& words) {
    draft.head = linkAtom(draft, words);
}

void setTail(Draft& draft, Words const& words) {
    draft.tail = linkAtom(draft, words);
}

struct Directive {
    char const* word;
    void (*apply)(Draft& draft, Words const& words);
};

constexpr Directive directives[] = {
    {"names", addNames}, {"atoms", addAtoms},       {"optional", addOptionalAtoms},
    {"keep", keepAtoms}, {"without", removeAtoms},  {"rename", renameAtom},
    {"bonds", addBonds}, {"alias", addAtomAliases}, {"head", setHead},
    {"tail", setTail},
};

// ---- from the text to drafts

class Parser {
public:
    std::vector<Draft> parse(char const* text) {
        std::istringstream lines(text);
        int lineNumber = 1;
        for (std::string line; std::getline(lines, line); ++lineNumber) {
            try {
                parseLine(line.substr(0, line.find('#')));
            } catch (std::runtime_error const& error) {
                fail("residue templates, line " + std::to_string(lineNumber) + ": " + error.what());
            }
        }
        return std::move(drafts);
    }

private:
    void parseLine(std::string const& line) {
        std::istringstream in(line);
        std::string word;
        if (!(in >> word)) return;
        if (word == "residue" || word == "part" || word == "variants") return beginBlock(word, in);
        Words words;
        for (std::string next; in >> next;) words.push_back(next);
        if (word == "of") return addVariants(words);
        if (blockBegin == drafts.size()) fail("no residue to which this line belongs");
        for (std::size_t i = blockBegin; i < drafts.size(); ++i) {
            if (word == "like")
                takeOver(drafts[i], words);
            else
                directive(word).apply(drafts[i], words);
        }
    }

    void beginBlock(std::string const& word, std::istringstream& in) {
        blockBegin = drafts.size();
        std::string name, kind, description;
        in >> name;
        if (word == "residue") in >> kind;
        std::getline(in >> std::ws, description);
        if (word == "variants") {
            pattern = name;
            patternDescription = description;
            return;
        }
        Draft draft;
        draft.name = name;
        draft.description = description;
        draft.isPart = word == "part";
        if (!draft.isPart) draft.kind = kindNamed(kind);
        drafts.push_back(std::move(draft));
    }

    void addVariants(Words const& words) {
        for (std::string const& word : words) {
            Draft variant = draftNamed(word);
            variant.name = variantName(variant.name);
            variant.description += ", " + patternDescription;
            for (std::string& alias : variant.aliases) alias = variantName(alias);
            drafts.push_back(std::move(variant));
        }
    }

    std::string variantName(std::string const& name) const {
        std::size_t const at = pattern.find('%');
        if (at == std::string::npos) fail("no % in the pattern of the names");
        return pattern.substr(0, at) + name + pattern.substr(at + 1);
    }

    void takeOver(Draft& draft, Words const& words) const {
        for (std::string const& word : words) {
            Draft const& source = draftNamed(word);
            draft.atoms.insert(draft.atoms.end(), source.atoms.begin(), source.atoms.end());
            draft.bonds.insert(draft.bonds.end(), source.bonds.begin(), source.bonds.end());
            draft.atomAliases.insert(draft.atomAliases.end(), source.atomAliases.begin(), source.atomAliases.end());
            if (!source.head.empty()) draft.head = source.head;
            if (!source.tail.empty()) draft.tail = source.tail;
        }
    }

    Draft const& draftNamed(std::string const& name) const {
        for (std::size_t i = 0; i < blockBegin; ++i)
            if (drafts[i].name == name) return drafts[i];
        fail("no residue or part " + name + " above");
    }

    static ResidueKind kindNamed(std::string const& word) {
        static constexpr std::pair<char const*, ResidueKind> kinds[] = {
            {"peptide", ResidueKind::peptide}, {"nucleotide", ResidueKind::nucleotide},
            {"water", ResidueKind::water},     {"ion", ResidueKind::ion},
            {"cap", ResidueKind::cap},
        };
        for (auto const& [name, kind] : kinds)
            if (word == name) return kind;
        fail("no kind of residue: " + word);
    }

    static Directive const& directive(std::string const& word) {
        for (Directive const& known : directives)
            if (word == known.word) return known;
        fail("unknown word " + word);
    }

    std::vector<Draft> drafts;
    std::size_t blockBegin = 0; // the drafts from here on are those of the block
    std::string pattern, patternDescription;
};

// ---- from a draft to a template

// Heavy atoms, hydrogens, optional atoms.
int rank(TemplateAtom const& atom) {
    return atom.optional ? 2 : atom.atomicNumber == 1 ? 1 : 0;
}

int requireAtom(ResidueTemplate const& residue, std::string const& name) {
    int const index = residue.atomIndex(name.c_str());
    if (index < 0) fail("residue template " + residue.name + " has no atom " + name);
    return index;
}

bool hasAtom(ResidueTemplate const& residue, std::string const& name) {
    return findIf(residue.atoms, [&](TemplateAtom const& a) { return a.name == name; }) != residue.atoms.end();
}

int bondPartner(ResidueTemplate const& residue, int hydrogen) {
    for (TemplateBond const& bond : residue.bonds) {
        if (bond.atomB == hydrogen) return bond.atomA;
        if (bond.atomA == hydrogen) return bond.atomB;
    }
    return -1;
}

// An alias that follows from a rule; it gives way to the names that are there.
void deriveAlias(ResidueTemplate& residue, std::string const& alias, int atom) {
    residue.names.insert(packName(alias.c_str()), atom);
}

// The other names of a hydrogen whose name ends in a digit.
void deriveDigitAliases(ResidueTemplate& residue, int atom, std::string const& name) {
    std::string const stem = name.substr(0, name.size() - 1);
    deriveAlias(residue, name.back() + stem, atom);
    if (name.back() != '3') return;
    int const second = residue.atomIndex((stem + '2').c_str());
    if (second < 0 || bondPartner(residue, second) != bondPartner(residue, atom)) return;
    deriveAlias(residue, stem + '1', atom);
    deriveAlias(residue, '1' + stem, atom);
}

void deriveAsteriskAlias(ResidueTemplate& residue, std::string name, int atom) {
    std::replace(name.begin(), name.end(), '\'', '*');
    deriveAlias(residue, name, atom);
}

void addAliases(ResidueTemplate& residue, std::vector<Draft::Alias> const& aliases) {
    for (auto const& [alias, atom] : aliases) {
        bool const added = residue.names.insert(packName(alias.c_str()), requireAtom(residue, atom));
        if (!added && !hasAtom(residue, alias)) fail("in residue template " + residue.name + " two atoms are " + alias);
    }
    for (auto const& [alias, atom] : aliases) deriveAsteriskAlias(residue, alias, requireAtom(residue, alias));
    for (std::size_t i = 0; i < residue.atoms.size(); ++i) {
        auto const& [name, atomicNumber, optional] = residue.atoms[i];
        int const index = static_cast<int>(i);
        if (atomicNumber == 1 && name.back() >= '1' && name.back() <= '9') deriveDigitAliases(residue, index, name);
        deriveAsteriskAlias(residue, name, index);
    }
    if (residue.kind != ResidueKind::ion) return;
    deriveAlias(residue, residue.name, 0);
    for (std::string const& alias : residue.aliases) deriveAlias(residue, alias, 0);
}

ResidueTemplate finish(Draft& draft) {
    ResidueTemplate residue;
    residue.name = std::move(draft.name);
    residue.aliases = std::move(draft.aliases);
    residue.description = std::move(draft.description);
    residue.kind = draft.kind;
    residue.atoms = std::move(draft.atoms);
    if (residue.atoms.empty()) fail("residue template " + residue.name + " has no atoms");
    std::stable_sort(residue.atoms.begin(), residue.atoms.end(),
                     [](TemplateAtom const& a, TemplateAtom const& b) { return rank(a) < rank(b); });
    for (std::size_t i = 0; i < residue.atoms.size(); ++i)
        if (!residue.names.insert(packName(residue.atoms[i].name.c_str()), static_cast<int>(i)))
            fail("residue template " + residue.name + " cannot have an atom " + residue.atoms[i].name);
    for (Draft::Bond const& bond : draft.bonds)
        residue.bonds.push_back({requireAtom(residue, bond.atomA), requireAtom(residue, bond.atomB), bond.order});
    if (!draft.head.empty()) residue.headAtom = requireAtom(residue, draft.head);
    if (!draft.tail.empty()) residue.tailAtom = requireAtom(residue, draft.tail);
    addAliases(residue, draft.atomAliases);
    return residue;
}

} // namespace

bool NameIndex::insert(std::uint64_t key, int index) {
    if (key == 0 || find(key) >= 0) return false;
    if (2 * (used + 1) > slots.size()) {
        std::vector<Slot> const old = std::exchange(slots, std::vector<Slot>(2 * slots.size()));
        for (Slot const& slot : old)
            if (slot.key != 0) place(slot);
    }
    place({key, index});
    ++used;
    return true;
}

void NameIndex::place(Slot const& slot) {
    std::size_t const mask = slots.size() - 1;
    std::size_t at = hash(slot.key) & mask;
    while (slots[at].key != 0) at = (at + 1) & mask;
    slots[at] = slot;
}

ResidueTemplates const& ResidueTemplates::instance() {
    static ResidueTemplates const templates(residueTemplateText);
    return templates;
}

ResidueTemplates::ResidueTemplates(char const* text) {
    for (Draft& draft : Parser().parse(text)) {
        if (draft.isPart) continue;
        int const index = static_cast<int>(templates.size());
        templates.push_back(finish(draft));
        Words all = templates.back().aliases;
        all.push_back(templates.back().name);
        for (std::string const& name : all)
            if (!names.insert(packName(name.c_str()), index)) fail("no second residue template can be named " + name);
    }
}

} // namespace tarnex
