#pragma once

#include <string>
#include <vector>

#include "platform/console.h"
#include "platform/file_system.h"
#include "platform/workers.h"

namespace tessary {

// What the command's exit code says.
enum ExitCode : int {
  kExitDone = 0,
  kExitFailed = 1,  // also when a report was skipped because of an answer
  kExitWrongUsage = 2,
};

// Runs the tessary command with the arguments behind its name and returns its exit code. Results
// go to standard output; warnings, progress and complaints to standard error. Raises nothing.
// With `workers`, which may be null, several threads use `files`.
int RunTessary(const std::vector<std::string>& arguments, Console& console, FileSystem& files,
               Workers* workers = nullptr);

}  // namespace tessary
