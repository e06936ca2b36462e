#pragma once

/// Marks what the shared library offers to its hosts. Everything else stays hidden inside the library.
#if defined(__GNUC__)
#define TARNEX_API __attribute__((visibility("default")))
#else
#define TARNEX_API
#endif
