#pragma once

#include "foundation/McString.h"

/// The foundation's exception, with a formatted message. Thrown by value.
class TARNEX_API McException {
public:
    explicit McException(char const* format, ...) __attribute__((format(printf, 2, 3)));

    char const* getMessage() const { return message; }

private:
    McString message;
};
