#pragma once

#include <string>

namespace tessary {

// A path as the manager wants it: absolute; an empty one stays empty and one trailing separator
// is kept. As given where there is no current folder any more.
std::string AbsolutePath(const std::string& path);

}  // namespace tessary
