// A temporary file's name follows from its target's name, so what a dead run left is met again and
// removed. Whether the owner is alive shows in a lock on the file, which the system drops with the
// process. Where a left-over cannot be opened its state stays unknown and another name is taken.

#include "platform/posix/temporary_file.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdio>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/path.h"
#include "platform/posix/directory.h"
#include "platform/posix/posix_errors.h"
#include "platform/posix/posix_io.h"

namespace tessary {

namespace {

// False once `path` stands for another file, or none.
bool IsNameOf(const std::string& path, int fd) {
  struct stat opened;
  struct stat named;
  return fstat(fd, &opened) == 0 && lstat(path.c_str(), &named) == 0 &&
         opened.st_dev == named.st_dev && opened.st_ino == named.st_ino;
}

bool IsRegular(int fd) {
  struct stat status;
  return fstat(fd, &status) == 0 && S_ISREG(status.st_mode);
}

enum class LeftoverState { kRemoved, kInUse, kUnknown };

LeftoverState RemoveIfDead(const std::string& path) {
  FileDescriptor fd = TryOpen(path, O_RDONLY | O_NOFOLLOW);
  if (!fd.is_open()) fd = TryOpen(path, O_WRONLY | O_NOFOLLOW);
  if (!fd.is_open()) return errno == ENOENT ? LeftoverState::kRemoved : LeftoverState::kUnknown;
  if (!IsRegular(fd.get())) return LeftoverState::kUnknown;
  if (!TryLock(fd.get())) return LeftoverState::kInUse;
  const bool removed = IsNameOf(path, fd.get()) && unlink(path.c_str()) == 0;
  return removed ? LeftoverState::kRemoved : LeftoverState::kUnknown;
}

FileDescriptor TryCreateNew(const std::string& path, mode_t mode, int& error) {
  FileDescriptor fd = TryOpen(path, O_WRONLY | O_CREAT | O_EXCL | O_NOFOLLOW, mode);
  if (!fd.is_open()) error = errno;
  return fd;
}

// Creates the file, removing a dead left-over of the same name; not open when that fails.
FileDescriptor TryCreateAt(const std::string& path, mode_t mode, int& error) {
  FileDescriptor fd = TryCreateNew(path, mode, error);
  if (fd.is_open() || error != EEXIST) return fd;
  const LeftoverState state = RemoveIfDead(path);
  if (state == LeftoverState::kInUse) throw Failure(kPermissionDenied);
  return state == LeftoverState::kRemoved ? TryCreateNew(path, mode, error) : std::move(fd);
}

}  // namespace

std::unique_ptr<TemporaryFile> TemporaryFile::TryCreate(const std::string& target, mode_t mode,
                                                        int& error) {
  constexpr unsigned kMostAttempts = 8;
  const std::string folder = FolderHolding(target);
  const std::string name = FileNameOf(target);
  for (unsigned attempt = 0; attempt < kMostAttempts; ++attempt) {
    std::string path = JoinPath(folder, TemporaryNameFor(name, attempt));
    FileDescriptor fd = TryCreateAt(path, mode, error);
    if (fd.is_open()) {
      // Until the lock is there, another run may take the file for a dead one's.
      if (!TryLock(fd.get()) || !IsNameOf(path, fd.get())) {
        fd = FileDescriptor();
        RemoveIfDead(path);
        throw Failure(kPermissionDenied);
      }
      return std::unique_ptr<TemporaryFile>(new TemporaryFile(std::move(fd), std::move(path)));
    }
    if (error != EEXIST) return nullptr;
  }
  throw Failure(kPermissionDenied);
}

TemporaryFile::TemporaryFile(FileDescriptor fd, std::string path)
    : fd_(std::move(fd)), path_(std::move(path)) {}

TemporaryFile::~TemporaryFile() {
  if (!path_.empty()) unlink(path_.c_str());
}

void TemporaryFile::MoveTo(const std::string& target) {
  if (rename(path_.c_str(), target.c_str()) != 0) FailWith(errno);
  path_.clear();
}

void TemporaryFile::MoveToFreeName(const std::string& target) {
  if (!RenameToFreeName(path_.c_str(), target.c_str())) FailWith(errno);
  path_.clear();
}

void RemoveDeadTemporaryFiles(const std::string& folder) {
  try {
    for (const std::string& name : RegularFileNames(folder)) {
      if (IsTemporaryName(name)) RemoveIfDead(JoinPath(folder, name));
    }
  } catch (const std::exception&) {
    // The left-overs do no harm; the next run finds them again.
  }
}

}  // namespace tessary
