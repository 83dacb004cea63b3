#include "model_tree.h"

#include <algorithm>
#include <limits>

#include "platform/failure.h"
#include "platform/number.h"
#include "platform/text.h"

namespace tessary::model {
namespace {

char StatusSign(int status) {
  switch (status) {
    case kDelete:
      return 'D';
    case kNew:
      return 'N';
    case kUpdate:
      return 'U';
    default:
      return '-';
  }
}

void DumpRows(const Array& array, std::size_t depth, std::string& text) {
  if (IsArrayEmpty(array)) return;
  for (const Row& row : *array) {
    text.append(2 * depth, ' ');
    text += StatusSign(row.status);
    text += ' ';
    for (Field field :
         {&Row::name, &Row::key, &Row::typ, &Row::prev_name, &Row::prev_key, &Row::prev_typ,
          &Row::next_name, &Row::next_key, &Row::next_typ, &Row::pos_nr}) {
      text += row.*field + "|";
    }
    text += row.value + "\n";
    if (row.child) DumpRows(row.child->rows, depth + 1, text);
  }
}

}  // namespace

int ChildNumber(int number) { return std::min(number + 1, 9); }

std::shared_ptr<Level> NewLevel(int number) { return std::make_shared<Level>(number); }

bool IsArrayEmpty(const Array& array) { return array == nullptr || array->empty(); }

int Count(const Array& array) { return array == nullptr ? 0 : static_cast<int>(array->size()); }

Row& RowAt(const Array& array, int row) {
  if (array == nullptr) throw Failure(kObjectNotSet);
  if (row < 1 || row > Count(array)) throw Failure(kSubscriptOutOfRange);
  return (*array)[static_cast<std::size_t>(row - 1)];
}

void EraseRow(const Array& array, int row) {
  RowAt(array, row);
  array->erase(array->begin() + static_cast<std::ptrdiff_t>(row - 1));
}

Array CopyArray(const Array& array) {
  if (array == nullptr) throw Failure(kObjectNotSet);
  return std::make_shared<Rows>(*array);
}

int FirstNamed(const Array& array, const std::string& name) {
  for (int row = 1; row <= Count(array); ++row) {
    if (EqualsIgnoreCase(RowAt(array, row).name, name)) return row;
  }
  return 0;
}

int LastNamed(const Array& array, const std::string& name) {
  for (int row = Count(array); row >= 1; --row) {
    if (EqualsIgnoreCase(RowAt(array, row).name, name)) return row;
  }
  return 0;
}

std::shared_ptr<Level> LastElement(const Level& level) {
  return RowAt(level.rows, Count(level.rows)).child;
}

Array ElementArray(const std::shared_ptr<Level>& level) {
  if (level == nullptr) throw Failure(kObjectNotSet);
  return level->rows;
}

bool IsSectionLine(const std::string& line) {
  return !line.empty() && line.front() == '[' && line.back() == ']';
}

bool IsLineSection(const std::string& line) { return EqualsIgnoreCase(line, "[Line]"); }

std::int32_t ToInteger(const std::string& text) {
  if (!IsNumeric(text)) throw Failure(kTypeMismatch);
  const auto number = ToLong(text);
  if (!number) throw Failure(kOverflow);
  return *number;
}

std::int32_t Successor(std::int32_t number) {
  if (number == std::numeric_limits<std::int32_t>::max()) throw Failure(kOverflow);
  return number + 1;
}

std::string Dump(const Level& level) { return Dump(level.rows); }

std::string Dump(const Array& array) {
  std::string text;
  DumpRows(array, 0, text);
  return text;
}

}  // namespace tessary::model
