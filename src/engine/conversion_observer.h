#pragma once

#include <string>
#include <string_view>

#include "engine/element.h"
#include "engine/element_table.h"
#include "engine/engine_context.h"

// What applying differences does to a report, for whoever wants to know.

namespace tessary {

// What tells an element; valid only during the call that hands it over.
struct ElementTexts {
  std::string_view name;
  std::string_view key;
  std::string_view typ;
};

// A name, and the key and type where they tell more: "[Object] 7 Kopf".
std::string LabelOf(const ElementTexts& element);

// Why a difference did nothing.
enum class SkipReason {
  kNotFound,         // the report has no such element
  kSectionNotFound,  // the report has no such section around it
  kAlreadyThere,     // the report has the new element already
  kSameValue,        // the report has the new value already
  kEmptySection,     // the section has no contents in the report
  kBelowProperty,    // changes inside a property's block are never applied
  kNoStatus,         // the line of the difference file carries no status
  kNothingInside,    // the difference names a section and no change in it
};

// Hears of every difference once, in the order in which they are applied. A section that is new or
// deleted is one difference with all it holds; one that is changed is entered and left again.
class ConversionObserver {
 public:
  virtual ~ConversionObserver() = default;
  // What follows happens inside this element. After a failure there may be no Leave.
  virtual void Enter(const ElementTexts& element) = 0;
  virtual void Leave() = 0;
  // A difference of status bxsDelete, bxsNew or bxsUpdate has been applied. Values are those of
  // properties; the old one is the report's.
  virtual void Applied(BXStatus status, const ElementTexts& element, std::string_view old_value,
                       std::string_view new_value) = 0;
  virtual void Skipped(BXStatus status, const ElementTexts& element, std::string_view new_value,
                       SkipReason reason) = 0;
};

// The engine's way to speak to an observer; does nothing where there is none.
class DifferenceTelling {
 public:
  explicit DifferenceTelling(EngineContext& context)
      : context_(context), observer_(context.observer()), pool_(*context.pool()) {}

  void Enter(const Element& element) const {
    if (observer_) observer_->Enter(TextsOf(element));
  }
  void Leave() const {
    if (observer_) observer_->Leave();
  }
  void Applied(const Element& difference, std::string_view old_value) const {
    if (observer_) TellApplied(difference, old_value);
  }
  void Skipped(const Element& difference, SkipReason reason) const {
    if (observer_) TellSkipped(difference, reason);
  }
  // The same for all of a list, which may be null, and for what is inside `difference`.
  void AllSkipped(const Ref<ElementTable>& differences, SkipReason reason) const {
    if (observer_) TellAllSkipped(differences, reason);
  }
  // An update of a property whose value was `old_value` before.
  void PropertyUpdated(const Element& difference, std::string_view old_value) const {
    if (observer_) TellPropertyUpdated(difference, old_value);
  }

 private:
  ElementTexts TextsOf(const Element& element) const;
  void TellApplied(const Element& difference, std::string_view old_value) const;
  void TellSkipped(const Element& difference, SkipReason reason) const;
  void TellAllSkipped(const Ref<ElementTable>& differences, SkipReason reason) const;
  void TellInsideSkipped(const Element& difference, SkipReason reason) const;
  void TellPropertyUpdated(const Element& difference, std::string_view old_value) const;

  Ref<ElementTable> Inside(const Element& difference) const;

  EngineContext& context_;
  ConversionObserver* observer_;
  const TextPool& pool_;
};

}  // namespace tessary
