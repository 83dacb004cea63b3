#include "model_compare.h"

#include <string>
#include <utility>

#include "model_find.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace tessary::model {
namespace {

void FillIfEmpty(std::string& text, const std::string& filling) {
  if (text.empty()) text = filling;
}

// The new element's row is already there, as the last one and blank.
void CheckValuesAround(Rows& rows, Row& added) {
  if (rows.size() <= 1) return;
  Row& previous = rows[rows.size() - 2];
  std::string number = previous.pos_nr;
  FillIfEmpty(added.prev_name, previous.name);
  FillIfEmpty(added.prev_key, previous.key);
  FillIfEmpty(added.prev_typ, previous.typ);
  if (EqualsIgnoreCase(previous.name, added.name)) {
    FillIfEmpty(number, "1");
    added.pos_nr = std::to_string(Successor(ToInteger(number)));
    FillIfEmpty(previous.pos_nr, number);
  }
  FillIfEmpty(previous.next_name, added.name);
  FillIfEmpty(previous.next_key, added.key);
  FillIfEmpty(previous.next_typ, added.typ);
}

// A deleted element is recorded without its contents.
void AddAs(Level& level, Row element, int status) {
  element.status = status;
  if (status == kDelete) element.child = nullptr;
  Add(level, std::move(element));
}

void TakeOverMarked(Level& level, const Array& copy, const Array& source, int status) {
  int deleted = 0;
  for (int row = 1; row <= Count(copy); ++row) {
    if (RowAt(copy, row).status != status) continue;
    AddAs(level, RowAt(copy, row), status);
    EraseRow(source, row - deleted);
    ++deleted;
  }
}

// A row beyond the end has an empty key.
std::string KeyAt(const Array& rows, int row) {
  return row <= Count(rows) ? RowAt(rows, row).key : "";
}

void TakeOverSurplus(Level& level, const Array& source, const Array& dest, int status,
                     int start_row) {
  const Array copy = CopyArray(source);
  const Array dest_copy = CopyArray(dest);
  const int surplus = Count(copy) - Count(dest_copy);
  if (surplus <= 0) return;
  int missing = 0;
  int cursor = start_row;
  for (int row = start_row; row <= Count(copy) && missing != surplus; ++row) {
    if (EqualsIgnoreCase(KeyAt(copy, row), KeyAt(dest_copy, cursor))) {
      ++cursor;
    } else {
      RowAt(copy, row).status = status;
      ++missing;
    }
  }
  TakeOverMarked(level, copy, source, status);
}

void TakeOverReplaced(Level& level, const Array& source, const Array& dest, int status,
                      int start_row) {
  const Array copy = CopyArray(source);
  const Array dest_copy = CopyArray(dest);
  int deleted = 0;
  for (int row = start_row; row <= Count(copy); ++row) {
    if (EqualsIgnoreCase(KeyAt(copy, row), KeyAt(dest_copy, row))) continue;
    const bool has_dest = row <= Count(dest_copy);
    if (status == kDelete) {
      if (has_dest) AddAs(level, RowAt(dest_copy, row), kNew);
      AddAs(level, RowAt(copy, row), kDelete);
    } else {
      AddAs(level, RowAt(copy, row), kNew);
      if (has_dest) AddAs(level, RowAt(dest_copy, row), kDelete);
    }
    EraseRow(source, row - deleted);
    if (has_dest) EraseRow(dest, row - deleted);
    ++deleted;
  }
}

// Numbers that are kept up by the program itself are never a difference.
bool IsSkipped(int level_number, const Row& row) {
  return (level_number == 6 && EqualsIgnoreCase(row.key, "LineID")) ||
         (level_number == 7 && EqualsIgnoreCase(row.key, "Columns"));
}

bool ByIdentityOnly(int level_number) { return level_number == 6 || level_number == 7; }

void ComparePair(Level& level, const Row& old_row, const Row& new_row, int child_number) {
  Row result = new_row;
  result.status = kUpdate;
  result.child = child_number < 0 ? nullptr : NewLevel(child_number);
  Add(level, result);
  if (result.child) {
    const Array old_contents = ElementArray(old_row.child);
    const Array new_contents = ElementArray(new_row.child);
    Compare(*result.child, old_contents, new_contents);
  }
  const bool same_contents = !result.child || IsArrayEmpty(result.child->rows);
  if (same_contents && EqualsIgnoreCase(new_row.value, old_row.value)) {
    EraseRow(level.rows, Count(level.rows));
  }
}

void CheckMissingBothWays(Level& level, const Array& old_rows, const Array& new_rows) {
  CheckMissingElements(level, new_rows, old_rows, kNew);
  CheckMissingElements(level, old_rows, new_rows, kDelete);
}

void CheckLineRun(Level& level, const Array& old_rows, const Array& new_rows) {
  if (Count(new_rows) < Count(old_rows)) {
    CheckMissingSpecialElements(level, old_rows, new_rows, kDelete, 1);
  } else {
    CheckMissingSpecialElements(level, new_rows, old_rows, kNew, 1);
  }
}

// The first row, the number of columns, is no part of the run.
void CheckColumnRun(Level& level, const Array& old_rows, const Array& new_rows) {
  if (Count(new_rows) > 1 && Count(new_rows) >= Count(old_rows)) {
    CheckMissingSpecialElements(level, new_rows, old_rows, kNew, 2);
  } else if (Count(old_rows) > 1 && Count(old_rows) >= Count(new_rows)) {
    CheckMissingSpecialElements(level, old_rows, new_rows, kDelete, 2);
  }
}

}  // namespace

void Add(Level& level, Row element) {
  if (level.rows == nullptr) level.rows = std::make_shared<Rows>();
  level.rows->emplace_back();
  if (element.status == kUnknown) CheckValuesAround(*level.rows, element);
  level.rows->back() = std::move(element);
}

bool CheckForAddingAllElements(Level& level, const Array& old_rows, const Array& new_rows) {
  if (!IsArrayEmpty(new_rows) && !IsArrayEmpty(old_rows)) return false;
  const int status = IsArrayEmpty(new_rows) ? kDelete : kNew;
  const Array& rows = status == kDelete ? old_rows : new_rows;
  const Array copy = CopyArray(rows);
  rows->clear();
  for (Row element : *copy) {
    element.value = element.name;
    AddAs(level, element, status);
  }
  return true;
}

void CheckMissingElements(Level& level, const Array& source, const Array& dest, int status) {
  const Array copy = CopyArray(source);
  for (Row& row : *copy) {
    if (FindElement(dest, Identity(row.name, row.key, row.typ)) == 0) row.status = status;
  }
  TakeOverMarked(level, copy, source, status);
}

void CheckMissingSpecialElements(Level& level, const Array& source, const Array& dest, int status,
                                 int start_row) {
  TakeOverSurplus(level, source, dest, status, start_row);
  TakeOverReplaced(level, source, dest, status, start_row);
}

int CompareElements(Level& level, const Array& old_rows, const Array& new_rows, int child_number) {
  int not_found = 0;
  const int last = Count(new_rows);
  for (int number = 1; number <= last; ++number) {
    const Row row = RowAt(new_rows, number);
    if (IsSkipped(level.number, row)) continue;
    const int found = FindElement(
        old_rows, ByIdentityOnly(level.number) ? Identity(row.name, row.key, row.typ) : row);
    if (found == 0) {
      ++not_found;
    } else {
      ComparePair(level, RowAt(old_rows, found), row, child_number);
    }
  }
  return not_found;
}

void Compare(Level& level, const Array& old_rows, const Array& new_rows) {
  if (IsArrayEmpty(old_rows) && IsArrayEmpty(new_rows)) return;
  if (CheckForAddingAllElements(level, old_rows, new_rows)) return;
  const std::string first_name = RowAt(new_rows, 1).name;
  if (level.number == 3 && IsLineSection(first_name)) {
    CheckLineRun(level, old_rows, new_rows);
  } else if (level.number == 7 && EqualsIgnoreCase(first_name, "Columns")) {
    CheckColumnRun(level, old_rows, new_rows);
  } else {
    CheckMissingBothWays(level, old_rows, new_rows);
  }
  CompareElements(level, old_rows, new_rows, level.number == 9 ? -1 : level.number + 1);
}

Array CompareReports(const Array& old_report, const Array& new_report) {
  Level level(0);
  Compare(level, old_report, new_report);
  return level.rows;
}

}  // namespace tessary::model
