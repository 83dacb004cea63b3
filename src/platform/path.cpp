#include "platform/path.h"

#include "platform/path_syntax.h"

namespace tessary {

namespace {

// `path` without its trailing separators; a root stays whole.
std::string_view WithoutTrailingSeparators(std::string_view path) {
  const std::size_t root = PathRootLength(path);
  while (path.size() > root && IsPathSeparator(path.back())) path.remove_suffix(1);
  return path;
}

// Where the last component of a path without trailing separators begins.
std::size_t LastComponentStart(std::string_view path) {
  const std::size_t root = PathRootLength(path);
  std::size_t start = path.size();
  while (start > root && !IsPathSeparator(path[start - 1])) --start;
  return start;
}

std::string_view FileNameView(std::string_view path) {
  path = WithoutTrailingSeparators(path);
  return path.substr(LastComponentStart(path));
}

}  // namespace

std::string JoinPath(std::string_view folder, std::string_view name) {
  std::string path;
  path.reserve(folder.size() + 1 + name.size());
  path.append(folder).push_back(kPathSeparator);
  path.append(name);
  return path;
}

std::string FileNameOf(std::string_view path) { return std::string(FileNameView(path)); }

std::string ParentFolderOf(std::string_view path) {
  path = WithoutTrailingSeparators(path);
  const std::size_t start = LastComponentStart(path);
  if (start == path.size()) return std::string();
  return std::string(WithoutTrailingSeparators(path.substr(0, start)));
}

std::string ExtensionOf(std::string_view path) {
  const std::string_view name = FileNameView(path);
  const std::size_t dot = name.rfind('.');
  return dot == std::string_view::npos ? std::string() : std::string(name.substr(dot + 1));
}

std::string BaseNameOf(std::string_view path) {
  const std::string_view name = FileNameView(path);
  return std::string(name.substr(0, name.rfind('.')));
}

std::string_view WithoutTrailingSeparator(std::string_view path) {
  if (!path.empty() && IsPathSeparator(path.back())) path.remove_suffix(1);
  return path;
}

}  // namespace tessary
