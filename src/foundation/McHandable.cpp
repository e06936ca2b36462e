#include "foundation/McHandable.h"

McHandable::~McHandable() = default;

void McHandable::notifyDelete() {}

void McHandable::unref() const {
    if (--refCount < 1) {
        const_cast<McHandable*>(this)->notifyDelete();
        delete this;
    }
}
