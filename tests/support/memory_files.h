#pragma once

#include <limits>
#include <map>
#include <set>
#include <string>

#include "platform/file_system.h"

namespace tessary {

// A file system in memory that answers like the real one. Paths are normalised only so far that
// several separators in a row count as one and a trailing one does not count. A replacement is
// atomic, needing room for the old and the new contents, unless the test asks for in place; the
// commit then writes as much of the new contents as the disk takes.
class MemoryFiles : public FileSystem {
 public:
  // Creates or overwrites a file, and the folders above it.
  void Put(const std::string& path, std::string contents);
  // Creates a folder and those above it.
  void PutFolder(const std::string& path);
  // The contents of a file, which must exist.
  const std::string& Get(const std::string& path) const;
  void Remove(const std::string& path);
  // A read-only file can be read but not be opened for replacing.
  void SetReadOnly(const std::string& path, bool read_only = true);
  // Has one file, or every file, replaced in place.
  void SetInPlace(const std::string& path) { in_place_.insert(Normalised(path)); }
  void SetAllInPlace(bool in_place = true) { all_in_place_ = in_place; }
  // Limits what all files may hold together; Failure 61 beyond it.
  void SetCapacity(std::size_t bytes) { capacity_ = bytes; }
  // Makes `link` another path of `target`, a file that may be missing.
  void PutLink(const std::string& link, const std::string& target);
  // Every file by its path.
  const std::map<std::string, std::string>& files() const { return files_; }

  bool FileExists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  std::vector<std::string> ListFiles(const std::string& folder) override;
  std::unique_ptr<FileReader> OpenForReading(const std::string& path) override;
  std::unique_ptr<FileReplacement> OpenForReplacing(const std::string& path) override;
  std::uint64_t RoomBeside(const std::string&) override { return FreeSpace(); }
  void CopyFile(const std::string& from, const std::string& to) override;
  void RenameFile(const std::string& from, const std::string& to) override;
  bool SameContents(const std::string& a, const std::string& b) override;
  void CreateFolder(const std::string& path) override;
  std::unique_ptr<FolderLock> TryLockFolder(const std::string& folder) override;
  void RemoveLeftovers(const std::string& folder) override;
  std::string IdentityOf(const std::string& path) override;
  // Tells contents apart, which is more than the real one can.
  std::string StampOf(const std::string& path) override;
  std::string ReadProfileString(const std::string& path, std::string_view section,
                                std::string_view key) override;

 private:
  class Reader;
  class Replacement;
  class Lock;

  static std::string Normalised(const std::string& path);
  // The normalised path of the file itself, with a link followed.
  std::string Resolved(const std::string& path) const;
  bool HasFolder(const std::string& normalised) const;
  bool IsInPlace(const std::string& normalised) const;
  std::size_t FreeSpace() const;
  // Raises Failure unless the folder of the normalised path exists.
  void RequireFolderOf(const std::string& normalised) const;
  // The contents of a file; raises Failure when there is none.
  const std::string& Existing(const std::string& path) const;

  std::map<std::string, std::string> files_;
  std::map<std::string, std::string> links_;
  std::set<std::string> folders_;
  std::set<std::string> locked_;
  std::set<std::string> read_only_;
  std::set<std::string> in_place_;
  bool all_in_place_ = false;
  std::size_t capacity_ = std::numeric_limits<std::size_t>::max();
};

}  // namespace tessary
