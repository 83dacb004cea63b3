#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/report_access.h"
#include "manager/report_io.h"
#include "ui/printable.h"

namespace tessary {

int RunRoundtrip(const CommandLine& line, const CommandSurroundings& around) {
  const std::string from = AbsolutePath(line.operands[0]);
  const std::string to = AbsolutePath(line.operands[1]);
  return WithReports(around, [&](const Ref<EngineContext>& context) {
    const Ref<ElementTable> elements = ReadForCommand(around, context, from);
    WriteReport(around.files, to, {context, elements}, nullptr);
    if (!line.quiet) around.output.Line("Geschrieben: " + Printable(line.operands[1]));
  });
}

}  // namespace tessary
