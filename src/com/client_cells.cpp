#include "com/client_cells.h"

#include <algorithm>

#include "platform/failure.h"

namespace tessary::com {

ClientCells::ClientCells(ArrayCells& source) {
  const ArrayBounds bounds = source.bounds();
  ReDim(bounds);
  for (LONG row = bounds.lower_row; row <= bounds.upper_row; ++row) {
    for (LONG column = bounds.lower_column; column <= bounds.upper_column; ++column) {
      Cell(row, column) = source.Get(row, column);
    }
  }
}

Variant& ClientCells::Cell(LONG row, LONG column) {
  if (!bounds_.HasRow(row) || !bounds_.HasColumn(column)) throw Failure(kSubscriptOutOfRange);
  return rows_[Place(row)][static_cast<std::size_t>(column - bounds_.lower_column)];
}

void ClientCells::ReDim(const ArrayBounds& bounds) {
  if (bounds.rows() < 0 || bounds.columns() < 0) throw Failure(kSubscriptOutOfRange);
  CheckGrowth(bounds, 0);
  ClientCells made;
  made.bounds_ = bounds;
  if (bounds.rows() > 0) {
    made.rows_.assign(static_cast<std::size_t>(bounds.rows()), made.BlankRow());
  }
  const LONG first = std::max(bounds.lower_row, bounds_.lower_row);
  const LONG last = std::min(bounds.upper_row, bounds_.upper_row);
  const LONG first_column = std::max(bounds.lower_column, bounds_.lower_column);
  const LONG last_column = std::min(bounds.upper_column, bounds_.upper_column);
  for (LONG row = first; row <= last; ++row) {
    for (LONG column = first_column; column <= last_column; ++column) {
      std::swap(made.Cell(row, column), Cell(row, column));
    }
  }
  std::swap(bounds_, made.bounds_);
  std::swap(rows_, made.rows_);
}

void ClientCells::InsertRows(LONG row, LONG count) {
  if (bounds_.columns() == 0 || row < bounds_.lower_row || row - 1 > bounds_.upper_row) {
    throw Failure(kSubscriptOutOfRange);
  }
  CheckGrowth(bounds_, count);
  rows_.insert(rows_.begin() + (row - bounds_.lower_row), static_cast<std::size_t>(count),
               BlankRow());
  bounds_.upper_row += count;
}

void ClientCells::DeleteRows(LONG row, LONG count) {
  const std::int64_t last = std::int64_t{row} + count - 1;
  if (count < 0) throw Failure(kInvalidCall);
  if (count == 0) return;
  if (row < bounds_.lower_row || last > bounds_.upper_row) throw Failure(kSubscriptOutOfRange);
  const auto first = rows_.begin() + (row - bounds_.lower_row);
  std::vector<Row> deleted(std::make_move_iterator(first), std::make_move_iterator(first + count));
  rows_.erase(first, first + count);
  bounds_.upper_row -= count;  // only then do the objects in the rows go, which may call back
}

void ClientCells::Reorder(LONG first_row, const std::vector<LONG>& order) {
  const std::int64_t last = first_row + static_cast<std::int64_t>(order.size()) - 1;
  if (first_row < bounds_.lower_row || last > bounds_.upper_row) {
    throw Failure(kSubscriptOutOfRange);
  }
  std::vector<Row> sorted;
  sorted.reserve(order.size());
  for (const LONG row : order) sorted.push_back(std::move(rows_[Place(row)]));
  std::move(sorted.begin(), sorted.end(), rows_.begin() + (first_row - bounds_.lower_row));
}

}  // namespace tessary::com
