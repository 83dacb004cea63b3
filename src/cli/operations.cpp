// The four operations: the manager does the work, and what it left in the result log is printed
// as text or JSON.

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/json_output.h"
#include "cli/omit_list.h"
#include "cli/run_notices.h"
#include "cli/run_summary.h"
#include "cli/tessary.h"
#include "manager/convert_ll_mgr.h"
#include "platform/path.h"
#include "platform/text.h"
#include "ui/console/console_user_interface.h"
#include "ui/console/printable.h"
#include "ui/console/protocol_text.h"

namespace tessary {
namespace {

std::string FolderWithReports(const CommandLine& line) {
  return line.command == CommandId::kConvertFolder ? AbsolutePath(line.operands[1]) : std::string();
}

// One run of an operation with all that it leaves behind.
class OperationRun {
 public:
  OperationRun(const CommandLine& line, const CommandSurroundings& around)
      : line_(line),
        around_(around),
        omit_(around.files, FolderWithReports(line), line.omit),
        notices_(around.messages, around.files),
        user_(around.messages, notices_, line.answer_on_backup_failure),
        manager_(log_, {around.files, user_, nullptr, &notices_}) {}

  int Run() {
    notices_.SetOmit([this](const std::string& name) { return omit_.IsOmitted(name); });
    for (const std::string& name : omit_.unmatched()) {
      notices_.Warning("Zu --omit " + name + " gibt es keine Datei im Berichtsordner.");
    }
    const bool result = CallManager();
    around_.messages.Clear();
    if (line_.json) {
      around_.output.Text(ResultAsJson(result, log_, notices_.warnings()));
    } else {
      PrintResult();
    }
    return result && !notices_.any_skipped() ? kExitDone : kExitFailed;
  }

 private:
  // A blank backup folder means the default one, so it must not become the current folder.
  std::string Backup() const { return AbsolutePath(std::string(TrimBlanks(line_.backup))); }

  bool CallManager() {
    const auto path = [&](std::size_t operand) { return AbsolutePath(line_.operands[operand]); };
    switch (line_.command) {
      case CommandId::kDiff:
        return manager_.CreateDiffFile(path(0), path(1), path(2));
      case CommandId::kDiffFolder:
        return manager_.CreateDiffFiles(path(0), path(1), path(2));
      case CommandId::kConvert:
        return manager_.ConvertReport(path(0), path(1), Backup());
      default:
        return manager_.ConvertReports(path(0), path(1), Backup(), [this](const std::string& name) {
          return omit_.Omit(name);
        });
    }
  }

  void PrintResult() {
    const ProtocolTree tree(log_.dictErrors, log_.dictCorrect);
    const ProtocolPart part = line_.quiet ? ProtocolPart::kFailures : ProtocolPart::kAll;
    PrintProtocol(tree, part, StyleFor(around_.console, ConsoleStream::kOutput), around_.output);
    if (!line_.quiet) PrintSummary();
  }

  void PrintSummary() {
    const bool converts =
        line_.command == CommandId::kConvert || line_.command == CommandId::kConvertFolder;
    if (!converts) {
      around_.output.Line(SummaryText(SummariseDiff(log_, notices_.passed_over())));
      return;
    }
    const ConvertSummary summary = SummariseConversion(log_, WhatIsKnown());
    PrintUnchanged(summary.unchanged);
    around_.output.Line(SummaryText(summary));
  }

  ConvertRun WhatIsKnown() const {
    ConvertRun run{omit_.seen(), {}, notices_.passed_over(), notices_.skipped()};
    // The failure of a single report may be logged under its path; it counts either way.
    if (line_.command == CommandId::kConvert && log_.dictErrors.Count() == 0) {
      run.seen.insert(FileNameOf(line_.operands[0]));
    }
    for (const std::string& name : omit_.seen()) {
      if (omit_.IsOmitted(name)) run.omitted.insert(name);
    }
    return run;
  }

  void PrintUnchanged(const std::vector<std::string>& names) {
    if (names.empty()) return;
    std::string text = "Ohne passende Differenz-Datei unverändert:";
    for (const std::string& name : names) {
      text.append(&name == &names.front() ? " " : ", ").append(Printable(name));
    }
    around_.output.Line(text);
  }

  const CommandLine& line_;
  const CommandSurroundings& around_;
  ResultLog log_;
  OmitList omit_;
  NoticeCollector notices_;
  ConsoleUserInterface user_;
  BXConvertLLMgr manager_;
};

}  // namespace

int RunOperation(const CommandLine& line, const CommandSurroundings& around) {
  return OperationRun(line, around).Run();
}

}  // namespace tessary
