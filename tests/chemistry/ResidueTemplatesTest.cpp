#include "chemistry/ResidueTemplates.h"

#include "chemistry/ElementTable.h"
#include "support/testing.h"

#include <algorithm>
#include <map>
#include <set>
#include <stdexcept>
#include <utility>

namespace {

using namespace tarnex::test;

using tarnex::ResidueKind;
using tarnex::ResidueTemplate;
using tarnex::ResidueTemplates;
using tarnex::TemplateAtom;
using tarnex::TemplateBond;

ResidueTemplate const& residue(std::string const& name) {
    ResidueTemplate const* found = ResidueTemplates::instance().find(name.c_str());
    if (!found) throw std::runtime_error("no residue template " + name);
    return *found;
}

TemplateAtom const& atomAt(ResidueTemplate const& r, int index) {
    return r.atoms[static_cast<std::size_t>(index)];
}

// In Hill's order, as in C3H5NO; without the optional atoms.
std::string formula(ResidueTemplate const& r) {
    std::map<std::string, int> counts;
    for (TemplateAtom const& atom : r.atoms)
        if (!atom.optional) ++counts[tarnex::elementTable().getElement(atom.atomicNumber)->getSymbol()];
    std::string text;
    for (auto const& [symbol, count] : counts) text += symbol + (count > 1 ? std::to_string(count) : "");
    return text;
}

TEST(ResidueTemplates, AreChemicallySound) {
    std::map<int, std::set<int>> const allowed = {{1, {1}},  {6, {4}},  {7, {3, 4}},       {8, {1, 2}},
                                                  {15, {5}}, {34, {2}}, {16, {1, 2, 4, 6}}};
    for (ResidueTemplate const& r : ResidueTemplates::instance().all()) {
        SCOPED_TRACE(r.name);
        ASSERT_FALSE(r.atoms.empty());
        std::set<std::pair<int, int>> pairs;
        // In the middle of a chain: no optional atoms, but a bond to each neighbour residue.
        std::map<int, int> partners, valences = {{r.headAtom, 1}, {r.tailAtom, 1}};
        for (TemplateBond const& bond : r.bonds) {
            EXPECT_TRUE(pairs.insert(std::minmax(bond.atomA, bond.atomB)).second);
            bool const isOptional = atomAt(r, bond.atomA).optional || atomAt(r, bond.atomB).optional;
            for (int atom : {bond.atomA, bond.atomB}) {
                ++partners[atom];
                valences[atom] += isOptional ? 0 : bond.order;
            }
        }
        for (int i = 0; i < static_cast<int>(r.atoms.size()); ++i) {
            auto const& [name, number, optional] = atomAt(r, i);
            if (r.kind != ResidueKind::ion)
                EXPECT_TRUE(optional || allowed.at(number).count(valences[i])) << name << " " << valences[i];
            EXPECT_TRUE(number != 1 || partners[i] == 1) << name;
        }
        bool const isNucleotide = r.kind == ResidueKind::nucleotide;
        EXPECT_TRUE(r.headAtom < 0 || atomAt(r, r.headAtom).name == (isNucleotide ? "P" : "N"));
        EXPECT_TRUE(r.tailAtom < 0 || atomAt(r, r.tailAtom).name == (isNucleotide ? "O3'" : "C"));
    }
}

TEST(ResidueTemplates, HaveTheKnownFormulasAndLinks) {
    auto const expect = [](char const* namesAndFacts, auto const& factOf) {
        std::istringstream words(namesAndFacts);
        for (std::string name, fact; words >> name >> fact;) EXPECT_EQ(factOf(residue(name)), fact) << name;
    };
    expect("ALA C3H5NO ARG C6H13N4O ASN C4H6N2O2 ASP C4H4NO3 CYS C3H5NOS GLN C5H8N2O2 GLU C5H6NO3 GLY C2H3NO "
           "HIS C6H7N3O ILE C6H11NO LEU C6H11NO LYS C6H13N2O MET C5H9NOS PHE C9H9NO PRO C5H7NO SER C3H5NO2 "
           "THR C4H7NO2 TRP C11H10N2O TYR C9H9NO2 VAL C5H9NO HID C6H7N3O HIP C6H8N3O ASH C4H5NO3 LYN C6H12N2O "
           "NGLY C2H5NO CGLY C2H3NO2 MSE C5H9NOSe HOH H2O A C10H11N5O6P C C9H11N3O7P G C10H11N5O7P U C9H10N2O8P "
           "I C10H10N4O7P DA C10H11N5O5P DC C9H11N3O6P DG C10H11N5O6P DT C10H12N2O7P DU C9H10N2O7P "
           "DA5 C10H12N5O3 DA3 C10H12N5O5P ADE C10H11N5O6P PSU C9H10N2O8P OMC C10H13N3O7P 5MU C10H12N2O8P "
           "ACE C2H3O NME CH4N NH2 H2N SEP C3H4NO5P "
           "ARN C6H12N4O GLH C5H7NO3 HIE C6H7N3O TYM C9H8NO2 NALA C3H7NO CALA C3H5NO2 NPRO C5H9NO NASP C4H6NO3 "
           "CARG C6H13N4O2 DT5 C10H13N2O5 DT3 C10H13N2O7P TPO C4H6NO5P PTR C9H8NO5P TYS C9H8NO5S PCA C5H6NO2 "
           "SME C5H9NO2S HYP C5H7NO2",
           formula);
    // To the residue ahead and to the one behind.
    expect("GLY +,+ HID +,+ MSE +,+ A +,+ DC +,+ PSU +,+ CGLY +,- NME +,- NH2 +,- DC3 +,- RU3 +,- NGLY -,+ ACE -,+ "
           "FOR -,+ PCA -,+ DC5 -,+ RU5 -,+ HOH -,- NA -,-",
           [](ResidueTemplate const& r) {
               return std::string(r.headAtom >= 0 ? "+," : "-,") + (r.tailAtom >= 0 ? "+" : "-");
           });
}

TEST(ResidueTemplates, KnowRingsAsKekuleStructures) {
    auto const order = [](char const* name, char const* first, char const* second) {
        ResidueTemplate const& r = residue(name);
        int const a = r.atomIndex(first), b = r.atomIndex(second);
        for (TemplateBond const& bond : r.bonds)
            if ((bond.atomA == a && bond.atomB == b) || (bond.atomA == b && bond.atomB == a)) return bond.order;
        return 0;
    };
    std::istringstream bonds(
        "HID ND1 CE1 1 HID CE1 NE2 2 HIE ND1 CE1 2 TYR CG CD1 2 TRP CD2 CE2 2 TRP CZ2 CZ3 0 A C6 N1 2 "
        "G C6 N1 1 PRO N CD 1 PSU C1' C5 1 PSU C1' N1 0 CYT O2' H2' 1");
    std::string name, first, second;
    for (int expected = 0; bonds >> name >> first >> second >> expected;) {
        EXPECT_EQ(order(name.c_str(), first.c_str(), second.c_str()), expected)
            << name << " " << first << " " << second;
    }
}

TEST(ResidueTemplates, KnowAtomsByTheNamesOfOtherPrograms) {
    std::istringstream examples(readFile(TARNEX_TEST_DATA "/atomNames.txt"));
    int numNames = 0;
    for (std::string line; std::getline(examples, line);) {
        if (line[0] == '#') continue;
        std::size_t const colon = line.find(':'), divider = line.find(" = ");
        ResidueTemplate const& r = residue(line.substr(0, colon));
        std::istringstream names(line.substr(colon + 1, divider - colon)), meant(line.substr(divider + 3));
        for (std::string name, expected; names >> name && meant >> expected; ++numNames) {
            int const index = r.atomIndex(name.c_str());
            EXPECT_EQ(index < 0 ? "-" : atomAt(r, index).name, expected) << line << ", " << name;
        }
    }
    EXPECT_EQ(numNames, 100);
}

TEST(ResidueTemplates, AreFoundByExactNamesAndAliases) {
    ResidueTemplates const& all = ResidueTemplates::instance();
    for (ResidueTemplate const& r : all.all()) {
        EXPECT_EQ(all.find(r.name.c_str()), &r);
        for (std::string const& alias : r.aliases) EXPECT_EQ(all.find(alias.c_str()), &r) << alias;
        for (std::size_t i = 0; i < r.atoms.size(); ++i)
            EXPECT_EQ(r.atomIndex(r.atoms[i].name.c_str()), static_cast<int>(i)) << r.name << " " << r.atoms[i].name;
    }
    for (auto const& [alias, name] :
         {std::pair{"WAT", "HOH"}, {"TIP3", "HOH"}, {"HSD", "HID"}, {"NHIS", "NHIS"}, {"CLA", "CL"}, {"  G ", "G"}}) {
        EXPECT_EQ(residue(alias).name, name);
    }
    for (char const* name : {"", " ", "XXX", "ala", "AL", "ALAA", "A L", "ALA2345678", "\xFF"})
        EXPECT_EQ(all.find(name), nullptr) << name;
    EXPECT_EQ(all.find(nullptr), nullptr);
    ResidueTemplate const& alanine = residue("ALA");
    EXPECT_EQ(alanine.atomIndex(" CA "), 1);
    for (char const* name : {"", "ca", "CG", "C A", "CACACACACA"}) EXPECT_EQ(alanine.atomIndex(name), -1) << name;
    EXPECT_EQ(alanine.atomIndex(nullptr), -1);
}

std::string errorOf(char const* text) {
    try {
        ResidueTemplates const templates(text);
    } catch (std::runtime_error const& error) {
        return error.what();
    }
    return "";
}

TEST(ResidueTemplates, RefuseATextThatBreaksTheRules) {
    std::pair<char const*, char const*> const errors[] = {
        {"atoms N\n", "residue templates, line 1: no residue to which this line belongs"},
        {"residue X metal\n", "residue templates, line 1: no kind of residue: metal"},
        {"part X\n\n color C\n", "residue templates, line 3: unknown word color"},
        {"part X\natoms C1:Cx\n", "residue templates, line 2: no element Cx"},
        {"part X\nlike Y\n", "residue templates, line 2: no residue or part Y above"},
        {"part X # comment\natoms C\nwithout N\n", "residue templates, line 3: X has no atom N"},
        {"part X\natoms C N\nbonds CN\n", "residue templates, line 3: no bond: CN"},
        {"residue X ion\n", "residue template X has no atoms"},
        {"residue X ion\natoms C C\n", "residue template X cannot have an atom C"},
        {"residue X ion\natoms C\nbonds C-N\n", "residue template X has no atom N"},
        {"residue X ion\natoms C N\nalias C A\nalias N A\n", "in residue template X two atoms are A"},
        {"residue X ion\natoms C\nresidue Y ion\nnames X\natoms C\n", "no second residue template can be named X"},
        {"residue X ion\natoms TOOLONGNAME:C\n", "residue template X cannot have an atom TOOLONGNAME"},
    };
    for (auto const& [text, error] : errors) EXPECT_EQ(errorOf(text), error) << text;
    EXPECT_EQ(errorOf(""), "");
}

} // namespace
