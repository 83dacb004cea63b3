#pragma once

#include <optional>
#include <string>
#include <variant>
#include <vector>

#include "cli/change_journal.h"
#include "cli/command_line.h"
#include "cli/difference_texts.h"
#include "cli/run_summary.h"
#include "ui/html/protocol_page.h"

namespace tessary {

using RunSummary = std::variant<DiffSummary, ConvertSummary>;

// What a run has come to.
struct RunOutcome {
  bool result = false;       // what the operation returned
  bool answered_no = false;  // something was skipped because of an answer
  RunSummary summary;
  ConvertRun files;
  std::vector<std::string> warnings;
  std::vector<JournalStep> steps = {};
  std::vector<CheckedDifference> differences = {};
};

// The protocol of a run as a page; `repair` where something failed.
ProtocolPage PageFor(const CommandLine& line, const RunOutcome& outcome, ProtocolTree tree,
                     std::optional<RepairGuide> repair);

}  // namespace tessary
