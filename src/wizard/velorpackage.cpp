#include "tarnexVersion.h"
#include "wizard/TarnexWizard.h"

extern "C" int velorpackage_tarnex() {
    return TARNEX_VERSION_MAJOR * 10000 + TARNEX_VERSION_MINOR * 100 + TARNEX_VERSION_PATCH;
}
