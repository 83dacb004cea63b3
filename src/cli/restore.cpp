#include "manager/restore.h"

#include "cli/commands.h"
#include "cli/run_paths.h"
#include "cli/tessary.h"
#include "platform/failure.h"
#include "platform/overlay_files.h"
#include "ui/console/protocol_text.h"
#include "ui/printable.h"

namespace tessary {
namespace {

ProtocolImage ImageOf(const RestoredReport& report) {
  return report.outcome == RestoreOutcome::kFailed ? ProtocolImage::kError
                                                   : ProtocolImage::kCorrect;
}

std::string TextOf(const RestoredReport& report) {
  const std::string from = report.copy == report.report ? "" : " aus " + report.copy;
  switch (report.outcome) {
    case RestoreOutcome::kRestored:
      return report.report + from + " zurückgeholt" +
             (report.kept.empty()
                  ? ""
                  : "; der bisherige Stand liegt als " + report.kept + " bei den Sicherungen");
    case RestoreOutcome::kUnchanged:
      return report.report + " ist schon auf diesem Stand";
    default:
      return report.report + from + " konnte nicht zurückgeholt werden: " + report.reason;
  }
}

void Print(const Restoration& restoration, const CommandLine& line,
           const CommandSurroundings& around) {
  const TextStyle style = StyleFor(around.console, ConsoleStream::kOutput);
  const auto print = [&](ProtocolImage image, const std::string& text) {
    if (line.quiet && image == ProtocolImage::kCorrect) return;
    around.output.Line(MarkText(image, style) + " " + Printable(text));
  };
  std::size_t restored = 0;
  for (const RestoredReport& report : restoration.reports) {
    if (report.outcome == RestoreOutcome::kRestored) ++restored;
    print(ImageOf(report), TextOf(report));
  }
  for (const std::string& problem : restoration.problems) print(ProtocolImage::kError, problem);
  if (line.quiet) return;
  around.output.Line((line.dry_run ? "Probelauf, nichts geschrieben: " : "") +
                     std::to_string(restored) +
                     (restored == 1 ? " Bericht zurückgeholt" : " Berichte zurückgeholt"));
}

}  // namespace

int RunRestore(const CommandLine& line, const CommandSurroundings& around) {
  const std::string backups = OperandPath(line, 0);
  const std::string reports = OperandPath(line, 1);
  if (around.files.SameFolder(backups, reports)) {
    around.messages.Print("tessary: Sicherungsordner und Berichtsordner können nicht beide " +
                          reports + " sein.");
    return kExitWrongUsage;
  }
  OverlayFiles trial(around.files);
  FileSystem& files = line.dry_run ? static_cast<FileSystem&>(trial) : around.files;
  const std::vector<std::string> names(line.operands.begin() + 2, line.operands.end());
  try {
    const Restoration restoration = RestoreReports(files, backups, reports, names, line.oldest);
    Print(restoration, line, around);
    return restoration.Succeeded() ? kExitDone : kExitFailed;
  } catch (const Failure& failure) {
    around.messages.Print("tessary: " + failure.description());
    return kExitFailed;
  }
}

}  // namespace tessary
