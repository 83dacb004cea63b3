#include <cstdint>

#include "cli/arguments.h"
#include "cli/check_texts.h"
#include "cli/commands.h"
#include "cli/tessary.h"
#include "manager/user_section.h"
#include "platform/failure.h"
#include "ui/printable.h"

namespace tessary {
namespace {

// What a file that is no report lacks. One that cannot be opened may be a report all the same.
std::string WhatItLacks(FileSystem& files, const std::string& path, std::int32_t version,
                        const std::string& reference) {
  try {
    files.OpenForReading(path);
  } catch (const Failure& failure) {
    return failure.description();
  }
  return NoReportText(WhyNoReport(path, version, reference));
}

}  // namespace

int RunInfo(const CommandLine& line, const CommandSurroundings& around) {
  int exit_code = kExitDone;
  for (const std::string& file : line.operands) {
    std::int32_t version = 0;
    std::string reference;
    const std::string name = Printable(file);
    const std::string path = AbsolutePath(file);
    if (!IsReportFile(around.files, path, version, reference)) {
      exit_code = kExitFailed;
      around.output.Line(name + ": keine List & Label Berichtsdatei (" +
                         WhatItLacks(around.files, path, version, reference) + ")");
    } else if (!line.quiet) {
      around.output.Line(name + ": Version " + std::to_string(version) + ", Referenz " +
                         Printable(reference));
    }
  }
  return exit_code;
}

}  // namespace tessary
