#include "cli/run_notices.h"

#include <cstdint>

#include "manager/user_section.h"
#include "platform/failure.h"
#include "platform/path.h"
#include "platform/text.h"

namespace tessary {

std::string WarningLine(std::string_view text) { return "Warnung: " + std::string(text); }

std::string UnmatchedOmitText(const std::string& name) {
  return "Zu --omit " + name + " gibt es keine Datei im Berichtsordner.";
}

void NoticeCollector::Warning(const std::string& text) {
  if (!known_.insert(text).second) return;
  warnings_.push_back(text);
  messages_.Print(WarningLine(text));
}

void NoticeCollector::PassedOver(const std::string& path) { passed_over_.insert(FileNameOf(path)); }

void NoticeCollector::SkippedByAnswer(const std::string& path) {
  any_skipped_ = true;
  if (files_.FolderExists(path)) {
    SkippedFolder(path);
  } else {
    SkippedReport(FileNameOf(path));
  }
}

void NoticeCollector::DifferenceCreated(const std::string& old_path, const std::string& new_path,
                                        const std::string& diff_path) {
  if (!check_differences_) return;
  MarkReplaced(diff_path, FileNameOf(old_path));
  CheckedDifference checked{old_path, new_path, diff_path, {}, {}};
  try {
    checked.places = CheckDifference(files_, old_path, new_path, diff_path);
  } catch (const Failure& failure) {
    checked.failure = failure.description();
    Warning("Die Differenz zu " + FileNameOf(new_path) +
            " konnte nicht nachgeprüft werden: " + failure.description() + ".");
  }
  differences_.push_back(std::move(checked));
}

// The manager has warned of it, but a difference that is no longer there makes nothing come about.
void NoticeCollector::MarkReplaced(const std::string& diff_path, const std::string& report) {
  if (diff_path.empty()) return;
  const auto [begin, end] = places_.equal_range(FoldCase(diff_path));
  for (auto place = begin; place != end; ++place) {
    CheckedDifference& earlier = differences_[place->second];
    if (files_.IdentityOf(earlier.diff_path) != files_.IdentityOf(diff_path)) continue;
    earlier.failure = "Die Differenz-Datei wurde durch die des Berichts " + report + " ersetzt";
  }
  places_.emplace(FoldCase(diff_path), differences_.size());
}

void NoticeCollector::SkippedReport(const std::string& name) {
  skipped_.insert(name);
  Warning("Der Bericht " + name +
          " wurde nicht konvertiert, weil die Frage zur Sicherung mit Nein beantwortet wurde.");
}

void NoticeCollector::SkippedFolder(const std::string& folder) {
  try {
    for (const std::string& name : files_.ListFiles(folder)) {
      std::int32_t version = 0;
      std::string reference;
      if (omit_ && omit_(name)) continue;
      if (IsReportFile(files_, JoinPath(folder, name), version, reference)) SkippedReport(name);
    }
  } catch (const Failure&) {
    Warning("Die Berichte in " + folder +
            " wurden nicht konvertiert, weil die Frage zur Sicherung mit Nein beantwortet wurde.");
  }
}

}  // namespace tessary
