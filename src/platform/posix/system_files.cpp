#include <fcntl.h>
#include <sys/stat.h>
#include <sys/statvfs.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <new>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "platform/posix/directory.h"
#include "platform/posix/file_replacement.h"
#include "platform/posix/posix_errors.h"
#include "platform/posix/posix_io.h"
#include "platform/posix/temporary_file.h"
#include "platform/profile_string.h"

namespace tessary {

namespace {

constexpr std::size_t kBlockSize = std::size_t{32} << 10;

bool StatusOf(const std::string& path, struct stat& status) {
  return path.find('\0') == std::string::npos && stat(path.c_str(), &status) == 0;
}

bool SameFile(const struct stat& a, const struct stat& b) {
  return a.st_dev == b.st_dev && a.st_ino == b.st_ino;
}

class PosixReader final : public FileReader {
 public:
  explicit PosixReader(OpenedFile file)
      : fd_(std::move(file.fd)), expected_(static_cast<std::size_t>(file.status.st_size)) {}

  std::size_t Read(char* buffer, std::size_t size) override {
    const std::size_t count = ReadSome(fd_.get(), buffer, size);
    expected_ -= std::min(count, expected_);
    return count;
  }

  std::size_t SizeHint() const override { return expected_; }

 private:
  FileDescriptor fd_;
  std::size_t expected_;
};

class PosixFolderLock final : public FolderLock {
 public:
  explicit PosixFolderLock(FileDescriptor fd) : fd_(std::move(fd)) {}

 private:
  FileDescriptor fd_;
};

// Writes what `source` holds, with the status that its copy gets, and commits nothing.
void CopyInto(PosixReplacement& copy, const OpenedFile& source) {
  copy.CopyStatus(source.status);
  const auto block = std::make_unique_for_overwrite<char[]>(kBlockSize);
  while (const std::size_t size = ReadSome(source.fd.get(), block.get(), kBlockSize))
    copy.Write(std::string_view(block.get(), size));
}

// False when there is such a file by now.
bool CopyToNewFile(const OpenedFile& source, const std::string& to) {
  try {
    const auto copy = OpenNewFile(to);
    CopyInto(*copy, source);
    copy->Commit();
    return true;
  } catch (const Failure& failure) {
    if (failure.number() != kFileExists) throw;
    return false;
  }
}

class PosixFileSystem final : public FileSystem {
 public:
  bool FileExists(const std::string& path) override {
    struct stat status;
    return StatusOf(path, status) && !S_ISDIR(status.st_mode);
  }

  bool FolderExists(const std::string& path) override {
    struct stat status;
    return StatusOf(path, status) && S_ISDIR(status.st_mode);
  }

  std::vector<std::string> ListFiles(const std::string& folder) override {
    std::vector<std::string> names = RegularFileNames(folder);
    DropServiceFiles(names);
    SortFileNames(names);
    return names;
  }

  std::unique_ptr<FileReader> OpenForReading(const std::string& path) override {
    return std::make_unique<PosixReader>(OpenRegularFile(path, O_RDONLY));
  }

  std::unique_ptr<FileReplacement> OpenForReplacing(const std::string& path) override {
    return OpenReplacement(path);
  }

  std::uint64_t RoomBeside(const std::string& path) override {
    struct statvfs status;
    const bool is_known = !path.empty() && statvfs(path.c_str(), &status) == 0;
    return is_known ? std::uint64_t{status.f_bavail} * status.f_frsize : 0;
  }

  void CopyFile(const std::string& from, const std::string& to) override {
    const OpenedFile source = OpenRegularFile(from, O_RDONLY);
    struct stat status;
    if (StatusOf(to, status) && SameFile(source.status, status)) throw Failure(kPermissionDenied);
    const auto copy = OpenReplacement(to);
    CopyInto(*copy, source);
    copy->Commit();
  }

  bool AddCopy(const std::string& from, const std::string& to) override {
    const OpenedFile source = OpenRegularFile(from, O_RDONLY);
    struct stat status;
    const bool exists = StatusOf(to, status);
    if (exists && SameFile(source.status, status)) throw Failure(kPermissionDenied);
    if (exists && !SameContents(from, to)) return false;
    if (exists) {
      FlushFile(to);
      return true;
    }
    return CopyToNewFile(source, to);
  }

  void RenameFile(const std::string& from, const std::string& to) override {
    CheckPath(from);
    CheckPath(to);
    struct stat status;
    if (lstat(from.c_str(), &status) != 0) FailOpening(from, errno);
    if (S_ISDIR(status.st_mode)) throw Failure(kPathFileAccess);
    if (!RenameToFreeName(from.c_str(), to.c_str())) FailOpening(to, errno);
    // The file has its new name, and keeps its contents under either name, whatever becomes of
    // this.
    TryFlushFolder(FolderHolding(to));
  }

  bool SameContents(const std::string& a, const std::string& b) override {
    try {
      return SameBytes(*OpenForReading(a), *OpenForReading(b));
    } catch (const Failure&) {
      return false;
    }
  }

  void CreateFolder(const std::string& path) override {
    CheckPath(path);
    if (mkdir(path.c_str(), 0777) != 0) {
      if (errno == ENOENT) throw Failure(kPathNotFound);
      FailWith(errno);
    }
    FlushFolder(FolderHolding(path));
  }

  void FlushNames(const std::string& folder) override { TryFlushFolder(folder); }

  // The folder itself is locked, so that nothing has to be created in it or is left behind.
  std::unique_ptr<FolderLock> TryLockFolder(const std::string& folder) override {
    const bool is_name = folder.find('\0') == std::string::npos;
    FileDescriptor fd = is_name ? TryOpen(folder, O_RDONLY | O_DIRECTORY) : FileDescriptor();
    if (fd.is_open() && !TryLock(fd.get())) return nullptr;
    return std::make_unique<PosixFolderLock>(std::move(fd));
  }

  void RemoveLeftovers(const std::string& folder) override { RemoveDeadTemporaryFiles(folder); }

  void CheckReplacing(const std::string& path) override { CheckReplacement(path); }

  void CheckCreatingFolder(const std::string& path) override {
    CheckPath(path);
    struct stat status;
    if (lstat(path.c_str(), &status) == 0) FailWith(EEXIST);
    if (!TakesNewFiles(FolderHolding(path))) {
      if (errno == ENOENT) throw Failure(kPathNotFound);
      FailWith(errno);
    }
  }

  std::string IdentityOf(const std::string& path) override {
    struct stat status;
    if (!StatusOf(path, status) || S_ISDIR(status.st_mode)) return {};
    return std::to_string(status.st_dev) + " " + std::to_string(status.st_ino);
  }

  // Opened first, because that makes a file system of a network ask its server. The time of change
  // tells of writers who put the time of the last writing back.
  std::string StampOf(const std::string& path) override {
    if (!FileExists(path)) return {};
    const FileDescriptor fd = TryOpen(path, O_RDONLY);
    struct stat status;
    if (!fd.is_open() || fstat(fd.get(), &status) != 0) return {};
    std::string stamp;
    for (const auto part :
         {std::int64_t(status.st_dev), std::int64_t(status.st_ino), std::int64_t(status.st_size),
          std::int64_t(status.st_mtim.tv_sec), std::int64_t(status.st_mtim.tv_nsec),
          std::int64_t(status.st_ctim.tv_sec), std::int64_t(status.st_ctim.tv_nsec)})
      stamp.append(std::to_string(part)).append(" ");
    return stamp;
  }

  bool SameFolder(const std::string& a, const std::string& b) override {
    if (FileSystem::SameFolder(a, b)) return true;
    struct stat one;
    struct stat other;
    return StatusOf(a, one) && StatusOf(b, other) && S_ISDIR(one.st_mode) && SameFile(one, other);
  }

  std::string ReadProfileString(const std::string& path, std::string_view section,
                                std::string_view key) override {
    return ReadProfileStrings(path, section, {&key, 1}).front();
  }

  std::vector<std::string> ReadProfileStrings(const std::string& path, std::string_view section,
                                              std::span<const std::string_view> keys) override {
    try {
      return FindProfileStrings(*OpenForReading(path), section, keys);
    } catch (const Failure&) {
    } catch (const std::bad_alloc&) {
    }
    return std::vector<std::string>(keys.size());
  }
};

}  // namespace

FileSystem& SystemFiles() {
  static PosixFileSystem files;
  return files;
}

}  // namespace tessary
