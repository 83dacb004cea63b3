#pragma once

#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace tessary {

// Looks up a key in the text of an initialisation file, for systems without a profile-string
// reader of their own. `bytes` is the file's contents: Windows-1252, or UTF-8 or UTF-16 behind a
// byte-order mark. Lines end with LF or CRLF; blanks and tabs before a section header or a key,
// and blanks around the key, do not matter; section and key are compared without regard to case;
// the first section of the name counts and within it the first such key; a line that begins with
// "[" ends the section. The value is what stands behind "=", as written, cut at 2047 characters;
// empty when there is none.
std::string FindProfileString(std::string_view bytes, std::string_view section,
                              std::string_view key);

// The same, for several keys of a section, in a file at its beginning, which is read only as far as
// need be: the section of a report's header mostly stands near the beginning. Raises Failure when
// it cannot be read.
std::vector<std::string> FindProfileStrings(FileReader& file, std::string_view section,
                                            std::span<const std::string_view> keys);

}  // namespace tessary
