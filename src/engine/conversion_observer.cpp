#include "engine/conversion_observer.h"

#include "platform/text.h"
#include "report/line_syntax.h"

namespace tessary {
namespace {

BXStatus StatusOf(const Element& difference) { return static_cast<BXStatus>(difference.status); }

}  // namespace

std::string LabelOf(const ElementTexts& element) {
  std::string text(element.name);
  if (!element.key.empty() && !EqualsIgnoreCase(element.key, element.name)) {
    text.append(" ").append(element.key);
  }
  if (!element.typ.empty()) text.append(" ").append(element.typ);
  return text;
}

Ref<ElementTable> DifferenceTelling::Inside(const Element& difference) const {
  return context_.ContentsOf(difference);
}

ElementTexts DifferenceTelling::TextsOf(const Element& element) const {
  return {pool_.Text(element.key[bxeaName]), pool_.Text(element.key[bxeaKey]),
          pool_.Text(element.key[bxeaTyp])};
}

void DifferenceTelling::TellApplied(const Element& difference, std::string_view old_value) const {
  const bool deleted = difference.status == bxsDelete;
  observer_->Applied(StatusOf(difference), TextsOf(difference), old_value,
                     deleted ? std::string_view() : difference.value());
}

void DifferenceTelling::TellSkipped(const Element& difference, SkipReason reason) const {
  const bool section = IsSectionLine(pool_.Text(difference.key[bxeaName]));
  const auto tell = [&](SkipReason why) {
    observer_->Skipped(StatusOf(difference), TextsOf(difference), difference.value(), why);
  };
  if (difference.status == bxsUnknown) return tell(SkipReason::kNoStatus);
  if (difference.status != bxsUpdate) return tell(reason);
  const bool has_inside = !IsArrayEmpty(Inside(difference));
  if (!section || !has_inside) tell(section ? SkipReason::kNothingInside : reason);
  if (!has_inside) return;
  const bool not_found = reason == SkipReason::kNotFound;
  TellInsideSkipped(difference, not_found ? SkipReason::kSectionNotFound : reason);
}

void DifferenceTelling::TellAllSkipped(const Ref<ElementTable>& differences,
                                       SkipReason reason) const {
  if (IsArrayEmpty(differences)) return;
  for (std::int32_t row = 1; row <= differences->rows(); ++row) {
    TellSkipped(differences->Row(row), reason);
  }
}

void DifferenceTelling::TellInsideSkipped(const Element& difference, SkipReason reason) const {
  observer_->Enter(TextsOf(difference));
  TellAllSkipped(Inside(difference), reason);
  observer_->Leave();
}

// A property whose block has changed stands in the difference although its value has not.
void DifferenceTelling::TellPropertyUpdated(const Element& difference,
                                            std::string_view old_value) const {
  const bool has_block = !IsArrayEmpty(Inside(difference));
  if (old_value != difference.value()) {
    TellApplied(difference, old_value);
  } else if (!has_block) {
    TellSkipped(difference, SkipReason::kSameValue);
  }
  if (has_block) TellInsideSkipped(difference, SkipReason::kBelowProperty);
}

}  // namespace tessary
