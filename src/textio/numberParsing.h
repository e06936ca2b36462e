#pragma once

#include "foundation/export.h"

#include <string_view>

namespace tarnex {

/// The number at the start of `text`: the result of `strtol` with base 10, cut to `int`. Bad text gives 0. A text in
/// the middle of a longer one is read as if it ended there.
TARNEX_API int parseInt(std::string_view text);

/// The number at the start of `text`: the result of `strtod` in the "C" locale, bit for bit. Bad text gives 0.
TARNEX_API double parseDouble(std::string_view text);

} // namespace tarnex
