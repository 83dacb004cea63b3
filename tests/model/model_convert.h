#pragma once

#include <memory>
#include <string>
#include <vector>

#include "model_tree.h"

namespace tessary::model {

// Applies a difference list to a report list, which becomes the level's own; changes the report
// and sorts the difference list. Failure 13 for a number or a line key that is none, 91 for a
// missing level object; what was applied before stays applied.
void Convert(Level& level, const Array& report, const Array& diff_file);

// The four actions, on the level's own list.
void DeleteElement(Level& level, const Row& element);
void InsertElement(Level& level, const Row& element);
void UpdateElement(Level& level, const Row& element);
// Rows by status, equal ones in their order.
void PrepareConversion(const Array& diff_file);

// Numbers the "[Line]" rows from `start_row` on, beginning with `start_id`.
void UpdatePropertyLineID(Level& level, int start_row, std::int32_t start_id);

// Applies a difference tree to a report tree.
void ConvertReport(const Array& report, const Array& diff_file);

struct WriteRow {
  int level = 0;
  std::string text;
};
using WriteArray = std::shared_ptr<std::vector<WriteRow>>;

// Appends the tree's lines, depth first; makes the array with the first line. Variables and the
// number of columns are renumbered in the tree itself.
void PrepareWriting(Level& level, WriteArray& lines);

// "User" and "Sum" rows get consecutive numbers behind their names.
void UpdateVariableNumbers(const Array& rows);
// The first "Columns" row gets the number of "[Column]" rows as its value.
void UpdatePropertyColumns(const Array& rows);

}  // namespace tessary::model
