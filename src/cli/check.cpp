#include "cli/check_texts.h"
#include "cli/commands.h"
#include "cli/omit_list.h"
#include "cli/run_notices.h"
#include "cli/run_paths.h"
#include "cli/tessary.h"
#include "platform/failure.h"
#include "ui/console/protocol_text.h"
#include "ui/printable.h"

namespace tessary {
namespace {

class CheckPrinter {
 public:
  CheckPrinter(const CommandLine& line, const CommandSurroundings& around)
      : quiet_(line.quiet),
        style_(StyleFor(around.console, ConsoleStream::kOutput)),
        output_(around.output) {}

  void Print(const FolderCheck& check) {
    for (const std::string& problem : check.problems) Line(ProtocolImage::kError, problem);
    for (const CheckedReport& report : check.reports) PrintReport(report);
    if (quiet_) return;
    for (const auto& step : check.duplicate_steps) Note(CheckText(step));
    for (const auto& same : check.same_headers) Note(CheckText(same));
    for (const auto& difference : check.unmatched) Note(CheckText(difference));
    for (const std::string& name : check.other_files) Note(OtherFileText(name));
    for (const auto& file : check.no_reports) Note(CheckText(file));
    output_.Line(CheckSummary(check));
  }

 private:
  void Line(ProtocolImage image, const std::string& text, std::size_t depth = 0) {
    output_.Line(std::string(depth * MarkIndent(style_), ' ') + MarkText(image, style_) + " " +
                 Printable(text));
  }
  void Note(const std::string& text) { Line(ProtocolImage::kWarning, text); }

  void PrintReport(const CheckedReport& report) {
    const bool complete = report.state == ChainState::kComplete;
    if (quiet_ && complete) return;
    Line(complete ? ProtocolImage::kCorrect : ProtocolImage::kError, CheckText(report));
    for (const std::string& message : report.messages) Line(ProtocolImage::kWarning, message, 1);
    for (const std::string& warning : report.warnings) Line(ProtocolImage::kWarning, warning, 1);
  }

  const bool quiet_;
  const TextStyle style_;
  Output& output_;
};

}  // namespace

int RunCheck(const CommandLine& line, const CommandSurroundings& around) {
  const std::string reports = OperandPath(line, 1);
  OmitList omit(around.files, reports, line.omit);
  for (const std::string& name : omit.unmatched()) {
    around.messages.Print(WarningLine(UnmatchedOmitText(name)));
  }
  try {
    const FolderCheck check =
        CheckFolders(around.files, OperandPath(line, 0), reports,
                     [&](const std::string& name) { return omit.Omit(name); });
    if (line.json) {
      around.output.Text(CheckAsJson(check));
    } else {
      CheckPrinter(line, around).Print(check);
    }
    return check.Complete() ? kExitDone : kExitFailed;
  } catch (const Failure& failure) {
    around.messages.Print("tessary: " + failure.description());
    return kExitFailed;
  }
}

}  // namespace tessary
