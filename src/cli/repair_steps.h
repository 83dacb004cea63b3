#pragma once

#include "cli/command_line.h"
#include "platform/file_system.h"
#include "ui/repair_guide.h"

namespace tessary {

// What to do about the reports that failed in a run of `line`, with its own command and folders.
RepairGuide RepairStepsFor(const CommandLine& line, FileSystem& files);

}  // namespace tessary
