#include "cli/report_access.h"

#include <new>

#include "cli/run_notices.h"
#include "cli/tessary.h"
#include "levels/level_factory.h"
#include "manager/read_warnings.h"
#include "manager/report_io.h"

namespace tessary {

int WithReports(const CommandSurroundings& around,
                const std::function<void(const Ref<EngineContext>&)>& work) {
  SharedErrors errors;
  try {
    work(NewEngineContext(errors, nullptr));
    return kExitDone;
  } catch (const Failure& failure) {
    if (errors.objErrors->empty()) around.messages.Print("tessary: " + failure.description());
  } catch (const std::bad_alloc&) {
    around.messages.Print(std::string("tessary: ") + RunTimeErrorText(kOutOfMemory));
  }
  for (const ErrorEntry& entry : errors.objErrors->entries()) {
    around.messages.Print("tessary: " + entry.message);
  }
  return kExitFailed;
}

Ref<ElementTable> ReadForCommand(const CommandSurroundings& around,
                                 const Ref<EngineContext>& context, const std::string& path) {
  if (!around.files.FileExists(path)) {
    throw Failure(kFileNotFound, "Die Datei " + path + " existiert nicht.");
  }
  ReadStatistics read;
  Ref<ElementTable> elements = ReadReport(around.files, context, path, &read);
  for (const std::string& warning : ReadWarnings(path, read)) {
    around.messages.Print(WarningLine(warning));
  }
  return elements;
}

}  // namespace tessary
