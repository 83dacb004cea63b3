// A dry run and a real run of the same command on the same files.

#include <gtest/gtest.h>

#include <functional>
#include <string>
#include <vector>

#include "cli/tessary.h"
#include "platform/failure.h"
#include "support/failing_files.h"
#include "support/fake_console.h"
#include "support/json.h"
#include "support/manager_test_base.h"
#include "support/memory_files.h"

namespace tessary {
namespace {

using Words = std::vector<std::string>;

constexpr char kPrefix[] = "Probelauf, nichts geschrieben: ";

struct Scenario {
  const char* name;
  Words arguments;
  int exit_code;
  std::function<void(MemoryFiles&)> prepare = [](MemoryFiles&) {};
  std::function<void(FailingFiles&)> fail = [](FailingFiles&) {};
};

// The vendor's steps 3 to 4 and 4 to 5, and a customer's reports.
void PutFiles(MemoryFiles& files) {
  FakeConsole console;
  for (const int version : {3, 4, 5}) {
    files.Put("/v" + std::to_string(version) + "/Rechnung.lst", SmallReport(version));
  }
  files.PutFolder("/diff");
  for (const char* versions : {"34", "45"}) {
    const std::string from = std::string("/v") + versions[0];
    const std::string to = std::string("/v") + versions[1];
    ASSERT_EQ(RunTessary({"diff-folder", from, to, "/diff"}, console, files), kExitDone);
  }
  files.Put("/rep/a.lst", SmallReport(3));
  files.Put("/rep/b.lst", SmallReport(4));
  files.Put("/rep/Liesmich.txt", "");
}

struct Result {
  int exit_code;
  std::string out;
  std::string err;
};

Result RunOn(MemoryFiles& memory, const Scenario& scenario, Words more) {
  FailingFiles files(memory);
  scenario.fail(files);
  FakeConsole console;
  Words arguments = scenario.arguments;
  arguments.insert(arguments.end(), more.begin(), more.end());
  const int exit_code = RunTessary(arguments, console, files);
  return {exit_code, console.out, console.err};
}

std::string WithoutTrialWords(std::string text) {
  for (const std::string& word : {std::string(kPrefix), std::string(" --dry-run")}) {
    for (auto at = text.find(word); at != std::string::npos; at = text.find(word)) {
      text.erase(at, word.size());
    }
  }
  return text;
}

const Words kFolder = {"convert-folder", "/diff", "/rep"};
const Words kOne = {"convert", "/rep/a.lst", "/diff/3_4Rechnung"};

const Scenario kScenarios[] = {
    {"folder", kFolder, kExitDone},
    {"one report", kOne, kExitDone},
    {"an older, different backup", kFolder, kExitDone,
     [](MemoryFiles& files) {
       files.Put("/repBak/a.lst", "other");
       files.Put("/repBak/~a.lst.~1", "oldest");
     }},
    {"a read-only report", kFolder, kExitFailed,
     [](MemoryFiles& files) { files.SetReadOnly("/rep/a.lst"); }},
    {"a read-only backup", kFolder, kExitFailed,
     [](MemoryFiles& files) {
       files.Put("/repBak/a.lst", SmallReport(3));
       files.SetReadOnly("/repBak/a.lst");
     }},
    {"no place for the backup folder",
     {"convert-folder", "/diff", "/rep", "--backup", "/no/x"},
     kExitFailed},
    {"no place for the backup folder, continue",
     {"convert-folder", "/diff", "/rep", "--backup", "/no/x", "--on-backup-failure=continue"},
     kExitDone},
    {"the backup folder is the report folder",
     {"convert-folder", "/diff", "/rep", "--backup", "/rep/"},
     kExitFailed},
    {"links to one report", kFolder, kExitDone,
     [](MemoryFiles& files) { files.PutLink("/rep/z.lst", "/rep/a.lst"); }},
    {"a damaged difference file", kFolder, kExitFailed,
     [](MemoryFiles& files) { files.Put("/diff/3_4Rechnung", "\xEF\xBB\xBF[A]\n"); }},
    {"a report of a newer format", kFolder, kExitFailed,
     [](MemoryFiles& files) {
       files.Put("/rep/neu.lst", "\xEF\xBB\xBF[UserSection]\nVersion=3\nReferenzbeleg=Rechnung\n");
     }},
    {"no difference files",
     {"convert-folder", "/leer", "/rep"},
     kExitFailed,
     [](MemoryFiles& files) { files.PutFolder("/leer"); }},
    {"no reports",
     {"convert-folder", "/diff", "/leer"},
     kExitFailed,
     [](MemoryFiles& files) { files.PutFolder("/leer"); }},
    {"a missing folder", {"convert-folder", "/diff", "/none"}, kExitFailed},
    {"a missing report", {"convert", "/rep/x.lst", "/diff/3_4Rechnung"}, kExitFailed},
    {"no difference file's name", {"convert", "/rep/a.lst", "/rep/b.lst"}, kExitFailed},
    {"an omitted report",
     {"convert-folder", "/diff", "/rep", "--omit=a.lst", "--omit=x"},
     kExitDone},
    {"an unreadable report", kOne, kExitFailed, [](MemoryFiles&) {},
     [](FailingFiles& files) {
       files.FailCallsFrom(FileCall::kOpenForReading, 1, kDeviceError);
       files.FailCallsFrom(FileCall::kCopy, 1, kDeviceError);
     }},
    {"an unreadable folder", kFolder, kExitFailed, [](MemoryFiles&) {},
     [](FailingFiles& files) { files.FailCallsFrom(FileCall::kList, 1, kPermissionDenied); }},
};

TEST(DryRunTest, SaysWhatTheRealRunSaysAndWritesNothing) {
  for (const Scenario& scenario : kScenarios) {
    SCOPED_TRACE(scenario.name);
    MemoryFiles files;
    PutFiles(files);
    scenario.prepare(files);
    const auto before = files.files();
    const bool had_backups = files.FolderExists("/repBak");

    const Result trial = RunOn(files, scenario, {"--dry-run"});
    const Result trial_json = RunOn(files, scenario, {"--dry-run", "--json"});
    EXPECT_EQ(files.files(), before);
    EXPECT_EQ(files.FolderExists("/repBak"), had_backups);

    MemoryFiles other = files;
    const Result real = RunOn(files, scenario, {});
    const Result real_json = RunOn(other, scenario, {"--json"});
    EXPECT_EQ(trial.exit_code, scenario.exit_code);
    EXPECT_EQ(real.exit_code, scenario.exit_code);
    EXPECT_EQ(WithoutTrialWords(trial.out), real.out);
    EXPECT_NE(trial.out.find(kPrefix), std::string::npos);
    EXPECT_EQ(trial.err, real.err);

    Json object = ParseJson(trial_json.out);
    EXPECT_EQ(object["dry_run"], true);
    object.erase("dry_run");
    EXPECT_EQ(object, ParseJson(real_json.out));
    EXPECT_EQ(trial_json.exit_code, scenario.exit_code);
  }
}

TEST(DryRunTest, ThePageIsWrittenAndSaysSo) {
  MemoryFiles files;
  PutFiles(files);
  const Scenario scenario{"", kFolder, kExitDone};
  EXPECT_EQ(RunOn(files, scenario, {"--dry-run", "--html", "/p.html"}).exit_code, kExitDone);
  EXPECT_NE(files.Get("/p.html").find("Probelauf, nichts geschrieben: Ohne Fehler abgeschlossen."),
            std::string::npos);
  EXPECT_EQ(files.Get("/rep/a.lst"), SmallReport(3));
}

TEST(DryRunTest, OnlyConversionsHaveOne) {
  MemoryFiles files;
  FakeConsole console;
  EXPECT_EQ(RunTessary({"diff", "a", "b", "c", "--dry-run"}, console, files), kExitWrongUsage);
}

}  // namespace
}  // namespace tessary
