#include "support/real_files_test_base.h"

#include <cstdlib>
#include <filesystem>

#include "platform/text.h"

namespace tessary {

namespace fs = std::filesystem;

std::vector<std::string> LinesOf(const std::string& path) {
  std::vector<std::string> lines;
  std::string rest = DecodeWindows1252(GetFile(path));
  for (std::size_t end; (end = rest.find("\r\n")) != std::string::npos; rest.erase(0, end + 2))
    lines.push_back(rest.substr(0, end));
  if (!rest.empty()) lines.push_back(rest);
  return lines;
}

bool HasWindowsLineEnds(std::string_view contents) {
  for (std::size_t i = 0; i < contents.size(); ++i) {
    if (contents[i] == '\n' && (i == 0 || contents[i - 1] != '\r')) return false;
  }
  return contents.empty() || contents.ends_with("\r\n");
}

std::string RealFilesTest::PutFolder(std::string_view path) {
  fs::create_directories(LibraryPath(In(path)));
  return In(path);
}

std::string RealFilesTest::Put(std::string_view path, std::string_view contents) {
  fs::create_directories(LibraryPath(In(path)).parent_path());
  PutFile(In(path), contents);
  return In(path);
}

}  // namespace tessary
