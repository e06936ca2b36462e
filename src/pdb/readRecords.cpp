#include "pdb/records.h"

namespace tarnex::pdb {

bool AtomLine::readPosition(lengthizer& in, McVec3f& position) {
    char location[locationColumns.width() + 1];
    in.skipChars(locationColumns.first - keywordColumns.last - 1);
    in.getString(location, locationColumns.width());
    if (location[0] != '\0' && location[0] != 'A') return false;
    in.skipChars(xColumns.first - locationColumns.last - 1);
    position.x = in.getFloat(xColumns.width());
    position.y = in.getFloat(yColumns.width());
    position.z = in.getFloat(zColumns.width());
    return true;
}

ConectLine ConectLine::read(CardReader& in) {
    Card const card = in.readCard();
    ConectLine line;
    line.serial = card.integer(serialColumns);
    for (int i = 0; i < numPartners; ++i) {
        line.partners[i] = card.integer(partnerColumns.movedBy(i * partnerColumns.width()));
    }
    return line;
}

} // namespace tarnex::pdb
