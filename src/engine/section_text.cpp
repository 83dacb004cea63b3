// Only the first and last characters of a line and its first "=" are looked at, which costs far
// less than making elements of the lines. Whatever is not plain at this glance is left to those
// who read the contents.

#include "engine/section_text.h"

#include <algorithm>
#include <cstring>
#include <vector>

#include "platform/ascii_run.h"
#include "platform/failure.h"
#include "platform/text.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

constexpr std::int32_t kVariableLevel = 1;
constexpr std::int32_t kColumnLevel = 7;

constexpr std::string_view kLineEnd = "\r\n";

void Move(std::int32_t& level, std::int32_t by) {
  const std::int64_t moved = std::int64_t{level} + by;
  if (moved < INT32_MIN || moved > INT32_MAX) throw Failure(kOverflow);
  level = static_cast<std::int32_t>(moved);
}

// The name of a property whose value is kept as it stands; empty where it takes more than a glance.
std::string_view PlainName(std::string_view line) {
  std::size_t equals = 0;  // names are short, a call would take longer
  while (equals < line.size() && line[equals] != '=') ++equals;
  if (equals == line.size() || equals == 0 || line[equals - 1] == ' ') return {};
  std::size_t value = equals + 1;
  while (value < line.size() && (line[value] == ' ' || line[value] == '\t')) ++value;
  if (value < line.size() && line[value] == '@') return {};
  const std::string_view name = line.substr(0, equals);
  return IsSectionLine(name) ? std::string_view() : name;
}

bool IsWrittenAsRead(const LineWalker& line) {
  if (line.line().find('\t') != std::string_view::npos) return false;
  if (line.type() == bxltSection) return true;
  const std::string_view name = PlainName(line.line());
  return !name.empty() && !IsComputed(name, line.level());
}

// Where the value of a line begins, behind blanks, when the line is a property of `level` whose
// name stands there, behind `space`, just as it would be written; otherwise null. `end`: of the
// text.
const char* ValueOfPropertyAsWritten(const char* line, const char* end, std::string_view space,
                                     std::int32_t level) {
  for (const char indent : space) {
    if (line == end || *line++ != indent) return nullptr;
  }
  const char* equals = line;
  while (equals != end && *equals != '=' && *equals != '\n') ++equals;
  if (equals == end || equals == line || *equals == '\n' || equals[-1] == ' ') return nullptr;
  const char first = *line;
  if (first == ' ' || first == '[' || first == '{' || first == '}') return nullptr;
  const std::string_view name(line, static_cast<std::size_t>(equals - line));
  return IsComputed(name, level) ? nullptr : equals + 1;
}

// The end of a line from its value on, its line end included, when the value stands there just as
// it would be written, up to tabs; otherwise null.
const char* EndOfValueAsWritten(const char* value, const char* end) {
  while (value != end && *value == ' ') ++value;
  if (value == end || *value == '@') return nullptr;
  const auto size = static_cast<std::size_t>(end - value);
  const auto* const line_end = static_cast<const char*>(std::memchr(value, '\n', size));
  if (!line_end || line_end[-1] != '\r' || line_end[-2] == ' ') return nullptr;
  return line_end + 1;
}

bool HasTab(std::uint64_t word) {
  const std::uint64_t zero_where_tab = word ^ '\t' * kOnesOfWord;
  return ((zero_where_tab - kOnesOfWord) & ~zero_where_tab & kHighBitsOfWord) != 0;
}

// The first and the last eight bytes of a name.
struct NameEnds {
  std::uint64_t first;
  std::uint64_t last;

  explicit NameEnds(std::string_view name)
      : first(name.size() < kWordBytes ? ShortWord(name) : LoadWord(name.data())),
        last(name.size() <= kWordBytes ? 0 : LoadWord(name.data() + name.size() - kWordBytes)) {}
};

// True for a name that is ASCII and has no tabs.
bool IsSimple(std::string_view name, const NameEnds& ends) {
  if (!IsAsciiWord(ends.first | ends.last) || HasTab(ends.first) || HasTab(ends.last)) return false;
  return name.size() <= 2 * kWordBytes ||
         (AsciiRunEnd(name, 0) == name.size() && name.find('\t') == std::string_view::npos);
}

// A number that differs for most elements of one list that differ without regard to case.
std::uint64_t Mark(std::size_t name_size, const NameEnds& ends, std::uint64_t list) {
  const std::uint64_t first = LowerAsciiWord(ends.first);
  std::uint64_t mark = (first + list * 0xFF51AFD7ED558CCDu + name_size) * 0x9E3779B97F4A7C15u;
  return (mark ^ mark >> 32 ^ LowerAsciiWord(ends.last)) * 0xFF51AFD7ED558CCDu;
}

// A handful of marks is told apart by the bits that they set; more of them are put in order.
class DistinctMarks {
 public:
  void Add(std::uint64_t mark) {
    std::uint64_t& word = bits_[static_cast<std::size_t>(mark >> 60)];
    const std::uint64_t bit = std::uint64_t{1} << (mark >> 54 & 63);
    clash_ |= (word & bit) != 0;
    word |= bit;
    if (count_ < first_.size()) {
      first_[count_] = mark;
    } else {
      if (count_ == first_.size()) rest_.assign(first_.begin(), first_.end());
      rest_.push_back(mark);
    }
    ++count_;
  }

  bool AllDistinct() {
    if (!clash_) return true;
    if (count_ <= first_.size()) rest_.assign(first_.begin(), first_.begin() + count_);
    std::sort(rest_.begin(), rest_.end());
    return std::adjacent_find(rest_.begin(), rest_.end()) == rest_.end();
  }

 private:
  std::array<std::uint64_t, 16> bits_{};
  bool clash_ = false;
  std::array<std::uint64_t, 32> first_;
  std::size_t count_ = 0;
  std::vector<std::uint64_t> rest_;
};

}  // namespace

bool IsLinesSection(std::string_view strLine) {
  if (strLine.size() < kLinesSection.size()) return false;
  if (strLine[1] != kLinesSection[1] && strLine[1] != '\t' && strLine[0] != '\t') return false;
  std::string storage;
  return EqualsIgnoreCase(WithoutTabs(strLine, storage), kLinesSection);
}

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

void LineWalker::TakeStripped() {
  const auto is_outer = [](char c) { return c == ' ' || c == '\t'; };
  begin_ = next_;
  const auto* const end = static_cast<const char*>(
      std::memchr(next_, '\n', static_cast<std::size_t>(text_end_ - next_)));
  const char* last = end ? end : text_end_;
  next_ = end ? end + 1 : text_end_;
  const char* first = begin_;
  if (end && last != first && last[-1] == '\r') --last;
  while (first != last && is_outer(*first)) ++first;
  while (first != last && is_outer(last[-1])) --last;
  line_ = {first, static_cast<std::size_t>(last - first)};
}

bool LineWalker::SkipLines(const FirstLetters& stops) {
  const std::int64_t before = count_;
  for (;; ++count_) {
    const char* first = next_;
    while (first != text_end_ && (*first == ' ' || *first == '\t')) ++first;
    if (first == text_end_ || stops[static_cast<unsigned char>(*first)]) break;
    const void* const end = std::memchr(first, '\n', static_cast<std::size_t>(text_end_ - first));
    if (!end) break;
    next_ = static_cast<const char*>(end) + 1;
  }
  return count_ != before;
}

bool IsComputed(std::string_view name, std::int32_t level) {
  if (level == kVariableLevel)
    return EqualsIgnoreCase(name, "User") || EqualsIgnoreCase(name, "Sum");
  return level == kColumnLevel && EqualsIgnoreCase(name, "Columns");
}

bool DistinctElements::In(std::string_view contents, std::int32_t level) {
  return HasNamesOfTheLast(contents) || Look(contents, level);
}

// Then the elements are distinct as well, on whatever level.
bool DistinctElements::HasNamesOfTheLast(std::string_view contents) const {
  const char* line = contents.data();
  const char* const end = line + contents.size();
  for (std::size_t place = 0; place < last_.size(); ++place) {
    const char* value = last_.ValueOf(place, line, end);
    if (!value) return false;
    while (value != end && (*value == ' ' || *value == '\t')) ++value;
    if (value == end || *value == '@') return false;
    const auto* const line_end =
        static_cast<const char*>(std::memchr(value, '\n', static_cast<std::size_t>(end - value)));
    if (!line_end) return false;
    line = line_end + 1;
  }
  return line == end && last_.size() > 0;
}

bool DistinctElements::Look(std::string_view contents, std::int32_t level) {
  DistinctMarks marks;
  std::array<std::uint64_t, kDeepestLevel + 2> lists{};
  std::uint64_t list_count = 0;
  bool has_properties_only = true;
  last_.Forget();
  for (LineWalker line(contents, level - 1); line.Next();) {
    if (line.type() != bxltProperty) has_properties_only = false;
    if (line.type() == bxltUnknown) continue;
    // Another line that begins like this may be a section header.
    if (line.line().front() == '[') has_properties_only = false;
    const std::string_view name = line.type() == bxltSection ? line.line() : PlainName(line.line());
    const NameEnds ends(name);
    if (name.empty() || !IsSimple(name, ends)) {
      last_.Forget();
      return false;
    }
    const auto place = static_cast<std::size_t>(line.level());
    lists[place + 1] = ++list_count;
    marks.Add(Mark(name.size(), ends, lists[place]));
    if (has_properties_only) {
      const char* const behind_equals = name.data() + name.size() + 1;
      last_.Remember(last_.size(),
                     {line.begin(), static_cast<std::size_t>(behind_equals - line.begin())});
    }
  }
  const bool distinct = marks.AllDistinct();
  if (!distinct || !has_properties_only) last_.Forget();
  return distinct;
}

const char* AsReadWriter::EndOfProperty(const char* line, const char* end, std::int32_t level) {
  const char* value = known_.ValueOf(place_, line, end);
  const bool is_known = value != nullptr;
  if (!is_known) value = ValueOfPropertyAsWritten(line, end, LevelSpace(level), level);
  const char* const next = value ? EndOfValueAsWritten(value, end) : nullptr;
  if (next && !is_known) known_.Remember(place_, {line, static_cast<std::size_t>(value - line)});
  return next;
}

std::string_view AsReadWriter::BlockAt(std::string_view text, std::int32_t level,
                                       bool may_have_tabs) {
  if (level != known_level_) known_.Forget();
  known_level_ = level;
  const std::size_t space = LevelSpace(level).size();
  const char* const end = text.data() + text.size();
  std::size_t size = 0;
  while (size < WriteTable::kFullBlock) {
    const char* const line = text.data() + size;
    const char* const next = EndOfProperty(line, end, level);
    if (!next) break;
    const auto line_size = static_cast<std::size_t>(next - line);
    if (may_have_tabs && text.substr(size, line_size).find('\t', space) != text.npos) break;
    size += line_size;
    ++place_;
  }
  return text.substr(0, size);
}

bool AsReadWriter::Append(std::string_view contents, std::int32_t level, WriteTable& rows) {
  rows.EndBlock();
  place_ = 0;
  const std::int32_t before = rows.rows();
  const bool has_tabs = contents.find('\t') != std::string_view::npos;
  const char* const end = contents.data() + contents.size();
  LineWalker line(contents, level - 1);
  for (const char* next = contents.data(); next != end; next = line.end()) {
    const std::int32_t block_level = std::max(line.level(), kVariableLevel);
    if (rows.takes_blocks()) {
      if (const std::string_view block = BlockAt({next, end}, block_level, has_tabs);
          !block.empty()) {
        const std::size_t space = LevelSpace(block_level).size();
        rows.AppendProperty(block_level)
            .append(block.substr(space, block.size() - space - kLineEnd.size()));
        line.GoOn(block.data() + block.size(), block_level, 0);
        continue;
      }
    }
    line.Next();
    if (line.type() == bxltUnknown) continue;
    if (!IsWrittenAsRead(line)) {
      rows.Truncate(before);
      return false;
    }
    rows.Append(line.level(), line.line());
  }
  return true;
}

}  // namespace tessary
