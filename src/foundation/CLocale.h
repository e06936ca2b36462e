#pragma once

#include "foundation/export.h"

#include <clocale>
#include <locale.h>

namespace tarnex {

/// Numbers are formatted and parsed by this thread as in the "C" locale for as long as the object lives, whatever the
/// host has set.
class TARNEX_API ScopedCLocale {
public:
    ScopedCLocale();
    ~ScopedCLocale();
    ScopedCLocale(ScopedCLocale const&) = delete;
    ScopedCLocale& operator=(ScopedCLocale const&) = delete;

    /// The "C" locale itself, for functions that take one.
    static locale_t object();

private:
    locale_t previous;
};

} // namespace tarnex
