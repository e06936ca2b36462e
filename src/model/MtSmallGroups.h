#pragma once

#include "model/MtGroup.h"

/// An atom: a group without members or data, of which a level can hold millions.
class TARNEX_API MtAtom : public MtGroup {
public:
    ~MtAtom() override;
    MtAtom() = default;
    MtAtom(MtAtom const&) = default;
    MtAtom& operator=(MtAtom const&) = default;

    MtAtom* clone() const override;
    bool translate(MtGroupRefTranslator*, bool) override;
    int size() const override;
    MtGroupRef operator[](int) const override;
    void setElement(int, MtGroupRef) override;
};

/// A group of exactly `N` atoms, kept as their indices in level 0.
template <int N>
class TARNEX_API MtGroupOfAtoms : public MtGroup {
public:
    MtGroupOfAtoms* clone() const override { return new MtGroupOfAtoms(*this); }
    /// The flag plays no part.
    bool translate(MtGroupRefTranslator* translator, bool) override {
        for (int& atom : atoms) {
            MtGroupRef const image = translator->translate(MtGroupRef(0, atom));
            if (image.groupIx < 0) return false;
            atom = image.groupIx;
        }
        return true;
    }
    int size() const override { return N; }
    MtGroupRef operator[](int i) const override { return {0, atoms[i]}; }
    /// The level of `ref` is ignored.
    void setElement(int i, MtGroupRef ref) override { atoms[i] = ref.groupIx; }

    int atoms[N];
};

/// A bond of two atoms, in the order of the file. A new bond has both atoms unset.
class TARNEX_API MtBond : public MtGroupOfAtoms<2> {
public:
    MtBond() = default;
    MtBond(int firstAtom, int secondAtom) {
        atoms[0] = firstAtom;
        atoms[1] = secondAtom;
    }
    MtBond(MtBond const&) = default;
    MtBond& operator=(MtBond const&) = default;
    ~MtBond() override;

    MtBond* clone() const override;

    int& atomA() { return atoms[0]; }
    int& atomB() { return atoms[1]; }
    int atomA() const { return atoms[0]; }
    int atomB() const { return atoms[1]; }
};

/// A group of exactly `N` members of any level.
template <int N>
class TARNEX_API MtSmallGroup : public MtGroup {
public:
    MtSmallGroup* clone() const override { return new MtSmallGroup(*this); }
    int size() const override { return N; }
    MtGroupRef operator[](int i) const override { return elements[i]; }
    void setElement(int i, MtGroupRef ref) override { elements[i] = ref; }

    MtGroupRef elements[N];
};

extern template class MtGroupOfAtoms<2>;
extern template class MtSmallGroup<2>;
extern template class MtSmallGroup<3>;
extern template class MtSmallGroup<4>;
