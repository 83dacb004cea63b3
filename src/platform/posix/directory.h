#pragma once

#include <string>
#include <vector>

namespace tessary {

// The names of the regular files in `folder`, links to such files included, in no order. Raises
// Failure when the folder cannot be read.
std::vector<std::string> RegularFileNames(const std::string& folder);

}  // namespace tessary
