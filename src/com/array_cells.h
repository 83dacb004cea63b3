#pragma once

#include <cstdint>
#include <vector>

#include "com/system.h"
#include "com/variant.h"

namespace tessary::com {

struct ArrayBounds {
  LONG lower_row = 0;
  LONG upper_row = -1;
  LONG lower_column = 0;
  LONG upper_column = -1;

  std::int64_t rows() const { return std::int64_t{upper_row} - lower_row + 1; }
  std::int64_t columns() const { return std::int64_t{upper_column} - lower_column + 1; }
  bool HasRow(LONG row) const { return row >= lower_row && row <= upper_row; }
  bool HasColumn(LONG column) const { return column >= lower_column && column <= upper_column; }
};

// What stands behind an array: cells of its own, or an array of the core that it shows.
// A row or column outside the bounds raises Failure 9, a value that does not fit Failure 13.
class ArrayCells {
 public:
  virtual ~ArrayCells() = default;
  virtual ArrayBounds bounds() const = 0;
  virtual Variant Get(LONG row, LONG column) = 0;
  virtual void Set(LONG row, LONG column, const Variant& value) = 0;
  // Changes the bounds; cells that lie inside the old and the new ones keep their values.
  virtual void ReDim(const ArrayBounds& bounds) = 0;
  // Puts blank rows before `row`, which may be the one behind the last.
  virtual void InsertRows(LONG row, LONG count) = 0;
  virtual void DeleteRows(LONG row, LONG count) = 0;
  // Gives the rows from `first_row` on another order: the k-th takes what stood in row order[k].
  virtual void Reorder(LONG first_row, const std::vector<LONG>& order) = 0;
};

// Raises Failure 5 for a negative number of rows, 7 when there would be more cells than an array
// can hold, 6 when a bound or the numbers beside it would not fit into 32 bits.
void CheckGrowth(const ArrayBounds& bounds, std::int64_t added_rows);

// A cell's value as another type; Failure 13 where it has none, 6 where it is too large.
Variant CellAs(const Variant& value, VARTYPE type);

}  // namespace tessary::com
