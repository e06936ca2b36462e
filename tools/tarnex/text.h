#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

namespace tarnex::tool {

/// The text in one line that is safe for a terminal: line ends are shown as "\n", other control characters as "?".
std::string printable(std::string_view text);

/// At most `width` characters of a UTF-8 text; a longer one ends in "...".
std::string shortened(std::string const& text, std::size_t width);

/// "1 atom", "2 atoms".
std::string counted(long long count, std::string_view thing);

/// "a, b, c".
std::string joined(std::vector<std::string> const& texts, std::string_view separator = ", ");

/// The reason in the last message of a reader: "The file NAME is not a valid ... file. REASON in line 7.\n".
std::string reasonInMessages(std::string const& messages);

/// The number without superfluous decimals, at most `digits` of them.
std::string decimal(double value, int digits);

/// Appends a finite number by the fewest digits that give it back bit by bit, without exponent. Blanks stand ahead of
/// it up to a width.
void appendExact(std::string& line, float value, std::size_t width);

} // namespace tarnex::tool
