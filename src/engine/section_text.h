#pragma once

#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <string>
#include <string_view>
#include <vector>

#include "engine/element.h"
#include "engine/write_table.h"
#include "platform/text.h"

// The contents of a section while they are still lines of a file. A text that is well nested reads
// the same from any section in it as from its beginning, so that the contents of a section need not
// be read before somebody looks at them.

namespace tessary {

// The section header that does not return to level 0 when it is met at level 0 or 1.
inline constexpr std::string_view kLinesSection = "[@Lines]";

// Tabs do not count.
bool IsLinesSection(std::string_view strLine);
inline bool IsBlockStart(std::string_view strLine) { return strLine == "{"; }
inline bool IsBlockEnd(std::string_view strLine) { return strLine == "}"; }

// Lines stand on levels 0 to 9.
inline constexpr std::int32_t kDeepestLevel = 9;

// What kind of line this is, and the level of it and what follows: section headers and braces move
// `level`, which is that of the line before. `line` has no tabs or blanks at its ends, and tabs
// inside do not count; an empty one counts as a property. bxltUnknown: a brace. Raises Failure 6
// where the level leaves the range of its type.
BXLineType FollowLevel(std::string_view line, std::int32_t& level);

// What a line may begin with, by character code.
using FirstLetters = std::array<bool, 256>;

// Goes through the lines of a text.
class LineWalker {
 public:
  // `level`: of the line before the text, 0 for a whole file.
  LineWalker(std::string_view text, std::int32_t level)
      : next_(text.data()), text_end_(text.data() + text.size()), level_(level) {}

  // Goes on to the next line; false at the end.
  bool Next() {
    if (next_ == text_end_) return false;
    ++count_;
    TakeStripped();
    const char first = line_.empty() ? '\0' : line_.front();
    if (line_.empty()) {
      type_ = bxltUnknown;
    } else if (level_ == 0 || first == '[' || first == '{' || first == '}') {
      type_ = FollowLevel(line_, level_);
    } else {
      type_ = bxltProperty;
    }
    return true;
  }

  // Goes on behind `lines` lines that need not be looked at: at `next`, `level` being that of the
  // line before.
  void GoOn(const char* next, std::int32_t level, std::int64_t lines) {
    next_ = next;
    level_ = level;
    count_ += lines;
  }

  // Goes past lines that need not be looked at, each of which begins, behind tabs and blanks, with
  // none of `stops`, among which must be the line ends; false where there is none. The last line of
  // a text that has no line end is never skipped.
  bool SkipLines(const FirstLetters& stops);

  // How many lines have been gone past, this one included.
  std::int64_t count() const { return count_; }

  // The line without tabs and blanks at its ends, and what it is: bxltUnknown for a line that is
  // empty and for a brace.
  std::string_view line() const { return line_; }
  BXLineType type() const { return type_; }
  std::int32_t level() const { return level_; }
  // Where the line begins and where the next one does.
  const char* begin() const { return begin_; }
  const char* end() const { return next_; }

 private:
  void TakeStripped();

  const char* next_;
  const char* text_end_;
  std::int32_t level_;
  std::int64_t count_ = 0;
  const char* begin_ = nullptr;
  std::string_view line_;
  BXLineType type_ = bxltUnknown;
};

// Tells whether the lines of a text are well nested: each line stands one level below the last
// line before it that stands higher. Holds for every report but damaged ones.
class NestingCheck {
 public:
  // `level`: the level that the topmost lines of the text have.
  explicit NestingCheck(std::int32_t level) : open_levels_(1u << level) {}

  // Takes the lines in their order; false when this one is out of place.
  bool Takes(const LineWalker& line) {
    if (line.level() < 0 || line.level() > kDeepestLevel) return false;
    if (line.type() == bxltUnknown) return true;
    const std::uint32_t level = 1u << line.level();
    if ((open_levels_ & level) == 0) return false;
    open_levels_ = (open_levels_ & (level - 1)) | level | level << 1;
    return true;
  }

 private:
  // For each level, whether a line may stand there: one stands a level higher, and none above that
  // since.
  std::uint32_t open_levels_;
};

// How the lines of a section begin: each one's indentation and name with the "=" behind it. Most
// sections have the properties of the one before, so what has been found of its names need not be
// looked for again. The texts must outlive the object.
class LineBeginnings {
 public:
  // How many lines are known, from the first one on.
  std::size_t size() const { return beginnings_.size(); }
  void Forget() { beginnings_.clear(); }
  // Takes the beginning of the line at a place, counted from 0; those between are not known.
  void Remember(std::size_t place, std::string_view beginning) {
    if (place >= beginnings_.size()) beginnings_.resize(place + 1);
    beginnings_[place] = beginning;
  }
  // What stands behind the "=" of `line` when it begins as the one known at this place, otherwise
  // null. `end`: of the text.
  const char* ValueOf(std::size_t place, const char* line, const char* end) const {
    if (place >= beginnings_.size()) return nullptr;
    const std::string_view known = beginnings_[place];
    const bool is_same = !known.empty() && static_cast<std::size_t>(end - line) >= known.size() &&
                         std::memcmp(line, known.data(), known.size()) == 0;
    return is_same ? line + known.size() : nullptr;
  }

 private:
  std::vector<std::string_view> beginnings_;
};

// Looks at the contents of sections, which must outlive the object. Best used for the sections of
// one list, one after the other.
class DistinctElements {
 public:
  // True when no two lines of one list in this text can be taken for the same element, so that each
  // is found again in an equal text. May be false where it would be true.
  bool In(std::string_view contents, std::int32_t level);

 private:
  bool HasNamesOfTheLast(std::string_view contents) const;
  bool Look(std::string_view contents, std::int32_t level);

  // Of the last text whose elements were distinct, if all of its lines were properties.
  LineBeginnings last_;
};

// Writes the contents of sections as they were read; the same holds for these.
class AsReadWriter {
 public:
  // Appends the contents of a section, whose topmost lines stand at `level`, as the rows that they
  // are written as, in blocks where the table takes them. False, and nothing appended, when some
  // line has to be read for that.
  bool Append(std::string_view contents, std::int32_t level, WriteTable& rows);

 private:
  // The properties of `level` at the beginning of the text, as far as they stand there just as they
  // would be written, with their line ends, and as far as one block goes.
  std::string_view BlockAt(std::string_view text, std::int32_t level, bool may_have_tabs);
  // The end of the line at `line`, its line end included, when it is such a property; else null.
  const char* EndOfProperty(const char* line, const char* end, std::int32_t level);

  // Of lines that stood as they would be written, in the order of the section's lines.
  LineBeginnings known_;
  std::int32_t known_level_ = 0;
  std::size_t place_ = 0;  // of the next line in its section
};

// True for a property whose name or value follows from the lines around it when it is written.
bool IsComputed(std::string_view name, std::int32_t level);

}  // namespace tessary
