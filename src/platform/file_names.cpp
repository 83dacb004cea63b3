#include "platform/file_names.h"

#include <algorithm>
#include <cstdint>

#include "platform/text.h"

namespace tessary {

namespace {

constexpr std::string_view kPrefix = "~tessary-";
constexpr std::string_view kSuffix = ".~tmp";
constexpr std::string_view kHexDigits = "0123456789abcdef";
constexpr std::size_t kDigitCount = 16;

// FNV-1a.
std::uint64_t HashOf(std::string_view name, std::uint64_t seed) {
  std::uint64_t hash = 0xCBF29CE484222325u ^ seed;
  for (const char c : name) hash = (hash ^ static_cast<unsigned char>(c)) * 0x100000001B3u;
  return hash;
}

}  // namespace

const std::string_view kLockFileName = "~tessary-lock.~tmp";

void SortFileNames(std::vector<std::string>& names) {
  std::sort(names.begin(), names.end(), [](const std::string& a, const std::string& b) {
    const int order = CompareIgnoreCase(a, b);
    return order != 0 ? order < 0 : a < b;
  });
}

std::string TemporaryNameFor(std::string_view name, unsigned attempt) {
  std::uint64_t hash = HashOf(name, attempt);
  std::string digits(kDigitCount, '0');
  for (auto digit = digits.rbegin(); digit != digits.rend(); ++digit, hash >>= 4)
    *digit = kHexDigits[hash & 0xF];
  return std::string(kPrefix).append(digits).append(kSuffix);
}

bool IsTemporaryName(std::string_view name) {
  if (name.size() != kPrefix.size() + kDigitCount + kSuffix.size()) return false;
  if (!name.starts_with(kPrefix) || !name.ends_with(kSuffix)) return false;
  const std::string_view digits = name.substr(kPrefix.size(), kDigitCount);
  return digits.find_first_not_of(kHexDigits) == std::string_view::npos;
}

void DropServiceFiles(std::vector<std::string>& names) {
  std::erase_if(names, [](const std::string& name) {
    return name.starts_with(kPrefix) && (name.ends_with(kSuffix) || name.ends_with(".~old"));
  });
}

}  // namespace tessary
