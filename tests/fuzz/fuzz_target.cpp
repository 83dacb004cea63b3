#include "fuzz/fuzz_target.h"

#include <algorithm>
#include <cstdio>
#include <cstdlib>
#include <string_view>

#include "platform/text.h"

namespace tessary::fuzz {

void Require(bool holds, const char* what) {
  if (holds) return;
  std::fprintf(stderr, "broken: %s\n", what);
  std::abort();
}

std::string Bytes(const std::uint8_t* data, std::size_t size) {
  return std::string(data, data + size);
}

std::vector<std::string> Parts(const std::uint8_t* data, std::size_t size, std::size_t count) {
  constexpr std::string_view kCut = "%%\n";
  std::vector<std::string> parts;
  std::string rest = Bytes(data, size);
  while (parts.size() + 1 < count) {
    const std::size_t cut = rest.find(kCut);
    parts.push_back(rest.substr(0, cut));
    rest.erase(0, cut == std::string::npos ? cut : cut + kCut.size());
  }
  parts.push_back(rest);
  return parts;
}

std::vector<std::string> FileLines(const std::string& bytes) {
  std::vector<std::string> lines;
  const std::string text = DecodeWindows1252(bytes);
  for (std::size_t start = 0; start < text.size();) {
    const std::size_t end = std::min(text.find('\n', start), text.size());
    std::string line = text.substr(start, end - start);
    if (line.ends_with('\r')) line.pop_back();
    lines.push_back(std::move(line));
    start = end + 1;
  }
  return lines;
}

}  // namespace tessary::fuzz
