#include "com/write_cells.h"

#include "platform/failure.h"

namespace tessary::com {

Variant WriteCells::Get(LONG row, LONG column) {
  if (column == kLevelColumn) return Variant::Long(lines_->Level(row));
  if (column == kTextColumn) return Variant::Text(Bstr(lines_->Text(row)));
  throw Failure(kSubscriptOutOfRange);
}

Ref<WriteTable> WriteCells::TableOf(ArrayCells& source) {
  auto lines = MakeRef<WriteTable>();
  const ArrayBounds bounds = source.bounds();
  if (bounds.rows() == 0) return lines;
  if (bounds.lower_row != 1 || bounds.lower_column != kLevelColumn ||
      bounds.upper_column != kTextColumn) {
    throw Failure(kSubscriptOutOfRange);
  }
  for (LONG row = 1; row <= bounds.upper_row; ++row) {
    const Variant level = CellAs(source.Get(row, kLevelColumn), VT_I4);
    const Variant text = CellAs(source.Get(row, kTextColumn), VT_BSTR);
    lines->Append(V_I4(&level.get()), ToUtf8(V_BSTR(&text.get())));
  }
  return lines;
}

void WriteCells::RefuseChange() { throw Failure(kInternalError); }

}  // namespace tessary::com
