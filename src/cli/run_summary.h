#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <vector>

#include "cli/change_journal.h"
#include "manager/result_log.h"

namespace tessary {

// Counts of a run that created difference files.
struct DiffSummary {
  std::size_t created = 0;
  std::size_t without_difference = 0;
  std::size_t failed = 0;
  std::size_t passed_over = 0;
  bool checked = false;            // whether the differences were applied and compared
  std::size_t not_reproduced = 0;  // places of the new versions that their differences do not give
};

// Counts of a run that converted reports.
struct ConvertSummary {
  std::size_t converted = 0;
  std::size_t steps = 0;  // of the converted reports, each from one version to the next
  std::size_t failed = 0;
  std::size_t skipped = 0;
  std::size_t omitted = 0;
  std::size_t passed_over = 0;
  std::vector<std::string> unchanged;  // reports that no difference file leads on from
  ChangeCounts changes = {};           // what the steps applied, and what did nothing
};

// What is known about a conversion beside the result log; file names.
struct ConvertRun {
  std::set<std::string> seen;
  std::set<std::string> omitted;
  std::set<std::string> passed_over;
  std::set<std::string> skipped;
  ChangeCounts changes = {};
};

DiffSummary SummariseDiff(const ResultLog& log, const std::set<std::string>& passed_over);
ConvertSummary SummariseConversion(const ResultLog& log, const ConvertRun& run);

// The line that ends the human output, for example "3 Berichte konvertiert, 1 fehlgeschlagen,
// 2 Dateien übergangen (keine Berichte)". Only the first count is there even when it is 0.
std::string SummaryText(const DiffSummary& summary);
std::string SummaryText(const ConvertSummary& summary);

}  // namespace tessary
