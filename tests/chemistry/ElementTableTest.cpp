#include "chemistry/ElementTable.h"

#include "support/testing.h"

#include <climits>

namespace {

using namespace tarnex::test;

using molchem::Element;
using molchem::ElementTable;

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
        EXPECT_EQ(&bySymbol(symbol.c_str()), element);
        for (char& c : symbol) c = static_cast<char>(c ^ ('a' - 'A')); // "hE" for "He"
        EXPECT_EQ(&bySymbol(symbol.c_str()), element) << symbol;
    }
    EXPECT_EQ(number, 118);
    EXPECT_EQ(&bySymbol("D"), &bySymbol("H"));
    EXPECT_EQ(&bySymbol("d"), &bySymbol("H"));
    EXPECT_EQ(ElementTable::singletonObject, &tarnex::elementTable());
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

TEST(ElementTable, GivesPublishedRadii) {
    // Van der Waals and covalent radii, samples of each source: Bondi, Alvarez where he has none, 2.0 where neither has
    // a value; Cordero, then curium's value.
    std::istringstream samples(
        "H 1.20 0.31 C 1.70 0.76 N 1.55 0.71 O 1.52 0.66 F 1.47 0.57 Na 2.27 1.66 P 1.80 1.07 S 1.80 1.05 Cl 1.75 1.02 "
        "K 2.75 2.03 Zn 1.39 1.22 Se 1.90 1.20 Br 1.85 1.20 I 1.98 1.39 U 1.86 1.96 B 1.91 0.84 Al 2.25 1.21 "
        "Ca 2.62 1.76 Mn 2.45 1.39 Fe 2.44 1.32 Co 2.40 1.26 Cs 3.48 2.44 La 2.98 2.07 Pm 2.00 1.99 Po 2.00 1.40 "
        "Fr 2.00 2.60 Cm 3.05 1.69 Es 2.70 1.69 Og 2.00 1.69 X 2.00 0.00");
    std::string symbol;
    for (float vanDerWaals = 0, covalent = 0; samples >> symbol >> vanDerWaals >> covalent;) {
        EXPECT_EQ(bySymbol(symbol.c_str()).getRadius(), vanDerWaals) << symbol;
        EXPECT_EQ(bySymbol(symbol.c_str()).getCovalentRadius(), covalent) << symbol;
    }
    for (int number = 1; number <= 118; ++number) {
        Element const* element = tarnex::elementTable().getElement(number);
        EXPECT_TRUE(element->getRadius() >= 1.20F && element->getRadius() <= 3.48F) << number;
        EXPECT_TRUE(element->getCovalentRadius() >= 0.28F && element->getCovalentRadius() <= 2.60F) << number;
    }
}

TEST(ElementTable, FindsTheSymbolAtTheStartOfAName) {
    std::istringstream names("HB1 1 CT 6 CA 20 C* 6 N3 7 ZN2+ 30 1H 0");
    std::string name;
    for (int number = 0; names >> name >> number;) {
        EXPECT_EQ(tarnex::elementAtStartOfName(name.c_str()).getAtomicNumber(), number) << name;
    }
    EXPECT_EQ(tarnex::elementAtStartOfName("").getAtomicNumber() + tarnex::elementAtStartOfName(" C").getAtomicNumber(),
              0);
}

} // namespace
