#pragma once

#include <cstdint>
#include <string>
#include <vector>

#include "manager/convert_ll_mgr.h"
#include "platform/file_system.h"

// What a conversion of a folder would find, told without changing anything.

namespace tessary {

enum class ChainState {
  kComplete,       // nothing is missing on the way to the newest version
  kGap,            // no difference file leads on from the version that is reached
  kNoDifferences,  // there is no difference file of the report's reference
  kUnreadable,     // the report or a difference file of its chain cannot be read
};

struct CheckedReport {
  std::string name;
  std::string reference;
  std::int32_t version = 0;
  std::vector<std::string> chain = {};  // the difference files that would be applied, in order
  std::int32_t reached = 0;             // the version at the end of the chain
  std::int32_t newest = 0;              // that any difference file of the reference leads to, or 0
  ChainState state = ChainState::kComplete;
  std::vector<std::string> messages = {};  // why it is not complete
  std::vector<std::string> warnings = {};  // what reading the report drew attention to
};

enum class NoReportReason {
  kNoExtension,
  kBackupExtension,  // it holds "~"
  kNoHeader,         // neither version nor reference; looks the same where it cannot be opened
  kNoVersion,
  kNoReference,
};

// Why IsReportFile has said no to a file, and what it has found there.
NoReportReason WhyNoReport(const std::string& path, std::int32_t version,
                           const std::string& reference);

struct NoReport {
  std::string name;
  NoReportReason reason;
};

// Several difference files that lead on from one version; the first of them is applied.
struct DuplicateStep {
  std::string reference;
  std::int32_t version;
  std::vector<std::string> names;
};

// Reports of one version and reference, which as a vendor's release would give one difference file.
struct SameHeader {
  std::string reference;
  std::int32_t version;
  std::vector<std::string> names;
};

enum class UnmatchedReason {
  kNoSuchReference,
  kNotOnTheWay,       // no report comes to its old version
  kNoLongerNeeded,    // nor has to: every report of the reference has at least its new version
  kAnotherIsApplied,  // one does, but a duplicate leads it on
};

struct UnmatchedDifference {
  std::string name;
  std::string reference;
  UnmatchedReason reason;
};

struct FolderCheck {
  std::vector<std::string> problems;  // of the folders, and files that cannot be opened
  std::vector<CheckedReport> reports;
  std::vector<NoReport> no_reports;
  std::vector<DuplicateStep> duplicate_steps;
  std::vector<SameHeader> same_headers;
  std::vector<UnmatchedDifference> unmatched;
  std::vector<std::string> other_files;  // of the difference folder, by their names

  // True when there are reports and every one gets to the newest version.
  bool Complete() const;
};

// Checks every report of a folder against the difference files of another. All files that would be
// converted or applied are read once. `omit` may be empty. Raises Failure only for a folder that
// cannot be listed.
FolderCheck CheckFolders(FileSystem& files, const std::string& diff_folder,
                         const std::string& report_folder, const OmitReport& omit);

}  // namespace tessary
