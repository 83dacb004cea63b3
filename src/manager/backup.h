#pragma once

#include <string>

#include "manager/convert_ll_mgr.h"
#include "manager/user_interface.h"

// The copies of reports that are made before they change. What cannot be saved is asked about.

namespace tessary {

// The folder that a report folder's backups go to unless another is given: its sibling "...Bak".
std::string DefaultBackupFolder(const std::string& report_folder);

// The name of an older copy of a report in the backup folder, the first of them being the oldest;
// that of a state which a copy has replaced; and the report that such a name belongs to, empty for
// any other name.
std::string OlderCopyName(const std::string& file_name, int number);
std::string ReplacedCopyName(const std::string& file_name, int number);
std::string ReportOfOlderCopy(const std::string& copy_name);

struct BackupFolder {
  std::string path;
  bool skip = false;  // there is no folder, and the user wants to go on without backups
  Answer answer = Answer::kYes;
};

// The folder for the backups of a report folder, created when it is missing; its parent must
// exist. `wanted` may be blank for the default folder.
BackupFolder CreateBackupFolder(const Surroundings& around, const std::string& report_folder,
                                const std::string& wanted);

// Copies a report into the backup folder. An older copy that differs stays beside it under a name
// with "~" and is reported as a warning. Yes when the copy is on the disk, else the user's answer.
Answer BackupReport(const Surroundings& around, const std::string& backup_folder,
                    const std::string& report_folder, const std::string& file_name);

// Puts the copy back over `target`. A failure adds an entry and raises nothing.
void RestoreFile(const Surroundings& around, ErrorCollection& errors,
                 const std::string& backup_folder, const std::string& file_name,
                 const std::string& target);

}  // namespace tessary
