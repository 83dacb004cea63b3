#pragma once

#include "com/array_cells.h"

namespace tessary::com {

// Cells of any kind within any bounds, as a client makes them.
class ClientCells final : public ArrayCells {
 public:
  ClientCells() = default;
  // A copy of what another array shows.
  explicit ClientCells(ArrayCells& source);

  ArrayBounds bounds() const override { return bounds_; }
  Variant Get(LONG row, LONG column) override { return Cell(row, column); }
  void Set(LONG row, LONG column, const Variant& value) override { Cell(row, column) = value; }
  void ReDim(const ArrayBounds& bounds) override;
  void InsertRows(LONG row, LONG count) override;
  void DeleteRows(LONG row, LONG count) override;
  void Reorder(LONG first_row, const std::vector<LONG>& order) override;

 private:
  using Row = std::vector<Variant>;

  Variant& Cell(LONG row, LONG column);
  std::size_t Place(LONG row) const { return static_cast<std::size_t>(row - bounds_.lower_row); }
  Row BlankRow() const { return Row(static_cast<std::size_t>(bounds_.columns())); }

  ArrayBounds bounds_;
  std::vector<Row> rows_;
};

}  // namespace tessary::com
