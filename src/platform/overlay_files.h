#pragma once

#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <vector>

#include "platform/file_system.h"

namespace tessary {

// Another file system as it would look after changes that are kept in memory and never reach it.
// What would fail there before anything is written (a missing folder, a file that must not be
// written) fails here too; a full disk shows only when something is really written.
class OverlayFiles : public FileSystem {
 public:
  // `base` must outlive this object and keep still meanwhile.
  explicit OverlayFiles(FileSystem& base) : base_(base) {}

  bool FileExists(const std::string& path) override;
  bool FolderExists(const std::string& path) override;
  std::vector<std::string> ListFiles(const std::string& folder) override;
  std::unique_ptr<FileReader> OpenForReading(const std::string& path) override;
  std::unique_ptr<FileReplacement> OpenForReplacing(const std::string& path) override;
  void CopyFile(const std::string& from, const std::string& to) override;
  void RenameFile(const std::string& from, const std::string& to) override;
  bool SameContents(const std::string& a, const std::string& b) override;
  void CreateFolder(const std::string& path) override;
  // What changes nothing keeps nobody away.
  std::unique_ptr<FolderLock> TryLockFolder(const std::string&) override {
    return std::make_unique<FolderLock>();
  }
  void RemoveLeftovers(const std::string&) override {}
  std::string ReadProfileString(const std::string& path, std::string_view section,
                                std::string_view key) override;
  std::string IdentityOf(const std::string& path) override;

 private:
  class Reader;
  class Replacement;
  using Contents = std::shared_ptr<const std::string>;

  // A file: who it is, and where the file below is whose contents it has until it is written.
  struct File {
    std::string identity;
    std::string base_path;
  };

  // A path in the one form in which it is kept.
  static std::string Normalised(const std::string& path);
  // The file of this path; nothing when there is none.
  std::optional<File> Find(const std::string& path);
  File Existing(const std::string& path);
  // What has been written to a file; null when nothing has.
  Contents WrittenTo(const File& file) const;
  // Raises what writing to `path` in the file system below would.
  void CheckWriting(const std::string& path);
  // The file that a write to `path` changes, which may be a new one.
  File FileForWriting(const std::string& path);

  FileSystem& base_;
  std::map<std::string, std::optional<File>> names_;  // changed paths; nothing where one has gone
  std::map<std::string, Contents> contents_;          // by identity
  std::set<std::string> folders_;
};

}  // namespace tessary
