#pragma once

#include "com/array_cells.h"
#include "com/thread_state.h"
#include "engine/element_table.h"

namespace tessary::com {

// The cells of an element array: rows from 1, columns 0 to 12. The status is a 32-bit number, the
// last column the child level's COM object or Nothing, all others are strings.
class ElementCells final : public ArrayCells {
 public:
  ElementCells(ThreadState& thread, Ref<ElementTable> table)
      : thread_(thread), use_(thread), table_(std::move(table)) {}

  ArrayBounds bounds() const override;
  Variant Get(LONG row, LONG column) override;
  void Set(LONG row, LONG column, const Variant& value) override;
  // The number of rows alone can change; other bounds raise Failure 9.
  void ReDim(const ArrayBounds& bounds) override;
  void InsertRows(LONG row, LONG count) override;
  void DeleteRows(LONG row, LONG count) override;
  void Reorder(LONG first_row, const std::vector<LONG>& order) override;

  // An element array with the contents of other cells; Failure 9 or 13 when they do not fit.
  // An array without rows always fits.
  static Ref<ElementTable> TableOf(ThreadState& thread, ArrayCells& source);

 private:
  void SetChild(LONG row, const Ref<Level>& child);

  ThreadState& thread_;
  const ContextUse use_;
  const Ref<ElementTable> table_;
};

}  // namespace tessary::com
