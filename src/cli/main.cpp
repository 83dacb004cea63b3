#include "cli/tessary.h"
#include "platform/console.h"
#include "platform/file_system.h"

int main(int argc, char** argv) {
  tessary::Console& console = tessary::SystemConsole();
  return tessary::RunTessary(tessary::ProgramArguments(argc, argv), console,
                             tessary::SystemFiles());
}
