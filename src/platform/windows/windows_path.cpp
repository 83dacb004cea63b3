#include <algorithm>
#include <string>

#include "platform/path.h"
#include "platform/path_syntax.h"
#include "platform/text.h"
#include "platform/windows/native_path.h"
#include "platform/windows/wide_text.h"

namespace tessary {

const char kPathSeparator = '\\';

namespace {

bool IsLetter(char c) { return (c >= 'A' && c <= 'Z') || (c >= 'a' && c <= 'z'); }

// Length of the component at `pos` with the separator behind it, if there is one.
std::size_t ComponentLength(std::string_view path, std::size_t pos) {
  const auto begin = path.begin() + static_cast<std::ptrdiff_t>(std::min(pos, path.size()));
  const auto end = std::find_if(begin, path.end(), IsPathSeparator);
  return static_cast<std::size_t>(end - begin) + (end == path.end() ? 0 : 1);
}

bool BeginsWithSeparators(std::string_view path) {
  return path.size() >= 2 && IsPathSeparator(path[0]) && IsPathSeparator(path[1]);
}

// Length of "server\share\" at `pos`; 0 when one of them is missing.
std::size_t NetworkRootLength(std::string_view path, std::size_t pos) {
  const std::size_t server = ComponentLength(path, pos);
  const std::size_t share = ComponentLength(path, pos + server);
  const bool complete = server > 1 && share > 0 && !IsPathSeparator(path[pos + server]);
  return complete ? server + share : 0;
}

// Length of "C:\" or "C:" at `pos`; 0 when there is no drive.
std::size_t DriveRootLength(std::string_view path, std::size_t pos) {
  const bool drive = path.size() >= pos + 2 && IsLetter(path[pos]) && path[pos + 1] == ':';
  if (!drive) return 0;
  return path.size() > pos + 2 && IsPathSeparator(path[pos + 2]) ? 3 : 2;
}

// What stands behind the prefix of paths that are taken as they are, or of devices.
std::size_t VerbatimRootLength(std::string_view path) {
  constexpr std::size_t kPrefix = 4;
  constexpr std::string_view kNetwork = "UNC";
  const std::size_t drive = DriveRootLength(path, kPrefix);
  if (drive > 0) return kPrefix + drive;
  const std::size_t first = ComponentLength(path, kPrefix);
  if (first == kNetwork.size() + 1 &&
      EqualsIgnoreCase(path.substr(kPrefix, kNetwork.size()), kNetwork))
    return kPrefix + first + NetworkRootLength(path, kPrefix + first);
  return kPrefix + first;
}

bool IsVerbatim(std::string_view path) {
  return BeginsWithSeparators(path) && path.size() >= 4 && (path[2] == '?' || path[2] == '.') &&
         IsPathSeparator(path[3]);
}

}  // namespace

bool IsPathSeparator(char c) { return c == '\\' || c == '/'; }

std::size_t PathRootLength(std::string_view path) {
  if (IsVerbatim(path)) return VerbatimRootLength(path);
  if (BeginsWithSeparators(path)) {
    const std::size_t network = NetworkRootLength(path, 2);
    if (network > 0) return 2 + network;
  }
  if (!path.empty() && IsPathSeparator(path[0])) return 1;
  return DriveRootLength(path, 0);
}

std::string MakeAbsolute(std::string_view path) {
  return path.empty() ? std::string() : Utf8FromWide(FullPath(path));
}

}  // namespace tessary
