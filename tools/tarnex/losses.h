#pragma once

#include "Format.h"

#include <string>

namespace tarnex::tool {

/// What the bundle has and the format has no room for, as a list for people; empty if there is nothing.
std::string lossesOf(Bundle const& bundle, Format const& format);

} // namespace tarnex::tool
