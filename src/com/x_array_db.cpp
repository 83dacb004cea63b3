#include "com/x_array_db.h"

#include <algorithm>
#include <numeric>

#include "com/client_cells.h"
#include "com/element_cells.h"
#include "com/text.h"
#include "com/write_cells.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace tessary::com {
namespace {

const ClassFacts kFacts{CLSID_XArrayDB, IID_IXArrayDB, nullptr, L"Tessary.XArrayDB"};

// By this the component knows its own arrays; a proxy does not answer to it.
constexpr IID kOwnArray = {
    0x4f0d1c52, 0x6a1b, 0x4c39, {0x9b, 0x52, 0x1e, 0x84, 0x70, 0x36, 0xd2, 0x6b}};

enum Direction : LONG { kForwards = 0, kBackwards = 1 };
enum SortOrder : LONG { kAscending = 0, kDescending = 1 };
enum SortType : LONG { kNumbers = 7, kTexts = 8 };

bool IsObject(const Variant& value) {
  return value.type() == VT_DISPATCH || value.type() == VT_UNKNOWN;
}

bool SameValue(const Variant& a, const Variant& b) {
  if (IsObject(a) || IsObject(b)) {
    if (!IsObject(a) || !IsObject(b)) return false;
    return ComPtr<IUnknown>::Query(V_UNKNOWN(&a.get())).get() ==
           ComPtr<IUnknown>::Query(V_UNKNOWN(&b.get())).get();
  }
  if (a.type() == VT_NULL || b.type() == VT_NULL) return a.type() == b.type();
  return EqualsIgnoreCase(ToUtf8(V_BSTR(&CellAs(a, VT_BSTR).get())),
                          ToUtf8(V_BSTR(&CellAs(b, VT_BSTR).get())));
}

// The rows of a range in the order that their keys ask for; rows of equal keys keep theirs.
template <class Key, class KeyOf>
std::vector<LONG> Sorted(LONG first, LONG last, bool descending, KeyOf&& key_of) {
  std::vector<LONG> order(static_cast<std::size_t>(last - first) + 1);
  std::iota(order.begin(), order.end(), first);
  std::vector<Key> keys;
  keys.reserve(order.size());
  for (const LONG row : order) keys.push_back(key_of(row));
  std::stable_sort(order.begin(), order.end(), [&](LONG a, LONG b) {
    const Key& key_a = keys[static_cast<std::size_t>(a - first)];
    const Key& key_b = keys[static_cast<std::size_t>(b - first)];
    return descending ? key_b < key_a : key_a < key_b;
  });
  return order;
}

}  // namespace

XArrayDBFace::XArrayDBFace() : Dual(kFacts), cells_(std::make_shared<ClientCells>()) {}

XArrayDBFace::~XArrayDBFace() { LeaveShown(); }

ComPtr<IXArrayDB> XArrayDBFace::Of(const Ref<ElementTable>& table) {
  if (!table) return {};
  IUnknown* known = ThreadState::Current()->FaceOf(table.get());
  if (known) return ComPtr<IXArrayDB>::Query(known);
  const auto face = NewObject<XArrayDBFace>();
  face->Adopt(table);
  return ComPtr<IXArrayDB>::Share(face.get());
}

ComPtr<IXArrayDB> XArrayDBFace::Of(const Ref<WriteTable>& lines) {
  if (!lines) return {};
  const auto face = NewObject<XArrayDBFace>();
  face->Adopt(lines);
  return ComPtr<IXArrayDB>::Share(face.get());
}

void* XArrayDBFace::FindMore(REFIID iid) { return iid == kOwnArray ? this : nullptr; }

ComPtr<XArrayDBFace> XArrayDBFace::From(ThreadState& thread, IXArrayDB* array) {
  void* own = nullptr;
  if (FAILED(array->QueryInterface(kOwnArray, &own))) throw ComError{DISP_E_TYPEMISMATCH};
  auto face = ComPtr<XArrayDBFace>::Take(static_cast<XArrayDBFace*>(own));
  if (&face->thread() != &thread) throw ComError{DISP_E_TYPEMISMATCH};
  return face;
}

Ref<ElementTable> XArrayDBFace::ElementsOf(ThreadState& thread, IXArrayDB* array) {
  if (!array) return nullptr;
  const auto face = From(thread, array);
  if (!face->elements_) {
    const auto cells = face->cells_;
    auto table = ElementCells::TableOf(thread, *cells);
    if (face->cells_ != cells) throw Failure(kInvalidCall);  // an object in it has changed it
    face->Adopt(std::move(table));
  }
  return face->elements_;
}

Ref<WriteTable> XArrayDBFace::LinesOf(ThreadState& thread, IXArrayDB* array) {
  if (!array) return nullptr;
  const auto face = From(thread, array);
  if (face->elements_) throw Failure(kSubscriptOutOfRange);
  if (!face->lines_) face->Adopt(WriteCells::TableOf(*face->cells_));
  return face->lines_;
}

void XArrayDBFace::Adopt(Ref<ElementTable> table) {
  std::shared_ptr<ArrayCells> cells = std::make_shared<ElementCells>(thread(), table);
  thread().SetFace(table.get(), static_cast<IXArrayDB*>(this));
  elements_ = std::move(table);
  lines_ = nullptr;
  std::swap(cells_, cells);  // the old ones go last
}

void XArrayDBFace::Adopt(Ref<WriteTable> lines) {
  std::shared_ptr<ArrayCells> cells = std::make_shared<WriteCells>(lines);
  lines_ = std::move(lines);
  std::swap(cells_, cells);
}

void XArrayDBFace::LeaveShown() {
  if (elements_) thread().ForgetFace(elements_.get());
}

std::shared_ptr<ArrayCells> XArrayDBFace::Changeable() {
  if (lines_) {
    cells_ = std::make_shared<ClientCells>(*cells_);
    lines_ = nullptr;
  }
  return cells_;
}

STDMETHODIMP XArrayDBFace::get_Value(LONG lngRow, LONG lngColumn, VARIANT* pvntValue) {
  return Run([&] {
    RequirePointer(pvntValue);
    VariantInit(pvntValue);
    const auto cells = cells_;
    *pvntValue = cells->Get(lngRow, lngColumn).Detach();
  });
}

STDMETHODIMP XArrayDBFace::put_Value(LONG lngRow, LONG lngColumn, VARIANT vntValue) {
  return Run([&] { Changeable()->Set(lngRow, lngColumn, Variant::Copy(vntValue)); });
}

STDMETHODIMP XArrayDBFace::putref_Value(LONG lngRow, LONG lngColumn, VARIANT vntValue) {
  return put_Value(lngRow, lngColumn, vntValue);
}

STDMETHODIMP XArrayDBFace::ReDim(LONG lngLowerRow, LONG lngUpperRow, LONG lngLowerColumn,
                                 LONG lngUpperColumn) {
  return Run([&] {
    Changeable()->ReDim({lngLowerRow, lngUpperRow, lngLowerColumn, lngUpperColumn});
  });
}

STDMETHODIMP XArrayDBFace::AppendRows(LONG lngCount) {
  return Run([&] {
    const auto cells = Changeable();
    cells->InsertRows(cells->bounds().upper_row + 1, lngCount);
  });
}

STDMETHODIMP XArrayDBFace::InsertRows(LONG lngRow, LONG lngCount) {
  return Run([&] { Changeable()->InsertRows(lngRow, lngCount); });
}

STDMETHODIMP XArrayDBFace::DeleteRows(LONG lngRow, LONG lngCount) {
  return Run([&] { Changeable()->DeleteRows(lngRow, lngCount); });
}

// `use` gives a dimension's lower and upper bound the form that is asked for.
template <class Use>
HRESULT XArrayDBFace::ReturnBound(LONG dimension, LONG* result, Use&& use) {
  return Run([&] {
    RequirePointer(result);
    *result = 0;
    const ArrayBounds bounds = cells_->bounds();
    if (dimension != 1 && dimension != 2) throw Failure(kSubscriptOutOfRange);
    *result = dimension == 1 ? use(bounds.lower_row, bounds.upper_row)
                             : use(bounds.lower_column, bounds.upper_column);
  });
}

STDMETHODIMP XArrayDBFace::get_LowerBound(LONG lngDimension, LONG* plngBound) {
  return ReturnBound(lngDimension, plngBound, [](LONG lower, LONG) { return lower; });
}

STDMETHODIMP XArrayDBFace::get_UpperBound(LONG lngDimension, LONG* plngBound) {
  return ReturnBound(lngDimension, plngBound, [](LONG, LONG upper) { return upper; });
}

STDMETHODIMP XArrayDBFace::get_Count(LONG lngDimension, LONG* plngCount) {
  return ReturnBound(lngDimension, plngCount,
                     [](LONG lower, LONG upper) { return upper - lower + 1; });
}

STDMETHODIMP XArrayDBFace::Find(LONG lngStartRow, LONG lngColumn, VARIANT vntValue,
                                LONG lngDirection, LONG* plngRow) {
  return Run([&] {
    RequirePointer(plngRow);
    const auto cells = cells_;
    const ArrayBounds bounds = cells->bounds();
    *plngRow = bounds.lower_row - 1;
    if (lngDirection != kForwards && lngDirection != kBackwards) throw Failure(kInvalidCall);
    if (bounds.rows() == 0) return;
    if (!bounds.HasRow(lngStartRow)) throw Failure(kSubscriptOutOfRange);
    const Variant wanted = Variant::Copy(vntValue);
    const LONG step = lngDirection == kForwards ? 1 : -1;
    for (LONG row = lngStartRow; bounds.HasRow(row); row += step) {
      if (!SameValue(cells->Get(row, lngColumn), wanted)) continue;
      *plngRow = row;
      return;
    }
  });
}

STDMETHODIMP XArrayDBFace::QuickSort(LONG lngFirstRow, LONG lngLastRow, LONG lngColumn,
                                     LONG lngOrder, LONG lngType) {
  return Run([&] {
    const bool known_type = lngType == kNumbers || lngType == kTexts;
    if (!known_type || (lngOrder != kAscending && lngOrder != kDescending)) {
      throw Failure(kInvalidCall);
    }
    if (lngFirstRow > lngLastRow) return;
    const auto cells = Changeable();
    if (!cells->bounds().HasRow(lngFirstRow) || !cells->bounds().HasRow(lngLastRow)) {
      throw Failure(kSubscriptOutOfRange);
    }
    const bool descending = lngOrder == kDescending;
    const auto number = [&](LONG row) {
      return V_R8(&CellAs(cells->Get(row, lngColumn), VT_R8).get());
    };
    const auto text = [&](LONG row) {
      return FoldCase(ToUtf8(V_BSTR(&CellAs(cells->Get(row, lngColumn), VT_BSTR).get())));
    };
    cells->Reorder(lngFirstRow,
                   lngType == kNumbers
                       ? Sorted<double>(lngFirstRow, lngLastRow, descending, number)
                       : Sorted<std::string>(lngFirstRow, lngLastRow, descending, text));
  });
}

}  // namespace tessary::com
