// Converting reports: checks, backup, reading the difference file and the report, applying the
// one to the other, writing the report back. A folder run applies to each report the chain of
// difference files that leads on from its version, one step after the other.

#include <algorithm>
#include <unordered_map>

#include "levels/level_factory.h"
#include "manager/backup.h"
#include "manager/convert_ll_mgr.h"
#include "manager/file_lists.h"
#include "manager/operation_frame.h"
#include "manager/preparation.h"
#include "manager/report_io.h"
#include "manager/user_section.h"
#include "manager/work_ahead.h"
#include "platform/path.h"

namespace tessary {
namespace {

std::string VersionsText(const DiffFileName& versions) {
  return "von Version " + std::to_string(versions.old_version) + " nach " +
         std::to_string(versions.new_version);
}

bool GoesOnFrom(const ListedFile& difference, const ListedFile& report, std::int32_t version) {
  return difference.reference == report.reference && difference.version == version;
}

// The path of the difference file that a report's chain begins with; empty when there is none.
std::string FirstOfChain(const ListedFile& report, const std::vector<ListedFile>& differences) {
  const auto first = std::find_if(
      differences.begin(), differences.end(),
      [&](const ListedFile& file) { return GoesOnFrom(file, report, report.version); });
  return first == differences.end() ? std::string() : first->path;
}

// Which reports are no other one's file under another name: what is saved of those depends on what
// became of the others before.
std::vector<bool> HaveOneName(FileSystem& files, const std::vector<ListedFile>& reports) {
  std::unordered_map<std::string, int> names;
  std::vector<std::string> identities;
  for (const ListedFile& report : reports) {
    identities.push_back(files.IdentityOf(report.path));
    ++names[identities.back()];
  }
  std::vector<bool> result;
  for (const std::string& identity : identities) result.push_back(names[identity] == 1);
  return result;
}

ConversionStep StepOf(const std::string& report_path, const std::string& diff_path,
                      const DiffFileName& versions) {
  return {report_path, diff_path, versions.old_version, versions.new_version};
}

bool IsLarge(FileSystem& files, const std::string& report_path) {
  try {
    return files.OpenForReading(report_path)->SizeHint() > kLargestAhead;
  } catch (const Failure&) {
    return false;  // the conversion itself tells of it
  }
}

std::unique_ptr<StepObserver> ObserverOf(const ConversionStep& step, StepObservers* steps) {
  return steps ? steps->Begin(step) : nullptr;
}

// Tells an observer, which may be null, of the end of a step, whichever way that is left.
class ObservedStep {
 public:
  explicit ObservedStep(std::unique_ptr<StepObserver> observer) : observer_(std::move(observer)) {}
  ObservedStep(const ObservedStep&) = delete;
  ObservedStep& operator=(const ObservedStep&) = delete;
  ~ObservedStep() {
    if (observer_) observer_->End(done_);
  }

  ConversionObserver* observer() const { return observer_.get(); }
  void SetDone() { done_ = true; }

 private:
  std::unique_ptr<StepObserver> observer_;
  bool done_ = false;
};

// Once for all reports of a folder, however that is left.
class NamesFlushedAtEnd {
 public:
  NamesFlushedAtEnd(FileSystem& files, const std::string& folder)
      : files_(files), folder_(folder) {}
  NamesFlushedAtEnd(const NamesFlushedAtEnd&) = delete;
  NamesFlushedAtEnd& operator=(const NamesFlushedAtEnd&) = delete;
  ~NamesFlushedAtEnd() { files_.FlushNames(folder_); }

 private:
  FileSystem& files_;
  const std::string& folder_;
};

}  // namespace

bool BXConvertLLMgr::ConvertReport(const std::string& strRepFilePath,
                                   const std::string& strDiffFilePath,
                                   const std::string& strRepBackupFolderPath) {
  return Guarded([&] {
    m_blnFileDamaged = false;
    return RunSingle({"Berichtskonvertierung", "Berichtskonvertierung wird vorbereitet"},
                     {"ConvertReport", {}}, [&](Step& step) {
                       return ConvertOne(step, strRepFilePath, strDiffFilePath,
                                         strRepBackupFolderPath);
                     });
  });
}

BXConvertLLMgr::Outcome BXConvertLLMgr::ConvertOne(Step& step, const std::string& report_path,
                                                   const std::string& diff_path,
                                                   const std::string& wanted_backup_folder) {
  if (report_path.empty()) {
    return FailedBecause("Fehlende Pfadangabe für den zu konvertierenden Bericht.");
  }
  step.log_text = "Konvertierung des Berichts " + report_path + " fehlgeschlagen.";
  if (!around_.files.FileExists(report_path)) {
    RaiseCheck(step, kDoesNotExist, "Die Datei " + report_path + " existiert nicht.");
  }
  const std::string name = FileNameOf(report_path);
  step.log_text = "Konvertierung des Berichts " + name + " fehlgeschlagen.";
  std::int32_t version = 0;
  std::string reference;
  if (!IsReportFile(around_.files, report_path, version, reference)) {
    RaiseCheck(step, kWrongKindOfFile,
               "Die Datei " + name + " ist keine List & Label Berichtsdatei.");
  }
  // A batch holds the folder already, and has its own preparations.
  const auto lock = m_blnBatch ? nullptr : LockFolder(step, ParentFolderOf(report_path));
  PostedWork<ConversionAhead> conversion;
  std::string backup_folder = wanted_backup_folder;
  if (!m_blnBatch &&
      BackUp(report_path, diff_path, backup_folder, conversion) == Outcome::kStopped) {
    return Outcome::kStopped;
  }
  if (diff_path.empty()) return FailedBecause("Fehlende Pfadangabe für den Differenz-Bericht.");
  const DiffFileName versions = CheckDifferenceFile(step, diff_path);
  step.log_text =
      "Konvertierung des Berichts " + name + " " + VersionsText(versions) + " fehlgeschlagen.";
  if (!m_blnBatch) conversion_ahead_ = std::move(conversion);
  ConvertBy(step, StepOf(report_path, diff_path, versions), VersionsText(versions), backup_folder);
  log_.AddToResultLog(
      "Der Bericht " + name + " wurde erfolgreich " + VersionsText(versions) + " konvertiert.",
      false);
  return Outcome::kDone;
}

// Null where no file is named that could be a difference file, whatever it holds.
std::unique_ptr<ConversionAhead> BXConvertLLMgr::PrepareConversion(ConversionPlan plan) {
  std::unique_ptr<StepObserver> observer;
  if (!plan.diff_path.empty()) {
    const DiffFileName versions = ParseDiffFileName(FileNameOf(plan.diff_path));
    if (!versions.IsValid()) return nullptr;
    observer = ObserverOf(StepOf(plan.report_path, plan.diff_path, versions), around_.steps);
  }
  return std::make_unique<ConversionAhead>(around_.files, std::move(plan), std::move(observer));
}

// Saves a report that is converted on its own; `backup_folder` takes the folder that is used, and
// `conversion` what has been done meanwhile.
BXConvertLLMgr::Outcome BXConvertLLMgr::BackUp(const std::string& report_path,
                                               const std::string& diff_path,
                                               std::string& backup_folder,
                                               PostedWork<ConversionAhead>& conversion) {
  const std::string report_folder = ParentFolderOf(report_path);
  const BackupFolder folder = CreateBackupFolder(around_, report_folder, backup_folder);
  backup_folder = folder.path;
  Answer answer = folder.answer;
  if (answer == Answer::kYes) {
    around_.user.SetMousePointer(MousePointer::kHourglass);
    if (!folder.skip && !SaveMeanwhile(report_path, diff_path, folder.path, conversion)) {
      answer = BackupReport(around_, folder.path, report_folder, FileNameOf(report_path));
    }
  }
  if (answer == Answer::kNo) {
    Skipped(report_path);
    return Outcome::kStopped;
  }
  around_.user.SetMousePointer(MousePointer::kHourglass);
  return Outcome::kDone;
}

// Has another thread save the report while this one converts it. The conversion takes longer, so
// it is not the one that has to wait for the thread's start. Of a large report it is the other way
// round, since the user may have to be asked about the copy. False when the report is yet to be
// saved.
bool BXConvertLLMgr::SaveMeanwhile(const std::string& report_path, const std::string& diff_path,
                                   const std::string& backup_folder,
                                   PostedWork<ConversionAhead>& conversion) {
  if (!around_.workers) return false;
  Workers& workers = *around_.workers;
  const bool takes_long = IsLarge(around_.files, report_path);
  PostedWork<ReplacementAhead> replacement;
  std::unique_ptr<ConversionAhead> work = PrepareConversion(
      {report_path, {}, diff_path, SIZE_MAX, takes_long ? nullptr : &replacement});
  if (!work) return false;
  if (takes_long) {
    conversion = {workers, std::move(work)};
    workers.Rest();
    return false;
  }
  const std::string copy_path = JoinPath(backup_folder, FileNameOf(report_path));
  replacement = {workers, std::make_unique<ReplacementAhead>(around_.files, report_path)};
  const PostedWork<ConversionAhead> copy(workers, PrepareConversion({report_path, copy_path, {}}),
                                         Workers::Who::kThreadsThereAre);
  workers.Rest();
  conversion = {workers, std::move(work), Workers::Who::kOwner};
  return copy.Finished()->IsSaved();
}

DiffFileName BXConvertLLMgr::CheckDifferenceFile(Step& step, const std::string& path) {
  if (!around_.files.FileExists(path)) {
    RaiseCheck(step, kDoesNotExist, "Die Differenz-Datei " + path + " existiert nicht.");
  }
  const std::string name = FileNameOf(path);
  DiffFileName versions = ParseDiffFileName(name);
  if (!versions.IsValid()) {
    RaiseCheck(
        step, kWrongKindOfFile,
        "Die Differenz-Datei " + name + " entspricht keiner List & Label Differenz-Berichtsdatei.");
  }
  return versions;
}

void BXConvertLLMgr::ConvertBy(Step& step, const ConversionStep& what, const std::string& versions,
                               const std::string& backup_folder) {
  PostedWork<ConversionAhead> posted = std::move(conversion_ahead_);
  if (around_.workers) ShowConverting(what, versions);
  ConversionAhead* const ahead = posted.Finished();
  std::optional<NewContents> result;
  if (ahead && ahead->IsFor(what.report_path, what.diff_path)) result = ahead->Take();
  if (result) result->context = NewEngineContext(log_.errors, around_.loop);
  ObservedStep observed(result ? ahead->TakeObserver() : ObserverOf(what, around_.steps));
  // Otherwise what was prepared for another step would hold the place of the new file.
  posted = {};
  if (!result) result = ApplyDifferences(step, what, versions, observed.observer());
  if (result) UpdateReport(step, what, versions, backup_folder, *std::move(result));
  observed.SetDone();
}

void BXConvertLLMgr::ShowConverting(const ConversionStep& what, const std::string& versions) {
  ShowStep("Bericht " + FileNameOf(what.report_path) + " wird " + versions + " konvertiert");
}

// Nothing where the difference file has no differences.
std::optional<NewContents> BXConvertLLMgr::ApplyDifferences(Step& step, const ConversionStep& what,
                                                            const std::string& versions,
                                                            ConversionObserver* observer) {
  const std::string name = FileNameOf(what.report_path);
  const Ref<EngineContext> context = NewEngineContext(log_.errors, around_.loop);
  context->SetObserver(observer);
  ShowStep("Differenzdatei wird gelesen");
  step.exit_message = "Fehler beim Lesen der Datei " + FileNameOf(what.diff_path);
  const Ref<ElementTable> differences = ReadFile(context, what.diff_path);
  if (IsArrayEmpty(differences)) return std::nullopt;

  ShowStep("Berichtsdatei wird gelesen");
  step.exit_message = "Fehler beim Lesen der Datei " + name;
  const Ref<ElementTable> report = ReadFile(context, what.report_path);

  ShowConverting(what, versions);
  step.exit_message = "Fehler beim Konvertierungsvorgang der Datei " + name;
  const Ref<Level> converted = context->CreateLevel(0);
  converted->Convert(report, differences);
  return NewContents{context, converted->ElementArray()};
}

void BXConvertLLMgr::UpdateReport(Step& step, const ConversionStep& what,
                                  const std::string& versions, const std::string& backup_folder,
                                  NewContents result) {
  const std::string name = FileNameOf(what.report_path);
  ShowStep("Bericht " + name + " wird " + versions + " aktualisiert");
  step.exit_message = "Fehler beim Schreiben in die Datei " + name;
  step.after_exit_message = [this, name, path = what.report_path, backup_folder] {
    if (m_blnFileDamaged) RestoreFile(around_, errors(), backup_folder, name, path);
  };
  WriteFile(what.report_path, std::move(result), m_blnBatch ? NewName::kLater : NewName::kAtOnce);
}

bool BXConvertLLMgr::ConvertReports(const std::string& strDiffFolderPath,
                                    const std::string& strRepFolderPath,
                                    const std::string& strRepBackupFolderPath,
                                    const OmitReport& colRepFilesToOmit) {
  return Guarded([&] {
    const std::string log_text =
        "Konvertierung ist für alle Berichte in " + strRepFolderPath + " fehlgeschlagen.";
    return RunBatch({"Berichtskonvertierung", "Berichtskonvertierung wird vorbereitet"},
                    {"ConvertReports", log_text}, [&](Step& step) {
                      return ConvertFolder(step, strDiffFolderPath, strRepFolderPath,
                                           strRepBackupFolderPath, colRepFilesToOmit);
                    });
  });
}

BXConvertLLMgr::Outcome BXConvertLLMgr::ConvertFolder(Step& step, const std::string& diff_folder,
                                                      const std::string& report_folder,
                                                      const std::string& wanted_backup_folder,
                                                      const OmitReport& omit) {
  if (IsFolderMissing(report_folder, "Fehlende Pfadangabe für das Berichtsverzeichnis.")) {
    return Outcome::kFailed;
  }
  const auto lock = LockFolder(step, report_folder);
  const BackupFolder backup = CreateBackupFolder(around_, report_folder, wanted_backup_folder);
  if (backup.answer == Answer::kNo) {
    Skipped(report_folder);
    return Outcome::kStopped;
  }
  around_.user.SetMousePointer(MousePointer::kHourglass);
  if (IsFolderMissing(diff_folder, "Fehlende Pfadangabe für das Differenz-Berichtsverzeichnis.")) {
    return Outcome::kFailed;
  }
  around_.files.RemoveLeftovers(report_folder);
  if (!backup.skip) around_.files.RemoveLeftovers(backup.path);
  step.exit_message =
      "Fehler beim Aufbereiten der Dateien im Diff-Berichts-Verzeichnis " + diff_folder;
  std::vector<ListedFile> differences =
      ListForConversion(step, ListKind::kDifferenceFiles, diff_folder, nullptr);
  step.exit_message =
      "Fehler beim Aufbereiten der Dateien im Berichts-Verzeichnis " + report_folder;
  const std::vector<ListedFile> reports =
      ListForConversion(step, ListKind::kReports, report_folder, omit);

  SortForChains(differences);
  const std::vector<bool> has_one_name =
      around_.workers ? HaveOneName(around_.files, reports) : std::vector<bool>();
  WorkAhead<ConversionAhead> ahead(around_.workers, reports.size(), [&](std::size_t item) {
    const ListedFile& report = reports[item];
    if (!has_one_name[item]) return std::unique_ptr<ConversionAhead>();
    return PrepareConversion({report.path, backup.skip ? "" : JoinPath(backup.path, report.name),
                              FirstOfChain(report, differences)});
  });
  const NamesFlushedAtEnd flushed(around_.files, report_folder);
  for (std::size_t item = 0; item < reports.size(); ++item) {
    const ListedFile& report = reports[item];
    step.exit_message = "Fehler beim Konvertieren des Berichtes " + report.name;
    conversion_ahead_ = ahead.Take(item);
    const ConversionAhead* const done = conversion_ahead_.Finished();
    if (!backup.skip && !(done && done->IsSaved()) &&
        BackupReport(around_, backup.path, report_folder, report.name) == Answer::kNo) {
      Skipped(report.path);
      conversion_ahead_ = {};
      continue;
    }
    around_.user.SetMousePointer(MousePointer::kHourglass);
    ApplyChain(report, differences, backup.path);
    conversion_ahead_ = {};
  }
  return Outcome::kDone;
}

std::vector<ListedFile> BXConvertLLMgr::ListForConversion(Step& step, ListKind kind,
                                                          const std::string& folder,
                                                          const OmitReport& omit) {
  auto list = CreateFileArraysForConversion(around_, errors(), kind, folder, omit);
  if (list.empty()) {
    RaiseCheck(step, kFolderEmpty, "Der Ordner " + BaseNameOf(folder) + " ist leer.");
  }
  return list;
}

// A step that fails leaves the version as it is, so that only another file of the same old version
// could still go on from there.
void BXConvertLLMgr::ApplyChain(const ListedFile& report,
                                const std::vector<ListedFile>& differences,
                                const std::string& backup_folder) {
  std::int32_t version = report.version;
  for (const ListedFile& difference : differences) {
    if (!GoesOnFrom(difference, report, version)) continue;
    if (ConvertReport(report.path, difference.path, backup_folder))
      version = difference.new_version;
  }
}

}  // namespace tessary
