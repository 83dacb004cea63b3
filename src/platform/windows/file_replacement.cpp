// Two ways of replacing a file. The safe one writes a temporary file beside it, with which the
// system replaces the file as a whole, so that attributes, access list and time of creation stay.
// The system does that in two renames and always with a backup name, so that whatever happens in
// between, the old contents are there under one name or the other. Where a new file would lose
// something (other names of the file), or the folder takes no new file, or the system does not
// replace files, the new contents are collected in memory and written over the old ones at the end.

#include "platform/windows/file_replacement.h"

#include <cstddef>
#include <optional>
#include <vector>

#include "platform/failure.h"
#include "platform/windows/native_path.h"
#include "platform/windows/temporary_file.h"
#include "platform/windows/windows_errors.h"

namespace tessary {

namespace {

// The attributes that a file gets by its creation or a call; the others belong to its storage.
constexpr DWORD kSettableAttributes = FILE_ATTRIBUTE_HIDDEN | FILE_ATTRIBUTE_SYSTEM |
                                      FILE_ATTRIBUTE_ARCHIVE | FILE_ATTRIBUTE_NOT_CONTENT_INDEXED;

DWORD AttributesForNewFile(DWORD attributes) {
  const DWORD settable = attributes & kSettableAttributes;
  return settable != 0 ? settable : DWORD{FILE_ATTRIBUTE_NORMAL};
}

void SetChangeTime(const OpenedFile& source, FILE_BASIC_INFO& status) {
  status.LastWriteTime.LowPart = source.info.ftLastWriteTime.dwLowDateTime;
  status.LastWriteTime.HighPart = static_cast<LONG>(source.info.ftLastWriteTime.dwHighDateTime);
}

// Virus scanners and indexers look into a file that has just been closed, or keep its removal
// waiting, for a moment.
bool IsBusy(DWORD error) {
  return error == ERROR_SHARING_VIOLATION || error == ERROR_ACCESS_DENIED ||
         error == ERROR_UNABLE_TO_REMOVE_REPLACED || error == ERROR_UNABLE_TO_MOVE_REPLACEMENT;
}

// Repeats a call as long as somebody else is busy with the file; 0 or the last error.
template <typename Call>
DWORD ErrorOf(Call call) {
  constexpr int kMostAttempts = 10;
  constexpr DWORD kPause = 20;
  for (int attempt = 1;; ++attempt) {
    if (call()) return ERROR_SUCCESS;
    const DWORD error = GetLastError();
    if (!IsBusy(error) || attempt == kMostAttempts) return error;
    Sleep(kPause);
  }
}

bool IsHalfDone(DWORD error) { return error == ERROR_UNABLE_TO_MOVE_REPLACEMENT_2; }

// The system keeps the access list when it replaces a file, but not everything that passes for the
// system does (Wine, some file servers). A file without an access list has none to keep.
void CopyAccessList(const std::wstring& from, const std::wstring& to) {
  DWORD size = 0;
  GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, nullptr, 0, &size);
  std::vector<std::byte> list(size);
  if (size != 0 &&
      GetFileSecurityW(from.c_str(), DACL_SECURITY_INFORMATION, list.data(), size, &size)) {
    SetFileSecurityW(to.c_str(), DACL_SECURITY_INFORMATION, list.data());
  }
}

class InPlaceReplacement final : public WindowsReplacement {
 public:
  explicit InPlaceReplacement(OpenedFile file, const FILE_BASIC_INFO& status = {})
      : file_(std::move(file)), status_(status) {}

  void Write(std::string_view bytes) override { contents_.append(bytes); }

  void Commit() override {
    if (committed_) throw Failure(kInvalidCall);
    committed_ = true;
    ReserveSpace();
    WriteContents();
    SetFileInformationByHandle(handle(), FileBasicInfo, &status_, sizeof status_);
    Flush(handle());
    damaged_ = false;
  }

  bool Damaged() const override { return damaged_; }

  void CopyStatus(const OpenedFile& source) override { SetChangeTime(source, status_); }

 private:
  HANDLE handle() const { return file_.handle.get(); }

  // A disk without room for the new contents shows while the old ones are still whole.
  void ReserveSpace() {
    if (contents_.size() <= file_.size() || TryResize(handle(), contents_.size())) return;
    const DWORD error = GetLastError();
    damaged_ = !TryResize(handle(), file_.size());
    FailWith(error);
  }

  void WriteContents() {
    // A write that fails may have written all the same, as over a network.
    damaged_ = true;
    for (std::string_view rest = contents_; !rest.empty();)
      rest.remove_prefix(WriteSome(handle(), rest));
    if (!TryResize(handle(), contents_.size())) FailWithLastError();
  }

  OpenedFile file_;
  std::string contents_;
  bool committed_ = false;
  bool damaged_ = false;
  FILE_BASIC_INFO status_;  // What is zero stays as it is.
};

class TemporaryReplacement final : public WindowsReplacement {
 public:
  // `replaced` is the target as long as it may not change, or nothing when it is new. With
  // `new_only` a file that has taken the name by then is left alone.
  TemporaryReplacement(std::wstring target, std::unique_ptr<TemporaryFile> file,
                       std::optional<OpenedFile> replaced, bool new_only = false)
      : target_(std::move(target)),
        file_(std::move(file)),
        replaced_(std::move(replaced)),
        new_only_(new_only) {}

  void Write(std::string_view bytes) override {
    // Once a part of the contents is lost there is nothing left to commit.
    usable_ = false;
    WriteAll(file_->handle(), bytes);
    usable_ = true;
  }

  void Commit() override {
    if (!usable_) throw Failure(kInvalidCall);
    usable_ = false;
    SetFileInformationByHandle(file_->handle(), FileBasicInfo, &status_, sizeof status_);
    Flush(file_->handle());
    file_->Close();
    if (replaced_) {
      ReplaceTarget();
    } else {
      CreateTarget();
    }
  }

  bool Damaged() const override { return damaged_; }

  void CopyStatus(const OpenedFile& source) override {
    SetChangeTime(source, status_);
    if (!replaced_) status_.FileAttributes = AttributesForNewFile(source.info.dwFileAttributes);
  }

 private:
  void CreateTarget() {
    const DWORD replacing = new_only_ ? 0 : DWORD{MOVEFILE_REPLACE_EXISTING};
    const DWORD error = ErrorOf([&] {
      return MoveFileExW(file_->path().c_str(), target_.c_str(),
                         replacing | MOVEFILE_WRITE_THROUGH);
    });
    if (error != ERROR_SUCCESS) FailWith(error);
    file_->Release();
  }

  void ReplaceTarget() {
    const std::wstring backup = BackupPathOf(target_).value();
    // Not every file server renames a file that is open.
    replaced_->handle.Close();
    CopyAccessList(target_, file_->path());
    const DWORD error = ErrorOf([&] {
      return ReplaceFileW(target_.c_str(), file_->path().c_str(), backup.c_str(), 0, nullptr,
                          nullptr);
    });
    if (error == ERROR_SUCCESS || (IsHalfDone(error) && FinishReplacing(backup))) {
      file_->Release();
      DeleteFileW(backup.c_str());
    } else if (IsHalfDone(error)) {
      FailWith(error);
    } else {
      OverwriteTarget(error);
    }
  }

  // Both files are as they were. On some file servers users may write files but not hand an access
  // list on to them; where the target itself can be written, that does without.
  void OverwriteTarget(DWORD replace_error) {
    const FileHandle contents = TryOpen(file_->path(), GENERIC_READ, FILE_SHARE_READ);
    FileHandle target = TryOpen(target_, GENERIC_READ | GENERIC_WRITE, FILE_SHARE_READ);
    if (!contents.is_open() || !target.is_open()) FailWith(replace_error);
    InPlaceReplacement in_place(RequireRegular(std::move(target)), status_);
    std::string block(std::size_t{64} << 10, '\0');
    while (const std::size_t size = ReadSome(contents.get(), block.data(), block.size()))
      in_place.Write(std::string_view(block).substr(0, size));
    try {
      in_place.Commit();
    } catch (const Failure&) {
      damaged_ = in_place.Damaged();
      throw;
    }
  }

  // The old file has gone to its backup name and the new one has not come. Puts the new one there,
  // or else the old one back; false when the target is not the new file.
  bool FinishReplacing(const std::wstring& backup) {
    if (MoveFileExW(file_->path().c_str(), target_.c_str(), MOVEFILE_WRITE_THROUGH)) return true;
    MoveFileExW(backup.c_str(), target_.c_str(), MOVEFILE_WRITE_THROUGH);
    damaged_ = GetFileAttributesW(target_.c_str()) == INVALID_FILE_ATTRIBUTES;
    return false;
  }

  std::wstring target_;
  std::unique_ptr<TemporaryFile> file_;
  std::optional<OpenedFile> replaced_;
  bool new_only_;
  bool usable_ = true;
  bool damaged_ = false;
  FILE_BASIC_INFO status_{};  // What is zero stays as it is.
};

bool RefusesNewFiles(DWORD error) {
  return error == ERROR_ACCESS_DENIED || error == ERROR_WRITE_PROTECT ||
         error == ERROR_NETWORK_ACCESS_DENIED;
}

// Where a link leads; nothing when that has no path. Raises Failure when it leads nowhere.
std::optional<std::wstring> LinkTarget(const std::wstring& link) {
  const FileHandle file = TryOpen(link, 0, kShareAll);
  if (!file.is_open()) {
    const DWORD error = GetLastError();
    if (error == ERROR_FILE_NOT_FOUND) throw Failure(kPathNotFound);
    FailWith(error);
  }
  return FinalPathOf(file.get());
}

// The attributes of a file that may be replaced.
DWORD CheckedAttributes(const std::wstring& path) {
  const DWORD attributes = GetFileAttributesW(path.c_str());
  if (attributes == INVALID_FILE_ATTRIBUTES) FailWithLastError();
  if ((attributes & FILE_ATTRIBUTE_DIRECTORY) != 0) throw Failure(kPathFileAccess);
  if ((attributes & FILE_ATTRIBUTE_READONLY) != 0) throw Failure(kPermissionDenied);
  return attributes;
}

std::unique_ptr<WindowsReplacement> ReplaceInPlace(OpenedFile file) {
  return std::make_unique<InPlaceReplacement>(std::move(file));
}

// Opens the target so that it is clear whether it can be replaced, without touching it. A program
// that has it open and would be in the way shows here. Others may go on reading.
OpenedFile OpenTarget(const std::wstring& target, bool& removable) {
  constexpr DWORD kWriting = GENERIC_READ | GENERIC_WRITE;
  constexpr DWORD kShare = FILE_SHARE_READ | FILE_SHARE_DELETE;
  // Not kept open: most programs that read a file do not let it be removed at the same time.
  removable = TryOpen(target, kWriting | DELETE, kShare).is_open();
  if (!removable && GetLastError() != ERROR_ACCESS_DENIED) FailWithLastError();
  FileHandle handle = TryOpen(target, kWriting, kShare);
  if (!handle.is_open()) FailWithLastError();
  return RequireRegular(std::move(handle));
}

std::unique_ptr<WindowsReplacement> ReplaceExisting(std::wstring target) {
  DWORD attributes = CheckedAttributes(target);
  std::optional<std::wstring> real = target;
  if ((attributes & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    real = LinkTarget(target);
    if (real) SettleBackupOf(*real);
    attributes = CheckedAttributes(real.value_or(target));
  }
  bool removable = false;
  OpenedFile file = OpenTarget(target, removable);
  const bool has_one_name = file.info.nNumberOfLinks <= 1;
  if (!removable || !has_one_name || !real || !BackupPathOf(*real))
    return ReplaceInPlace(std::move(file));
  auto temporary = TemporaryFile::TryCreate(*real, AttributesForNewFile(attributes));
  if (temporary)
    return std::make_unique<TemporaryReplacement>(*std::move(real), std::move(temporary),
                                                  std::move(file));
  if (const DWORD error = GetLastError(); !RefusesNewFiles(error)) FailWith(error);
  return ReplaceInPlace(std::move(file));
}

std::unique_ptr<WindowsReplacement> CreateMissing(std::wstring target, bool new_only) {
  auto temporary = TemporaryFile::TryCreate(target, FILE_ATTRIBUTE_NORMAL);
  if (!temporary) FailWithLastError();
  return std::make_unique<TemporaryReplacement>(std::move(target), std::move(temporary),
                                                std::nullopt, new_only);
}

}  // namespace

void CheckReplacement(const std::string& path) {
  const std::wstring target = NativeFilePath(path);
  if (GetFileAttributesW(target.c_str()) == INVALID_FILE_ATTRIBUTES) {
    if (const DWORD error = GetLastError(); error != ERROR_FILE_NOT_FOUND) FailWith(error);
    return CheckNewFile(target);
  }
  if ((CheckedAttributes(target) & FILE_ATTRIBUTE_REPARSE_POINT) != 0) {
    CheckedAttributes(LinkTarget(target).value_or(target));
  }
  bool removable = false;
  OpenTarget(target, removable);
}

void CheckNewFile(const std::wstring& path) {
  const std::wstring folder = path.substr(0, path.find_last_of(L'\\') + 1);
  const FileHandle handle = TryOpen(folder, FILE_ADD_FILE | FILE_ADD_SUBDIRECTORY, kShareAll,
                                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS);
  if (!handle.is_open()) FailWithLastError();
}

std::unique_ptr<WindowsReplacement> OpenReplacement(const std::string& path) {
  std::wstring target = NativeFilePath(path);
  SettleBackupOf(target);
  const bool exists = GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES;
  if (exists) return ReplaceExisting(std::move(target));
  if (const DWORD error = GetLastError(); error != ERROR_FILE_NOT_FOUND) FailWith(error);
  return CreateMissing(std::move(target), false);
}

std::unique_ptr<WindowsReplacement> OpenNewFile(const std::string& path) {
  std::wstring target = NativeFilePath(path);
  SettleBackupOf(target);
  if (GetFileAttributesW(target.c_str()) != INVALID_FILE_ATTRIBUTES) throw Failure(kFileExists);
  if (const DWORD error = GetLastError(); error != ERROR_FILE_NOT_FOUND) FailWith(error);
  return CreateMissing(std::move(target), true);
}

}  // namespace tessary
