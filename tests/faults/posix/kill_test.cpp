// Every operation killed at every single call to the system, and started again.

#include <gtest/gtest.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <functional>
#include <iostream>

#include "faults/posix/fault_world.h"
#include "faults/posix/system_calls.h"
#include "manager/restore.h"

namespace tessary {
namespace {

bool RunHere(const FaultWorld& world, const FaultOperation& operation) {
  ResultLog log;
  RecordingUser user;
  FaultManager manager(log, user, operation.ahead);
  return operation.run(world, *manager);
}

bool RunAgain(const FaultWorld& world, const FaultOperation& operation) {
  system_calls::Watch();
  const bool result = RunHere(world, operation);
  system_calls::Stop();
  return result;
}

// True when `run` died at its n-th call, false when it ended before.
bool DiesAt(int n, const std::function<void()>& run) {
  const pid_t child = fork();
  if (child == 0) {
    system_calls::WatchAndDie(n);
    run();
    _exit(0);
  }
  int status = 0;
  EXPECT_EQ(waitpid(child, &status, 0), child);
  return WIFSIGNALED(status);
}

bool DiesAt(const FaultWorld& world, const FaultOperation& operation, int n) {
  return DiesAt(n, [&] { RunHere(world, operation); });
}

const FaultOperation& Operation(std::string_view name) {
  for (const FaultOperation& operation : FaultOperations()) {
    if (operation.name == name) return operation;
  }
  throw std::out_of_range("no such operation");
}

std::map<std::string, std::string> Below(const FaultWorld& world, const std::string& folder) {
  auto files = world.Files();
  std::erase_if(files, [&](const auto& file) { return !file.first.starts_with(folder); });
  return files;
}

bool IsKept(const FaultWorld& world, const std::string& contents) {
  const auto files = world.Files();
  return std::any_of(files.begin(), files.end(), [&](const auto& file) {
    return file.second == contents && file.first.find("~tessary-") == std::string::npos;
  });
}

class FolderKillTest : public testing::TestWithParam<const char*> {};
class ReportKillTest : public testing::TestWithParam<const char*> {};
class DifferenceKillTest : public testing::TestWithParam<const char*> {};

TEST_P(FolderKillTest, AFolderRunIsFinishedByTheNext) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(false);
    died = DiesAt(world, Operation(GetParam()), n);
    world.ExpectWholeReports();
    EXPECT_TRUE(RunAgain(world, Operation(GetParam())));
    world.ExpectFinished();
    const auto finished = Below(world, "R/");
    EXPECT_EQ(finished.size(), 2U);
    EXPECT_TRUE(RunAgain(world, Operation(GetParam())));
    EXPECT_EQ(Below(world, "R/"), finished) << "a run over a finished folder changes nothing";
    world.ExpectFinished();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 100);
}

TEST_P(ReportKillTest, SoIsTheConversionOfOneReport) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(false);
    died = DiesAt(world, Operation(GetParam()), n);
    world.ExpectWholeReports();
    EXPECT_TRUE(RunAgain(world, Operation(GetParam())));
    EXPECT_EQ(world.Get("R/A.lst"), SmallReport(4, "A"));
    world.ExpectWholeReports();
    world.ExpectNoLeftovers();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 50);
}

// A report with two names is overwritten, which no system does at one blow; then its backup is
// whole.
TEST_P(FolderKillTest, AReportOverwrittenInPlaceHasItsBackup) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(true);
    died = DiesAt(world, Operation(GetParam()), n);
    world.ExpectWholeReports();
    RunAgain(world, Operation(GetParam()));
    world.ExpectWholeReports();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 100);
}

// Neither what the reports were brought to nor what they were before may be lost.
TEST(KillTest, PuttingReportsBackIsFinishedByTheNext) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(false);
    ASSERT_TRUE(RunAgain(world, Operation("ConvertReports")));
    PutFile(world.In("R/A.lst"), "changed since");
    const auto restore = [&] {
      return RestoreReports(SystemFiles(), world.In("RBak"), world.In("R"), {}, false, {1});
    };
    died = DiesAt(n, restore);
    const std::string contents = world.Get("R/A.lst");
    EXPECT_TRUE(contents == "changed since" || contents == SmallReport(3, "A")) << contents;
    EXPECT_TRUE(IsKept(world, "changed since"));
    EXPECT_TRUE(IsKept(world, SmallReport(3, "A")) && IsKept(world, SmallReport(4, "B")));
    system_calls::Watch();
    EXPECT_TRUE(restore().Succeeded());
    system_calls::Stop();
    EXPECT_EQ(world.Get("R/A.lst"), SmallReport(3, "A"));
    EXPECT_EQ(world.Get("R/B.lst"), SmallReport(4, "B"));
    EXPECT_TRUE(IsKept(world, "changed since"));
    world.ExpectNoLeftovers();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 50);
}

TEST_P(DifferenceKillTest, DifferenceFilesAreWholeOrMissing) {
  int n = 1;
  for (bool died = true; died && !testing::Test::HasFailure(); ++n) {
    SCOPED_TRACE("killed at call " + std::to_string(n));
    const FaultWorld world(false);
    died = DiesAt(world, Operation(GetParam()), n);
    const auto whole = world.Files();
    for (const auto& [path, contents] : Below(world, "new/")) {
      if (path.find("~tessary-") != std::string::npos) continue;
      EXPECT_EQ(contents, whole.at("diff/" + path.substr(4))) << path;
    }
    EXPECT_TRUE(RunAgain(world, Operation(GetParam())));
    EXPECT_EQ(Below(world, "new/").size(), 2U);
    world.ExpectNoLeftovers();
  }
  std::cout << "kills survived: " << n - 2 << "\n";
  EXPECT_GT(n, 50);
}

const auto kNameOfParam = [](const auto& row) { return std::string(row.param); };

INSTANTIATE_TEST_SUITE_P(Operations, FolderKillTest,
                         testing::Values("ConvertReports", "ConvertReportsAhead"), kNameOfParam);
INSTANTIATE_TEST_SUITE_P(Operations, ReportKillTest,
                         testing::Values("ConvertReport", "ConvertReportAhead"), kNameOfParam);
INSTANTIATE_TEST_SUITE_P(Operations, DifferenceKillTest,
                         testing::Values("CreateDiffFiles", "CreateDiffFilesAhead"), kNameOfParam);

}  // namespace
}  // namespace tessary
