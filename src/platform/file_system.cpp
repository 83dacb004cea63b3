#include "platform/file_system.h"

#include <algorithm>

#include "platform/failure.h"
#include "platform/path.h"

namespace tessary {

namespace {

constexpr std::size_t kBlockSize = std::size_t{64} << 10;

// Reads until the block is full or the file ends.
std::size_t FillBlock(FileReader& file, std::string& block) {
  std::size_t used = 0;
  while (used < block.size()) {
    const std::size_t count = file.Read(block.data() + used, block.size() - used);
    if (count == 0) break;
    used += count;
  }
  return used;
}

}  // namespace

void FileSystem::CheckCreatingFolder(const std::string& path) {
  if (FileExists(path) || FolderExists(path)) throw Failure(kFileExists);
  if (!FolderExists(ParentFolderOf(path))) throw Failure(kPathNotFound);
}

bool FileSystem::AddCopy(const std::string& from, const std::string& to) {
  if (FileExists(to) && !SameContents(from, to)) return false;
  CopyFile(from, to);
  return true;
}

std::string FileSystem::IdentityOf(const std::string& path) {
  return FileExists(path) ? path : std::string();
}

std::vector<std::string> FileSystem::ReadProfileStrings(const std::string& path,
                                                        std::string_view section,
                                                        std::span<const std::string_view> keys) {
  std::vector<std::string> values;
  for (const std::string_view key : keys) values.push_back(ReadProfileString(path, section, key));
  return values;
}

bool FileSystem::SameFolder(const std::string& a, const std::string& b) {
  return WithoutTrailingSeparator(a) == WithoutTrailingSeparator(b);
}

std::string ReadWholeFile(FileReader& file) {
  // A hint may be far off (sparse files), so memory beyond these bounds is taken step by step.
  constexpr std::size_t kFirstBlock = 4096;
  constexpr std::size_t kLargestReserve = std::size_t{64} << 20;
  const std::size_t size = std::clamp(file.SizeHint() + 1, kFirstBlock, kLargestReserve);
  std::string contents;
  contents.reserve(size + size / 16);  // decoding makes it longer
  contents.resize(size);
  std::size_t used = 0;
  while (true) {
    if (used == contents.size()) contents.resize(2 * contents.size());
    const std::size_t count = file.Read(contents.data() + used, contents.size() - used);
    if (count == 0) break;
    used += count;
  }
  contents.resize(used);
  return contents;
}

std::string ReadBeginning(FileReader& file, std::size_t size) {
  std::string beginning(size, '\0');
  beginning.resize(FillBlock(file, beginning));
  return beginning;
}

bool SameBytes(FileReader& a, FileReader& b) {
  std::string block_a(kBlockSize, '\0');
  std::string block_b(kBlockSize, '\0');
  while (true) {
    const std::size_t size_a = FillBlock(a, block_a);
    const std::size_t size_b = FillBlock(b, block_b);
    if (size_a != size_b || block_a.compare(0, size_a, block_b, 0, size_b) != 0) return false;
    if (size_a == 0) return true;
  }
}

}  // namespace tessary
