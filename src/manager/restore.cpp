#include "manager/restore.h"

#include <algorithm>
#include <optional>
#include <utility>

#include "manager/backup.h"
#include "manager/user_section.h"
#include "platform/failure.h"
#include "platform/path.h"
#include "platform/text.h"

namespace tessary {
namespace {

constexpr int kMostReplacedCopies = 100000;

class Restorer {
 public:
  Restorer(FileSystem& files, const std::string& backup_folder, const std::string& report_folder,
           bool oldest)
      : files_(files),
        backup_folder_(backup_folder),
        report_folder_(report_folder),
        oldest_(oldest) {}

  Restoration Run(const std::vector<std::string>& names, const FolderWait& wait) {
    if (!FoldersAreThere()) return std::move(result_);
    const auto lock = WaitForFolder(files_, report_folder_, wait, nullptr);
    if (!lock) {
      result_.problems.push_back(FolderInUseText(report_folder_));
      return std::move(result_);
    }
    files_.RemoveLeftovers(report_folder_);
    files_.RemoveLeftovers(backup_folder_);
    copies_ = files_.ListFiles(backup_folder_);
    if (names.empty()) {
      RestoreAll();
    } else {
      for (const std::string& name : names) RestoreNamed(name);
    }
    return std::move(result_);
  }

 private:
  bool FoldersAreThere() {
    for (const std::string* folder : {&backup_folder_, &report_folder_}) {
      if (!files_.FolderExists(*folder)) {
        result_.problems.push_back("Der Ordner " + *folder + " existiert nicht.");
      }
    }
    return result_.problems.empty();
  }

  void RestoreAll() {
    for (const std::string& name : copies_) {
      std::int32_t version = 0;
      std::string reference;
      if (IsReportFile(files_, JoinPath(backup_folder_, name), version, reference)) {
        Restore(oldest_ ? OldestCopyOf(name) : name, name);
      }
    }
    if (result_.reports.empty()) {
      result_.problems.push_back("Im Sicherungsverzeichnis " + backup_folder_ +
                                 " gibt es keine Sicherungen.");
    }
  }

  void RestoreNamed(const std::string& name) {
    const auto copy = CopyNamed(name);
    if (!copy) {
      result_.problems.push_back("Im Sicherungsverzeichnis " + backup_folder_ +
                                 " gibt es keine Sicherung von " + name + ".");
      return;
    }
    const std::string report = ReportOfOlderCopy(*copy);
    if (!report.empty()) return Restore(*copy, report);
    Restore(oldest_ ? OldestCopyOf(*copy) : *copy, *copy);
  }

  std::optional<std::string> CopyNamed(const std::string& name) const {
    if (std::find(copies_.begin(), copies_.end(), name) != copies_.end()) return name;
    const auto match = std::find_if(copies_.begin(), copies_.end(), [&](const std::string& copy) {
      return EqualsIgnoreCase(copy, name);
    });
    return match == copies_.end() ? std::nullopt : std::optional(*match);
  }

  std::string OldestCopyOf(const std::string& name) const {
    const std::string first = OlderCopyName(name, 1);
    return std::find(copies_.begin(), copies_.end(), first) == copies_.end() ? name : first;
  }

  void Restore(const std::string& copy, const std::string& report) {
    RestoredReport restored{copy, report, RestoreOutcome::kUnchanged, {}, {}};
    const std::string from = JoinPath(backup_folder_, copy);
    const std::string to = JoinPath(report_folder_, report);
    try {
      if (!files_.SameContents(from, to)) {
        files_.CheckReplacing(to);
        restored.kept = KeepPresentState(report, to);
        files_.CopyFile(from, to);
        restored.outcome = RestoreOutcome::kRestored;
      }
    } catch (const Failure& failure) {
      restored.outcome = RestoreOutcome::kFailed;
      restored.reason = failure.description();
    }
    result_.reports.push_back(std::move(restored));
  }

  // Copies what the report holds now beside its other copies unless one of them holds the same. It
  // is not one of the numbered ones, whose first is the original.
  std::string KeepPresentState(const std::string& report, const std::string& path) {
    if (!files_.FileExists(path)) return {};
    const auto in_backups = [&](const std::string& name) { return JoinPath(backup_folder_, name); };
    int number = 1;
    if (files_.SameContents(path, in_backups(report))) return {};
    while (files_.FileExists(in_backups(OlderCopyName(report, number)))) {
      if (files_.SameContents(path, in_backups(OlderCopyName(report, number++)))) return {};
    }
    for (number = 1; number <= kMostReplacedCopies; ++number) {
      std::string kept = ReplacedCopyName(report, number);
      const std::string copy = in_backups(kept);
      if (files_.FileExists(copy) && files_.SameContents(path, copy)) return {};
      if (files_.AddCopy(path, copy)) return kept;
    }
    throw Failure(kFileExists);
  }

  FileSystem& files_;
  const std::string& backup_folder_;
  const std::string& report_folder_;
  const bool oldest_;
  std::vector<std::string> copies_;
  Restoration result_;
};

}  // namespace

bool Restoration::Succeeded() const {
  return problems.empty() &&
         std::none_of(reports.begin(), reports.end(), [](const RestoredReport& report) {
           return report.outcome == RestoreOutcome::kFailed;
         });
}

Restoration RestoreReports(FileSystem& files, const std::string& backup_folder,
                           const std::string& report_folder, const std::vector<std::string>& names,
                           bool oldest, const FolderWait& wait) {
  return Restorer(files, backup_folder, report_folder, oldest).Run(names, wait);
}

}  // namespace tessary
