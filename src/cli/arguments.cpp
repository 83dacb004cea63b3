#include "cli/arguments.h"

#include "platform/failure.h"
#include "platform/path.h"

namespace tessary {

std::string AbsolutePath(const std::string& path) {
  try {
    return MakeAbsolute(path);
  } catch (const Failure&) {
    return path;
  }
}

}  // namespace tessary
