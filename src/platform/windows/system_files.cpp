#include <algorithm>
#include <new>

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/file_system.h"
#include "platform/path.h"
#include "platform/text.h"
#include "platform/windows/directory.h"
#include "platform/windows/file_replacement.h"
#include "platform/windows/native_path.h"
#include "platform/windows/profile_reader.h"
#include "platform/windows/temporary_file.h"
#include "platform/windows/windows_errors.h"
#include "platform/windows/windows_io.h"

namespace tessary {

namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

OpenedFile OpenToRead(const std::string& path) {
  return OpenRegularFile(NativeFilePath(path), GENERIC_READ, kShareAll);
}

class WindowsReader final : public FileReader {
 public:
  explicit WindowsReader(OpenedFile file)
      : file_(std::move(file)), expected_(static_cast<std::size_t>(file_.size())) {}

  std::size_t Read(char* buffer, std::size_t size) override {
    const std::size_t count = ReadSome(file_.handle.get(), buffer, size);
    expected_ -= std::min(count, expected_);
    return count;
  }

  std::size_t SizeHint() const override { return expected_; }

 private:
  OpenedFile file_;
  std::size_t expected_;
};

// True when `path` names the opened file, by whatever name.
bool Names(const std::wstring& path, const OpenedFile& file) {
  FileHandle handle = TryOpen(path, 0, kShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!handle.is_open()) return false;
  OpenedFile other{std::move(handle), {}};
  return GetFileInformationByHandle(other.handle.get(), &other.info) && IsSameFile(file, other);
}

// The attributes of what `path` names, links followed; INVALID_FILE_ATTRIBUTES when it names
// nothing.
DWORD AttributesOf(const std::string& path) {
  try {
    const std::wstring native = NativePath(path);
    const DWORD attributes = GetFileAttributesW(native.c_str());
    const bool is_link =
        attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0;
    const bool is_there =
        !is_link ||
        TryOpen(native, 0, kShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS).is_open();
    return is_there ? attributes : INVALID_FILE_ATTRIBUTES;
  } catch (const Failure&) {
    return INVALID_FILE_ATTRIBUTES;
  }
}

// A file that is about to disappear can be opened as little as one that is in use.
bool IsHeldByOther(DWORD error, const std::wstring& lock_file) {
  return error == ERROR_SHARING_VIOLATION ||
         (error == ERROR_ACCESS_DENIED &&
          GetFileAttributesW(lock_file.c_str()) != INVALID_FILE_ATTRIBUTES);
}

// Writes what `source` holds, with the status that its copy gets, and commits nothing.
void CopyInto(WindowsReplacement& copy, const OpenedFile& source) {
  copy.CopyStatus(source);
  std::string block(kBlockSize, '\0');
  while (const std::size_t size = ReadSome(source.handle.get(), block.data(), block.size()))
    copy.Write(std::string_view(block).substr(0, size));
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

class WindowsFolderLock final : public FolderLock {
 public:
  explicit WindowsFolderLock(FileHandle handle) : handle_(std::move(handle)) {}

 private:
  FileHandle handle_;
};

class WindowsFileSystem final : public FileSystem {
 public:
  bool FileExists(const std::string& path) override {
    const DWORD attributes = AttributesOf(path);
    const bool is_folder_path = path.ends_with('\\') || path.ends_with('/');
    return attributes != INVALID_FILE_ATTRIBUTES && !is_folder_path &&
           (attributes & FILE_ATTRIBUTE_DIRECTORY) == 0;
  }

  bool FolderExists(const std::string& path) override {
    const DWORD attributes = AttributesOf(path);
    return attributes != INVALID_FILE_ATTRIBUTES && (attributes & FILE_ATTRIBUTE_DIRECTORY) != 0;
  }

  std::vector<std::string> ListFiles(const std::string& folder) override {
    std::vector<std::string> names = RegularFileNames(NativePath(folder));
    DropServiceFiles(names);
    SortFileNames(names);
    return names;
  }

  std::unique_ptr<FileReader> OpenForReading(const std::string& path) override {
    return std::make_unique<WindowsReader>(OpenToRead(path));
  }

  std::unique_ptr<FileReplacement> OpenForReplacing(const std::string& path) override {
    return OpenReplacement(path);
  }

  void CopyFile(const std::string& from, const std::string& to) override {
    const OpenedFile source = OpenToRead(from);
    if (Names(NativePath(to), source)) throw Failure(kPermissionDenied);
    const auto copy = OpenReplacement(to);
    CopyInto(*copy, source);
    copy->Commit();
  }

  bool AddCopy(const std::string& from, const std::string& to) override {
    const OpenedFile source = OpenToRead(from);
    if (Names(NativePath(to), source)) throw Failure(kPermissionDenied);
    if (FileExists(to)) return SameContents(from, to);
    return CopyToNewFile(source, to);
  }

  void RenameFile(const std::string& from, const std::string& to) override {
    const std::wstring source = NativeFilePath(from);
    const std::wstring target = NativeFilePath(to);
    if (IsFolder(source)) throw Failure(kPathFileAccess);
    // Without the flags for replacing and for copying to another disk.
    if (!MoveFileExW(source.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH)) FailWithLastError();
  }

  bool SameContents(const std::string& a, const std::string& b) override {
    try {
      return SameBytes(*OpenForReading(a), *OpenForReading(b));
    } catch (const Failure&) {
      return false;
    }
  }

  void CreateFolder(const std::string& path) override {
    if (!CreateDirectoryW(NativePath(path).c_str(), nullptr)) FailWithLastError();
  }

  // A folder cannot be locked itself. The system removes the file with its last handle.
  std::unique_ptr<FolderLock> TryLockFolder(const std::string& folder) override {
    try {
      const std::wstring path = NativePath(JoinPath(folder, std::string(kLockFileName)));
      FileHandle handle = TryOpen(path, GENERIC_WRITE | DELETE, 0, OPEN_ALWAYS,
                                  FILE_ATTRIBUTE_HIDDEN | FILE_FLAG_DELETE_ON_CLOSE);
      if (!handle.is_open() && IsHeldByOther(GetLastError(), path)) return nullptr;
      return std::make_unique<WindowsFolderLock>(std::move(handle));
    } catch (const Failure&) {
      return std::make_unique<WindowsFolderLock>(FileHandle());
    }
  }

  void CheckReplacing(const std::string& path) override { CheckReplacement(path); }

  void CheckCreatingFolder(const std::string& path) override {
    FileSystem::CheckCreatingFolder(path);
    CheckNewFile(NativePath(path));
  }

  std::string IdentityOf(const std::string& path) override {
    if (!FileExists(path)) return {};
    OpenedFile file{TryOpen(NativePath(path), 0, kShareAll), {}};
    // A file that cannot be asked is still there, under its name at least.
    if (!GetFileInformationByHandle(file.handle.get(), &file.info)) return FoldCase(path);
    return std::to_string(file.info.dwVolumeSerialNumber) + " " +
           std::to_string(std::uint64_t{file.info.nFileIndexHigh} << 32 | file.info.nFileIndexLow);
  }

  // The time of change tells of writers who put the time of the last writing back.
  std::string StampOf(const std::string& path) override {
    if (!FileExists(path)) return {};
    OpenedFile file{TryOpen(NativePath(path), 0, kShareAll), {}};
    FILE_BASIC_INFO times;
    if (!GetFileInformationByHandle(file.handle.get(), &file.info) ||
        !GetFileInformationByHandleEx(file.handle.get(), FileBasicInfo, &times, sizeof times))
      return {};
    std::string stamp;
    for (const auto part :
         {std::int64_t{file.info.dwVolumeSerialNumber}, std::int64_t{file.info.nFileIndexHigh},
          std::int64_t{file.info.nFileIndexLow}, static_cast<std::int64_t>(file.size()),
          std::int64_t{times.LastWriteTime.QuadPart}, std::int64_t{times.ChangeTime.QuadPart}})
      stamp.append(std::to_string(part)).append(" ");
    return stamp;
  }

  bool SameFolder(const std::string& a, const std::string& b) override {
    if (FileSystem::SameFolder(a, b)) return true;
    if (!FolderExists(a) || !FolderExists(b)) return false;
    OpenedFile folder{
        TryOpen(NativePath(a), 0, kShareAll, OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS), {}};
    return GetFileInformationByHandle(folder.handle.get(), &folder.info) &&
           Names(NativePath(b), folder);
  }

  void RemoveLeftovers(const std::string& folder) override {
    try {
      RemoveDeadFiles(NativePath(folder));
    } catch (const Failure&) {
      // A folder of no such name has no left-overs.
    }
  }

  std::string ReadProfileString(const std::string& path, std::string_view section,
                                std::string_view key) override {
    try {
      return SystemProfileString(*OpenForReading(path), path, section, key);
    } catch (const Failure&) {
    } catch (const std::bad_alloc&) {
    }
    return std::string();
  }
};

}  // namespace

FileSystem& SystemFiles() {
  static WindowsFileSystem files;
  return files;
}

}  // namespace tessary
