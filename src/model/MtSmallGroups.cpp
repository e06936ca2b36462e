#include "model/MtSmallGroups.h"

template class MtGroupOfAtoms<2>;
template class MtSmallGroup<2>;
template class MtSmallGroup<3>;
template class MtSmallGroup<4>;

MtAtom::~MtAtom() = default;

MtAtom* MtAtom::clone() const {
    return new MtAtom(*this);
}

bool MtAtom::translate(MtGroupRefTranslator*, bool) {
    return true;
}

int MtAtom::size() const {
    return 0;
}

MtGroupRef MtAtom::operator[](int) const {
    return {};
}

void MtAtom::setElement(int, MtGroupRef) {}

MtBond::~MtBond() = default;

MtBond* MtBond::clone() const {
    return new MtBond(*this);
}
