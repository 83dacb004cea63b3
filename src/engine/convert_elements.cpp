// Applying differences to a level. All deletions come first, then insertions, then updates, so
// that a new element never takes the place of one that is about to go. Every change is located by
// name, key, type and neighbours; one whose element is not there, or already is, does nothing,
// which is what leaves the customer's own changes alone.

#include "engine/conversion_observer.h"
#include "engine/find_element.h"
#include "engine/level_basis.h"
#include "engine/number_of.h"
#include "platform/text.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

// The key under which deletions and updates look for their element: the next element's key and
// name change places. The search leaves the next name out, so the report's next keys are in effect
// compared with the difference's next name. Difference files in use rely on it.
ElementKey Crosswise(ElementKey key) {
  std::swap(key[bxeaPosNextName], key[bxeaPosNextKey]);
  return key;
}

}  // namespace

DifferenceTelling BXLevelBasis::Telling() const { return DifferenceTelling(*context_); }

void BXLevelBasis::Convert(const Ref<ElementTable>& aReport, const Ref<ElementTable>& aDiffFile) {
  constexpr std::string_view kName = "BXLevelBasis_Convert";
  const Procedure preparation{context_->errors(), m_strLevelClassName, kName,
                              "Fehler beim Vorbereiten der Konvertierung.",
                              Procedure::Message::kAlways};
  const Descent descent(*context_);
  preparation.Run([&] {
    m_aElement = aReport;
    PrepareConversion(aDiffFile);
  });
  if (IsArrayEmpty(aDiffFile) || IsArrayEmpty(m_aElement)) {
    return Telling().AllSkipped(aDiffFile, SkipReason::kEmptySection);
  }
  InProcedure(kName, "Fehler beim Verarbeiten eines Elementes.").Run([&] {
    for (std::int32_t row = 1; row <= aDiffFile->rows(); ++row) {
      context_->Yield();
      if (row > 1 && aDiffFile->Row(row).status != aDiffFile->Row(row - 1).status) {
        if (before_insert_) before_insert_->CompleteInsertions();
        aReport->SettleManyChanges();
      }
      ApplyDifference(aDiffFile, row);
    }
    aReport->Settle();
    aReport->EndSearches();
  });
}

void BXLevelBasis::PrepareConversion(const Ref<ElementTable>& aDiffFile) {
  InPrivateProcedure("PrepareConversion").Run([&] {
    if (!IsArrayEmpty(aDiffFile)) aDiffFile->SortByStatus();
  });
}

void BXLevelBasis::ApplyDifference(const Ref<ElementTable>& aDiffFile, std::int32_t lngRow) {
  const Element& difference = aDiffFile->Row(lngRow);
  switch (difference.status) {
    case bxsDelete:
      return DeleteElement(difference);
    case bxsNew:
      AnnounceInsertion(*aDiffFile, lngRow);
      return InsertElement(aDiffFile->Row(lngRow));
    case bxsUpdate:
      return UpdateElement(aDiffFile, lngRow);
    default:
      return Telling().Skipped(difference, SkipReason::kNoStatus);
  }
}

// An observer may change whatever it can reach, so nothing seen before it was asked counts after.
void BXLevelBasis::AnnounceInsertion(ElementTable& aDiffFile, std::int32_t lngRow) {
  if (before_insert_) before_insert_->BeforeInsert(aDiffFile.Row(lngRow));
  if (!insertion_observer_) return;
  if (before_insert_) before_insert_->CompleteInsertions();
  ChildOf(aDiffFile, lngRow);
  const Element announced = aDiffFile.Row(lngRow);
  insertion_observer_->BeforeInsert(announced);
  if (!m_aElement) throw Failure(kObjectNotSet);
}

void BXLevelBasis::DeleteElement(const Element& difference) {
  InPrivateProcedure("DeleteElement").Run([&] {
    const std::int32_t row = FindElement(m_aElement, Crosswise(difference.key));
    if (row == 0) return Telling().Skipped(difference, SkipReason::kNotFound);
    const std::string_view old_value = m_aElement->Row(row).value();
    m_aElement->Delete(row);
    Telling().Applied(difference, old_value);
  });
}

void BXLevelBasis::InsertElement(const Element& difference) {
  InPrivateProcedure("InsertElement").Run([&] {
    if (FindElement(m_aElement, difference.key) != 0) {
      return Telling().Skipped(difference, SkipReason::kAlreadyThere);
    }
    Element element = difference;
    element.status = bxsUnknown;
    element.key = difference.key.Identity();
    const std::int64_t row = InsertionRow(difference.key);
    if (row < 1 || row > m_aElement->rows()) {
      AddElement(std::move(element));
    } else {
      m_aElement->Insert(static_cast<std::int32_t>(row), std::move(element));
    }
    Telling().Applied(difference, {});
  });
}

// The row that a new element takes: behind its previous neighbour, else before its next one, else
// at its ordinal among the elements of its name; 0 where none of these is there.
std::int64_t BXLevelBasis::InsertionRow(const ElementKey& key) const {
  const std::int32_t previous =
      FindElement(m_aElement, {key[bxeaPosPrevName], key[bxeaPosPrevKey], key[bxeaPosPrevTyp]});
  if (previous != 0) return previous + 1;
  const std::int32_t next =
      FindElement(m_aElement, {key[bxeaPosNextName], key[bxeaPosNextKey], key[bxeaPosNextTyp]});
  if (next != 0) return next;
  const std::string_view number = TrimBlanks(pool().Text(key[bxeaPosNr]));
  if (number.empty()) return 0;
  const std::int32_t first = m_aElement->FindName(key[bxeaName]);
  return first == 0 ? 0 : std::int64_t{first} + NumberOf(number) - 1;
}

void BXLevelBasis::UpdateElement(const Ref<ElementTable>& aDiffFile, std::int32_t lngRow) {
  InPrivateProcedure("UpdateElement").Run([&] {
    const Element& difference = aDiffFile->Row(lngRow);
    const std::int32_t row = FindElement(m_aElement, Crosswise(difference.key));
    if (row == 0) return Telling().Skipped(difference, SkipReason::kNotFound);
    if (!IsSectionLine(pool().Text(difference.key[bxeaName]))) {
      const std::string_view old_value = m_aElement->Row(row).value();
      m_aElement->SetValue(row, difference.value());
      return Telling().PropertyUpdated(difference, old_value);
    }
    const Ref<Level> section = ChildOf(*m_aElement, row);
    if (!section) return Telling().Skipped(difference, SkipReason::kEmptySection);
    const Ref<ElementTable> inside = ChildArrayOf(difference);
    if (IsArrayEmpty(inside)) Telling().Skipped(difference, SkipReason::kNothingInside);
    Telling().Enter(difference);
    section->Convert(section->ElementArray(), inside);
    Telling().Leave();
  });
}

}  // namespace tessary
