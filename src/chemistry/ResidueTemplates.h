#pragma once

#include "foundation/export.h"

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace tarnex {

/// A name of up to eight characters as one integer. Blanks around it are left out. 0 for null and for an empty or
/// longer name, or one with a blank inside.
inline std::uint64_t packName(char const* name) {
    if (!name) return 0;
    while (*name == ' ') ++name;
    std::uint64_t key = 0;
    for (int length = 0; *name != '\0' && *name != ' '; ++name) {
        if (++length > 8) return 0;
        key = key << 8 | static_cast<unsigned char>(*name);
    }
    while (*name == ' ') ++name;
    return *name == '\0' ? key : 0;
}

/// A hash table from packed names to indices. Looking up does not allocate.
class TARNEX_API NameIndex {
public:
    /// Adds a name. False, with nothing changed, if the key is 0 or there already.
    bool insert(std::uint64_t key, int index);

    /// The index of a name, -1 if it is unknown.
    int find(std::uint64_t key) const {
        std::size_t const mask = slots.size() - 1;
        for (std::size_t at = hash(key) & mask;; at = (at + 1) & mask)
            if (slots[at].key == key || slots[at].key == 0) return slots[at].index;
    }

private:
    struct Slot {
        std::uint64_t key = 0;
        int index = -1;
    };

    void place(Slot const& slot);

    static std::size_t hash(std::uint64_t key) { return static_cast<std::size_t>(key * 0x9E3779B97F4A7C15U >> 32); }

    std::vector<Slot> slots = std::vector<Slot>(16); // a power of two, at most half full
    std::size_t used = 0;
};

enum class ResidueKind { peptide, nucleotide, water, ion, cap };

struct TemplateAtom {
    std::string name; ///< PDB version 3 atom name, without blanks
    int atomicNumber;
    /// Absent from the residue in the middle of a chain and in its usual protonation, but part of residues of the same
    /// name elsewhere: OXT and the second and third hydrogen of N at the ends of a chain, HD2 of an acidic ASP.
    bool optional;
};

struct TemplateBond {
    int atomA, atomB; ///< indices into `atoms`
    int order;        ///< 1 or 2; aromatic rings are Kekule structures
};

/// What is known of one residue type: its atoms and their bonds, as in the middle of a chain. Names that the template
/// does not know say nothing about its other atoms, since two programs may use one residue name for different
/// molecules.
struct ResidueTemplate {
    std::string name;
    std::vector<std::string> aliases; ///< other names of the residue type
    std::string description;          ///< the chemical name
    ResidueKind kind = ResidueKind::peptide;
    std::vector<TemplateAtom> atoms; ///< heavy atoms, hydrogens, then the optional atoms
    std::vector<TemplateBond> bonds; ///< those of the optional atoms included
    int headAtom = -1;               ///< the atom that binds the residue before (N, P), -1 if none does
    int tailAtom = -1;               ///< the atom that binds the residue after (C, O3'), -1 if none does

    /// The index of the atom with this name or alias (case-sensitive, blanks around it do not matter), -1 if unknown.
    int atomIndex(char const* atomName) const { return names.find(packName(atomName)); }

    NameIndex names; ///< atom names and aliases
};

/// The residue templates of data/residues.txt, which is part of the library.
class TARNEX_API ResidueTemplates {
public:
    /// The library's own templates, parsed on first use; safe to call from several threads.
    static ResidueTemplates const& instance();

    /// Parses a text in the format that the head of data/residues.txt describes. Throws std::runtime_error, with
    /// the line or the residue at fault, for a text that breaks its rules.
    explicit ResidueTemplates(char const* text);

    /// The template of a residue name or alias (case-sensitive, blanks around it do not matter), null if there is none.
    ResidueTemplate const* find(char const* residueType) const {
        int const index = names.find(packName(residueType));
        return index < 0 ? nullptr : &templates[static_cast<std::size_t>(index)];
    }

    /// All templates, each once, in the order of the text.
    std::vector<ResidueTemplate> const& all() const { return templates; }

private:
    std::vector<ResidueTemplate> templates;
    NameIndex names; // residue names and aliases
};

/// The text of data/residues.txt, embedded at build time.
extern char const* const residueTemplateText;

} // namespace tarnex
