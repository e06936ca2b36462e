#include "chemistry/ElementTable.h"

#include "support/testing.h"

#include <cctype>
#include <climits>

namespace {

using namespace tarnex::test;

using molchem::Element;
using molchem::ElementTable;

bool const nullAtStart = ElementTable::singletonObject == nullptr;

Element const& bySymbol(char const* symbol) {
    return *tarnex::elementTable().getElement(symbol, false);
}

TEST(ElementTable, KnowsThePeriodicTableInAnyCase) {
    std::istringstream symbols(
        "H He Li Be B C N O F Ne Na Mg Al Si P S Cl Ar K Ca Sc Ti V Cr Mn Fe Co Ni Cu Zn Ga Ge As Se Br Kr Rb Sr Y Zr "
        "Nb Mo Tc Ru Rh Pd Ag Cd In Sn Sb Te I Xe Cs Ba La Ce Pr Nd Pm Sm Eu Gd Tb Dy Ho Er Tm Yb Lu Hf Ta W Re Os Ir "
        "Pt Au Hg Tl Pb Bi Po At Rn Fr Ra Ac Th Pa U Np Pu Am Cm Bk Cf Es Fm Md No Lr Rf Db Sg Bh Hs Mt Ds Rg Cn Nh "
        "Fl Mc Lv Ts Og");
    int number = 0;
    for (std::string symbol; symbols >> symbol;) {
        Element const* element = tarnex::elementTable().getElement(++number);
        EXPECT_EQ(element->getAtomicNumber(), number);
        EXPECT_EQ(element->getSymbol(), symbol);
        std::string upper = symbol, lower = symbol;
        for (char& c : upper) c = static_cast<char>(std::toupper(c));
        for (char& c : lower) c = static_cast<char>(std::tolower(c));
        for (std::string const& text : {symbol, upper, lower}) EXPECT_EQ(&bySymbol(text.c_str()), element) << text;
    }
    EXPECT_EQ(number, 118);
    EXPECT_EQ(bySymbol("D").getAtomicNumber(), 1);
    EXPECT_EQ(&bySymbol("d"), &bySymbol("H"));
}

TEST(ElementTable, AnswersEverythingElseWithTheDefaultElement) {
    Element const* unknown = tarnex::elementTable().getDefaultElement();
    EXPECT_EQ(unknown->getAtomicNumber(), 0);
    EXPECT_STREQ(unknown->getSymbol(), "X");
    for (char const* text : {"",       "X",   "x", "T",  "Q", "Da", "Xx", " C", "C ", "1H", "C1",       "Ca2",  "Cab",
                             "Carbon", "Uue", "-", "C-", "@", "[",  "`",  "{",  "A@", "A[", "\xC3\x85", "C\xFF"})
        EXPECT_EQ(&bySymbol(text), unknown) << text;
    EXPECT_EQ(&bySymbol(nullptr), unknown);
    for (int number : {0, -1, 119, 256 + 6, INT_MIN, INT_MAX})
        EXPECT_EQ(tarnex::elementTable().getElement(number), unknown) << number;
}

struct PublishedRadii {
    char const* symbol;
    float vanDerWaals, covalent;
};

// Samples of each source: Bondi, Alvarez where he has none, 2.0 where neither has a value; Cordero, then curium's
// value.
constexpr PublishedRadii publishedRadii[] = {
    {"H", 1.20F, 0.31F},  {"C", 1.70F, 0.76F},  {"N", 1.55F, 0.71F},  {"O", 1.52F, 0.66F},  {"F", 1.47F, 0.57F},
    {"Na", 2.27F, 1.66F}, {"P", 1.80F, 1.07F},  {"S", 1.80F, 1.05F},  {"Cl", 1.75F, 1.02F}, {"K", 2.75F, 2.03F},
    {"Zn", 1.39F, 1.22F}, {"Se", 1.90F, 1.20F}, {"Br", 1.85F, 1.20F}, {"I", 1.98F, 1.39F},  {"U", 1.86F, 1.96F},
    {"B", 1.91F, 0.84F},  {"Al", 2.25F, 1.21F}, {"Ca", 2.62F, 1.76F}, {"Mn", 2.45F, 1.39F}, {"Fe", 2.44F, 1.32F},
    {"Co", 2.40F, 1.26F}, {"Cs", 3.48F, 2.44F}, {"La", 2.98F, 2.07F}, {"Pm", 2.00F, 1.99F}, {"Po", 2.00F, 1.40F},
    {"Fr", 2.00F, 2.60F}, {"Cm", 3.05F, 1.69F}, {"Es", 2.70F, 1.69F}, {"Og", 2.00F, 1.69F}, {"X", 2.00F, 0.00F},
};

TEST(ElementTable, GivesPublishedRadii) {
    for (PublishedRadii const& expected : publishedRadii) {
        EXPECT_EQ(bySymbol(expected.symbol).getRadius(), expected.vanDerWaals) << expected.symbol;
        EXPECT_EQ(bySymbol(expected.symbol).getCovalentRadius(), expected.covalent) << expected.symbol;
    }
    for (int number = 1; number <= 118; ++number) {
        Element const* element = tarnex::elementTable().getElement(number);
        EXPECT_GE(element->getRadius(), 1.20F) << element->getSymbol();
        EXPECT_LE(element->getRadius(), 3.48F) << element->getSymbol();
        EXPECT_GE(element->getCovalentRadius(), 0.28F) << element->getSymbol();
        EXPECT_LE(element->getCovalentRadius(), 2.60F) << element->getSymbol();
    }
}

TEST(ElementTable, IsMadeOnFirstUseAndShared) {
    EXPECT_TRUE(nullAtStart);
    ElementTable const* table = &tarnex::elementTable();
    EXPECT_EQ(ElementTable::singletonObject, table);
    EXPECT_EQ(&tarnex::elementTable(), table);
}

TEST(ElementTable, FindsTheSymbolAtTheStartOfAName) {
    for (auto const& [name, number] : {std::pair{"HB1", 1},
                                       {"CT", 6},
                                       {"CA", 20},
                                       {"C*", 6},
                                       {"N3", 7},
                                       {"ZN2+", 30},
                                       {"", 0},
                                       {"1H", 0},
                                       {" C", 0}}) {
        EXPECT_EQ(tarnex::elementAtStartOfName(name).getAtomicNumber(), number) << name;
    }
}

} // namespace
