#pragma once

#include <string>
#include <string_view>

#include "platform/file_system.h"

namespace tessary {

// The value of a key as the system's reader of initialisation files gives it; the reader drops
// blanks and one pair of quotes around a value. Where it would not see what the file holds (a
// byte-order mark that it does not know, a system whose code page is not that of the reports, a
// path longer than it takes) the portable reader takes its place, which leaves values as they are.
// `file` is the same file, opened at its beginning. Raises Failure when it cannot be read.
std::string SystemProfileString(FileReader& file, const std::string& path, std::string_view section,
                                std::string_view key);

}  // namespace tessary
