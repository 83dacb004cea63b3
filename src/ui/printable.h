#pragma once

#include <cstddef>
#include <string>
#include <string_view>

namespace tessary {

// `text`, which may be any bytes, as one line that is safe to show: well-formed, with U+FFFD for
// whatever is not, and for control characters, which could otherwise steer the terminal.
std::string Printable(std::string_view text);

// The columns that well-formed text takes up on a terminal, and its beginning that takes up at
// most `columns`. Characters that may be wide count as two.
std::size_t ColumnsOf(std::string_view text);
std::string_view CutToColumns(std::string_view text, std::size_t columns);

}  // namespace tessary
