// A temporary file's name follows from its target's name, so what a dead run left is met again and
// removed. The system refuses to remove or rename a file that a living run has open, so trying is
// enough to tell the two apart.

#include "platform/windows/temporary_file.h"

#include "platform/failure.h"
#include "platform/file_names.h"
#include "platform/windows/directory.h"
#include "platform/windows/native_path.h"
#include "platform/windows/wide_text.h"
#include "platform/windows/windows_errors.h"
#include "platform/windows/windows_io.h"

namespace tessary {

namespace {

constexpr std::string_view kBackupPrefix = "~tessary-";
constexpr std::string_view kBackupSuffix = ".~old";

FileHandle TryCreateNew(const std::wstring& path, DWORD attributes) {
  return TryOpen(path, GENERIC_READ | GENERIC_WRITE, 0, CREATE_NEW, attributes);
}

bool IsTaken(DWORD error) { return error == ERROR_FILE_EXISTS || error == ERROR_ALREADY_EXISTS; }

// Creates the file, removing a dead left-over of the same name; not open when that fails.
FileHandle TryCreateAt(const std::wstring& path, DWORD attributes) {
  FileHandle handle = TryCreateNew(path, attributes);
  if (handle.is_open() || !IsTaken(GetLastError())) return handle;
  if (DeleteFileW(path.c_str())) return TryCreateNew(path, attributes);
  if (GetLastError() == ERROR_SHARING_VIOLATION) throw Failure(kPermissionDenied);
  SetLastError(ERROR_FILE_EXISTS);
  return handle;
}

void SettleBackup(const std::wstring& backup, const std::wstring& target) {
  if (MoveFileExW(backup.c_str(), target.c_str(), MOVEFILE_WRITE_THROUGH)) return;
  if (IsTaken(GetLastError()) && !IsFolder(target)) DeleteFileW(backup.c_str());
}

}  // namespace

std::unique_ptr<TemporaryFile> TemporaryFile::TryCreate(const std::wstring& target,
                                                        DWORD attributes) {
  constexpr unsigned kMostAttempts = 8;
  const std::string name = NativeFileName(target);
  for (unsigned attempt = 0; attempt < kMostAttempts; ++attempt) {
    std::wstring path = NativeSibling(target, TemporaryNameFor(name, attempt));
    FileHandle handle = TryCreateAt(path, attributes);
    if (handle.is_open())
      return std::unique_ptr<TemporaryFile>(new TemporaryFile(std::move(handle), std::move(path)));
    if (!IsTaken(GetLastError())) return nullptr;
  }
  throw Failure(kPermissionDenied);
}

TemporaryFile::TemporaryFile(FileHandle handle, std::wstring path)
    : handle_(std::move(handle)), path_(std::move(path)) {}

TemporaryFile::~TemporaryFile() {
  Close();
  if (!path_.empty()) DeleteFileW(path_.c_str());
}

std::optional<std::string> BackupNameFor(std::string_view name) {
  constexpr std::size_t kLongestName = 255;
  std::string backup = std::string(kBackupPrefix).append(name).append(kBackupSuffix);
  if (WideFromUtf8(backup).size() > kLongestName) return std::nullopt;
  return backup;
}

std::optional<std::string> NameOfBackup(std::string_view name) {
  if (!name.starts_with(kBackupPrefix) || !name.ends_with(kBackupSuffix)) return std::nullopt;
  if (name.size() <= kBackupPrefix.size() + kBackupSuffix.size()) return std::nullopt;
  name.remove_prefix(kBackupPrefix.size());
  name.remove_suffix(kBackupSuffix.size());
  return std::string(name);
}

void RemoveDeadFiles(const std::wstring& folder) {
  try {
    const std::wstring inside = folder.ends_with(L'\\') ? folder : folder + L'\\';
    for (const std::string& name : RegularFileNames(folder)) {
      const std::wstring path = NativeSibling(inside, name);
      if (IsTemporaryName(name)) DeleteFileW(path.c_str());
      if (const auto target = NameOfBackup(name))
        SettleBackup(path, NativeSibling(inside, *target));
    }
  } catch (const std::exception&) {
    // The left-overs do no harm; the next run finds them again.
  }
}

std::optional<std::wstring> BackupPathOf(const std::wstring& target) {
  const auto name = BackupNameFor(NativeFileName(target));
  return name ? std::optional(NativeSibling(target, *name)) : std::nullopt;
}

void SettleBackupOf(const std::wstring& target) {
  if (const auto backup = BackupPathOf(target)) SettleBackup(*backup, target);
}

}  // namespace tessary
