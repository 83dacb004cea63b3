#include "com/element_cells.h"

#include "com/level_face.h"
#include "com/nesting.h"
#include "platform/failure.h"

namespace tessary::com {
namespace {

Variant TextVariant(std::string_view text) { return Variant::Text(Bstr(text)); }

BXStatus StatusOf(const Variant& value) {
  const LONG number = V_I4(&CellAs(value, VT_I4).get());
  if (number < bxsDelete || number > bxsUnknown) throw Failure(kTypeMismatch);
  return static_cast<BXStatus>(number);
}

std::string TextOf(const Variant& value) { return ToUtf8(V_BSTR(&CellAs(value, VT_BSTR).get())); }

Ref<Level> LevelIn(ThreadState& thread, const Variant& value) {
  if (IsNothing(value.get())) return nullptr;
  if (value.type() != VT_DISPATCH && value.type() != VT_UNKNOWN) throw Failure(kTypeMismatch);
  try {
    return LevelFace::LevelOf(thread, V_UNKNOWN(&value.get()));
  } catch (const ComError&) {
    throw Failure(kTypeMismatch);
  }
}

bool IsElementArray(const ArrayBounds& bounds) {
  return bounds.lower_row == 1 && bounds.lower_column == bxeaStatus &&
         bounds.upper_column == bxeaElement;
}

}  // namespace

ArrayBounds ElementCells::bounds() const { return {1, table_->rows(), bxeaStatus, bxeaElement}; }

Variant ElementCells::Get(LONG row, LONG column) {
  const Element& element = table_->Row(row);
  switch (column) {
    case bxeaStatus:
      return Variant::Long(element.status);
    case bxeaValue:
      return TextVariant(element.value());
    case bxeaElement:
      return Variant::Object(LevelFace::Of(thread_.context()->ChildOf(*table_, row)).Detach());
    default:
      if (column < bxeaName || column > bxeaPosNr) throw Failure(kSubscriptOutOfRange);
      return TextVariant(table_->pool().Text(element.key[static_cast<BXElementArray>(column)]));
  }
}

void ElementCells::Set(LONG row, LONG column, const Variant& value) {
  table_->Row(row);  // a row that is not there comes before a value that does not fit
  switch (column) {
    case bxeaStatus:
      return table_->SetStatus(row, StatusOf(value));
    case bxeaValue:
      return table_->SetValue(row, TextOf(value));
    case bxeaElement:
      return SetChild(row, LevelIn(thread_, value));
    default:
      if (column < bxeaName || column > bxeaPosNr) throw Failure(kSubscriptOutOfRange);
      return table_->SetText(row, static_cast<BXElementArray>(column),
                             table_->pool().Intern(TextOf(value)));
  }
}

// Asking the object who it is may have changed the array, so the row is looked for again.
void ElementCells::SetChild(LONG row, const Ref<Level>& child) {
  RequireNoCycle(nullptr, table_, child);
  table_->SetChild(row, child);
}

void ElementCells::ReDim(const ArrayBounds& wanted) {
  if (!IsElementArray(wanted) || wanted.rows() < 0) throw Failure(kSubscriptOutOfRange);
  const LONG rows = table_->rows();
  if (wanted.upper_row > rows) return InsertRows(rows + 1, wanted.upper_row - rows);
  DeleteRows(wanted.upper_row + 1, rows - wanted.upper_row);
}

void ElementCells::InsertRows(LONG row, LONG count) {
  if (row < 1 || row - 1 > table_->rows()) throw Failure(kSubscriptOutOfRange);
  CheckGrowth(bounds(), count);
  for (LONG added = 0; added < count; ++added) table_->Insert(row + added, Element{});
  table_->Settle();
}

void ElementCells::DeleteRows(LONG row, LONG count) {
  if (count < 0) throw Failure(kInvalidCall);
  if (count == 0) return;
  if (row < 1 || std::int64_t{row} + count - 1 > table_->rows()) {
    throw Failure(kSubscriptOutOfRange);
  }
  std::vector<std::uint8_t> marked(static_cast<std::size_t>(table_->rows()));
  for (LONG at = 0; at < count; ++at) marked[static_cast<std::size_t>(row + at) - 1] = 1;
  table_->DeleteMarked(marked);
}

void ElementCells::Reorder(LONG first_row, const std::vector<LONG>& order) {
  std::vector<Element> sorted;
  sorted.reserve(order.size());
  for (const LONG row : order) sorted.push_back(table_->Row(row));
  DeleteRows(first_row, static_cast<LONG>(order.size()));
  for (Element& element : sorted) table_->Insert(first_row++, std::move(element));
  table_->Settle();
}

Ref<ElementTable> ElementCells::TableOf(ThreadState& thread, ArrayCells& source) {
  const ContextUse use(thread);
  auto table = MakeRef<ElementTable>(thread.context()->pool());
  const ArrayBounds bounds = source.bounds();
  if (bounds.rows() == 0) return table;
  if (!IsElementArray(bounds)) throw Failure(kSubscriptOutOfRange);
  ElementCells cells(thread, table);
  for (LONG row = 1; row <= bounds.upper_row; ++row) {
    table->Append(Element{});
    for (LONG column = bxeaStatus; column <= bxeaElement; ++column) {
      cells.Set(row, column, source.Get(row, column));
    }
  }
  return table;
}

}  // namespace tessary::com
