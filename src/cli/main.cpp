#include "cli/tessary.h"
#include "platform/console.h"
#include "platform/file_system.h"
#include "platform/workers.h"

int main(int argc, char** argv) {
  tessary::Console& console = tessary::SystemConsole();
  // More of them would only wait for the disk.
  tessary::Workers workers(tessary::SpareProcessors(3));
  return tessary::RunTessary(tessary::ProgramArguments(argc, argv), console, tessary::SystemFiles(),
                             &workers);
}
