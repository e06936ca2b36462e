#include "foundation/McException.h"

#include <cstdarg>

McException::McException(char const* format, ...) {
    va_list arguments;
    va_start(arguments, format);
    message.vprintf(format, arguments);
    va_end(arguments);
}
