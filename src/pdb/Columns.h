#pragma once

#include "textio/Columns.h"

namespace tarnex::pdb {

/// Each line begins with the keyword of its record.
inline constexpr Columns keywordColumns{1, 6};

} // namespace tarnex::pdb
