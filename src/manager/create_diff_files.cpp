// Creating difference files: checks, reading both versions, comparing the trees, writing what
// differs. A folder run does this for every report of the old folder and its namesake in the new.

#include <algorithm>

#include "levels/level_factory.h"
#include "manager/convert_ll_mgr.h"
#include "manager/operation_frame.h"
#include "manager/preparation.h"
#include "manager/report_io.h"
#include "manager/user_section.h"
#include "manager/work_ahead.h"
#include "platform/path.h"
#include "platform/text.h"

namespace tessary {

struct BXConvertLLMgr::ReportPair {
  std::string old_path;
  std::string new_path;
  std::string old_name = {};
  std::string new_name = {};
  std::int32_t old_version = 0;
  std::int32_t new_version = 0;
  std::string old_reference = {};
  std::string new_reference = {};

  std::string VersionsText() const {
    return "von Version " + std::to_string(old_version) + " nach " + std::to_string(new_version);
  }
};

namespace {

// A name that would lead out of the folder it is joined to, or that no file can have.
bool IsUnsafeFileName(std::string_view name) {
  return name.find("..") != std::string_view::npos ||
         std::any_of(name.begin(), name.end(), [](char c) {
           return c == '/' || c == '\\' || c == ':' || (c >= 0 && c < ' ');
         });
}

// The name is read from the headers once more. One that has lost a part on the way would be taken
// for another file, or for none.
bool IsWholeName(std::string_view name, std::int32_t old_version, std::int32_t new_version) {
  const std::string versions = std::to_string(old_version) + "_" + std::to_string(new_version);
  return name.starts_with(versions) && !TrimBlanks(name.substr(versions.size())).empty();
}

// The name in `names` that equals `name`, if need be without regard to case, since an old release
// may come from a file system that knows no case; `name` itself where there is none.
std::string Namesake(const std::vector<std::string>& names, const std::string& name) {
  if (std::find(names.begin(), names.end(), name) != names.end()) return name;
  const auto match = std::find_if(names.begin(), names.end(), [&](const std::string& other) {
    return EqualsIgnoreCase(other, name);
  });
  return match == names.end() ? name : *match;
}

}  // namespace

bool BXConvertLLMgr::CreateDiffFile(const std::string& strOldFilePath,
                                    const std::string& strNewFilePath,
                                    const std::string& strDiffFolderPath) {
  return Guarded([&] {
    ReportPair pair{strOldFilePath, strNewFilePath};
    return RunSingle({"Berichtsvergleich", "Erstellen der Differrenzdatei wird vorbereitet"},
                     {"CreateDiffFile", {}},
                     [&](Step& step) { return ComparePair(step, pair, strDiffFolderPath); });
  });
}

BXConvertLLMgr::Outcome BXConvertLLMgr::ComparePair(Step& step, ReportPair& pair,
                                                    const std::string& diff_folder) {
  if (pair.old_path.empty()) {
    return FailedBecause("Fehlende Pfadangabe für den Bericht der alten Version.");
  }
  CheckReport(step, pair.old_path, pair.old_name, pair.old_version, pair.old_reference);
  if (pair.new_path.empty()) {
    return FailedBecause("Fehlende Pfadangabe für den Bericht der neuen Version.");
  }
  CheckReport(step, pair.new_path, pair.new_name, pair.new_version, pair.new_reference);
  CheckVersions(step, pair);

  std::optional<NewContents> result;
  const PostedWork<ComparisonAhead> posted = std::move(comparison_ahead_);
  if (around_.workers) ShowComparing(pair);
  ComparisonAhead* const ahead = posted.Finished();
  if (ahead && ahead->IsFor(pair.old_path, pair.new_path)) result = ahead->Take();
  if (result) result->context = NewEngineContext(log_.errors, around_.loop);
  if (!result) result = Compare(step, pair);
  std::string diff_name;
  if (!result->IsEmpty()) diff_name = WriteDifferences(step, pair, diff_folder, *std::move(result));
  log_.AddToResultLog("Die Differenz-Datei " + diff_name + " für den Bericht " +
                          pair.old_reference + " " + pair.VersionsText() +
                          " wurde erfolgreich erstellt.",
                      false);
  if (around_.notices) {
    around_.notices->DifferenceCreated(
        pair.old_path, pair.new_path,
        diff_name.empty() ? diff_name : JoinPath(diff_folder, diff_name));
  }
  return Outcome::kDone;
}

void BXConvertLLMgr::ShowComparing(const ReportPair& pair) {
  ShowStep("Berichtsdateien " + pair.old_name + " werden verglichen");
}

NewContents BXConvertLLMgr::Compare(Step& step, const ReportPair& pair) {
  const Ref<EngineContext> context = NewEngineContext(log_.errors, around_.loop);
  ShowStep("Berichtsdateien " + pair.old_name + " werden gelesen");
  step.exit_message = "Fehler beim Lesen der Datei " + pair.new_name;
  FileSections sections;
  const Ref<ElementTable> new_lines = ReadFile(context, pair.new_path, &sections);
  step.exit_message = "Fehler beim Lesen der Datei " + pair.old_name;
  const Ref<ElementTable> old_lines = ReadFile(context, pair.old_path, &sections);
  if (IsArrayEmpty(new_lines) || IsArrayEmpty(old_lines)) return {};

  ShowComparing(pair);
  step.exit_message =
      "Fehler beim Vergleich der Dateien " + pair.old_name + " und " + pair.new_name;
  const Ref<Level> differences = context->CreateLevel(0);
  differences->Compare(old_lines, new_lines);
  return {context, differences->ElementArray()};
}

void BXConvertLLMgr::CheckReport(Step& step, const std::string& path, std::string& name,
                                 std::int32_t& version, std::string& reference) {
  if (!around_.files.FileExists(path)) {
    step.log_text = "Vergleich mit dem Bericht " + path + " fehlgeschlagen.";
    RaiseCheck(step, kDoesNotExist, "Die Datei " + path + " existiert nicht.");
  }
  name = FileNameOf(path);
  step.log_text = "Vergleich mit dem Bericht " + name + " fehlgeschlagen.";
  if (!IsReportFile(around_.files, path, version, reference)) {
    RaiseCheck(step, kWrongKindOfFile,
               "Die Datei " + name + " ist keine List & Label Berichtsdatei.");
  }
}

void BXConvertLLMgr::CheckVersions(Step& step, const ReportPair& pair) {
  step.log_text = "Versionsabgleich des 'alten' Berichtes " + pair.old_name +
                  " mit dem 'neuen' Bericht " + pair.new_name + " fehlgeschlagen.";
  if (!EqualsIgnoreCase(pair.old_reference, pair.new_reference)) {
    RaiseCheck(step, kWrongKindOfFile,
               "Die Dateien " + pair.old_name + " und " + pair.new_name +
                   " sind Berichte unterschiedlicher Referenz.");
  }
  if (pair.old_version >= pair.new_version) {
    RaiseCheck(step, kWrongKindOfFile,
               "Die Version " + std::to_string(pair.old_version) + " des alten Berichts " +
                   pair.old_name + " ist größer oder gleich der Version " +
                   std::to_string(pair.new_version) + " des neuen Berichts " + pair.new_name);
  }
  step.log_text = "Versionsabgleich des Berichtes " + pair.old_name + " " + pair.VersionsText() +
                  " fehlgeschlagen.";
}

std::string BXConvertLLMgr::WriteDifferences(Step& step, const ReportPair& pair,
                                             const std::string& diff_folder, NewContents result) {
  ShowStep("Schreibvorgang wird vorbereitet");
  step.exit_message = "Fehler beim Schreiben der Differenz-Datei ";
  const std::string name = BuildDiffFileName(around_.files, pair.old_path, pair.new_path);
  const std::string path = JoinPath(diff_folder, name);
  step.exit_message += path;
  // Without a folder the file would land in the root.
  if (diff_folder.empty() || IsUnsafeFileName(name)) throw Failure(kBadFileName);
  if (!IsWholeName(name, pair.old_version, pair.new_version)) throw Failure(kDeviceError);
  ShowStep("Differenzdatei " + name + " wird geschrieben");
  // It can be made again.
  WriteFile(path, std::move(result), NewName::kLater);
  WarnOfSameName(name, pair.old_name);
  return name;
}

void BXConvertLLMgr::WarnOfSameName(const std::string& diff_name, const std::string& report) {
  if (!m_blnBatch) return;
  const auto [earlier, is_first] = batch_names_.emplace(FoldCase(diff_name), report);
  if (is_first) return;
  Warn("Die Berichte " + earlier->second + " und " + report + " ergeben dieselbe Differenz-Datei " +
       diff_name + "; die spätere ersetzt die frühere.");
}

bool BXConvertLLMgr::CreateDiffFiles(const std::string& strOldFolderPath,
                                     const std::string& strNewFolderPath,
                                     const std::string& strDiffFolderPath) {
  return Guarded([&] {
    batch_names_.clear();
    const std::string log_text = "Erstellen der Differrenzdateien in " + strDiffFolderPath +
                                 " ist für alle Berichte fehlgeschlagen.";
    return RunBatch({"Berichtsvergleich", "Erstellen der Differrenzdateien wird vorbereitet"},
                    {"CreateDiffFiles", log_text}, [&](Step& step) {
                      return CompareFolders(step, strOldFolderPath, strNewFolderPath,
                                            strDiffFolderPath);
                    });
  });
}

BXConvertLLMgr::Outcome BXConvertLLMgr::CompareFolders(Step& step, const std::string& old_folder,
                                                       const std::string& new_folder,
                                                       const std::string& diff_folder) {
  if (IsFolderMissing(new_folder,
                      "Fehlende Pfadangabe für das Berichtsverzeichnis der neuen Versionen.") ||
      IsFolderMissing(old_folder,
                      "Fehlende Pfadangabe für das Berichtsverzeichnis der alten Versionen.")) {
    return Outcome::kFailed;
  }
  around_.files.RemoveLeftovers(diff_folder);
  const std::vector<std::string> old_names = ListFilled(step, old_folder);
  const std::vector<std::string> new_names = ListFilled(step, new_folder);
  std::vector<std::pair<std::string, std::string>> pairs;  // of old and new path
  for (const std::string& name : old_names) {
    pairs.emplace_back(JoinPath(old_folder, name), JoinPath(new_folder, Namesake(new_names, name)));
  }
  WorkAhead<ComparisonAhead> ahead(around_.workers, pairs.size(), [&](std::size_t item) {
    return std::make_unique<ComparisonAhead>(around_.files, pairs[item].first, pairs[item].second);
  });
  for (std::size_t item = 0; item < pairs.size(); ++item) {
    const auto& [old_path, new_path] = pairs[item];
    step.exit_message = "Fehler beim Vorbereiten des Versionsabgleich für die Dateien " + old_path +
                        " und " + new_path;
    std::int32_t version = 0;
    std::string reference;
    if (!around_.files.FileExists(old_path)) continue;
    if (IsReportFile(around_.files, old_path, version, reference)) {
      comparison_ahead_ = ahead.Take(item);
      CreateDiffFile(old_path, new_path, diff_folder);
      comparison_ahead_ = {};
    } else if (around_.notices) {
      around_.notices->PassedOver(old_path);
    }
  }
  return Outcome::kDone;
}

std::vector<std::string> BXConvertLLMgr::ListFilled(const Step& step, const std::string& folder) {
  std::vector<std::string> names = around_.files.ListFiles(folder);
  if (names.empty()) RaiseCheck(step, kFolderEmpty, "Der Ordner " + folder + " ist leer.");
  return names;
}

}  // namespace tessary
