#pragma once

#include <ostream>

namespace tarnex {

/// Writes the parts of one message to a message stream, which may be null for silence.
template <class... Parts>
void report(std::ostream* messages, Parts const&... parts) {
    if (messages) (*messages << ... << parts);
}

} // namespace tarnex
