// Only the first and last characters of a line and its first "=" are looked at, which costs far
// less than making elements of the lines. Whatever is not plain at this glance is left to those
// who read the contents.

#include "report/section_text.h"

#include <algorithm>
#include <vector>

#include "platform/ascii_run.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

constexpr std::int32_t kVariableLevel = 1;
constexpr std::int32_t kColumnLevel = 7;

void Move(std::int32_t& level, std::int32_t by) {
  const std::int64_t moved = std::int64_t{level} + by;
  if (moved < INT32_MIN || moved > INT32_MAX) throw Failure(kOverflow);
  level = static_cast<std::int32_t>(moved);
}

// The name of a property whose value is kept as it stands; empty where it takes more than a glance.
std::string_view PlainName(std::string_view line) {
  const auto equals = line.find('=');
  if (equals == std::string_view::npos || equals == 0 || line[equals - 1] == ' ') return {};
  const std::string_view value = TrimLeadingBlanks(line.substr(equals + 1));
  if (value.starts_with('@')) return {};
  return line.substr(0, equals);
}

// What tells elements of different names apart without regard to case; `text` is ASCII.
std::uint64_t HashIgnoreCase(std::string_view text, std::uint64_t seed) {
  constexpr std::uint64_t kFactor = 0x9E3779B97F4A7C15u;
  std::uint64_t hash = (seed + text.size()) * kFactor;
  const auto mix = [&](std::uint64_t word) {
    hash = (hash ^ LowerAsciiWord(word)) * kFactor;
    hash ^= hash >> 29;
  };
  while (text.size() >= kWordBytes) {
    mix(LoadWord(text.data()));
    text.remove_prefix(kWordBytes);
  }
  std::uint64_t rest = 0;
  for (const char c : text) rest = rest << 8 | static_cast<unsigned char>(c);
  mix(rest);
  return hash;
}

}  // namespace

BXLineType FollowLevel(std::string_view line, std::int32_t& level) {
  if (IsSectionLine(line)) {
    if (level == 0 || level == 1) level = IsLinesSection(line) ? 1 : 0;
    return bxltSection;
  }
  const bool opens = IsBlockStart(line);
  if (opens || IsBlockEnd(line)) {
    Move(level, opens ? 1 : -1);
    return bxltUnknown;
  }
  if (level == 0) level = 1;
  return bxltProperty;
}

bool LineWalker::Next() {
  if (rest_.empty()) return false;
  begin_ = rest_.data();
  line_ = TrimTabsAndBlanks(TakeLine(rest_));
  if (line_.empty()) {
    type_ = bxltUnknown;
  } else if (level_ == 0 || MayBeStructure(line_)) {
    type_ = FollowLevel(line_, level_);
  } else {
    type_ = bxltProperty;
  }
  return true;
}

bool IsComputed(std::string_view name, std::int32_t level) {
  if (level == kVariableLevel) return EqualsIgnoreCase(name, "User") || EqualsIgnoreCase(name, "Sum");
  return level == kColumnLevel && EqualsIgnoreCase(name, "Columns");
}

bool HasDistinctElements(std::string_view contents, std::int32_t level) {
  std::vector<std::uint64_t> hashes;
  hashes.reserve(32);
  std::array<std::uint64_t, kDeepestLevel + 2> lists{};
  std::uint64_t list_count = 0;
  for (LineWalker line(contents, level - 1); line.Next();) {
    if (line.type() == bxltUnknown) continue;
    const std::string_view name =
        line.type() == bxltSection ? line.line() : PlainName(line.line());
    if (name.empty() || AsciiRunEnd(name, 0) != name.size()) return false;
    if (name.find('\t') != std::string_view::npos) return false;
    const auto place = static_cast<std::size_t>(line.level());
    lists[place + 1] = ++list_count;
    hashes.push_back(HashIgnoreCase(name, lists[place]));
  }
  std::sort(hashes.begin(), hashes.end());
  return std::adjacent_find(hashes.begin(), hashes.end()) == hashes.end();
}

bool AppendAsRead(std::string_view contents, std::int32_t level, WriteTable& rows) {
  const std::int32_t before = rows.rows();
  for (LineWalker line(contents, level - 1); line.Next();) {
    if (line.type() == bxltUnknown) continue;
    const bool plain =
        line.line().find('\t') == std::string_view::npos &&
        (line.type() == bxltSection || [&] {
          const std::string_view name = PlainName(line.line());
          return !name.empty() && !IsComputed(name, line.level());
        }());
    if (!plain) {
      rows.Truncate(before);
      return false;
    }
    rows.Append(line.level(), line.line());
  }
  return true;
}

}  // namespace tessary
