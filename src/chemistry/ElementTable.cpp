#include "chemistry/ElementTable.h"

#include <array>
#include <cstddef>
#include <cstring>
#include <utility>

namespace molchem {

namespace {

constexpr int numElements = 118;
constexpr float noRadius = 2.00F;      // neither Bondi nor Alvarez has a value
constexpr float beyondCordero = 1.69F; // the value of curium, the last element of Cordero's table

struct ElementRow {
    char const* symbol;
    float radius;
    float covalentRadius;
};

// One row per element, in the order of the atomic number. Bondi's radii are those of H, He, Li, C to Mg, Si to K,
// Ni to Ga, As to Kr, Pd to Sn, Te to Xe, Pt to Pb, and U; the others are Alvarez'.
constexpr ElementRow rows[] = {
    {"X", noRadius, 0.00F},
    {"H", 1.20F, 0.31F},
    {"He", 1.40F, 0.28F},
    {"Li", 1.82F, 1.28F},
    {"Be", 1.98F, 0.96F},
    {"B", 1.91F, 0.84F},
    {"C", 1.70F, 0.76F},
    {"N", 1.55F, 0.71F},
    {"O", 1.52F, 0.66F},
    {"F", 1.47F, 0.57F},
    {"Ne", 1.54F, 0.58F},
    {"Na", 2.27F, 1.66F},
    {"Mg", 1.73F, 1.41F},
    {"Al", 2.25F, 1.21F},
    {"Si", 2.10F, 1.11F},
    {"P", 1.80F, 1.07F},
    {"S", 1.80F, 1.05F},
    {"Cl", 1.75F, 1.02F},
    {"Ar", 1.88F, 1.06F},
    {"K", 2.75F, 2.03F},
    {"Ca", 2.62F, 1.76F},
    {"Sc", 2.58F, 1.70F},
    {"Ti", 2.46F, 1.60F},
    {"V", 2.42F, 1.53F},
    {"Cr", 2.45F, 1.39F},
    {"Mn", 2.45F, 1.39F},
    {"Fe", 2.44F, 1.32F},
    {"Co", 2.40F, 1.26F},
    {"Ni", 1.63F, 1.24F},
    {"Cu", 1.40F, 1.32F},
    {"Zn", 1.39F, 1.22F},
    {"Ga", 1.87F, 1.22F},
    {"Ge", 2.29F, 1.20F},
    {"As", 1.85F, 1.19F},
    {"Se", 1.90F, 1.20F},
    {"Br", 1.85F, 1.20F},
    {"Kr", 2.02F, 1.16F},
    {"Rb", 3.21F, 2.20F},
    {"Sr", 2.84F, 1.95F},
    {"Y", 2.75F, 1.90F},
    {"Zr", 2.52F, 1.75F},
    {"Nb", 2.56F, 1.64F},
    {"Mo", 2.45F, 1.54F},
    {"Tc", 2.44F, 1.47F},
    {"Ru", 2.46F, 1.46F},
    {"Rh", 2.44F, 1.42F},
    {"Pd", 1.63F, 1.39F},
    {"Ag", 1.72F, 1.45F},
    {"Cd", 1.58F, 1.44F},
    {"In", 1.93F, 1.42F},
    {"Sn", 2.17F, 1.39F},
    {"Sb", 2.47F, 1.39F},
    {"Te", 2.06F, 1.38F},
    {"I", 1.98F, 1.39F},
    {"Xe", 2.16F, 1.40F},
    {"Cs", 3.48F, 2.44F},
    {"Ba", 3.03F, 2.15F},
    {"La", 2.98F, 2.07F},
    {"Ce", 2.88F, 2.04F},
    {"Pr", 2.92F, 2.03F},
    {"Nd", 2.95F, 2.01F},
    {"Pm", noRadius, 1.99F},
    {"Sm", 2.90F, 1.98F},
    {"Eu", 2.87F, 1.98F},
    {"Gd", 2.83F, 1.96F},
    {"Tb", 2.79F, 1.94F},
    {"Dy", 2.87F, 1.92F},
    {"Ho", 2.81F, 1.92F},
    {"Er", 2.83F, 1.89F},
    {"Tm", 2.79F, 1.90F},
    {"Yb", 2.80F, 1.87F},
    {"Lu", 2.74F, 1.87F},
    {"Hf", 2.63F, 1.75F},
    {"Ta", 2.53F, 1.70F},
    {"W", 2.57F, 1.62F},
    {"Re", 2.49F, 1.51F},
    {"Os", 2.48F, 1.44F},
    {"Ir", 2.41F, 1.41F},
    {"Pt", 1.75F, 1.36F},
    {"Au", 1.66F, 1.36F},
    {"Hg", 1.55F, 1.32F},
    {"Tl", 1.96F, 1.45F},
    {"Pb", 2.02F, 1.46F},
    {"Bi", 2.54F, 1.48F},
    {"Po", noRadius, 1.40F},
    {"At", noRadius, 1.50F},
    {"Rn", noRadius, 1.50F},
    {"Fr", noRadius, 2.60F},
    {"Ra", noRadius, 2.21F},
    {"Ac", 2.80F, 2.15F},
    {"Th", 2.93F, 2.06F},
    {"Pa", 2.88F, 2.00F},
    {"U", 1.86F, 1.96F},
    {"Np", 2.82F, 1.90F},
    {"Pu", 2.81F, 1.87F},
    {"Am", 2.83F, 1.80F},
    {"Cm", 3.05F, 1.69F},
    {"Bk", 3.40F, beyondCordero},
    {"Cf", 3.05F, beyondCordero},
    {"Es", 2.70F, beyondCordero},
    {"Fm", noRadius, beyondCordero},
    {"Md", noRadius, beyondCordero},
    {"No", noRadius, beyondCordero},
    {"Lr", noRadius, beyondCordero},
    {"Rf", noRadius, beyondCordero},
    {"Db", noRadius, beyondCordero},
    {"Sg", noRadius, beyondCordero},
    {"Bh", noRadius, beyondCordero},
    {"Hs", noRadius, beyondCordero},
    {"Mt", noRadius, beyondCordero},
    {"Ds", noRadius, beyondCordero},
    {"Rg", noRadius, beyondCordero},
    {"Cn", noRadius, beyondCordero},
    {"Nh", noRadius, beyondCordero},
    {"Fl", noRadius, beyondCordero},
    {"Mc", noRadius, beyondCordero},
    {"Lv", noRadius, beyondCordero},
    {"Ts", noRadius, beyondCordero},
    {"Og", noRadius, beyondCordero},
};
static_assert(sizeof rows / sizeof rows[0] == numElements + 1);

template <std::size_t... number>
constexpr std::array<Element, sizeof...(number)> makeElements(std::index_sequence<number...>) {
    return {Element(int(number), rows[number].symbol, rows[number].radius, rows[number].covalentRadius)...};
}

constexpr std::array<Element, numElements + 1> elements = makeElements(std::make_index_sequence<numElements + 1>());

// 1 to 26 for a letter of either case, 0 for the end of a text, -1 for anything else.
int letterIndex(char c) {
    if (c >= 'A' && c <= 'Z') return c - 'A' + 1;
    if (c >= 'a' && c <= 'z') return c - 'a' + 1;
    return c == '\0' ? 0 : -1;
}

} // namespace

ElementTable* ElementTable::singletonObject = nullptr;

ElementTable::ElementTable() {
    for (int number = 1; number <= numElements; ++number) {
        char const* symbol = rows[number].symbol;
        numberOfSymbol[letterIndex(symbol[0])][letterIndex(symbol[1])] = static_cast<unsigned char>(number);
    }
    numberOfSymbol[letterIndex('D')][0] = 1;
}

Element const* ElementTable::getElement(char const* symbol, bool) const {
    if (!symbol) return getDefaultElement();
    int const first = letterIndex(symbol[0]);
    if (first <= 0) return getDefaultElement();
    int const second = letterIndex(symbol[1]);
    if (second < 0 || (second > 0 && symbol[2] != '\0')) return getDefaultElement();
    return &elements[numberOfSymbol[first][second]];
}

Element const* ElementTable::getElement(int atomicNumber) const {
    if (atomicNumber < 1 || atomicNumber > numElements) return getDefaultElement();
    return &elements[static_cast<std::size_t>(atomicNumber)];
}

Element const* ElementTable::getDefaultElement() const {
    return &elements[0];
}

} // namespace molchem

namespace tarnex {

molchem::Element const& elementAtStartOfName(char const* name) {
    molchem::ElementTable const& table = elementTable();
    // No symbol has three letters, so longer beginnings of the name need no look.
    std::size_t const length = name ? std::strlen(name) : 0;
    if (length >= 2) {
        char const two[] = {name[0], name[1], '\0'};
        molchem::Element const* element = table.getElement(two, false);
        if (element->getAtomicNumber() > 0) return *element;
    }
    if (length == 0) return *table.getDefaultElement();
    char const one[] = {name[0], '\0'};
    return *table.getElement(one, false);
}

} // namespace tarnex
