#include "model/AtomDataBase.h"

void AtomDataBase::appendAtom(int id, float radius, McString const& shortName) {
    ids.append(id);
    radii.append(radius);
    shortNames.append(shortName);
}
