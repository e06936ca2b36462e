#include "foundation/CLocale.h"

namespace tarnex {

locale_t ScopedCLocale::object() {
    static locale_t const cLocale = newlocale(LC_ALL_MASK, "C", nullptr);
    return cLocale;
}

ScopedCLocale::ScopedCLocale() : previous(uselocale(object())) {}

ScopedCLocale::~ScopedCLocale() {
    uselocale(previous);
}

} // namespace tarnex
