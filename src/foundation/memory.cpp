#include "foundation/memory.h"

#include <cstdlib>

void* mcmalloc(unsigned long long bytes) {
    return std::malloc(bytes);
}

void* mcrealloc(void* p, unsigned long long bytes) {
    return std::realloc(p, bytes);
}

void mcfree(void* p) {
    std::free(p);
}
