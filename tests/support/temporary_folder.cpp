#include "support/temporary_folder.h"

#include <algorithm>
#include <fstream>
#include <iterator>
#include <random>
#include <stdexcept>

#include "platform/path.h"

namespace tessary {

namespace fs = std::filesystem;

TemporaryFolder::TemporaryFolder() {
  std::random_device random;
  do {
    const std::string name = "tessary-test-" + std::to_string(random());
    path_ = JoinPath(TextOf(fs::canonical(fs::temp_directory_path())), name);
  } while (!fs::create_directory(LibraryPath(path_)));
}

TemporaryFolder::~TemporaryFolder() {
  std::error_code ignored;
  // A test may have taken away the right to remove what a folder holds.
  for (fs::recursive_directory_iterator entry(LibraryPath(path_), ignored), end; entry != end;
       entry.increment(ignored)) {
    if (!entry->is_symlink(ignored) && entry->is_directory(ignored))
      fs::permissions(entry->path(), fs::perms::owner_all, fs::perm_options::add, ignored);
  }
  fs::remove_all(LibraryPath(path_), ignored);
}

std::string TemporaryFolder::operator/(std::string_view name) const {
  std::string path = JoinPath(path_, name);
  std::replace(path.begin(), path.end(), '/', kPathSeparator);
  return path;
}

fs::path LibraryPath(std::string_view path) {
  return fs::path(std::u8string(path.begin(), path.end()));
}

std::string TextOf(const fs::path& path) {
  const std::u8string text = path.u8string();
  return std::string(text.begin(), text.end());
}

std::vector<std::string> FileNamesIn(const std::string& folder) {
  std::vector<std::string> names;
  for (const auto& entry : std::filesystem::directory_iterator(LibraryPath(folder))) {
    if (entry.is_regular_file()) names.push_back(TextOf(entry.path().filename()));
  }
  std::sort(names.begin(), names.end());
  return names;
}

void PutFile(const std::string& path, std::string_view contents) {
  std::ofstream file(LibraryPath(path), std::ios::binary | std::ios::trunc);
  file.write(contents.data(), static_cast<std::streamsize>(contents.size()));
  if (!file.flush()) throw std::runtime_error("cannot write " + path);
}

std::string GetFile(const std::string& path) {
  std::ifstream file(LibraryPath(path), std::ios::binary);
  if (!file) throw std::runtime_error("cannot read " + path);
  return std::string(std::istreambuf_iterator<char>(file), {});
}

std::map<std::string, std::string> FilesBelow(const std::string& folder) {
  std::map<std::string, std::string> files;
  for (const auto& entry : fs::recursive_directory_iterator(LibraryPath(folder))) {
    if (entry.is_regular_file()) {
      const fs::path name = entry.path().lexically_relative(LibraryPath(folder));
      files.emplace(TextOf(name.generic_u8string()), GetFile(TextOf(entry.path())));
    }
  }
  return files;
}

}  // namespace tessary
