#pragma once

#include "com/array_cells.h"
#include "engine/write_table.h"

namespace tessary::com {

// The cells of a write array: rows from 1, column 0 the level, column 1 the text. They can only be
// read; an array that is to be changed takes a copy first, since nobody else looks at the lines.
class WriteCells final : public ArrayCells {
 public:
  explicit WriteCells(Ref<WriteTable> lines) : lines_(std::move(lines)) {}

  ArrayBounds bounds() const override { return {1, lines_->rows(), kLevelColumn, kTextColumn}; }
  Variant Get(LONG row, LONG column) override;
  void Set(LONG, LONG, const Variant&) override { RefuseChange(); }
  void ReDim(const ArrayBounds&) override { RefuseChange(); }
  void InsertRows(LONG, LONG) override { RefuseChange(); }
  void DeleteRows(LONG, LONG) override { RefuseChange(); }
  void Reorder(LONG, const std::vector<LONG>&) override { RefuseChange(); }

  // A write array with the contents of other cells; Failure 9 or 13 when they do not fit.
  // An array without rows always fits.
  static Ref<WriteTable> TableOf(ArrayCells& source);

 private:
  static constexpr LONG kLevelColumn = 0;
  static constexpr LONG kTextColumn = 1;

  [[noreturn]] static void RefuseChange();

  const Ref<WriteTable> lines_;
};

}  // namespace tessary::com
