#include "model/MtGroup.h"

#include "model/MtListGroups.h"
#include "model/MtSmallGroups.h"

MtGroupRefTranslator::~MtGroupRefTranslator() = default;

MtGroup::~MtGroup() = default;

bool MtGroup::translate(MtGroupRefTranslator* translator, bool) {
    for (int i = 0, n = size(); i < n; ++i) {
        MtGroupRef const image = translator->translate((*this)[i]);
        if (image.groupIx < 0) return false;
        setElement(i, image);
    }
    return true;
}

MtGroup* MtGroup::createGroup(int n) {
    switch (n) {
    case 2:
        return new MtSmallGroup<2>;
    case 3:
        return new MtSmallGroup<3>;
    case 4:
        return new MtSmallGroup<4>;
    default:
        auto* group = new MtDynamicGroup;
        group->members.resize(n);
        return group;
    }
}
