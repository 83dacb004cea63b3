#include "platform/file_system.h"

#include <algorithm>

namespace tessary {

std::string ReadWholeFile(FileReader& file) {
  // A hint may be far off (sparse files), so memory beyond these bounds is taken step by step.
  constexpr std::size_t kFirstBlock = 4096;
  constexpr std::size_t kLargestReserve = std::size_t{64} << 20;
  std::string contents;
  contents.resize(std::clamp(file.SizeHint() + 1, kFirstBlock, kLargestReserve));
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

}  // namespace tessary
