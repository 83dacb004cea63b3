// The chain of a report is followed as a conversion follows it, with every step taken to succeed.

#include "manager/folder_check.h"

#include <algorithm>
#include <map>
#include <set>
#include <utility>

#include "levels/level_factory.h"
#include "manager/file_lists.h"
#include "manager/read_warnings.h"
#include "manager/report_io.h"
#include "manager/user_section.h"
#include "platform/path.h"
#include "platform/text.h"

namespace tessary {
namespace {

// What reading one file has come to.
struct ReadResult {
  std::vector<std::string> failures;
  std::vector<std::string> warnings;
  bool has_elements = false;
};

class Checker {
 public:
  Checker(FileSystem& files, const std::string& diff_folder, const std::string& report_folder,
          const OmitReport& omit)
      : files_(files), diff_folder_(diff_folder), report_folder_(report_folder), omit_(omit) {}

  FolderCheck Run() {
    if (FoldersAreThere()) {
      ListDifferences();
      ListReports();
      if (differences_.empty()) {
        Problem("Der Ordner " + diff_folder_ + " enthält keine Differenz-Dateien.");
      }
      if (check_.reports.empty())
        Problem("Der Ordner " + report_folder_ + " enthält keine Berichte.");
      for (CheckedReport& report : check_.reports) Follow(report);
      FindDuplicateSteps();
      FindSameHeaders();
      FindUnmatched();
    }
    return std::move(check_);
  }

 private:
  void Problem(std::string text) { check_.problems.push_back(std::move(text)); }

  bool FoldersAreThere() {
    if (diff_folder_.empty()) {
      Problem("Fehlende Pfadangabe für das Differenz-Berichtsverzeichnis.");
    }
    if (report_folder_.empty()) Problem("Fehlende Pfadangabe für das Berichtsverzeichnis.");
    for (const std::string* folder : {&diff_folder_, &report_folder_}) {
      if (folder->empty() || files_.FolderExists(*folder)) continue;
      Problem("Der Ordner " + *folder + " existiert nicht.");
    }
    return check_.problems.empty();
  }

  void ListDifferences() {
    for (const std::string& name : files_.ListFiles(diff_folder_)) {
      const DiffFileName parsed = ParseDiffFileName(name);
      if (parsed.IsValid()) {
        differences_.push_back({name, JoinPath(diff_folder_, name), FoldCase(parsed.reference),
                                parsed.old_version, parsed.new_version});
      } else {
        check_.other_files.push_back(name);
      }
    }
    SortForChains(differences_);
  }

  void ListReports() {
    for (const std::string& name : files_.ListFiles(report_folder_)) {
      if (omit_ && omit_(name)) continue;
      CheckedReport report{.name = name, .reference = {}};
      if (IsReportFile(files_, JoinPath(report_folder_, name), report.version, report.reference)) {
        check_.reports.push_back(std::move(report));
        continue;
      }
      const NoReportReason reason = WhyNoReport(name, report.version, report.reference);
      if (reason == NoReportReason::kNoHeader && !CanBeOpened(name)) continue;
      check_.no_reports.push_back({name, reason});
    }
  }

  // A file that cannot be opened looks like one without a header, but may be a report.
  bool CanBeOpened(const std::string& name) {
    try {
      files_.OpenForReading(JoinPath(report_folder_, name));
      return true;
    } catch (const Failure& failure) {
      Problem(UnreadableText(name, failure));
      return false;
    }
  }

  static std::string UnreadableText(const std::string& name, const Failure& failure) {
    return "Die Datei " + name + " kann nicht gelesen werden: " + failure.description() + ".";
  }

  void Follow(CheckedReport& report) {
    const std::string reference = FoldCase(report.reference);
    report.reached = report.version;
    arrivals_.emplace(reference, report.version);
    const ListedFile* next = nullptr;  // behind the gap
    for (const ListedFile& difference : differences_) {
      if (difference.reference != reference) continue;
      report.newest = std::max(report.newest, difference.new_version);
      if (difference.version == report.reached) {
        report.chain.push_back(difference.name);
        report.reached = difference.new_version;
        used_.insert(difference.name);
        arrivals_.emplace(reference, report.reached);
      } else if (!next || next->version < report.reached) {
        next = &difference;
      }
    }
    if (report.newest == 0) {
      report.state = ChainState::kNoDifferences;
      report.messages.push_back("Zur Referenz " + report.reference +
                                " gibt es keine Differenz-Datei.");
    } else if (report.reached < report.newest) {
      report.state = ChainState::kGap;
      report.messages.push_back(GapText(report, next));
    }
    ReadAll(report);
  }

  static std::string GapText(const CheckedReport& report, const ListedFile* next) {
    std::string text =
        "Von Version " + std::to_string(report.reached) + " führt keine Differenz-Datei weiter";
    if (next && next->version > report.reached)
      text.append("; die nächste ist ").append(next->name);
    return text + ".";
  }

  // Nothing would be read for a report that no difference file leads on from.
  void ReadAll(CheckedReport& report) {
    if (report.chain.empty()) return;
    ReadResult read = Read(JoinPath(report_folder_, report.name));
    report.warnings = std::move(read.warnings);
    for (const std::string& name : report.chain) {
      const ReadResult& difference = ReadDifference(name);
      read.failures.insert(read.failures.end(), difference.failures.begin(),
                           difference.failures.end());
    }
    if (read.failures.empty()) return;
    report.state = ChainState::kUnreadable;
    report.messages.insert(report.messages.begin(), read.failures.begin(), read.failures.end());
  }

  const ReadResult& ReadDifference(const std::string& name) {
    const auto [place, is_new] = read_.try_emplace(name);
    ReadResult& read = place->second;
    if (!is_new) return read;
    read = Read(JoinPath(diff_folder_, name));
    if (read.failures.empty() && !read.has_elements) {
      // It would be applied without an error, and the version would stay.
      read.failures.push_back("Die Differenz-Datei " + name + " ist leer.");
    }
    return read;
  }

  ReadResult Read(const std::string& path) {
    ReadResult result;
    SharedErrors errors;
    try {
      if (HasByteOrderMark(ReadBeginning(*files_.OpenForReading(path), kLongestByteOrderMark))) {
        result.failures.push_back(
            "Die Datei " + FileNameOf(path) +
            " ist in einem neueren Format (mit einer Bytefolge-Marke, BOM), das "
            "nicht gelesen wird.");
        return result;
      }
      ReadStatistics statistics;
      result.has_elements =
          !IsArrayEmpty(ReadReport(files_, NewEngineContext(errors, nullptr), path, &statistics));
      result.warnings = ReadWarnings(path, statistics);
    } catch (const Failure& failure) {
      result.failures.push_back(UnreadableText(FileNameOf(path), failure));
    }
    return result;
  }

  void FindDuplicateSteps() {
    for (std::size_t i = 0; i < differences_.size();) {
      const ListedFile& first = differences_[i];
      DuplicateStep step{ParseDiffFileName(first.name).reference, first.version, {}};
      for (; i < differences_.size() && differences_[i].reference == first.reference &&
             differences_[i].version == first.version;
           ++i) {
        step.names.push_back(differences_[i].name);
      }
      if (step.names.size() > 1) check_.duplicate_steps.push_back(std::move(step));
    }
  }

  void FindSameHeaders() {
    std::map<std::pair<std::string, std::int32_t>, SameHeader> headers;
    for (const CheckedReport& report : check_.reports) {
      SameHeader& same = headers[{FoldCase(report.reference), report.version}];
      same.reference = report.reference;
      same.version = report.version;
      same.names.push_back(report.name);
    }
    for (auto& [key, same] : headers) {
      if (same.names.size() > 1) check_.same_headers.push_back(std::move(same));
    }
  }

  void FindUnmatched() {
    for (const ListedFile& difference : differences_) {
      if (used_.contains(difference.name)) continue;
      check_.unmatched.push_back(
          {difference.name, ParseDiffFileName(difference.name).reference, WhyUnused(difference)});
    }
  }

  UnmatchedReason WhyUnused(const ListedFile& difference) const {
    if (arrivals_.contains({difference.reference, difference.version})) {
      return UnmatchedReason::kAnotherIsApplied;
    }
    const auto lowest = arrivals_.lower_bound({difference.reference, 0});
    if (lowest == arrivals_.end() || lowest->first != difference.reference) {
      return UnmatchedReason::kNoSuchReference;
    }
    return lowest->second < difference.new_version ? UnmatchedReason::kNotOnTheWay
                                                   : UnmatchedReason::kNoLongerNeeded;
  }

  FileSystem& files_;
  const std::string& diff_folder_;
  const std::string& report_folder_;
  const OmitReport& omit_;
  std::vector<ListedFile> differences_;
  std::set<std::string> used_;
  std::set<std::pair<std::string, std::int32_t>> arrivals_;  // references and reached versions
  std::map<std::string, ReadResult> read_;                   // difference files by name
  FolderCheck check_;
};

}  // namespace

NoReportReason WhyNoReport(const std::string& path, std::int32_t version,
                           const std::string& reference) {
  const std::string extension(TrimBlanks(ExtensionOf(path)));
  if (extension.empty()) return NoReportReason::kNoExtension;
  if (extension.find('~') != std::string::npos) return NoReportReason::kBackupExtension;
  if (version >= 1) return NoReportReason::kNoReference;
  return reference.empty() ? NoReportReason::kNoHeader : NoReportReason::kNoVersion;
}

bool FolderCheck::Complete() const {
  return problems.empty() &&
         std::all_of(reports.begin(), reports.end(), [](const CheckedReport& report) {
           return report.state == ChainState::kComplete;
         });
}

FolderCheck CheckFolders(FileSystem& files, const std::string& diff_folder,
                         const std::string& report_folder, const OmitReport& omit) {
  return Checker(files, diff_folder, report_folder, omit).Run();
}

}  // namespace tessary
