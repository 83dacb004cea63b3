#include "model_convert.h"

#include <algorithm>
#include <cstddef>
#include <utility>

#include "model_compare.h"
#include "model_diff_text.h"
#include "model_find.h"
#include "model_report.h"
#include "platform/text.h"

namespace tessary::model {
namespace {

// Deleting and updating look an element up with name and key of its next neighbour swapped.
Row Crosswise(Row element) {
  std::swap(element.next_name, element.next_key);
  return element;
}

// May lie outside the list, which means its end. Wide enough for any number in a file.
std::int64_t InsertionRow(const Array& rows, const Row& element) {
  const int previous =
      FindElement(rows, Identity(element.prev_name, element.prev_key, element.prev_typ));
  if (previous > 0) return previous + 1;
  const int next =
      FindElement(rows, Identity(element.next_name, element.next_key, element.next_typ));
  if (next > 0) return next;
  if (TrimBlanks(element.pos_nr).empty()) return 0;
  const int first = FirstNamed(rows, element.name);
  if (first == 0) return 0;
  return std::int64_t{first} + ToInteger(element.pos_nr) - 1;
}

Row Inserted(const Row& element) {
  Row row = Identity(element.name, element.key, element.typ);
  row.value = element.value;
  row.child = element.child;
  return row;
}

// Only the class of level 5 handles the event.
void BeforeInsert(Level& level, const Row& element) {
  if (level.number != 5 || !IsLineSection(element.name) || IsArrayEmpty(level.rows)) return;
  const int row = FindElement(level.rows, element);
  if (row == 0) return;
  const std::int32_t own_id = element.key.empty() ? 0 : ToInteger(element.key);
  UpdatePropertyLineID(level, row, Successor(own_id));
}

void SetLineID(const std::shared_ptr<Level>& contents, const std::string& id) {
  if (contents == nullptr) return;
  const int row = FirstNamed(contents->rows, "LineID");
  if (row > 0) RowAt(contents->rows, row).value = id;
}

// A blank name cannot be told from the key's text, so it gives the key alone.
std::string PropertyText(const Row& element) {
  if (!TrimBlanks(element.name).empty()) {
    return JoinProperty(element.name, element.key, element.value);
  }
  if (!TrimBlanks(element.key).empty()) return element.key + "=" + element.value;
  return "";
}

}  // namespace

void PrepareConversion(const Array& diff_file) {
  if (IsArrayEmpty(diff_file)) return;
  std::stable_sort(diff_file->begin(), diff_file->end(),
                   [](const Row& a, const Row& b) { return a.status < b.status; });
}

void DeleteElement(Level& level, const Row& element) {
  const int row = FindElement(level.rows, Crosswise(element));
  if (row > 0) EraseRow(level.rows, row);
}

void InsertElement(Level& level, const Row& element) {
  if (FindElement(level.rows, element) > 0) return;
  const std::int64_t row = InsertionRow(level.rows, element);
  if (row < 1 || row > Count(level.rows)) {
    Add(level, Inserted(element));
  } else {
    level.rows->insert(level.rows->begin() + static_cast<std::ptrdiff_t>(row - 1),
                       Inserted(element));
  }
}

void UpdateElement(Level& level, const Row& element) {
  const int row = FindElement(level.rows, Crosswise(element));
  if (row == 0) return;
  Row& found = RowAt(level.rows, row);
  if (!IsSectionLine(element.name)) {
    found.value = element.value;
  } else if (found.child != nullptr) {
    const std::shared_ptr<Level> contents = found.child;
    Convert(*contents, contents->rows, ElementArray(element.child));
  }
}

void Convert(Level& level, const Array& report, const Array& diff_file) {
  level.rows = report;
  PrepareConversion(diff_file);
  if (IsArrayEmpty(diff_file) || IsArrayEmpty(report)) return;
  const int last = Count(diff_file);
  for (int number = 1; number <= last; ++number) {
    const Row element = RowAt(diff_file, number);
    if (element.status == kDelete) {
      DeleteElement(level, element);
    } else if (element.status == kNew) {
      BeforeInsert(level, element);
      InsertElement(level, element);
    } else if (element.status == kUpdate) {
      UpdateElement(level, element);
    }
  }
}

void UpdatePropertyLineID(Level& level, int start_row, std::int32_t start_id) {
  if (IsArrayEmpty(level.rows) || start_row < 1) return;
  std::int32_t id = start_id;
  for (int row = start_row; row <= Count(level.rows); ++row) {
    Row& line = RowAt(level.rows, row);
    if (!IsLineSection(line.name)) continue;
    const std::string text = std::to_string(id);
    line.key = text;
    if (row > 1) RowAt(level.rows, row - 1).next_key = text;
    if (row < Count(level.rows)) RowAt(level.rows, row + 1).prev_key = text;
    SetLineID(line.child, text);
    id = Successor(id);
  }
}

void ConvertReport(const Array& report, const Array& diff_file) {
  Level level(0);
  Convert(level, report, diff_file);
}

void PrepareWriting(Level& level, WriteArray& lines) {
  if (level.number == 1) UpdateVariableNumbers(level.rows);
  if (level.number == 7) UpdatePropertyColumns(level.rows);
  if (IsArrayEmpty(level.rows)) return;
  for (const Row& element : *level.rows) {
    const std::string text = IsSectionLine(element.name) ? element.name : PropertyText(element);
    if (lines == nullptr) lines = std::make_shared<std::vector<WriteRow>>();
    lines->push_back({level.number, ElementToDiffText(element) + text});
    if (element.child != nullptr) PrepareWriting(*element.child, lines);
  }
}

void UpdateVariableNumbers(const Array& rows) {
  if (IsArrayEmpty(rows)) return;
  int count = 0;
  for (Row& row : *rows) {
    if (EqualsIgnoreCase(row.name, "User") || EqualsIgnoreCase(row.name, "Sum")) {
      row.name += std::to_string(++count);
    }
  }
}

void UpdatePropertyColumns(const Array& rows) {
  if (IsArrayEmpty(rows)) return;
  const auto count = std::count_if(rows->begin(), rows->end(), [](const Row& row) {
    return EqualsIgnoreCase(row.name, "[Column]");
  });
  const int row = FirstNamed(rows, "Columns");
  if (row > 0) RowAt(rows, row).value = std::to_string(count);
}

}  // namespace tessary::model
