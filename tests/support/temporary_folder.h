#pragma once

#include <filesystem>
#include <map>
#include <string>
#include <string_view>
#include <vector>

namespace tessary {

// An empty folder on the disk, removed with all it holds at the end.
class TemporaryFolder {
 public:
  TemporaryFolder();
  ~TemporaryFolder();
  TemporaryFolder(const TemporaryFolder&) = delete;
  TemporaryFolder& operator=(const TemporaryFolder&) = delete;

  const std::string& path() const { return path_; }
  // The path of something in the folder; "/" stands for the system's separator.
  std::string operator/(std::string_view name) const;

 private:
  std::string path_;
};

// A path of this project for the library, whose own conversion takes other bytes on some systems;
// and back.
std::filesystem::path LibraryPath(std::string_view path);
std::string TextOf(const std::filesystem::path& path);

// Files on the disk, without the code under test. The names are in order.
std::vector<std::string> FileNamesIn(const std::string& folder);
void PutFile(const std::string& path, std::string_view contents);
std::string GetFile(const std::string& path);

// Every file below `folder` by its path there, with its contents.
std::map<std::string, std::string> FilesBelow(const std::string& folder);

}  // namespace tessary
