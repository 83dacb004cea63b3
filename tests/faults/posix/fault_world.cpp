#include "faults/posix/fault_world.h"

#include <filesystem>
#include <ostream>

#include "faults/posix/system_calls.h"

namespace tessary {
namespace {

namespace fs = std::filesystem;

constexpr int kLastVersion = 5;
constexpr const char* kEarlierCopy = "copy of an earlier run";

std::string Reference(const std::string& name) { return name.substr(0, 1); }

void Put(const std::string& path, const std::string& contents) {
  fs::create_directories(fs::path(path).parent_path());
  PutFile(path, contents);
}

bool HasContents(const std::map<std::string, std::string>& files, const std::string& folder,
                 const std::string& contents) {
  for (const auto& [path, held] : files) {
    if (path.starts_with(folder) && held == contents) return true;
  }
  return false;
}

// The version that a report of this version has been brought to.
int LoggedVersion(const ResultLog& log, const std::string& name, int version) {
  for (const ResultDictionary::Item& item : log.dictCorrect.items()) {
    const std::string next = std::to_string(version + 1);
    if (item.text == "Der Bericht " + name + " wurde erfolgreich von Version " +
                         std::to_string(version) + " nach " + next + " konvertiert.")
      ++version;
  }
  return version;
}

}  // namespace

FaultWorld::FaultWorld(bool in_place) : in_place_(in_place) {
  for (int version = 3; version <= kLastVersion; ++version) {
    for (const auto& [name, first] : Reports())
      Put(In("v" + std::to_string(version) + "/" + name), SmallReport(version, Reference(name)));
  }
  fs::create_directories(In("new"));
  fs::create_directories(In("diff"));
  ResultLog log;
  RecordingUser user;
  BXConvertLLMgr manager(log, {SystemFiles(), user});
  system_calls::Watch();  // nothing need be flushed
  EXPECT_TRUE(manager.CreateDiffFiles(In("v3"), In("v4"), In("diff")));
  EXPECT_TRUE(manager.CreateDiffFiles(In("v4"), In("v5"), In("diff")));
  system_calls::Stop();
  for (const auto& [name, first] : Reports()) {
    Put(In("R/" + name), SmallReport(first, Reference(name)));
    if (in_place) fs::create_hard_link(In("R/" + name), In("R/second name of " + Reference(name)));
  }
  Put(In("RBak/A.lst"), kEarlierCopy);
}

const std::map<std::string, int>& FaultWorld::Reports() {
  static const std::map<std::string, int> reports = {{"A.lst", 3}, {"B.lst", 4}};
  return reports;
}

void FaultWorld::ExpectBackup(const std::string& name, int version) const {
  const auto files = Files();
  const std::string original = SmallReport(version, Reference(name));
  EXPECT_TRUE(Get("R/" + name) == original || HasContents(files, "RBak/", original))
      << name << " has no backup";
  EXPECT_TRUE(HasContents(files, "RBak/", kEarlierCopy)) << "the earlier copy is gone";
}

void FaultWorld::ExpectReportsAsLogged(const ResultLog& log, bool with_backup) const {
  for (const auto& [name, first] : Reports()) {
    const int version = LoggedVersion(log, name, first);
    const std::string contents = Get("R/" + name);
    // A report that was overwritten in part is restored from the backup, which is the original.
    const bool is_restored = in_place_ && contents == SmallReport(first, Reference(name));
    EXPECT_TRUE(is_restored || contents == SmallReport(version, Reference(name)))
        << name << " is not of version " << version << ":\n"
        << contents;
    if (with_backup) ExpectBackup(name, first);
  }
}

void FaultWorld::ExpectWholeReports() const {
  for (const auto& [name, first] : Reports()) {
    const std::string contents = Get("R/" + name);
    bool is_whole = false;
    for (int version = first; version <= kLastVersion; ++version)
      is_whole = is_whole || contents == SmallReport(version, Reference(name));
    // Cut short in place, a report can only be whole in its backup.
    EXPECT_TRUE(is_whole || in_place_) << name << ":\n" << contents;
    ExpectBackup(name, first);
  }
}

void FaultWorld::ExpectNoLeftovers() const {
  for (const auto& [path, contents] : Files())
    EXPECT_EQ(path.find("~tessary-"), std::string::npos) << path;
}

void FaultWorld::ExpectFinished() const {
  for (const auto& [name, first] : Reports())
    EXPECT_EQ(Get("R/" + name), SmallReport(kLastVersion, Reference(name))) << name;
  ExpectWholeReports();
  ExpectNoLeftovers();
}

const std::vector<FaultOperation>& FaultOperations() {
  const auto diff_file = [](const FaultWorld& w, BXConvertLLMgr& manager) {
    return manager.CreateDiffFile(w.In("v3/A.lst"), w.In("v4/A.lst"), w.In("new"));
  };
  const auto diff_files = [](const FaultWorld& w, BXConvertLLMgr& manager) {
    return manager.CreateDiffFiles(w.In("v3"), w.In("v4"), w.In("new"));
  };
  const auto report = [](const FaultWorld& w, BXConvertLLMgr& manager) {
    return manager.ConvertReport(w.In("R/A.lst"), w.In("diff/3_4A"), w.In("RBak"));
  };
  const auto reports = [](const FaultWorld& w, BXConvertLLMgr& manager) {
    return manager.ConvertReports(w.In("diff"), w.In("R"), "");
  };
  static const std::vector<FaultOperation> operations = {
      {"CreateDiffFile", false, false, diff_file},
      {"CreateDiffFiles", false, false, diff_files},
      {"CreateDiffFilesAhead", false, true, diff_files},
      {"ConvertReport", true, false, report},
      {"ConvertReportAhead", true, true, report},
      {"ConvertReports", true, false, reports},
      {"ConvertReportsAhead", true, true, reports},
  };
  return operations;
}

void PrintTo(const FaultOperation& operation, std::ostream* out) { *out << operation.name; }

}  // namespace tessary
