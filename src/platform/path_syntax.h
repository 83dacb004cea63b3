#pragma once

#include <cstddef>
#include <string_view>

// What differs between the systems in how a path is written.

namespace tessary {

bool IsPathSeparator(char c);

// Length of the beginning of `path` that names a root, its separator included; 0 when relative.
std::size_t PathRootLength(std::string_view path);

}  // namespace tessary
