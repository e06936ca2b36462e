#pragma once

#include "foundation/export.h"

/// Thrown by value when a line is too long for a scanner or breaks a rule of its format; caught by reference.
struct TARNEX_API Parse_Error {
    /// A static text, without file name and line.
    char const* message;
};
