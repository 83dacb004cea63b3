#include "com/array_cells.h"

#include "platform/failure.h"

namespace tessary::com {
namespace {

constexpr std::int64_t kMostCells = std::int64_t{1} << 26;

}  // namespace

void CheckGrowth(const ArrayBounds& bounds, std::int64_t added_rows) {
  if (added_rows < 0) throw Failure(kInvalidCall);
  const std::int64_t rows = bounds.rows() + added_rows;
  const std::int64_t columns = bounds.columns() > 0 ? bounds.columns() : 1;
  if (columns > kMostCells || rows > kMostCells / columns) throw Failure(kOutOfMemory);
  const auto count_up = [](LONG lower, std::int64_t count) { return lower + count <= INT32_MAX; };
  if (!count_up(bounds.lower_row, rows) || !count_up(bounds.lower_column, columns)) {
    throw Failure(kOverflow);
  }
  // One less than the lower bound says that nothing was found.
  if (bounds.lower_row == INT32_MIN) throw Failure(kOverflow);
}

Variant CellAs(const Variant& value, VARTYPE type) {
  try {
    return value.As(type);
  } catch (const ComError& error) {
    throw Failure(error.result == DISP_E_OVERFLOW ? kOverflow : kTypeMismatch);
  }
}

}  // namespace tessary::com
