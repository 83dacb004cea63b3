#include "platform/posix/file_attributes.h"

#include <unistd.h>

#include <cerrno>
#include <optional>
#include <string>
#include <string_view>

#if defined(__linux__)
#include <sys/xattr.h>
#endif

namespace tessary {

namespace {

#if defined(__linux__)

// Calls a function of the xattr family first for the size, then for the value.
template <typename Get>
std::optional<std::string> GetSized(Get get) {
  while (true) {
    const ssize_t size = get(nullptr, 0);
    if (size < 0) return std::nullopt;
    std::string value(static_cast<std::size_t>(size), '\0');
    const ssize_t count = get(value.data(), value.size());
    if (count >= 0) {
      value.resize(static_cast<std::size_t>(count));
      return value;
    }
    if (errno != ERANGE) return std::nullopt;  // Otherwise it has grown in between.
  }
}

bool IsSetBySystem(std::string_view name) {
  return name.starts_with("security.") || name.starts_with("trusted.");
}

bool CopyExtendedAttribute(int from, const char* name, int to) {
  const auto value =
      GetSized([&](char* buffer, std::size_t size) { return fgetxattr(from, name, buffer, size); });
  return value && fsetxattr(to, name, value->data(), value->size(), 0) == 0;
}

// Takes away the access list that a new file may have got from its folder.
void DropInheritedAccessList(int file) { fremovexattr(file, "system.posix_acl_access"); }

bool CopyExtendedAttributes(int from, int to) {
  const auto names =
      GetSized([&](char* buffer, std::size_t size) { return flistxattr(from, buffer, size); });
  if (!names) return errno == ENOTSUP;
  for (std::size_t pos = 0; pos < names->size();) {
    const char* const name = names->c_str() + pos;
    pos += std::string_view(name).size() + 1;
    if (!CopyExtendedAttribute(from, name, to) && !IsSetBySystem(name)) return false;
  }
  return true;
}

#else

void DropInheritedAccessList(int) {}

bool CopyExtendedAttributes(int, int) { return true; }

#endif

bool CopyOwner(const struct stat& status, int to) {
  struct stat own;
  if (fstat(to, &own) != 0) return false;
  if (own.st_uid == status.st_uid && own.st_gid == status.st_gid) return true;
  return fchown(to, status.st_uid, status.st_gid) == 0;
}

}  // namespace

bool CopyAttributes(int from, const struct stat& status, int to) {
  DropInheritedAccessList(to);
  return CopyOwner(status, to) && fchmod(to, status.st_mode & 07777) == 0 &&
         CopyExtendedAttributes(from, to);
}

}  // namespace tessary
