#pragma once

#include <string>
#include <vector>

namespace tessary {

// The names of the regular files in the folder of a native path, links to such files included, in
// no order. Raises Failure when the folder cannot be read.
std::vector<std::string> RegularFileNames(const std::wstring& folder);

}  // namespace tessary
