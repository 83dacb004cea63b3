// Two ways of replacing a file. The safe one writes a temporary file beside it, which is given the
// file's attributes first and takes its name at last. Where that would lose something (other names
// of the file, an owner that cannot be given away) or the folder takes no new file, the new
// contents are collected in memory and written over the old ones at the end.

#include "platform/posix/file_replacement.h"

#include <fcntl.h>
#include <unistd.h>

#include <cerrno>
#include <cstdlib>
#include <optional>

#include "platform/failure.h"
#include "platform/path.h"
#include "platform/posix/file_attributes.h"
#include "platform/posix/posix_errors.h"
#include "platform/posix/posix_io.h"
#include "platform/posix/temporary_file.h"

namespace tessary {

namespace {

void CopyChangeTime(const struct stat& status, int to) {
  const timespec times[2] = {{0, UTIME_OMIT}, status.st_mtim};
  futimens(to, times);
}

void CopyOwnerAndPermissions(const struct stat& status, int to) {
  // Only privileged users can give files away; with others the copy stays theirs.
  [[maybe_unused]] const int ignored = fchown(to, status.st_uid, status.st_gid);
  // The owner may write, so that the copy of a read-only file can be replaced by the next.
  fchmod(to, (status.st_mode & 0777) | S_IWUSR);
}

// The file that a path stands for.
struct Target {
  std::string path;
  bool is_linked = false;  // the path is a link to it
};

// What a temporary file becomes.
enum class Becomes {
  kExistingFile,
  kNewFile,
  kNewFileOnly,  // or nothing, when another file has taken the name by then
};

class TemporaryReplacement final : public PosixReplacement {
 public:
  TemporaryReplacement(Target target, std::unique_ptr<TemporaryFile> file, Becomes becomes)
      : target_(std::move(target)), file_(std::move(file)), becomes_(becomes) {}

  // Once a part of the contents is lost there is nothing left to commit.
  void Write(std::string_view bytes) override {
    usable_ = false;
    prepared_ = false;
    WriteAll(file_->fd(), bytes);
    usable_ = true;
  }

  // Whoever flushes the folder of a link's name later would miss the one it leads to.
  void DeferName() override { defers_name_ = !target_.is_linked; }

  void Prepare() override {
    if (!usable_) throw Failure(kInvalidCall);
    usable_ = false;
    if (copied_status_) CopyChangeTime(*copied_status_, file_->fd());
    Flush(file_->fd());
    prepared_ = true;
    usable_ = true;
  }

  void Commit() override {
    if (!prepared_) Prepare();
    if (!usable_) throw Failure(kInvalidCall);
    usable_ = false;
    if (becomes_ == Becomes::kNewFileOnly) {
      file_->MoveToFreeName(target_.path);
    } else {
      file_->MoveTo(target_.path);
    }
    if (!defers_name_) FlushNewName();
  }

  bool Damaged() const override { return false; }

  void CopyStatus(const struct stat& status) override {
    copied_status_ = status;
    if (becomes_ != Becomes::kExistingFile) CopyOwnerAndPermissions(status, file_->fd());
  }

 private:
  // The new contents are in place by now: calling that a failure would be wrong, and after a power
  // cut the name stands for the old contents or the new. Only a copy must be there for certain
  // before what it saves may change.
  void FlushNewName() const {
    const std::string folder = FolderHolding(target_.path);
    if (copied_status_) {
      FlushFolder(folder);
    } else {
      TryFlushFolder(folder);
    }
  }

  Target target_;
  std::unique_ptr<TemporaryFile> file_;
  Becomes becomes_;
  bool usable_ = true;
  bool prepared_ = false;
  bool defers_name_ = false;
  std::optional<struct stat> copied_status_;
};

class InPlaceReplacement final : public PosixReplacement {
 public:
  explicit InPlaceReplacement(OpenedFile file) : file_(std::move(file)) {}

  void Write(std::string_view bytes) override { contents_.append(bytes); }

  void Commit() override {
    if (committed_) throw Failure(kInvalidCall);
    committed_ = true;
    ReserveSpace();
    WriteContents();
    if (copied_status_) CopyChangeTime(*copied_status_, file_.fd.get());
    Flush(file_.fd.get());
    damaged_ = false;
  }

  bool Damaged() const override { return damaged_; }

  void CopyStatus(const struct stat& status) override { copied_status_ = status; }

 private:
  // A disk without room for the new contents shows while the old ones are still whole.
  void ReserveSpace() {
    const off_t old_size = file_.status.st_size;
    const auto new_size = static_cast<off_t>(contents_.size());
    if (new_size <= old_size) return;
    const int error = posix_fallocate(file_.fd.get(), old_size, new_size - old_size);
    if (error == 0 || error == EOPNOTSUPP || error == EINVAL) return;
    damaged_ = ftruncate(file_.fd.get(), old_size) != 0;
    FailWith(error);
  }

  void WriteContents() {
    // A write that fails may have written all the same, as over a network.
    damaged_ = true;
    WriteAll(file_.fd.get(), contents_);
    if (ftruncate(file_.fd.get(), static_cast<off_t>(contents_.size())) != 0) FailWith(errno);
  }

  OpenedFile file_;
  std::string contents_;
  bool committed_ = false;
  bool damaged_ = false;
  std::optional<struct stat> copied_status_;
};

// The target of the link `path` as a path; nothing when `path` is no link.
std::optional<std::string> LinkTarget(const std::string& path) {
  std::string target(256, '\0');
  while (true) {
    const ssize_t size = readlink(path.c_str(), target.data(), target.size());
    if (size < 0) return std::nullopt;
    if (static_cast<std::size_t>(size) < target.size()) {
      target.resize(static_cast<std::size_t>(size));
      break;
    }
    target.resize(2 * target.size());
  }
  const bool absolute = target.starts_with(kPathSeparator);
  return absolute ? target : JoinPath(FolderHolding(path), target);
}

// Nothing when there is no such file; other failures are raised.
std::optional<std::string> RealPath(const std::string& path) {
  char* const resolved = realpath(path.c_str(), nullptr);
  if (resolved == nullptr) {
    if (errno == ENOENT) return std::nullopt;
    FailWith(errno);
  }
  std::string result(resolved);
  std::free(resolved);
  return result;
}

// `path` with every link followed. The file itself may be missing, also behind links, but not its
// folder.
Target ResolveTarget(std::string path) {
  constexpr int kMostLinks = 40;
  for (int i = 0; i < kMostLinks; ++i) {
    const std::string name = FileNameOf(path);
    const bool is_folder = path.ends_with(kPathSeparator) || name == "." || name == "..";
    auto resolved = RealPath(is_folder ? path : FolderHolding(path));
    if (!resolved) throw Failure(kPathNotFound);
    if (is_folder) return {*std::move(resolved)};
    std::string target = JoinPath(*resolved, name);
    auto next = LinkTarget(target);
    if (!next) return {std::move(target), i > 0};
    path = *std::move(next);
  }
  throw Failure(kBadFileName);
}

bool RefusesNewFiles(int error) { return error == EACCES || error == EPERM || error == EROFS; }

OpenedFile OpenTarget(const std::string& target) {
  OpenedFile file = OpenRegularFile(target, O_WRONLY);
  // Privileged users can open such a file all the same, but it was locked on purpose.
  if ((file.status.st_mode & (S_IWUSR | S_IWGRP | S_IWOTH)) == 0) throw Failure(kPermissionDenied);
  return file;
}

std::unique_ptr<PosixReplacement> ReplaceExisting(Target target, OpenedFile file) {
  if (file.status.st_nlink == 1) {
    int error = 0;
    auto temporary = TemporaryFile::TryCreate(target.path, S_IRUSR | S_IWUSR, error);
    if (!temporary && !RefusesNewFiles(error)) FailWith(error);
    if (temporary && CopyAttributes(file.fd.get(), file.status, temporary->fd()))
      return std::make_unique<TemporaryReplacement>(std::move(target), std::move(temporary),
                                                    Becomes::kExistingFile);
  }
  return std::make_unique<InPlaceReplacement>(std::move(file));
}

std::unique_ptr<PosixReplacement> CreateMissing(Target target, Becomes becomes) {
  int error = 0;
  auto temporary = TemporaryFile::TryCreate(target.path, 0666, error);
  if (!temporary) FailOpening(target.path, error);
  return std::make_unique<TemporaryReplacement>(std::move(target), std::move(temporary), becomes);
}

}  // namespace

std::unique_ptr<PosixReplacement> OpenReplacement(const std::string& path) {
  CheckPath(path);
  Target target = ResolveTarget(path);
  struct stat status;
  if (stat(target.path.c_str(), &status) == 0) {
    OpenedFile file = OpenTarget(target.path);
    return ReplaceExisting(std::move(target), std::move(file));
  }
  if (errno != ENOENT) FailWith(errno);
  return CreateMissing(std::move(target), Becomes::kNewFile);
}

std::unique_ptr<PosixReplacement> OpenNewFile(const std::string& path) {
  CheckPath(path);
  Target target = ResolveTarget(path);
  struct stat status;
  if (stat(target.path.c_str(), &status) == 0) throw Failure(kFileExists);
  if (errno != ENOENT) FailWith(errno);
  return CreateMissing(std::move(target), Becomes::kNewFileOnly);
}

void FlushFile(const std::string& path) {
  CheckPath(path);
  const std::string target = ResolveTarget(path).path;
  Flush(OpenRegularFile(target, O_RDONLY).fd.get());
  FlushFolder(FolderHolding(target));
}

void CheckReplacement(const std::string& path) {
  CheckPath(path);
  const std::string target = ResolveTarget(path).path;
  struct stat status;
  if (stat(target.c_str(), &status) == 0) {
    OpenTarget(target);
  } else if (errno != ENOENT || !TakesNewFiles(FolderHolding(target))) {
    FailWith(errno);
  }
}

bool TakesNewFiles(const std::string& folder) {
  return faccessat(AT_FDCWD, folder.c_str(), W_OK | X_OK, AT_EACCESS) == 0;
}

}  // namespace tessary
