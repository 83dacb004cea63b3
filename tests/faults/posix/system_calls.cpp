#include "faults/posix/system_calls.h"

#include <dirent.h>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/stat.h>
#include <sys/xattr.h>
#include <unistd.h>

#include <cerrno>
#include <csignal>
#include <cstdarg>
#include <cstdio>
#include <cstdlib>

extern "C" ssize_t __real_readlink(const char* path, char* target, size_t size);

namespace tessary::system_calls {
namespace {

bool watched = false;
int count = 0;
int fails_at = 0;
int dies_at = 0;
int failure = 0;
bool failed_to_remove = false;
std::vector<Change> changes;

void Begin() {
  count = fails_at = dies_at = 0;
  failed_to_remove = false;
  changes.clear();
  watched = true;
}

bool Fails() {
  if (!watched) return false;
  ++count;
  if (count == dies_at) raise(SIGKILL);
  if (count != fails_at) return false;
  errno = failure;
  return true;
}

// True when the next call will fail or be the last.
// A call that a signal interrupts has done nothing.
bool IsCutShort() {
  const bool fails = count + 1 == fails_at && failure != EINTR;
  return watched && (fails || count + 1 == dies_at);
}

std::string PathOf(int fd) {
  char path[4096];
  const std::string name = "/proc/self/fd/" + std::to_string(fd);
  const ssize_t size = __real_readlink(name.c_str(), path, sizeof path);
  return std::string(path, size > 0 ? static_cast<std::size_t>(size) : 0);
}

void Note(Change::Kind kind, int fd) {
  if (watched) changes.push_back({kind, PathOf(fd)});
}

void NoteFolder(const char* path) {
  if (watched) changes.push_back({Change::kFolderMade, path});
}

int NoteRename(int result, const char* from, const char* to) {
  if (watched && result == 0) changes.push_back({Change::kRenamed, from, to});
  return result;
}

bool FailsToRemove() {
  const bool fails = Fails();
  failed_to_remove = failed_to_remove || fails;
  return fails;
}

}  // namespace

void Watch() { Begin(); }

void WatchAndFail(int n, int error) {
  Begin();
  fails_at = n;
  failure = error;
}

void WatchAndDie(int n) {
  Begin();
  dies_at = n;
}

int Stop() {
  watched = false;
  return count;
}

const std::vector<Change>& Changes() { return changes; }

bool FailedToRemove() { return failed_to_remove; }

}  // namespace tessary::system_calls

// The names are the linker's (--wrap).
#define TESSARY_WRAP(Result, name, parameters, arguments, result_of_failure) \
  Result __real_##name parameters;                                           \
  Result __wrap_##name parameters;                                           \
  Result __wrap_##name parameters {                                          \
    if (tessary::system_calls::Fails()) return result_of_failure;            \
    return __real_##name arguments;                                          \
  }                                                                          \
  static_assert(true, "takes a semicolon")

extern "C" {

int __real_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...);
int __wrap_open(const char* path, int flags, ...) {
  if (tessary::system_calls::Fails()) return -1;
  if ((flags & O_CREAT) == 0) return __real_open(path, flags);
  va_list arguments;
  va_start(arguments, flags);
  const mode_t mode = va_arg(arguments, mode_t);
  va_end(arguments);
  return __real_open(path, flags, mode);
}

int __real_fsync(int fd);
int __wrap_fsync(int fd);
int __wrap_fsync(int fd) {
  if (tessary::system_calls::Fails()) return -1;
  tessary::system_calls::Note(tessary::system_calls::Change::kFlushed, fd);
  return tessary::system_calls::watched ? 0 : __real_fsync(fd);
}

ssize_t __real_write(int fd, const void* bytes, size_t size);
ssize_t __wrap_write(int fd, const void* bytes, size_t size);
ssize_t __wrap_write(int fd, const void* bytes, size_t size) {
  // What is killed or runs out of space has written a part.
  if (tessary::system_calls::IsCutShort()) {
    [[maybe_unused]] const ssize_t ignored = __real_write(fd, bytes, size / 2);
  }
  if (tessary::system_calls::Fails()) return -1;
  tessary::system_calls::Note(tessary::system_calls::Change::kWritten, fd);
  return __real_write(fd, bytes, size);
}

int __real_unlink(const char* path);
int __wrap_unlink(const char* path);
int __wrap_unlink(const char* path) {
  return tessary::system_calls::FailsToRemove() ? -1 : __real_unlink(path);
}

int __real_posix_fallocate(int fd, off_t offset, off_t size);
int __wrap_posix_fallocate(int fd, off_t offset, off_t size);
int __wrap_posix_fallocate(int fd, off_t offset, off_t size) {
  return tessary::system_calls::Fails() ? errno : __real_posix_fallocate(fd, offset, size);
}

int __real_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to);
int __wrap_rename(const char* from, const char* to) {
  if (tessary::system_calls::Fails()) return -1;
  return tessary::system_calls::NoteRename(__real_rename(from, to), from, to);
}

int __real_renameat2(int from_fd, const char* from, int to_fd, const char* to, unsigned int flags);
int __wrap_renameat2(int from_fd, const char* from, int to_fd, const char* to, unsigned int flags);
int __wrap_renameat2(int from_fd, const char* from, int to_fd, const char* to, unsigned int flags) {
  if (tessary::system_calls::Fails()) return -1;
  return tessary::system_calls::NoteRename(__real_renameat2(from_fd, from, to_fd, to, flags), from,
                                           to);
}

int __real_mkdir(const char* path, mode_t mode);
int __wrap_mkdir(const char* path, mode_t mode);
int __wrap_mkdir(const char* path, mode_t mode) {
  if (tessary::system_calls::Fails()) return -1;
  tessary::system_calls::NoteFolder(path);
  return __real_mkdir(path, mode);
}

int __real_ftruncate(int fd, off_t size);
int __wrap_ftruncate(int fd, off_t size);
int __wrap_ftruncate(int fd, off_t size) {
  if (tessary::system_calls::Fails()) return -1;
  tessary::system_calls::Note(tessary::system_calls::Change::kWritten, fd);
  return __real_ftruncate(fd, size);
}

TESSARY_WRAP(ssize_t, read, (int fd, void* buffer, size_t size), (fd, buffer, size), -1);
TESSARY_WRAP(DIR*, opendir, (const char* path), (path), nullptr);
TESSARY_WRAP(dirent*, readdir, (DIR * folder), (folder), nullptr);
TESSARY_WRAP(int, stat, (const char* path, struct stat* status), (path, status), -1);
TESSARY_WRAP(int, lstat, (const char* path, struct stat* status), (path, status), -1);
TESSARY_WRAP(int, fstat, (int fd, struct stat* status), (fd, status), -1);
TESSARY_WRAP(int, fchmod, (int fd, mode_t mode), (fd, mode), -1);
TESSARY_WRAP(int, fchown, (int fd, uid_t user, gid_t group), (fd, user, group), -1);
TESSARY_WRAP(int, futimens, (int fd, const timespec* times), (fd, times), -1);
TESSARY_WRAP(int, flock, (int fd, int operation), (fd, operation), -1);
TESSARY_WRAP(char*, realpath, (const char* path, char* resolved), (path, resolved), nullptr);
TESSARY_WRAP(ssize_t, readlink, (const char* path, char* target, size_t size), (path, target, size),
             -1);
TESSARY_WRAP(ssize_t, fgetxattr, (int fd, const char* name, void* value, size_t size),
             (fd, name, value, size), -1);
TESSARY_WRAP(int, fsetxattr, (int fd, const char* name, const void* value, size_t size, int flags),
             (fd, name, value, size, flags), -1);
TESSARY_WRAP(ssize_t, flistxattr, (int fd, char* names, size_t size), (fd, names, size), -1);
TESSARY_WRAP(int, fremovexattr, (int fd, const char* name), (fd, name), -1);

}  // extern "C"
