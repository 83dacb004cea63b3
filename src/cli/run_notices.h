#pragma once

#include <cstddef>
#include <set>
#include <string>
#include <string_view>
#include <unordered_map>
#include <unordered_set>
#include <vector>

#include "cli/difference_texts.h"
#include "manager/convert_ll_mgr.h"
#include "manager/user_interface.h"
#include "platform/file_system.h"
#include "ui/console/status_line.h"

namespace tessary {

// A warning as it stands on standard error.
std::string WarningLine(std::string_view text);

// The warning about a name given with --omit for which there is no file.
std::string UnmatchedOmitText(const std::string& name);

// Prints each different warning of a run at once and keeps it for the result. Reports that were
// skipped because of an answer are warnings too, each under its name.
class NoticeCollector : public RunNotices {
 public:
  NoticeCollector(StatusLine& messages, FileSystem& files) : messages_(messages), files_(files) {}

  // Has every difference checked as soon as it is written.
  void CheckDifferences() { check_differences_ = true; }

  // Which files a skipped folder would have left out anyway; empty for none.
  void SetOmit(OmitReport omit) { omit_ = std::move(omit); }

  void Warning(const std::string& text) override;
  void PassedOver(const std::string& path) override;
  void SkippedByAnswer(const std::string& path) override;
  // Also checks the difference, when it is to be.
  void DifferenceCreated(const std::string& old_path, const std::string& new_path,
                         const std::string& diff_path) override;

  const std::vector<std::string>& warnings() const { return warnings_; }
  // The names of the files that are no reports, and of the reports that were skipped.
  const std::set<std::string>& passed_over() const { return passed_over_; }
  const std::set<std::string>& skipped() const { return skipped_; }
  const std::vector<CheckedDifference>& differences() const { return differences_; }
  // True also when a folder was skipped that holds no report.
  bool any_skipped() const { return any_skipped_; }

 private:
  // Earlier differences that stood in the file that a later one has been written to.
  void MarkReplaced(const std::string& diff_path, const std::string& report);
  void SkippedReport(const std::string& name);
  void SkippedFolder(const std::string& folder);

  StatusLine& messages_;
  FileSystem& files_;
  OmitReport omit_;
  std::vector<std::string> warnings_;
  std::unordered_set<std::string> known_;  // the same warnings, for finding them
  std::set<std::string> passed_over_;
  std::set<std::string> skipped_;
  bool any_skipped_ = false;
  bool check_differences_ = false;
  std::vector<CheckedDifference> differences_;
  std::unordered_multimap<std::string, std::size_t> places_;  // in differences_, by folded path
};

}  // namespace tessary
