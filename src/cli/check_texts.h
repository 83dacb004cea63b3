#pragma once

#include <string>

#include "manager/folder_check.h"

// What the check of two folders has found, in words and as JSON.

namespace tessary {

// "Rechnung.lst: Version 3, Referenz Rechnung, mit 3_4Rechnung, 4_5Rechnung nach Version 5".
std::string CheckText(const CheckedReport& report);
std::string CheckText(const NoReport& file);
// "in [UserSection] fehlt Referenzbeleg", without a period.
std::string NoReportText(NoReportReason reason);
std::string CheckText(const DuplicateStep& step);
std::string CheckText(const SameHeader& same);
std::string CheckText(const UnmatchedDifference& difference);
std::string OtherFileText(const std::string& name);

// The line at the end: how many reports, how many of them get to the newest version.
std::string CheckSummary(const FolderCheck& check);

// One JSON object with a line end.
std::string CheckAsJson(const FolderCheck& check);

}  // namespace tessary
