#pragma once

namespace molchem {

/// One chemical element of the periodic table, or the element "unknown". Owned by the library, never by a caller.
class Element {
public:
    constexpr Element(int number, char const* text, float vanDerWaals, float covalent)
        : symbol(text), atomicNumber(number), radius(vanDerWaals), covalentRadius(covalent) {}

    /// Number of protons, 1 to 118; 0 for the unknown element.
    int getAtomicNumber() const { return atomicNumber; }

    /// Van der Waals radius in Angstrom: A. Bondi, J. Phys. Chem. 68 (1964) 441, and where he gives none S. Alvarez,
    /// Dalton Trans. 42 (2013) 8617. 2.0 where neither has a value, and for the unknown element.
    float getRadius() const { return radius; }

    /// Covalent radius in Angstrom: B. Cordero et al., Dalton Trans. (2008) 2832, with the values of sp3 carbon and of
    /// low spin Mn, Fe and Co. Elements beyond curium, which that work leaves out, have the value of curium, 1.69.
    /// 0 for the unknown element.
    float getCovalentRadius() const { return covalentRadius; }

    /// IUPAC symbol such as "H" or "Cl"; "X" for the unknown element.
    char const* getSymbol() const { return symbol; }

private:
    char const* symbol;
    int atomicNumber;
    float radius;
    float covalentRadius;
};

} // namespace molchem
