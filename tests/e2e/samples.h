#pragma once

#include <filesystem>
#include <string>

#include "support/temporary_folder.h"

namespace tessary {

// The path of a file or folder of the samples.
inline std::filesystem::path Sample(const std::string& path) {
  return LibraryPath(TESSARY_SAMPLES) / LibraryPath(path);
}

// Copies a file or a folder with all it holds; the folder it is copied into is created.
inline void CopySample(const std::string& path, const std::string& target) {
  namespace fs = std::filesystem;
  fs::create_directories(LibraryPath(target).parent_path());
  fs::copy(Sample(path), LibraryPath(target), fs::copy_options::recursive);
}

}  // namespace tessary
