// Converting reports: checks, backup, reading the difference file and the report, applying the
// one to the other, writing the report back. A folder run applies to each report the chain of
// difference files that leads on from its version, one step after the other.

#include "levels/level_factory.h"
#include "manager/backup.h"
#include "manager/convert_ll_mgr.h"
#include "manager/file_lists.h"
#include "manager/operation_frame.h"
#include "manager/report_io.h"
#include "manager/user_section.h"
#include "platform/path.h"

namespace tessary {
namespace {

std::string VersionsText(const DiffFileName& versions) {
  return "von Version " + std::to_string(versions.old_version) + " nach " +
         std::to_string(versions.new_version);
}

// Tells an observer of a step and, whichever way it is left, of its end.
class ObservedStep {
 public:
  ObservedStep(StepObservers* steps, const ConversionStep& step)
      : observer_(steps ? steps->Begin(step) : nullptr) {}
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
  // A batch holds the folder already.
  const auto lock = m_blnBatch ? nullptr : LockFolder(step, ParentFolderOf(report_path));
  std::string backup_folder = wanted_backup_folder;
  if (!m_blnBatch && BackUp(report_path, backup_folder) == Outcome::kStopped) {
    return Outcome::kStopped;
  }
  if (diff_path.empty()) return FailedBecause("Fehlende Pfadangabe für den Differenz-Bericht.");
  const DiffFileName versions = CheckDifferenceFile(step, diff_path);
  step.log_text =
      "Konvertierung des Berichts " + name + " " + VersionsText(versions) + " fehlgeschlagen.";
  ObservedStep observed(around_.steps,
                        {report_path, diff_path, versions.old_version, versions.new_version});
  ApplyDifferences(step, report_path, diff_path, backup_folder, versions, observed.observer());
  observed.SetDone();
  log_.AddToResultLog(
      "Der Bericht " + name + " wurde erfolgreich " + VersionsText(versions) + " konvertiert.",
      false);
  return Outcome::kDone;
}

// Saves a report that is converted on its own; `backup_folder` takes the folder that is used.
BXConvertLLMgr::Outcome BXConvertLLMgr::BackUp(const std::string& report_path,
                                               std::string& backup_folder) {
  const std::string report_folder = ParentFolderOf(report_path);
  const BackupFolder folder = CreateBackupFolder(around_, report_folder, backup_folder);
  backup_folder = folder.path;
  Answer answer = folder.answer;
  if (answer == Answer::kYes) {
    around_.user.SetMousePointer(MousePointer::kHourglass);
    if (!folder.skip) {
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

void BXConvertLLMgr::ApplyDifferences(Step& step, const std::string& report_path,
                                      const std::string& diff_path,
                                      const std::string& backup_folder,
                                      const DiffFileName& versions, ConversionObserver* observer) {
  const std::string name = FileNameOf(report_path);
  const Ref<EngineContext> context = NewEngineContext(log_.errors, around_.loop);
  context->SetObserver(observer);
  ShowStep("Differenzdatei wird gelesen");
  step.exit_message = "Fehler beim Lesen der Datei " + FileNameOf(diff_path);
  const Ref<ElementTable> differences = ReadFile(context, diff_path);
  if (IsArrayEmpty(differences)) return;

  ShowStep("Berichtsdatei wird gelesen");
  step.exit_message = "Fehler beim Lesen der Datei " + name;
  const Ref<ElementTable> report = ReadFile(context, report_path);

  ShowStep("Bericht " + name + " wird " + VersionsText(versions) + " konvertiert");
  step.exit_message = "Fehler beim Konvertierungsvorgang der Datei " + name;
  const Ref<Level> converted = context->CreateLevel(0);
  converted->Convert(report, differences);

  ShowStep("Bericht " + name + " wird " + VersionsText(versions) + " aktualisiert");
  step.exit_message = "Fehler beim Schreiben in die Datei " + name;
  step.after_exit_message = [this, name, report_path, backup_folder] {
    if (m_blnFileDamaged) RestoreFile(around_, errors(), backup_folder, name, report_path);
  };
  WriteFile(context, report_path, converted->ElementArray(), FileKind::kReport);
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
  for (const ListedFile& report : reports) {
    step.exit_message = "Fehler beim Konvertieren des Berichtes " + report.name;
    if (!backup.skip &&
        BackupReport(around_, backup.path, report_folder, report.name) == Answer::kNo) {
      Skipped(report.path);
      continue;
    }
    around_.user.SetMousePointer(MousePointer::kHourglass);
    ApplyChain(report, differences, backup.path);
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
    if (difference.reference != report.reference || difference.version != version) continue;
    if (ConvertReport(report.path, difference.path, backup_folder))
      version = difference.new_version;
  }
}

}  // namespace tessary
