#pragma once

#include "foundation/export.h"

/// The memory functions of all foundation containers. They behave like `malloc`, `realloc` and `free`, and blocks from
/// them must not be mixed with `new` and `delete`.
TARNEX_API void* mcmalloc(unsigned long long bytes);
TARNEX_API void* mcrealloc(void* p, unsigned long long bytes);
TARNEX_API void mcfree(void* p);
