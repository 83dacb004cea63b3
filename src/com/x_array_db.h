#pragma once

#include <memory>

#include "com/array_cells.h"
#include "com/dual.h"
#include "engine/element_table.h"
#include "engine/write_table.h"

namespace tessary::com {

// An array as clients see it: one of their own, an element array or a write array. An array of
// their own that is used as one of the others turns into it, so that what the core does to the
// elements shows in the object that the client holds.
class XArrayDBFace final : public Dual<IXArrayDB> {
 public:
  XArrayDBFace();
  ~XArrayDBFace() override;

  // The one face of an array on the calling thread; none for none.
  static ComPtr<IXArrayDB> Of(const Ref<ElementTable>& table);
  static ComPtr<IXArrayDB> Of(const Ref<WriteTable>& lines);
  // The element array or write array behind an argument, none for none. DISP_E_TYPEMISMATCH for
  // an object of another kind or thread, Failure 9 or 13 for an array that does not fit.
  static Ref<ElementTable> ElementsOf(ThreadState& thread, IXArrayDB* array);
  static Ref<WriteTable> LinesOf(ThreadState& thread, IXArrayDB* array);

  STDMETHODIMP get_Value(LONG lngRow, LONG lngColumn, VARIANT* pvntValue) override;
  STDMETHODIMP put_Value(LONG lngRow, LONG lngColumn, VARIANT vntValue) override;
  STDMETHODIMP putref_Value(LONG lngRow, LONG lngColumn, VARIANT vntValue) override;
  STDMETHODIMP ReDim(LONG lngLowerRow, LONG lngUpperRow, LONG lngLowerColumn,
                     LONG lngUpperColumn) override;
  STDMETHODIMP AppendRows(LONG lngCount) override;
  STDMETHODIMP InsertRows(LONG lngRow, LONG lngCount) override;
  STDMETHODIMP DeleteRows(LONG lngRow, LONG lngCount) override;
  STDMETHODIMP get_LowerBound(LONG lngDimension, LONG* plngBound) override;
  STDMETHODIMP get_UpperBound(LONG lngDimension, LONG* plngBound) override;
  STDMETHODIMP get_Count(LONG lngDimension, LONG* plngCount) override;
  STDMETHODIMP Find(LONG lngStartRow, LONG lngColumn, VARIANT vntValue, LONG lngDirection,
                    LONG* plngRow) override;
  STDMETHODIMP QuickSort(LONG lngFirstRow, LONG lngLastRow, LONG lngColumn, LONG lngOrder,
                         LONG lngType) override;

 private:
  void* FindMore(REFIID iid) override;
  static ComPtr<XArrayDBFace> From(ThreadState& thread, IXArrayDB* array);

  void Adopt(Ref<ElementTable> table);
  void Adopt(Ref<WriteTable> lines);
  void LeaveShown();
  std::shared_ptr<ArrayCells> Changeable();
  template <class Use>
  HRESULT ReturnBound(LONG dimension, LONG* result, Use&& use);

  // Objects in the cells may call back while the cells are at work, so whoever lets them work has
  // a share of them.
  std::shared_ptr<ArrayCells> cells_;
  Ref<ElementTable> elements_;  // the array of the core that is shown, if any
  Ref<WriteTable> lines_;
};

}  // namespace tessary::com
