// Comparing two element lists of one level. Elements that only one side has are recorded and
// taken out of that side; what is left exists on both sides and is compared in pairs, contents
// by a level object of the next class that receives the differences inside.
//
// Lists whose order matters (lines, columns) are first checked by place: a surplus of one side is
// attributed to the first rows whose key does not fit, and rows whose keys then still differ at
// the same place count as replaced.
//
// The array that receives the differences may be one of those that are compared, so rows are
// counted before anything is recorded, and what is recorded is a copy.

#include <algorithm>
#include <utility>
#include <vector>

#include "engine/find_element.h"
#include "engine/level_basis.h"
#include "engine/section_text.h"
#include "platform/failure.h"
#include "platform/text.h"

namespace tessary {
namespace {

// The row's key, or the empty text for a row behind the end.
Symbol KeyAt(const Ref<ElementTable>& array, std::int32_t row) {
  return row > array->rows() ? Symbol::kEmpty : array->Row(row).key[bxeaKey];
}

// True for an element whose child level nobody has used and nobody needs to.
bool HasEmptyChild(const Element& element) {
  return element.pending_child != Element::kNoChild && element.unread().empty();
}

// Nearly all pairs are like this.
bool IsSameProperty(const Element& a, const Element& b) {
  return HasEmptyChild(a) && HasEmptyChild(b) && EqualsIgnoreCase(a.value(), b.value());
}

// True for sections whose contents nobody has read and need not be read, as comparing them would
// find each element again.
bool IsSameSection(const Element& a, const Element& b, DistinctElements& distinct) {
  return !a.unread().empty() && a.unread() == b.unread() &&
         distinct.In(a.unread(), a.pending_child);
}

bool IsSame(const Element& a, const Element& b, DistinctElements& distinct) {
  return IsSameProperty(a, b) || IsSameSection(a, b, distinct);
}

std::int32_t RowsOf(const Ref<ElementTable>& array) {
  if (!array) throw Failure(kObjectNotSet);
  return array->rows();
}

}  // namespace

// Adds an element to the receiving array; a deleted one is recorded without its contents.
void BXLevelBasis::Record(const Element& element, BXStatus status) {
  Element recorded = element;
  recorded.status = static_cast<std::int8_t>(status);
  if (status == bxsDelete) recorded.set_child(nullptr);
  AddElement(std::move(recorded));
}

bool BXLevelBasis::CheckForAddingAllElements(const Ref<ElementTable>& aOldElement,
                                             const Ref<ElementTable>& aNewElement) {
  const Procedure procedure = InProcedure("BXLevelBasis_CheckForAddingAllElements",
                                          "Fehler beim Überprüfen komplett fehlender Elemente.");
  return procedure.Run([&] {
    const bool all_deleted = IsArrayEmpty(aNewElement);
    if (!all_deleted && !IsArrayEmpty(aOldElement)) return false;
    const Ref<ElementTable>& source = all_deleted ? aOldElement : aNewElement;
    std::vector<Element> taken;
    for (std::int32_t row = 1; row <= RowsOf(source); ++row) taken.push_back(Read(*source, row));
    source->DeleteAll();
    for (Element& element : taken) {
      context_->Yield();
      element.set_value(
          pool().Text(element.key[bxeaName]));  // the value takes the name, not column 11
      Record(element, all_deleted ? bxsDelete : bxsNew);
    }
    return true;
  });
}

void BXLevelBasis::CheckMissingElements(const Ref<ElementTable>& aSource,
                                        const Ref<ElementTable>& aDest, BXStatus bxsStatus) {
  const Procedure procedure = InProcedure("BXLevelBasis_CheckMissingElements",
                                          "Fehler beim Überprüfen fehlender Elemente.");
  procedure.Run([&] {
    std::vector<std::uint8_t> missing;
    std::int32_t near = 1;
    for (std::int32_t row = 1; row <= RowsOf(aSource); ++row) {
      context_->Yield();
      const Element& element = aSource->Row(row);
      const bool in_dest = !IsArrayEmpty(aDest) && aDest->Contains(element.key.Identity(), near);
      if (in_dest && element.status != bxsStatus) continue;
      missing.resize(static_cast<std::size_t>(RowsOf(aSource)));
      missing[static_cast<std::size_t>(row) - 1] = 1;
    }
    // Where much is missing, the index takes memory that what is taken over needs now.
    if (!missing.empty() && aDest) aDest->EndSearches();
    TakeOver(aSource, std::move(missing), bxsStatus);
  });
}

// `marked` is empty where no row is. What is recorded stands behind all rows there were.
void BXLevelBasis::TakeOver(const Ref<ElementTable>& source, std::vector<std::uint8_t> marked,
                            BXStatus status) {
  const auto count = static_cast<std::size_t>(std::count(marked.begin(), marked.end(), 1));
  if (count > 0) Array().Reserve(static_cast<std::size_t>(RowsOf(m_aElement)) + count);
  const std::int32_t rows = RowsOf(source);
  for (std::int32_t row = 1; row <= rows; ++row) {
    context_->Yield();
    if (marked.empty() || !marked[static_cast<std::size_t>(row) - 1]) continue;
    Record(source->Row(row), status);
  }
  if (count == 0) return;
  marked.resize(static_cast<std::size_t>(RowsOf(source)));
  source->DeleteMarked(marked);
}

void BXLevelBasis::CheckMissingSpecialElements(const Ref<ElementTable>& aSource,
                                               const Ref<ElementTable>& aDest, BXStatus bxsStatus,
                                               std::int32_t lngStartRow) {
  const Procedure procedure = InProcedure("BXLevelBasis_CheckMissingSpecialElements",
                                          "Fehler beim Überprüfen komplett fehlender Elemente.");
  procedure.Run([&] {
    TakeOverSurplus(aSource, aDest, bxsStatus, lngStartRow);
    RecordReplaced(aSource, aDest, bxsStatus, lngStartRow);
  });
}

void BXLevelBasis::TakeOverSurplus(const Ref<ElementTable>& source, const Ref<ElementTable>& dest,
                                   BXStatus status, std::int32_t start) {
  std::int32_t surplus = RowsOf(source) - RowsOf(dest);
  if (surplus <= 0) return;
  std::vector<std::uint8_t> marked(static_cast<std::size_t>(RowsOf(source)));
  std::int32_t dest_row = start;
  for (std::int32_t row = start; row <= RowsOf(source) && surplus > 0; ++row) {
    if (pool().Same(KeyAt(source, row), KeyAt(dest, dest_row))) {
      ++dest_row;
      continue;
    }
    marked[static_cast<std::size_t>(row) - 1] = 1;
    --surplus;
  }
  TakeOver(source, std::move(marked), status);
}

void BXLevelBasis::RecordReplaced(const Ref<ElementTable>& source, const Ref<ElementTable>& dest,
                                  BXStatus status, std::int32_t start) {
  std::vector<std::uint8_t> source_marked(static_cast<std::size_t>(RowsOf(source)));
  std::vector<std::uint8_t> dest_marked(static_cast<std::size_t>(RowsOf(dest)));
  std::vector<std::pair<Element, BXStatus>> taken;
  for (std::int32_t row = start; row <= RowsOf(source); ++row) {
    if (pool().Same(KeyAt(source, row), KeyAt(dest, row))) continue;
    const bool in_dest = row <= RowsOf(dest);
    // The element of the new side is recorded first, whichever side is the source.
    if (status == bxsNew) taken.emplace_back(source->Row(row), bxsNew);
    if (in_dest) taken.emplace_back(dest->Row(row), status == bxsNew ? bxsDelete : bxsNew);
    if (status != bxsNew) taken.emplace_back(source->Row(row), status);
    source_marked[static_cast<std::size_t>(row) - 1] = 1;
    if (in_dest) dest_marked[static_cast<std::size_t>(row) - 1] = 1;
  }
  source->DeleteMarked(source_marked);
  dest->DeleteMarked(dest_marked);
  for (const auto& [element, element_status] : taken) Record(element, element_status);
}

void BXLevelBasis::CompareElements(const Ref<ElementTable>& aOldElement,
                                   const Ref<ElementTable>& aNewElement,
                                   std::string_view strCreateObject) {
  CompareElements(aOldElement, aNewElement, strCreateObject, Pairing{});
}

void BXLevelBasis::CompareElements(const Ref<ElementTable>& aOldElement,
                                   const Ref<ElementTable>& aNewElement,
                                   std::string_view strCreateObject, const Pairing& pairing) {
  const Procedure procedure =
      InProcedure("BXLevelBasis_CompareElements", "Fehler beim Vergleichen der Elemente.");
  procedure.Run([&] {
    const int child_class =
        strCreateObject.empty() ? Element::kNoChild : LevelClassNumber(strCreateObject);
    const Symbol skipped = pool().Intern(pairing.skipped_key);
    const std::int32_t rows = RowsOf(aNewElement);
    DistinctElements distinct;
    for (std::int32_t row = 1; row <= rows; ++row) {
      context_->Yield();
      const ElementKey key = aNewElement->Row(row).key;
      if (skipped != Symbol::kEmpty && pool().Same(key[bxeaKey], skipped)) continue;
      const std::int32_t old_row =
          FindElement(aOldElement, pairing.by_identity_alone ? key.Identity() : key);
      if (old_row == 0) {
        ReportUnpaired();
      } else if (IsSame(aOldElement->Row(old_row), aNewElement->Row(row), distinct)) {
        PassUnchanged();
      } else {
        ComparePair(Read(*aOldElement, old_row), Read(*aNewElement, row), child_class);
      }
    }
  });
}

void BXLevelBasis::ReportUnpaired() {
  context_->errors().objErrors->Add(
      {ErrorEntry::kFailure, kMissingElementsUnchecked + bxlbeCheckMissingElements,
       SourceText(m_strLevelClassName, "BXLevelBasis_CompareElements"),
       "Die Überprüfung auf fehlende Elemente wurde nicht korrekt durchgeführt."});
}

// Records the new element as changed and takes it back when nothing has changed.
void BXLevelBasis::ComparePair(const Element& old_element, const Element& new_element,
                               int child_class) {
  Element recorded = new_element;
  recorded.status = bxsUpdate;
  recorded.child = nullptr;
  recorded.pending_child = static_cast<std::int8_t>(child_class);
  AddElement(std::move(recorded));
  bool differs = !EqualsIgnoreCase(old_element.value(), new_element.value());
  if (child_class != Element::kNoChild) differs |= ContentsDiffer(old_element, new_element);
  if (!differs) m_aElement->Delete(m_aElement->rows());
}

// What is left of recording an element and taking it back.
void BXLevelBasis::PassUnchanged() {
  context_->errors().objErrors->Reset();
  Array();
}

// Compares the contents of a pair into the child level of the element recorded last.
bool BXLevelBasis::ContentsDiffer(const Element& old_element, const Element& new_element) {
  const Ref<ElementTable> old_contents = ChildArrayOf(old_element);
  const Ref<ElementTable> new_contents = ChildArrayOf(new_element);
  if (IsArrayEmpty(old_contents) && IsArrayEmpty(new_contents)) return false;
  const Ref<Level> child = LastElement();
  child->Compare(old_contents, new_contents);
  return !IsArrayEmpty(child->ElementArray());
}

}  // namespace tessary
