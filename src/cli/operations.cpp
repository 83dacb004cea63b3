// The four operations: the manager does the work, and what it left in the result log is printed
// as text or JSON, and written as a page where one is wanted.

#include <algorithm>
#include <optional>
#include <set>

#include "cli/arguments.h"
#include "cli/commands.h"
#include "cli/json_output.h"
#include "cli/omit_list.h"
#include "cli/repair_steps.h"
#include "cli/result_file.h"
#include "cli/run_notices.h"
#include "cli/run_page.h"
#include "cli/run_paths.h"
#include "cli/run_summary.h"
#include "cli/tessary.h"
#include "manager/convert_ll_mgr.h"
#include "manager/work_ahead.h"
#include "platform/failure.h"
#include "platform/heap.h"
#include "platform/overlay_files.h"
#include "platform/path.h"
#include "ui/console/console_user_interface.h"
#include "ui/console/protocol_text.h"
#include "ui/console/repair_text.h"
#include "ui/html/protocol_page.h"
#include "ui/printable.h"

namespace tessary {
namespace {

std::string FolderWithReports(const CommandLine& line) {
  return line.command == CommandId::kConvertFolder ? OperandPath(line, 1) : std::string();
}

// What a dry run works on is for one thread. A single thread has nobody to work ahead for it.
Workers* WorkersFor(const CommandLine& line, const CommandSurroundings& around) {
  const bool is_alone = !around.workers || around.workers->threads() == 0;
  return line.dry_run || is_alone ? nullptr : around.workers;
}

// One run of an operation with all that it leaves behind.
class OperationRun {
 public:
  // `files` is what the operation works on, which a dry run only seems to change.
  OperationRun(const CommandLine& line, const CommandSurroundings& around, FileSystem& files)
      : line_(line),
        around_(around),
        files_(files),
        omit_(files, FolderWithReports(line), line.omit),
        notices_(around.messages, files),
        user_(around.messages, notices_, line.answer_on_backup_failure),
        journal_(!line.html.empty() || !line.journal.empty()),
        manager_(log_, {.files = files,
                        .user = user_,
                        .notices = &notices_,
                        .steps = &journal_,
                        .workers = WorkersFor(line, around)}) {}

  int Run() {
    if (line_.verify) notices_.CheckDifferences();
    notices_.SetOmit([this](const std::string& name) { return omit_.IsOmitted(name); });
    for (const std::string& name : omit_.unmatched()) notices_.Warning(UnmatchedOmitText(name));
    const bool result = CallManager();
    around_.messages.Clear();
    const bool journal_is_written = line_.journal.empty() || WriteTheJournal(result);
    const bool page_is_written = line_.html.empty() || WriteThePage(result);
    if (line_.json) {
      around_.output.Text(ResultAsJson(result, log_, notices_.warnings(), JsonDetailsOfRun()));
    } else {
      PrintResult(page_is_written);
    }
    const bool all_is_written = page_is_written && journal_is_written;
    const bool as_strict = !line_.strict || AllReproduced(notices_.differences());
    return result && all_is_written && as_strict && !notices_.any_skipped() ? kExitDone
                                                                            : kExitFailed;
  }

 private:
  bool CallManager() {
    const auto path = [&](std::size_t operand) { return OperandPath(line_, operand); };
    switch (line_.command) {
      case CommandId::kDiff:
        return manager_.CreateDiffFile(path(0), path(1), path(2));
      case CommandId::kDiffFolder:
        return manager_.CreateDiffFiles(path(0), path(1), path(2));
      case CommandId::kConvert:
        return manager_.ConvertReport(path(0), path(1), WantedBackupFolder(line_));
      default:
        return manager_.ConvertReports(
            path(0), path(1), WantedBackupFolder(line_),
            [this](const std::string& name) { return omit_.Omit(name); });
    }
  }

  ProtocolTree Tree() const { return {log_.dictErrors, log_.dictCorrect}; }

  std::optional<RepairGuide> Repair() const {
    if (log_.dictErrors.Count() == 0) return std::nullopt;
    return RepairStepsFor(line_, files_);
  }

  JsonDetails JsonDetailsOfRun() const {
    JsonDetails details{.dry_run = line_.dry_run};
    if (Converts(line_)) details.changes = journal_.counts();
    if (line_.verify) details.differences = &notices_.differences();
    return details;
  }

  bool WriteThePage(bool result) {
    const RunOutcome outcome{
        result,           notices_.any_skipped(), Summary(), WhatIsKnown(), notices_.warnings(),
        journal_.steps(), notices_.differences()};
    return WriteResult(kPageFile, line_.html, HtmlPage(PageFor(line_, outcome, Tree(), Repair())));
  }

  bool WriteTheJournal(bool result) {
    return WriteResult(kJournalFile, line_.journal,
                       JournalText(journal_, CommandText(line_), line_.dry_run, result));
  }

  bool WriteResult(const ResultFileKind& kind, const std::string& path, std::string_view text) {
    const std::string problem = WriteResultFile(around_.files, kind, AbsolutePath(path), text);
    if (!problem.empty()) around_.messages.Print("tessary: " + problem);
    return problem.empty();
  }

  void PrintResult(bool page_is_written) {
    const ProtocolPart part = line_.quiet ? ProtocolPart::kFailures : ProtocolPart::kAll;
    PrintProtocol(Tree(), part, StyleFor(around_.console, ConsoleStream::kOutput), around_.output);
    if (line_.verify && (!line_.quiet || line_.strict)) {
      PrintDifferences(notices_.differences(), around_.output);
    }
    if (line_.quiet) return;
    const RunSummary summary = Summary();
    if (const auto* converted = std::get_if<ConvertSummary>(&summary)) {
      PrintUnchanged(converted->unchanged);
    }
    PrintRepair();
    if (!line_.html.empty() && page_is_written) {
      around_.output.Line("Protokollseite: " + Printable(line_.html));
    }
    const std::string text = std::visit([](const auto& s) { return SummaryText(s); }, summary);
    around_.output.Line(line_.dry_run ? "Probelauf, nichts geschrieben: " + text : text);
  }

  void PrintRepair() {
    const std::optional<RepairGuide> guide = Repair();
    if (!guide) return;
    const bool terminal = around_.console.IsTerminal(ConsoleStream::kOutput);
    around_.output.Line("");
    PrintRepairGuide(*guide, terminal ? around_.console.Width(ConsoleStream::kOutput) : 0,
                     around_.output);
    around_.output.Line("");
  }

  RunSummary Summary() const {
    if (Converts(line_)) return SummariseConversion(log_, WhatIsKnown());
    DiffSummary summary = SummariseDiff(log_, notices_.passed_over());
    summary.checked = !notices_.differences().empty();
    for (const CheckedDifference& checked : notices_.differences()) {
      summary.not_reproduced += checked.places.size();
    }
    return summary;
  }

  ConvertRun WhatIsKnown() const {
    ConvertRun run{omit_.seen(), {}, notices_.passed_over(), notices_.skipped(), journal_.counts()};
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
  FileSystem& files_;
  ResultLog log_;
  OmitList omit_;
  NoticeCollector notices_;
  ConsoleUserInterface user_;
  ChangeJournal journal_;
  BXConvertLLMgr manager_;
};

// The second of the two to be written would find a file that is none of its kind.
bool ResultFilesDiffer(const CommandLine& line, const CommandSurroundings& around) {
  if (line.html.empty() || line.journal.empty()) return true;
  const std::string page = AbsolutePath(line.html);
  const std::string journal = AbsolutePath(line.journal);
  const std::string identity = around.files.IdentityOf(page);
  const bool same_file = !identity.empty() && identity == around.files.IdentityOf(journal);
  if (page != journal && !same_file) return true;
  around.messages.Print("tessary: Protokollseite und Änderungsprotokoll können nicht beide " +
                        page + " sein.");
  return false;
}

// Whether every file that the run shall write about itself can be written; says why not.
bool ResultFilesAreWritable(const CommandLine& line, const CommandSurroundings& around) {
  const auto writable = [&](const ResultFileKind& kind, const std::string& path) {
    const std::string problem =
        path.empty() ? path : WhyNoResultFile(around.files, kind, AbsolutePath(path));
    if (!problem.empty()) around.messages.Print("tessary: " + problem);
    return problem.empty();
  };
  return writable(kPageFile, line.html) && writable(kJournalFile, line.journal) &&
         ResultFilesDiffer(line, around);
}

// A single report would be done by the time the heap has grown piece by piece; both passes take
// somewhat more than this. In a folder one report after the other takes the memory of the first,
// which only has to stay.
HeapPages PrepareHeapFor(const CommandLine& line, FileSystem& files) {
  constexpr std::size_t kBytesPerByte = 6;
  if (line.command != CommandId::kDiff && line.command != CommandId::kConvert) {
    return PrepareHeap(0);
  }
  try {
    const std::size_t size = files.OpenForReading(OperandPath(line, 0))->SizeHint();
    return PrepareHeap(size * kBytesPerByte);
  } catch (const Failure&) {
    return {};  // the operation itself tells of it
  }
}

class PagesAhead final : public Job {
 public:
  explicit PagesAhead(const HeapPages& pages) : pages_(pages) {}

 private:
  void Run() noexcept override { GetPages(pages_); }

  HeapPages pages_;
};

// Where another thread helps with a single report, that gets the pages while this one begins.
PostedWork<PagesAhead> GetPagesFor(const CommandLine& line, const CommandSurroundings& around) {
  const HeapPages pages = PrepareHeapFor(line, around.files);
  Workers* const workers = WorkersFor(line, around);
  if (pages.size > 0 && workers && line.command == CommandId::kConvert) {
    return {*workers, std::make_unique<PagesAhead>(pages)};
  }
  GetPages(pages);
  return {};
}

}  // namespace

int RunOperation(const CommandLine& line, const CommandSurroundings& around) {
  // Without a place for what is asked for nothing shall have happened.
  if (!ResultFilesAreWritable(line, around)) return kExitWrongUsage;
  const PostedWork<PagesAhead> pages = GetPagesFor(line, around);
  OverlayFiles trial(around.files);
  FileSystem& files = line.dry_run ? static_cast<FileSystem&>(trial) : around.files;
  return OperationRun(line, around, files).Run();
}

}  // namespace tessary
