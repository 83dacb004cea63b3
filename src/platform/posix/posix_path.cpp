#include <unistd.h>

#include <cerrno>
#include <string>
#include <vector>

#include "platform/failure.h"
#include "platform/path.h"
#include "platform/path_syntax.h"
#include "platform/posix/posix_errors.h"

namespace tessary {

const char kPathSeparator = '/';

namespace {

std::string CurrentFolder() {
  std::string buffer(256, '\0');
  while (getcwd(buffer.data(), buffer.size()) == nullptr) {
    if (errno == ENOENT) throw Failure(kPathNotFound);
    if (errno != ERANGE) FailWith(errno);
    buffer.resize(2 * buffer.size());
  }
  buffer.resize(buffer.find('\0'));
  // A folder outside the process's root has no path.
  if (!buffer.starts_with(kPathSeparator)) throw Failure(kPathNotFound);
  return buffer;
}

// Applies the components of `path` to `components`.
void Walk(std::string_view path, std::vector<std::string_view>& components) {
  while (!path.empty()) {
    const std::size_t end = path.find(kPathSeparator);
    const std::string_view component = path.substr(0, end);
    path.remove_prefix(end == std::string_view::npos ? path.size() : end + 1);
    if (component.empty() || component == ".") continue;
    if (component != "..") {
      components.push_back(component);
    } else if (!components.empty()) {
      components.pop_back();
    }
  }
}

}  // namespace

bool IsPathSeparator(char c) { return c == kPathSeparator; }

std::size_t PathRootLength(std::string_view path) {
  return path.starts_with(kPathSeparator) ? 1 : 0;
}

std::string MakeAbsolute(std::string_view path) {
  if (path.empty()) return std::string();
  const std::string base = PathRootLength(path) > 0 ? std::string() : CurrentFolder();
  std::vector<std::string_view> components;
  Walk(base, components);
  Walk(path, components);

  std::string absolute;
  for (const std::string_view component : components) {
    absolute.push_back(kPathSeparator);
    absolute.append(component);
  }
  if (components.empty() || path.ends_with(kPathSeparator)) absolute.push_back(kPathSeparator);
  return absolute;
}

}  // namespace tessary
