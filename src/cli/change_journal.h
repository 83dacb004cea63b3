#pragma once

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "manager/user_interface.h"

namespace tessary {

// One difference and what became of it.
struct Change {
  BXStatus status;
  std::vector<std::string> place;  // the elements around it, outermost first
  std::string element;             // with what tells it from others of its name
  std::string old_value;
  std::string new_value;
  std::optional<SkipReason> skipped;  // why nothing happened
};

// A report's way from one version to the next.
struct JournalStep {
  ConversionStep step;
  bool done = false;
  std::size_t applied = 0;
  std::size_t skipped = 0;
  std::vector<Change> changes = {};  // only where they are kept; none for a step that failed
};

struct ChangeCounts {
  std::size_t applied = 0;
  std::size_t skipped = 0;
};

// Listens to conversions: counts what was applied and what did nothing, and keeps the details where
// they are wanted. A step that fails leaves the report as it was, so its differences do not count.
class ChangeJournal : public StepObservers {
 public:
  explicit ChangeJournal(bool keep_details) : keep_details_(keep_details) {}

  const ChangeCounts& counts() const { return counts_; }
  const std::vector<JournalStep>& steps() const { return steps_; }

  std::unique_ptr<StepObserver> Begin(const ConversionStep& step) override;

 private:
  class Step;

  void Add(JournalStep step);

  const bool keep_details_;
  ChangeCounts counts_;
  std::vector<JournalStep> steps_;
};

// The reason in a plain German sentence, and as a word for programs.
std::string_view ReasonText(SkipReason reason);
std::string_view ReasonId(SkipReason reason);

// Every journal file begins with this, and no other file does.
inline constexpr std::string_view kJournalBeginning = R"({"event":"run","program":"Tessary",)";

// The journal as JSON lines. `command` is what was run.
std::string JournalText(const ChangeJournal& journal, const std::string& command, bool dry_run,
                        bool result);

}  // namespace tessary
