#pragma once

#include <string>
#include <string_view>

namespace tessary {

// `argument` as one word of a command line that is typed into this system's usual shell: as it is
// where nothing in it has a meaning there, else in quotation marks.
std::string ShellWord(std::string_view argument);

}  // namespace tessary
