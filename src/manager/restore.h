#pragma once

#include <string>
#include <vector>

#include "manager/folder_wait.h"
#include "platform/file_system.h"

// Putting copies of reports back where they came from.

namespace tessary {

enum class RestoreOutcome {
  kRestored,
  kUnchanged,  // the report is what the copy holds
  kFailed,
};

struct RestoredReport {
  std::string copy;    // the file's name in the backup folder
  std::string report;  // the report's name
  RestoreOutcome outcome;
  std::string kept;    // the name under which the report's state before is kept; empty for none
  std::string reason;  // why it failed
};

struct Restoration {
  std::vector<RestoredReport> reports;
  std::vector<std::string> problems;  // folders missing or in use, names without a copy

  bool Succeeded() const;
};

// Puts the copies meant by `names` back, all where there are none. A name is that of a report,
// whose copy is the state before the last run, or that of an older copy ("~Rechnung.lst.~1");
// without regard to case where no copy has it exactly. With `oldest` reports get the oldest copy
// that is kept of them. A report that holds something else, of which there is no copy, is first
// copied into the backup folder; one that cannot be written is left alone. Waits for other runs in
// the report folder, and does nothing when that takes too long. Raises Failure for a backup folder
// that cannot be listed.
Restoration RestoreReports(FileSystem& files, const std::string& backup_folder,
                           const std::string& report_folder, const std::vector<std::string>& names,
                           bool oldest, const FolderWait& wait = {});

}  // namespace tessary
