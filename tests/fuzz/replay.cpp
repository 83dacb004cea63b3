// Runs a fuzz target once for every file of the folders handed in. The name of the file is told
// before it is used, so that the last name belongs to a crash.

#include <algorithm>
#include <cstdio>
#include <filesystem>
#include <string>
#include <vector>

#include "fuzz/fuzz_target.h"
#include "support/temporary_folder.h"

int main(int argc, char** argv) {
  std::vector<std::string> paths;
  for (int i = 1; i < argc; ++i) {
    for (const auto& entry : std::filesystem::directory_iterator(tessary::LibraryPath(argv[i]))) {
      paths.push_back(tessary::TextOf(entry.path()));
    }
  }
  std::sort(paths.begin(), paths.end());
  for (const std::string& path : paths) {
    std::fprintf(stderr, "%s\n", path.c_str());
    const std::string bytes = tessary::GetFile(path);
    LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
  }
  std::printf("%zu inputs replayed\n", paths.size());
  return paths.empty() ? 1 : 0;
}
