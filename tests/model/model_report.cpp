#include "model_report.h"

#include <algorithm>
#include <utility>

#include "model_compare.h"
#include "model_diff_text.h"
#include "platform/failure.h"
#include "platform/number.h"
#include "platform/text.h"

namespace tessary::model {
namespace {

std::string Trimmed(const std::string& text) { return std::string(TrimBlanks(text)); }

std::string WithoutTabs(std::string text) {
  text.erase(std::remove(text.begin(), text.end(), '\t'), text.end());
  return text;
}

// "User" before "Sum", wherever it stands; empty when the key has neither.
std::string VariablePrefix(const std::string& key) {
  for (const char* prefix : {"User", "Sum"}) {
    if (FindIgnoreCase(key, prefix) != std::string::npos) return prefix;
  }
  return "";
}

void ApplyVariableRule(Row& property) {
  const std::string prefix = VariablePrefix(property.key);
  if (prefix.empty() || property.key.size() <= prefix.size()) return;
  // Taken from the key's beginning even where the prefix stands further inside.
  if (!IsNumeric(property.key.substr(prefix.size()))) return;
  const Halves value = SplitOnce(property.value, ';');
  if (!value.both) return;
  const std::string variable = Trimmed(value.first);
  if (variable.empty() || variable.front() != '@') return;
  property.name = prefix;
  property.key = variable;
  property.value = value.second;
}

void SetFound(Level& level, const char* owner, int owner_level, Field field,
              const std::string& value) {
  level.found_field = {true, owner, owner_level, field, value};
}

bool FollowsVisible(const Level& level) {
  return !IsArrayEmpty(level.rows) && level.rows->back().key == "Visible";
}

void FindOwnerAtLevel1(Level& level, const Row& property) {
  if (EqualsIgnoreCase(property.key, "ObjectName")) {
    SetFound(level, "[Object]", 0, &Row::typ, property.value);
  } else if (EqualsIgnoreCase(property.key, "LayerID") && FollowsVisible(level)) {
    SetFound(level, "[Layer]", 0, &Row::key, property.value);
  } else if (EqualsIgnoreCase(property.key, "LinkID")) {
    SetFound(level, "[Object]", 0, &Row::key, property.value);
  }
}

void FindOwner(Level& level, const Row& property) {
  const auto is = [&](const char* name) { return EqualsIgnoreCase(property.key, name); };
  if (level.number == 1) FindOwnerAtLevel1(level, property);
  if (level.number == 4 && is("Text")) SetFound(level, "[Line]", 3, &Row::key, property.value);
  if (level.number == 6 && is("LineID")) SetFound(level, "[Line]", 5, &Row::key, property.value);
  if (level.number == 8 && is("Text")) SetFound(level, "[Column]", 7, &Row::key, property.value);
  if (level.number == 9 && is("Contents")) {
    SetFound(level, "[Column]", 7, &Row::key, property.value);
  }
}

// The level that holds the owners for values found at `level`; -1 when there is none.
int OwnerLevelFor(int level) {
  switch (level) {
    case 1:
      return 0;
    case 4:
      return 3;
    case 6:
      return 5;
    case 8:
    case 9:
      return 7;
    default:
      return -1;
  }
}

}  // namespace

Row SplitProperty(const std::string& line) {
  Row property;
  property.name = property.key = Trimmed(line);
  const Halves halves = SplitOnce(property.name, '=');
  if (!halves.both) return property;
  property.name = property.key = Trimmed(halves.first);
  property.value = halves.second;
  if (!property.key.empty() && !property.value.empty()) ApplyVariableRule(property);
  return property;
}

std::string JoinProperty(const std::string& name, const std::string& key,
                         const std::string& value) {
  if (!EqualsIgnoreCase(key, name)) return name + "=" + key + ";" + value;
  if (!Trimmed(key).empty()) return key + "=" + value;
  return Trimmed(name);
}

void AddToLevel(Level& level, Row element, LineType type) {
  if (element.child == nullptr) element.child = NewLevel(ChildNumber(level.number));
  if (type == LineType::kSection && element.key.empty()) element.key = element.name;
  if (type == LineType::kProperty) {
    const Row property = SplitProperty(element.name);
    element.name = property.name;
    element.key = property.key;
    element.value = property.value;
    FindOwner(level, property);
  }
  Add(level, std::move(element));
}

std::string LevelToSpaceString(int level) {
  const int tabs = level / 4;
  return std::string(static_cast<std::size_t>(tabs), '\t') +
         std::string(static_cast<std::size_t>(level - 4 * tabs), ' ');
}

ReportFile::ReportFile() : levels_(10) { levels_[0] = NewLevel(0); }

void ReportFile::AddLine(const std::string& line) {
  const std::string stripped = Trimmed(WithoutTabs(line));
  if (stripped.empty()) return;
  const Row element = DiffTextToElement(stripped);
  const LineType type = CheckLine(element.name);
  if (type == LineType::kUnknown || level_ < 0 || level_ > 9) return;
  const auto at = static_cast<std::size_t>(level_);
  if (level_ > 0) {
    if (levels_[at - 1] == nullptr) throw Failure(kObjectNotSet);
    levels_[at] = LastElement(*levels_[at - 1]);
  }
  if (levels_[at] == nullptr) throw Failure(kObjectNotSet);
  Level& level = *levels_[at];
  AddToLevel(level, element, type);
  const FoundField found = level.found_field;
  level.found_field.found = false;
  if (found.found) AddFieldValue(found.owner, found.owner_level, found.field, found.value);
}

LineType ReportFile::CheckLine(const std::string& line) {
  if (IsSectionLine(line)) {
    if (level_ == 0 || level_ == 1) level_ = EqualsIgnoreCase(line, "[@Lines]") ? 1 : 0;
    return LineType::kSection;
  }
  if (line == "{") {
    ++level_;
    return LineType::kUnknown;
  }
  if (line == "}") {
    --level_;
    return LineType::kUnknown;
  }
  if (level_ == 0) level_ = 1;
  return LineType::kProperty;
}

void ReportFile::AddFieldValue(const std::string& owner, int owner_level, Field field,
                               const std::string& value) {
  const int expected = OwnerLevelFor(level_);
  if (expected < 0 || owner_level != expected) return;
  const Array rows = ElementArray(levels_[static_cast<std::size_t>(expected)]);
  const int row = LastNamed(rows, owner);
  if (row == 0) return;
  RowAt(rows, row).*field = value;
  if (row == 1) return;
  if (field == &Row::key) RowAt(rows, row - 1).next_key = value;
  if (field == &Row::typ) RowAt(rows, row - 1).next_typ = value;
}

std::string ReportFile::GetFirstLine() {
  last_line_.clear();
  last_output_.clear();
  block_open_ = false;
  if (lines_ == nullptr) PrepareWriting(*levels_[0], lines_);
  if (lines_ == nullptr || lines_->empty()) return "";
  row_ = 1;
  const WriteRow& first = lines_->front();
  level_ = first.level;
  last_line_ = first.text;
  last_output_ = first.text;
  return first.text;
}

std::string ReportFile::GetNextLine() {
  if (lines_ == nullptr) throw Failure(kObjectNotSet);
  std::string result;
  ++row_;
  if (row_ > static_cast<int>(lines_->size())) {
    if (level_ > 1) {
      result = LevelToSpaceString(level_) + "}";
      --level_;
      --row_;
    }
  } else {
    const WriteRow& next = lines_->at(static_cast<std::size_t>(row_ - 1));
    if (CheckForWritingLevelBookmarks(next.level, next.text, result)) {
      --row_;
    } else {
      result = LevelToSpaceString(next.level) + next.text;
      level_ = next.level;
      last_line_ = next.text;
    }
  }
  last_output_ = Trimmed(WithoutTabs(result));
  return result;
}

bool ReportFile::CheckForWritingLevelBookmarks(int level, const std::string& line,
                                               std::string& bookmark) {
  bookmark.clear();
  if (level > level_) {
    if (level <= 1) return false;
    bookmark = LevelToSpaceString(level) + "{";
    level_ = level;
    return true;
  }
  if (level == level_ && level < 1) return false;
  if (level < level_ && level <= 0 && level_ < 2) return false;
  if (block_open_) {
    block_open_ = false;
    bookmark = LevelToSpaceString(level_ + 1) + "}";
    return true;
  }
  block_open_ = NeedsEmptyBlock(line);
  if (block_open_) {
    bookmark = LevelToSpaceString(level_ + 1) + "{";
    return true;
  }
  if (level == level_) return false;
  bookmark = LevelToSpaceString(level_) + "}";
  --level_;
  return true;
}

bool ReportFile::NeedsEmptyBlock(const std::string& line) const {
  return IsSectionLine(line) && IsSectionLine(last_line_) &&
         EqualsIgnoreCase(last_line_, last_output_);
}

Array ReadLines(const std::vector<std::string>& lines) {
  ReportFile file;
  for (const std::string& line : lines) {
    if (!TrimBlanks(line).empty()) file.AddLine(line);
  }
  return file.report_file();
}

std::vector<std::string> WriteLines(const Array& rows) {
  ReportFile file;
  file.set_report_file(rows);
  std::vector<std::string> lines;
  for (std::string line = file.GetFirstLine(); !line.empty(); line = file.GetNextLine()) {
    lines.push_back(line);
  }
  return lines;
}

}  // namespace tessary::model
