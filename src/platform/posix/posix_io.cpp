#include "platform/posix/posix_io.h"

#include <sys/file.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <climits>
#include <cstdio>

#include "platform/failure.h"
#include "platform/path.h"
#include "platform/posix/posix_errors.h"

namespace tessary {

namespace {

// Repeats a call until no signal interrupts it.
template <typename Call>
auto Retry(Call call) {
  auto result = call();
  while (result == -1 && errno == EINTR) result = call();
  return result;
}

void RequireRegular(const struct stat& status) {
  if (!S_ISREG(status.st_mode)) throw Failure(kPathFileAccess);
}

}  // namespace

FileDescriptor TryOpen(const std::string& path, int flags, mode_t mode) {
  const int all_flags = flags | O_CLOEXEC | O_NOCTTY | O_NONBLOCK;
  return FileDescriptor(Retry([&] { return open(path.c_str(), all_flags, mode); }));
}

OpenedFile OpenRegularFile(const std::string& path, int access) {
  CheckPath(path);
  OpenedFile file;
  // Looking first keeps devices from being opened, which alone can have effects.
  if (stat(path.c_str(), &file.status) != 0) FailOpening(path, errno);
  RequireRegular(file.status);
  file.fd = TryOpen(path, access);
  if (!file.fd.is_open()) FailOpening(path, errno);
  if (fstat(file.fd.get(), &file.status) != 0) FailWith(errno);
  RequireRegular(file.status);
  return file;
}

std::size_t ReadSome(int fd, char* buffer, std::size_t size) {
  const std::size_t count = std::min<std::size_t>(size, SSIZE_MAX);
  const ssize_t result = Retry([&] { return read(fd, buffer, count); });
  if (result < 0) FailWith(errno);
  return static_cast<std::size_t>(result);
}

std::size_t WriteSome(int fd, std::string_view bytes) {
  const std::size_t count = std::min<std::size_t>(bytes.size(), SSIZE_MAX);
  const ssize_t result = Retry([&] { return write(fd, bytes.data(), count); });
  if (result < 0) FailWith(errno);
  return static_cast<std::size_t>(result);
}

void WriteAll(int fd, std::string_view bytes) {
  while (!bytes.empty()) bytes.remove_prefix(WriteSome(fd, bytes));
}

void Flush(int fd) {
  if (Retry([&] { return fsync(fd); }) == 0) return;
  // Some file systems have nothing to flush and say so.
  if (errno != EINVAL && errno != ENOTSUP) FailWith(errno);
}

void FlushFolder(const std::string& folder) {
  const FileDescriptor fd = TryOpen(folder, O_RDONLY | O_DIRECTORY);
  if (fd.is_open()) Flush(fd.get());
}

void TryFlushFolder(const std::string& folder) {
  try {
    FlushFolder(folder);
  } catch (const Failure&) {
  }
}

bool RenameToFreeName(const char* from, const char* to) {
#if defined(RENAME_NOREPLACE)
  if (renameat2(AT_FDCWD, from, AT_FDCWD, to, RENAME_NOREPLACE) == 0) return true;
  if (errno != EINVAL && errno != ENOSYS) return false;
#endif
  // Without the system's help the name can be taken between the two calls.
  struct stat status;
  if (lstat(to, &status) == 0) {
    errno = EEXIST;
    return false;
  }
  return rename(from, to) == 0;
}

bool TryLock(int fd) {
  return Retry([&] { return flock(fd, LOCK_EX | LOCK_NB); }) == 0 || errno != EWOULDBLOCK;
}

std::string FolderHolding(const std::string& path) {
  std::string folder = ParentFolderOf(path);
  return folder.empty() ? std::string(".") : folder;
}

}  // namespace tessary
