#include <cstdint>

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/tessary.h"
#include "manager/user_section.h"
#include "ui/printable.h"

namespace tessary {

int RunInfo(const CommandLine& line, const CommandSurroundings& around) {
  int exit_code = kExitDone;
  for (const std::string& file : line.operands) {
    std::int32_t version = 0;
    std::string reference;
    const std::string name = Printable(file);
    if (!IsReportFile(around.files, AbsolutePath(file), version, reference)) {
      exit_code = kExitFailed;
      around.output.Line(name + ": keine List & Label Berichtsdatei");
    } else if (!line.quiet) {
      around.output.Line(name + ": Version " + std::to_string(version) + ", Referenz " +
                         Printable(reference));
    }
  }
  return exit_code;
}

}  // namespace tessary
