#pragma once

#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "platform/windows/file_handle.h"

namespace tessary {

// An empty file beside a target that will take the target's place, or disappear when the object is
// destroyed before that. Nobody else can open it until then, so that another run can tell it from
// the left-over of a run that died.
class TemporaryFile {
 public:
  // Creates the file that belongs to the native path `target`. Nothing, and the last error set,
  // when the folder does not take new files. Raises Failure 70 when another run is about to
  // replace the same target.
  static std::unique_ptr<TemporaryFile> TryCreate(const std::wstring& target, DWORD attributes);

  ~TemporaryFile();
  TemporaryFile(const TemporaryFile&) = delete;
  TemporaryFile& operator=(const TemporaryFile&) = delete;

  HANDLE handle() const { return handle_.get(); }
  const std::wstring& path() const { return path_; }

  // Ends the writing, so that the file can be renamed.
  void Close() { handle_.Close(); }
  // Leaves the file to its new name.
  void Release() { path_.clear(); }

 private:
  TemporaryFile(FileHandle handle, std::wstring path);

  FileHandle handle_;
  std::wstring path_;  // Empty once the file has moved.
};

// The name under which the old contents of the file `name` stand beside it for the moment of its
// replacement. It tells the file's own name, so that a run that dies in that moment loses nothing.
// Nothing when it would be longer than names can be.
std::optional<std::string> BackupNameFor(std::string_view name);

// The name of the file that a backup of this name belongs to; nothing for any other name.
std::optional<std::string> NameOfBackup(std::string_view name);

// Removes what dead runs left in the folder of a native path: their temporary files, and backups of
// files that are there. The backup of a missing file gets the file's name back. Never fails.
void RemoveDeadFiles(const std::wstring& folder);

// The path of that name beside a target.
std::optional<std::wstring> BackupPathOf(const std::wstring& target);

// Does what RemoveDeadFiles does with a backup, for that of `target` alone.
void SettleBackupOf(const std::wstring& target);

}  // namespace tessary
